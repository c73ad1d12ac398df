#pragma once
#include <QByteArrayView>
#include <QSqlDatabase>
#include <QString>
#include <functional>

struct sqlite3_context;
struct sqlite3_value;

namespace zol {

// A rule of the program that a statement on one connection can call by name,
// so that a rule written once in C++ can decide inside a single statement
// (the database joins, orders and writes; the rule stays the program's).
// Registered for the lifetime of the object; every statement that uses it
// must be finished before it goes. SQLite's own interface is kept in here.
class SqlFunction {
public:
    // The arguments of one call, read without copying.
    class Args {
    public:
        Args(int count, sqlite3_value **values) : m_count(count), m_values(values) {}
        int count() const { return m_count; }
        // The value as UTF-8 bytes; empty for NULL. Valid during the call only.
        QByteArrayView bytes(int i) const;
        long long integer(int i) const;
        QString text(int i) const { return QString::fromUtf8(bytes(i)); }

    private:
        int m_count;
        sqlite3_value **m_values;
    };

    // The result of one call.
    class Result {
    public:
        explicit Result(sqlite3_context *context) : m_context(context) {}
        void setInteger(long long v);
        void setDouble(double v);
        void setText(QByteArrayView utf8);   // copied by the database
        void setNull();
        // Ends the statement with this fault text; the caller's transaction rolls back.
        void setError(const QString &text);

    private:
        sqlite3_context *m_context;
    };

    using Body = std::function<void(const Args &, Result &)>;

    // Raises a Fault when the connection is not SQLite or the name cannot be registered.
    SqlFunction(const QSqlDatabase &db, const char *name, int argCount, Body body);
    ~SqlFunction();
    SqlFunction(const SqlFunction &) = delete;
    SqlFunction &operator=(const SqlFunction &) = delete;

private:
    static void call(sqlite3_context *context, int argc, sqlite3_value **argv);

    QSqlDatabase m_db;
    QByteArray m_name;
    int m_argCount;
    Body m_body;
};

}
