#pragma once
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

namespace zol {

class Fault;

// How the data are reached. A read is a forward-only SELECT (exec, Statement):
// cheap, and nothing can be changed through it. A write runs inside a
// Transaction, so it completes or leaves the data as they were. A window keeps
// no open record set between two actions; it keeps the FileIndex of its
// current record and finds it again after every reload (the explorer's
// RefreshAll does so for the tree and the list).

// Runs a statement with bound values; a failure becomes a Fault (a unique key
// that exists already becomes fault 3022, a missing table 3078).
QSqlQuery exec(const QSqlDatabase &db, const QString &sql, const QVariantList &values = {});

// Prepares a statement once for many executions; run() binds and executes.
class Statement {
public:
    Statement(const QSqlDatabase &db, const QString &sql);
    QSqlQuery &run(const QVariantList &values = {});
    QSqlQuery &query() { return m_query; }

private:
    QSqlQuery m_query;
    QString m_sql;
};

// The first column of the first row, or an invalid QVariant.
QVariant scalar(const QSqlDatabase &db, const QString &sql, const QVariantList &values = {});

Fault faultFromSqlError(const QString &driverText, const QString &nativeCode, const QString &sql);

// A table or field name quoted for SQL text (names come from the schema, never from users).
QString ident(const QString &name);

// Turns the legacy wildcards (* any text, ? one character) into a LIKE pattern
// with '\' as escape, so %, _ and \ typed by the user stay plain text.
// Use as: "... LIKE ? ESCAPE '\\'".
QString likePattern(const QString &legacyPattern);

// A text with the legacy wildcards (* and ?, # for a digit, [abc] and [!abc]
// for one character of a set or not of it; a [ without its ] stands for
// itself) as a GLOB pattern that ignores the case of every letter, umlauts
// included (the database's LIKE and upper() fold ASCII letters only): each
// letter becomes the class of its two cases, inside a set as well.
// Use as: "... GLOB ?".
QString caselessGlob(const QString &text);

// One unit of work: commit() makes it stick, leaving the scope without it
// rolls everything back. Units nest (savepoints), so a routine that is one
// transaction on its own can be part of a larger one.
class Transaction {
public:
    explicit Transaction(const QSqlDatabase &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    void commit();

private:
    QSqlDatabase m_db;
    QString m_name;
    bool m_open = true;
};

}
