#pragma once
#include "TableReader.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>

namespace zol {

// A plant's old data file taken over whole: every table the schema knows
// (the yearly tables Rückmeldungen<Jahr> included) is read through the table
// reader into a new data file, field by field by name. A value longer than
// its field is refused with table, row and field; nothing is cut. Plain
// passwords are hashed on the way. Tables the schema doesn't know are left.
struct MigratedTable {
    QString table;
    int rows = -1;   // -1: left out, the schema has no such table
};

// Copies the tables of `old` into `db` (a new data file, inside the unit that
// makes it): the rows of a table replace the seed rows of that table. Throws
// zol::Fault on the first refusal. Needs a table User.
QList<MigratedTable> migrateTables(const QSqlDatabase &db, TableSource &old);

// `zol migrate OLD.mdb`: makes ZOL.db in the data folder from the old file,
// or nothing at all; prints a count per table. Status 0 done, 1 refused (a
// data file exists, the old file is refused), 2 wrong usage, 3 fault.
int migrateCommand(const QString &dataDir, const QStringList &args);

}
