#include "RecordKeys.h"
#include "Fault.h"
#include "Sql.h"

namespace zol {

namespace {
constexpr qint64 Never = 2147483647;   // the one number never given out

bool parseNumber(const QString &text, qint64 *out)
{
    bool ok = false;
    const QString t = text.trimmed();
    qint64 n = t.toLongLong(&ok);
    if (!ok) {
        QString d = t;
        d.replace(QLatin1Char(','), QLatin1Char('.'));
        const double v = d.toDouble(&ok);
        if (ok)
            n = qint64(v + (v < 0 ? -0.5 : 0.5));
    }
    if (ok)
        *out = n;
    return ok;
}

void writeBookkeeping(const QSqlDatabase &db, const QString &table, const QString &text, bool insert)
{
    if (insert)
        exec(db, QStringLiteral("INSERT INTO %1 (FileIndex, FileAbove, FileTyp, Text) VALUES ('LastIndex', 'NONE', 'X', ?)")
                     .arg(ident(table)),
             {text});
    else
        exec(db, QStringLiteral("UPDATE %1 SET Text = ? WHERE FileIndex = 'LastIndex'").arg(ident(table)), {text});
}
}

QString formatFileIndex(qint64 n) { return QStringLiteral("%1").arg(n, 10, 10, QLatin1Char('0')); }

QString NeuerFileIndex(const QSqlDatabase &db, const QString &table)
{
    Transaction tx(db);
    const QString t = ident(table);
    Statement exists(db, QStringLiteral("SELECT 1 FROM %1 WHERE FileIndex = ?").arg(t));
    auto taken = [&](qint64 n) { return exists.run({formatFileIndex(n)}).next(); };

    qint64 n = 1;
    QSqlQuery book = exec(db, QStringLiteral("SELECT Text FROM %1 WHERE FileIndex = 'LastIndex'").arg(t));
    bool haveBook = book.next();
    if (!haveBook && !scalar(db, QStringLiteral("SELECT 1 FROM %1 LIMIT 1").arg(t)).isValid()) {
        writeBookkeeping(db, table, QStringLiteral("0"), true);
        haveBook = true;
        n = 0;
    } else if (haveBook) {
        if (!parseNumber(book.value(0).toString(), &n)) {
            writeBookkeeping(db, table, QStringLiteral("1"), false);
            n = 1;
        }
    } else {
        // The bookkeeping row is lost: go on after the last numeric key in the table's order.
        QSqlQuery rows = exec(db, QStringLiteral("SELECT FileIndex FROM %1 ORDER BY rowid DESC").arg(t));
        n = 1;
        while (rows.next()) {
            qint64 k;
            if (parseNumber(rows.value(0).toString(), &k)) {
                n = k + 1;
                break;
            }
        }
    }
    book.finish();
    if (n < 1 || n >= Never)
        n = 1;

    const qint64 start = n;
    while (taken(n)) {
        ++n;
        if (n >= Never)
            n = 1;
        if (n == start)
            throw Fault(FaultNo::General,
                        QStringLiteral("In der Tabelle %1 ist kein Schlüssel mehr frei").arg(table));
    }
    if (!haveBook)
        writeBookkeeping(db, table, QString::number(n), true);
    writeBookkeeping(db, table, QString::number(n + 1), false);
    tx.commit();
    return formatFileIndex(n);
}

bool IdentNrEindeutig(const QSqlDatabase &db, const QString &identNr)
{
    return scalar(db, QStringLiteral("SELECT count(*) FROM ProtokollKopf WHERE IdentNr = ?"), {identNr}).toInt() < 2;
}

}
