#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// The instruction lines of one component as a whole. The explorer deletes a
// component's lines with it and gives a copied component a copy of them.
// Both are one unit of work: done completely or not at all.

// Removes every line of the component; no question, the caller has asked.
// Orders planned from these lines stay. Returns the number of lines removed.
int DeleteTePositionenNeu(const QSqlDatabase &db, const QString &teNummer);

// Gives the target component a copy of every line of the source, whole and
// unnumbered anew (Intervalltyp and numbers included). Returns the number of
// lines copied; a line that exists on the target already is fault 3022.
int CopyTePositionenNeu(const QSqlDatabase &db, const QString &sourceTeNummer, const QString &targetTeNummer);

// The same operations as the protocol window offers them.
inline int DeleteTePositionen(const QSqlDatabase &db, const QString &teNummer)
{
    return DeleteTePositionenNeu(db, teNummer);
}
inline int CopyTePositionen(const QSqlDatabase &db, const QString &sourceTeNummer, const QString &targetTeNummer)
{
    return CopyTePositionenNeu(db, sourceTeNummer, targetTeNummer);
}

}
