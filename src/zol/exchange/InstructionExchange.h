#pragma once
#include "ComponentExchange.h"

namespace zol {

class ProtocolGrid;

// The exchange of one component's instruction lines from its protocol
// window: the lines, without TeNummer, as a table of their own named after
// the component in a database file; back from any table of a database,
// Access or workbook file that has the twelve fields.

inline const QString DefaultInstructionFile = QStringLiteral("ZOL_AuftraegeKomp.db");

// The twelve fields a table of lines must have.
QStringList instructionFieldNames();

// mnuAnweisungenExport: asks for the file, writes, and says how it went.
// True when the file was written.
bool ExportAnweisungen(const QSqlDatabase &db, const QString &teNummer, const FileChooser &choose);

// The tables of a file a user may pick for an import (the system's tables
// beginning with "MSys" left out).
QStringList importTables(const TableSource &source);

struct InstructionImport {
    bool refused = false;   // wrong form or a fault: nothing written
    int total = 0;
    int refusedRows = 0;
};
// mnuAnweisungenImport after the table was chosen: every row through the
// grid's row rule into the grid's component, in one unit; rows with a key
// that exists or values the rule refuses are counted and left out.
InstructionImport importInstructions(ProtocolGrid &grid, TableSource &source, const QString &table);

}
