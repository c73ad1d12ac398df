#include "StatisticsInput.h"
#include "zol/core/Digits.h"
#include "zol/core/Sql.h"
#include "zol/planning/WeekCalendar.h"
#include <QSqlQuery>
#include <cmath>

namespace zol {

static bool weekInStatistics(const QString &week)
{
    const double w = std::floor(leadingNumber(week));
    return w >= 1 && w <= 52;
}

PeriodCheck checkWeeks(QString &von, QString &bis, const QString &rangeMessage, const QString &orderMessage)
{
    von = formatWoche(von);
    bis = formatWoche(bis);
    if (!weekInStatistics(von))
        return {rangeMessage, PeriodField::WocheVon};
    if (!weekInStatistics(bis))
        return {rangeMessage, PeriodField::WocheBis};
    if (bis < von)
        return {orderMessage, PeriodField::WocheBis};
    return {};
}

PeriodCheck checkJahr(QString &jahr, PeriodField field)
{
    jahr = formatJahr(jahr.trimmed());
    if (jahr.size() != 4 || !allAsciiDigits(jahr))
        return {MsgJahreszahl, field};
    return {};
}

int weekNumber(const QString &week)
{
    return wholeNumber(week).value_or(0);
}

QStringList selectedEntries(const QSqlDatabase &db, bool listHasFocus, const QStringList &listSelected,
                            const QString &treeKey)
{
    if (listHasFocus)
        return listSelected;
    QStringList keys;
    if (treeKey.isEmpty())
        return keys;
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE FileAbove = ? ORDER BY FileIndex"),
                       {treeKey});
    while (q.next())
        keys << q.value(0).toString();
    return keys;
}

ComponentTree ComponentTree::load(const QSqlDatabase &db)
{
    ComponentTree t;
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex, FileAbove, FileTyp, Text, BezugsJahr, BezugsWoche"
                                          " FROM ProtokollKopf ORDER BY FileIndex"));
    while (q.next()) {
        const QString key = q.value(0).toString();
        Row r{q.value(1).toString(), q.value(2).toString(), q.value(3).toString(), q.value(4).toString(),
              q.value(5).toString()};
        t.m_children[r.FileAbove] << key;
        t.m_rows.insert(key, std::move(r));
    }
    return t;
}

const ComponentTree::Row *ComponentTree::row(const QString &fileIndex) const
{
    const auto it = m_rows.constFind(fileIndex);
    return it == m_rows.constEnd() ? nullptr : &it.value();
}

QStringList ComponentTree::components(const QStringList &entries) const
{
    QStringList out;
    QSet<QString> seen;   // a damaged chain running in a circle is walked once
    std::function<void(const QString &)> walk = [&](const QString &key) {
        const Row *r = row(key);
        if (!r || seen.contains(key))
            return;
        seen.insert(key);
        if (r->FileTyp == QLatin1String("F")) {
            out << key;
            return;
        }
        for (const QString &child : m_children.value(key))
            walk(child);
    };
    for (const QString &e : entries) {
        seen.clear();
        walk(e);
    }
    return out;
}

QString mask000(double v)
{
    return QString::number(v, 'f', 2);
}

QString plainNumber(double v)
{
    return QString::number(v, 'g', 15);
}

}
