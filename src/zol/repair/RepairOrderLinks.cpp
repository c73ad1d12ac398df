#include "RepairOrderLinks.h"
#include "zol/core/Sql.h"

namespace zol {

int DeleteErfassungAufträge(const QSqlDatabase &db, const QString &identNr)
{
    return exec(db, QStringLiteral("DELETE FROM Erfassung WHERE IdentNr = ?"), {identNr}).numRowsAffected();
}

int UpdateErfassungAufträge(const QSqlDatabase &db, const QString &oldIdentNr, const QString &newIdentNr)
{
    if (oldIdentNr == newIdentNr)
        return 0;
    return exec(db, QStringLiteral("UPDATE Erfassung SET IdentNr = ? WHERE IdentNr = ?"), {newIdentNr, oldIdentNr})
        .numRowsAffected();
}

}
