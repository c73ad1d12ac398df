#include "SqlFunction.h"
#include "Fault.h"
#include <QSqlDriver>
#include <QVariant>
#include <sqlite3.h>

namespace zol {

namespace {

// The connection's own handle. Qt's SQLite driver is linked against the same
// system library as this program, so the handle can be used directly.
sqlite3 *handleOf(const QSqlDatabase &db)
{
    const QVariant v = db.driver() ? db.driver()->handle() : QVariant();
    if (!v.isValid() || qstrcmp(v.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(v.constData());
}

}   // namespace

QByteArrayView SqlFunction::Args::bytes(int i) const
{
    const unsigned char *t = sqlite3_value_text(m_values[i]);
    return t ? QByteArrayView(reinterpret_cast<const char *>(t), sqlite3_value_bytes(m_values[i])) : QByteArrayView();
}

long long SqlFunction::Args::integer(int i) const { return sqlite3_value_int64(m_values[i]); }

void SqlFunction::Result::setInteger(long long v) { sqlite3_result_int64(m_context, v); }
void SqlFunction::Result::setDouble(double v) { sqlite3_result_double(m_context, v); }
void SqlFunction::Result::setText(QByteArrayView utf8)
{
    sqlite3_result_text(m_context, utf8.data(), int(utf8.size()), SQLITE_TRANSIENT);
}
void SqlFunction::Result::setNull() { sqlite3_result_null(m_context); }
void SqlFunction::Result::setError(const QString &text)
{
    const QByteArray t = text.toUtf8();
    sqlite3_result_error(m_context, t.constData(), int(t.size()));
}

SqlFunction::SqlFunction(const QSqlDatabase &db, const char *name, int argCount, Body body)
    : m_db(db), m_name(name), m_argCount(argCount), m_body(std::move(body))
{
    sqlite3 *h = handleOf(m_db);
    if (!h)
        throw Fault(FaultNo::General, QStringLiteral("Die Datenbank kennt keine eigenen Funktionen"));
    // Not deterministic: a rule may count its calls (progress), so every row calls it.
    if (sqlite3_create_function_v2(h, m_name.constData(), m_argCount, SQLITE_UTF8 | SQLITE_DIRECTONLY, this,
                                   &SqlFunction::call, nullptr, nullptr, nullptr)
        != SQLITE_OK)
        throw Fault(FaultNo::General, QStringLiteral("Die Funktion %1 kann nicht angelegt werden: %2")
                                          .arg(QString::fromUtf8(m_name), QString::fromUtf8(sqlite3_errmsg(h))));
}

SqlFunction::~SqlFunction()
{
    if (sqlite3 *h = handleOf(m_db))
        sqlite3_create_function_v2(h, m_name.constData(), m_argCount, SQLITE_UTF8, nullptr, nullptr, nullptr,
                                   nullptr, nullptr);
}

void SqlFunction::call(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    auto *self = static_cast<SqlFunction *>(sqlite3_user_data(context));
    Result result(context);
    // Nothing may unwind through the database's own code.
    try {
        self->m_body(Args(argc, argv), result);
    } catch (const Fault &f) {
        result.setError(f.description());
    } catch (const std::exception &e) {
        result.setError(QString::fromUtf8(e.what()));
    }
}

}
