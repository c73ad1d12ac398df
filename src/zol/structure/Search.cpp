#include "Search.h"
#include "zol/core/Messages.h"
#include "zol/core/NameOrder.h"
#include "zol/core/Sql.h"
#include <QHash>
#include <QSqlQuery>

namespace zol {

namespace {
// Bound values per statement stay well below the engine's limit.
constexpr int RowBlock = 200;

// The engine's LIKE ignores the case of ASCII letters only. A filter with
// other letters (umlauts) goes through GLOB instead, each letter as the class
// of its two cases, so "LÜFTER*" finds "Lüfter" as the legacy UCase did.
bool needsGlob(const QString &text)
{
    for (const QChar c : text)
        if (c.unicode() > 127 && c.toUpper() != c.toLower())
            return true;
    return false;
}

QString caseFreeGlob(const QString &legacy)
{
    QString out;
    for (const QChar c : legacy) {
        if (c == QLatin1Char('*') || c == QLatin1Char('?'))
            out += c;
        else if (c == QLatin1Char('['))
            out += QStringLiteral("[[]");
        else if (c.toUpper() != c.toLower())
            out += QLatin1Char('[') + QString(c.toLower()) + QString(c.toUpper()) + QLatin1Char(']');
        else
            out += c;
    }
    return out;
}

void addViewCondition(QString &sql, QVariantList &values, int view)
{
    sql += QStringLiteral(" WHERE FileTyp = ?");
    values << FileTypFile;
    if (view == 2 || view == 3) {
        sql += QStringLiteral(" AND Katalog = ?");
        values << (view == 2 ? QStringLiteral("0") : QStringLiteral("1"));
    }
}
}

ListRow listRowOf(const Node &node, const OptionState &options)
{
    return {node.FileIndex, node.FileTyp, node.Text, listImageOf(node), listSubItems(node, options)};
}

QList<ListRow> listRows(const QSqlDatabase &db, const QStringList &keys, const OptionState &options)
{
    QStringList fields = {QStringLiteral("FileIndex"), QStringLiteral("FileTyp"), QStringLiteral("Katalog"),
                          QStringLiteral("Text")};
    for (int index : options.gSpaltenIndex)
        if (index >= 1 && index <= options.gSpaltenFeld.size() && !fields.contains(options.gSpaltenFeld.at(index - 1)))
            fields << options.gSpaltenFeld.at(index - 1);
    QStringList quoted;
    for (const QString &f : fields)
        quoted << ident(f);

    QHash<QString, ListRow> found;
    for (qsizetype from = 0; from < keys.size(); from += RowBlock) {
        const QStringList block = keys.mid(from, RowBlock);
        QString marks = QStringLiteral("?");
        marks += QStringLiteral(",?").repeated(block.size() - 1);
        QVariantList values;
        for (const QString &k : block)
            values << k;
        QSqlQuery q = exec(db,
                           QStringLiteral("SELECT %1 FROM ProtokollKopf WHERE FileIndex IN (%2)")
                               .arg(quoted.join(QLatin1Char(',')), marks),
                           values);
        while (q.next()) {
            Node n;
            for (int i = 0; i < fields.size(); ++i)
                n.setValue(fields.at(i), q.value(i).toString());
            found.insert(n.FileIndex, listRowOf(n, options));
        }
    }
    QList<ListRow> rows;
    rows.reserve(keys.size());
    for (const QString &k : keys) {
        auto it = found.constFind(k);
        if (it != found.cend())
            rows << *it;
    }
    return rows;
}

QString searchField(int index, const OptionState &options)
{
    if (index == 0)
        return QStringLiteral("Text");
    if (index >= 1 && index <= options.gSpaltenFeld.size())
        return options.gSpaltenFeld.at(index - 1);
    return {};
}

bool filterRestricts(const QString &text)
{
    const QString t = text.trimmed();
    return !t.isEmpty() && t != QLatin1String("*");
}

SearchStatement searchStatement(int view, const SearchFilters &filters, const OptionState &options)
{
    SearchStatement s;
    s.sql = QStringLiteral("SELECT FileIndex FROM ProtokollKopf");
    addViewCondition(s.sql, s.values, view);
    // Entries without a name are never listed.
    s.sql += QStringLiteral(" AND Text <> ''");
    auto addFilter = [&](int index) {
        const QString text = filters.value(index);
        const QString field = searchField(index, options);
        if (field.isEmpty() || !filterRestricts(text))
            return;
        // The text counts as typed, blanks included; the case is ignored.
        if (needsGlob(text)) {
            s.sql += QStringLiteral(" AND %1 GLOB ?").arg(ident(field));
            s.values << caseFreeGlob(text);
        } else {
            s.sql += QStringLiteral(" AND %1 LIKE ? ESCAPE '\\'").arg(ident(field));
            s.values << likePattern(text);
        }
    };
    addFilter(0);
    for (int index : options.gSpaltenIndex)
        addFilter(index);
    s.sql += QStringLiteral(" ORDER BY ") + nameOrder(QStringLiteral("Text")) + QStringLiteral(", FileIndex");
    return s;
}

QStringList SucheKomponenten(const QSqlDatabase &db, int view, const SearchFilters &filters, const OptionState &options)
{
    const SearchStatement s = searchStatement(view, filters, options);
    QStringList keys;
    QSqlQuery r = exec(db, s.sql, s.values);
    while (r.next())
        keys << r.value(0).toString();
    return keys;
}

QStringList filterChoices(const QSqlDatabase &db, int view, const QString &field)
{
    QString sql = QStringLiteral("SELECT %1 FROM ProtokollKopf").arg(ident(field));
    QVariantList values;
    addViewCondition(sql, values, view);
    sql += QStringLiteral(" GROUP BY %1 ORDER BY %1").arg(ident(field));
    QStringList out;
    QSqlQuery q = exec(db, sql, values);
    while (q.next())
        if (!q.value(0).isNull())
            out << q.value(0).toString();
    return out;
}

QString orphanWarning() { return QStringLiteral("ACHTUNG: Diese Komponente gehört keiner Technischen Einrichtung an."); }

namespace {
// The parent of a component when it exists (a row or a top node).
std::optional<QString> parentOf(const QSqlDatabase &db, const QString &fileIndex)
{
    const QVariant above = scalar(db, QStringLiteral("SELECT FileAbove FROM ProtokollKopf WHERE FileIndex = ?"), {fileIndex});
    if (!above.isValid())
        return std::nullopt;
    const QString parent = above.toString();
    if (ExplorerTree::isRootKey(parent))
        return parent;
    if (!scalar(db, QStringLiteral("SELECT 1 FROM ProtokollKopf WHERE FileIndex = ?"), {parent}).isValid())
        return std::nullopt;
    return parent;
}
}

QString searchCaption(const QSqlDatabase &db, const QString &fileIndex)
{
    const std::optional<QString> parent = parentOf(db, fileIndex);
    if (!parent)
        return QStringLiteral("'ZOL' - ") + orphanWarning();
    return mainCaption(FullPath(db, *parent), false);
}

std::optional<QString> GeheZuKomponente(const QSqlDatabase &db, const ExplorerTree &tree, const QString &fileIndex)
{
    const std::optional<QString> parent = parentOf(db, fileIndex);
    if (!parent) {
        ZeigeMeldung(orphanWarning() + QLatin1Char(' ')
                         + QStringLiteral("Falls Sie diese Komponente nicht mehr brauchen, löschen Sie sie bitte! Anderenfalls")
                         + QLatin1Char(' ')
                         + QStringLiteral("schneiden Sie sie aus und platzieren Sie sie an entsprechender Stelle in der "
                                          "Strukturansicht."),
                     Style::Exclamation);
        return std::nullopt;
    }
    if (!tree.contains(*parent)) {
        ZeigeMeldung(QStringLiteral("Fehler: Konnte diese Komponente nicht in der Strukturansicht öffnen"), Style::Critical);
        return std::nullopt;
    }
    return parent;
}

}
