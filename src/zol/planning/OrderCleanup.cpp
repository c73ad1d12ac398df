#include "OrderCleanup.h"
#include "zol/core/Sql.h"

namespace zol {

int DeleteTeAufträge(const QSqlDatabase &db, const QString &teIndex)
{
    return exec(db, QStringLiteral("DELETE FROM Auftrag WHERE TeIndex = ?"), {teIndex}).numRowsAffected();
}

}
