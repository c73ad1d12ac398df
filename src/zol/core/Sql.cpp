#include "Sql.h"
#include "Fault.h"
#include <QSqlError>
#include <QAtomicInt>

namespace zol {

Fault faultFromSqlError(const QString &driverText, const QString &nativeCode, const QString &sql)
{
    const QString text = driverText.trimmed();
    // SQLite's extended codes for constraint faults: 2067 unique, 1555 primary key.
    if (nativeCode == QLatin1String("2067") || nativeCode == QLatin1String("1555")
        || text.contains(QLatin1String("UNIQUE constraint failed")))
        return Fault(FaultNo::KeyExists,
                     QStringLiteral("Die von Ihnen vorgenommenen Änderungen an der Tabelle konnten nicht "
                                    "vorgenommen werden, da der Index doppelte Werte enthalten würde."));
    if (text.contains(QLatin1String("no such table")))
        return Fault(FaultNo::TableMissing, QStringLiteral("Tabelle nicht gefunden: ") + text);
    if (text.contains(QLatin1String("not a database")) || text.contains(QLatin1String("malformed")))
        return Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat: ") + text);
    if (text.contains(QLatin1String("readonly")) || text.contains(QLatin1String("read-only")))
        return Fault(FaultNo::CannotWrite, QStringLiteral("Die Datenbank kann nicht beschrieben werden: ") + text);
    if (text.contains(QLatin1String("locked")) || text.contains(QLatin1String("busy")))
        return Fault(FaultNo::FileInUse, QStringLiteral("Die Datenbank wird gerade benutzt: ") + text);
    Q_UNUSED(sql);
    return Fault(FaultNo::General, text);
}

// Text fields hold the empty text, never NULL: a null QString binds as ''.
static QVariant bindable(const QVariant &v)
{
    if (v.typeId() == QMetaType::QString && v.toString().isNull())
        return QStringLiteral("");
    return v;
}

static Fault faultOf(const QSqlQuery &q, const QString &sql)
{
    const QSqlError e = q.lastError();
    return faultFromSqlError(e.databaseText().isEmpty() ? e.text() : e.databaseText(), e.nativeErrorCode(), sql);
}

QSqlQuery exec(const QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        throw faultOf(q, sql);
    for (const QVariant &v : values)
        q.addBindValue(bindable(v));
    if (!q.exec())
        throw faultOf(q, sql);
    return q;
}

Statement::Statement(const QSqlDatabase &db, const QString &sql) : m_query(db), m_sql(sql)
{
    m_query.setForwardOnly(true);
    if (!m_query.prepare(sql))
        throw faultOf(m_query, sql);
}

QSqlQuery &Statement::run(const QVariantList &values)
{
    for (int i = 0; i < values.size(); ++i)
        m_query.bindValue(i, bindable(values.at(i)));
    if (!m_query.exec())
        throw faultOf(m_query, m_sql);
    return m_query;
}

QVariant scalar(const QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    QSqlQuery q = exec(db, sql, values);
    if (q.next())
        return q.value(0);
    return {};
}

QString ident(const QString &name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString caselessGlob(const QString &text)
{
    const auto beideFaelle = [](QChar c) {
        const QChar lower = c.toLower(), upper = c.toUpper();
        return lower != upper ? QString(lower) + upper : QString(c);
    };
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const qsizetype ende = c == QLatin1Char('[') ? text.indexOf(QLatin1Char(']'), i + 2) : -1;
        if (c == QLatin1Char('[') && ende > 0) {
            QString set = text.mid(i + 1, ende - i - 1);
            out += QLatin1Char('[');
            if (set.startsWith(QLatin1Char('!'))) {
                out += QLatin1Char('^');
                set.remove(0, 1);
            }
            for (QChar m : set)
                out += beideFaelle(m);
            out += QLatin1Char(']');
            i = ende;
        } else if (c == QLatin1Char('[')) {
            out += QStringLiteral("[[]");
        } else if (c == QLatin1Char('#')) {
            out += QStringLiteral("[0-9]");
        } else {
            const QString both = beideFaelle(c);
            out += both.size() > 1 ? QLatin1Char('[') + both + QLatin1Char(']') : both;
        }
    }
    return out;
}

QString likePattern(const QString &legacyPattern)
{
    QString out;
    out.reserve(legacyPattern.size() + 4);
    for (QChar c : legacyPattern) {
        if (c == QLatin1Char('*'))
            out += QLatin1Char('%');
        else if (c == QLatin1Char('?'))
            out += QLatin1Char('_');
        else if (c == QLatin1Char('%') || c == QLatin1Char('_') || c == QLatin1Char('\\')) {
            out += QLatin1Char('\\');
            out += c;
        } else
            out += c;
    }
    return out;
}

static QAtomicInt g_savepointCounter;

Transaction::Transaction(const QSqlDatabase &db)
    : m_db(db), m_name(QStringLiteral("zol_sp%1").arg(g_savepointCounter.fetchAndAddRelaxed(1)))
{
    exec(m_db, QStringLiteral("SAVEPOINT ") + m_name);
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    // Leaving without commit: undo everything of this unit. No throw here.
    QSqlQuery q(m_db);
    q.exec(QStringLiteral("ROLLBACK TO ") + m_name);
    q.exec(QStringLiteral("RELEASE ") + m_name);
}

void Transaction::commit()
{
    if (!m_open)
        return;
    exec(m_db, QStringLiteral("RELEASE ") + m_name);
    m_open = false;
}

}
