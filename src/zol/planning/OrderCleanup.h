#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// Removes every order (table Auftrag) of the component with this key; the
// posted copies in the yearly tables stay. Returns the number removed.
int DeleteTeAufträge(const QSqlDatabase &db, const QString &teIndex);

}
