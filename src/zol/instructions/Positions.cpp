#include "Positions.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"

namespace zol {

int DeleteTePositionenNeu(const QSqlDatabase &db, const QString &teNummer)
{
    QSqlQuery q = exec(db, QStringLiteral("DELETE FROM ProtokollPositionen WHERE TeNummer = ?"), {teNummer});
    return q.numRowsAffected();
}

int CopyTePositionenNeu(const QSqlDatabase &db, const QString &sourceTeNummer, const QString &targetTeNummer)
{
    // One statement copies all lines; every field but the owner comes from the source row.
    static const QString sql = [] {
        QStringList cols, sel;
        for (const QString &f : Schema::fieldNames(QStringLiteral("ProtokollPositionen"))) {
            cols << ident(f);
            sel << (f.compare(QLatin1String("TeNummer"), Qt::CaseInsensitive) == 0 ? QStringLiteral("?") : ident(f));
        }
        return QStringLiteral("INSERT INTO ProtokollPositionen (%1) SELECT %2 FROM ProtokollPositionen WHERE TeNummer = ?")
            .arg(cols.join(QLatin1Char(',')), sel.join(QLatin1Char(',')));
    }();
    Transaction tx(db);
    QSqlQuery q = exec(db, sql, {targetTeNummer, sourceTeNummer});
    const int n = q.numRowsAffected();
    tx.commit();
    return n;
}

}
