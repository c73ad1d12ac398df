#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// Repair orders refer to their component by its IdentNr. These two keep them
// in step when a component is deleted or gets another number.

// Removes every repair order (table Erfassung) of the number. Returns the number removed.
int DeleteErfassungAufträge(const QSqlDatabase &db, const QString &identNr);

// Writes the new number into every repair order of the old one. Equal numbers
// change nothing. Returns the number of orders changed.
int UpdateErfassungAufträge(const QSqlDatabase &db, const QString &oldIdentNr, const QString &newIdentNr);

}
