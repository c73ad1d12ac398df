#pragma once
#include "TableReader.h"
#include "zol/core/Schema.h"
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <functional>

namespace zol {

struct ExplorerSelection;
struct Login;

// Components leave the plant as exchange files and come back as new nodes.
// The database tables mirror the live schema (every field of ProtokollKopf
// but FileIndex, FileAbove and Katalog, Text named Name; in ExportAuftraege
// with the prefixes Objekt_ and Auftragsposition_ behind a Satzart); the
// sheets have a fixed list of columns. A row of Satzart 1 is a component, the
// rows of other kinds below it are its instruction lines: the order of the
// rows is the only link.

inline const QString TabExportObjekte = QStringLiteral("ExportObjekte");
inline const QString TabExportAuftraege = QStringLiteral("ExportAuftraege");

// One column of an exchange table: its name in a database table, its head on
// a sheet (empty: not on the sheets), and the field of ProtokollKopf or
// ProtokollPositionen it comes from and goes to (empty for Satzart).
struct ExchangeColumn {
    QString tableName;
    QString sheetName;
    QString target;
    bool position = false;
};
// The columns of ExportObjekte or ExportAuftraege in the order the import
// checks them.
QList<ExchangeColumn> exchangeColumns(bool withInstructions);
// The fields of the database tables, cloned from the schema with their sizes.
QList<FieldDef> exportTableFields(bool withInstructions);
// The heads of the sheets: 19 columns, or 32 with Satzart and the lines.
QStringList exportSheetColumns(bool withInstructions);

// ---------------------------------------------------------------------------
// Export.

enum class ExportKind { ObjekteDb, AuftraegeDb, ObjekteXlsx, AuftraegeXlsx };
struct ExportSpec {
    QString command;        // the menu entry's objectName
    QString defaultName;    // proposed file name
    QString filter;         // file dialog filter
    QString table;          // table or sheet name
    bool withInstructions;
    bool sheet;
    QString doneText;       // the message at the end
};
const ExportSpec &exportSpec(ExportKind kind);

// The nodes a command exports: with the list active the selected entries in
// list order, with the tree active its node; nothing for a root node or
// nothing selected.
QStringList exportKeys(const ExplorerSelection &sel);

struct ExportCount {
    int components = 0;
    int positions = 0;
};
// Writes the nodes (each as its row, then for a component its lines by
// Objekt, Anweisung) into a new table of the file; an existing file keeps its
// other tables. Nothing reaches the file's name until all rows are written.
ExportCount writeExportTable(const QSqlDatabase &db, const QStringList &keys, const QString &path,
                             bool withInstructions);
// The same as a workbook with one sheet ExportObjekte; with head rows the
// heads stand in row 1, row 2 stays empty and the data begin in row 3.
ExportCount writeExportSheet(const QSqlDatabase &db, const QStringList &keys, const QString &path,
                             bool withInstructions, bool headRows);

// Asks for a file name (proposed name, filter); empty means cancelled.
using FileChooser = std::function<QString(const QString &proposed, const QString &filter)>;

// The end of a write into a file that exists already holding the table:
// the question whether to replace it. True: go on.
bool confirmTableReplace(const QString &path, const QString &table);

struct ExportOutcome {
    bool written = false;
    QString path;
    ExportCount count;
    bool openWorkbook = false;   // the user wants the workbook shown now
};
// One of the four export commands of the main window, with its messages:
// the file dialog until a new file is named, the head-row question of the
// sheets, the final message and, for a sheet, whether to show it now.
ExportOutcome ExportKomponenten(const QSqlDatabase &db, const QStringList &keys, ExportKind kind,
                                const FileChooser &choose);

// ---------------------------------------------------------------------------
// Import.

inline const QString ImportFilter =
    QStringLiteral("Datenbank oder Tabelle (*.db *.mdb *.accdb *.xlsx *.ods);;Alle Dateien (*)");

// What an import brought.
struct ImportResult {
    bool refused = false;        // the file or table was turned away; nothing written
    int total = 0;               // rows of the table
    int failed = 0;              // rows left out
    QStringList newKeys;         // the new nodes in the order of the file
    QStringList rowRefusals;     // why rows were left out ("Zeile 4, Feld Intervall: ...")
    QString detail;              // for a refused file: which file, table and field
};

// The sheet layout of the import table: its 19 or 32 heads.
SheetLayout importSheetLayout(bool withInstructions);

// Reads ExportObjekte or ExportAuftraege of the source into new nodes under
// the tree node `parentKey`; nothing existing is changed. The table's form is
// checked first (every field there, and where the file declares sizes each
// the size of its target field). Each node gets a free name in the folder;
// each line passes the rules of the protocol grid (defaults, interval and its
// type, numbers, sizes), and a line whose key exists is refused. Rows left
// out are counted. The whole import is one unit: a fault or a refused table
// leaves the data file as it was. Shows the messages of the import.
ImportResult importComponents(const QSqlDatabase &db, const Login &login, TableSource &source,
                              const QString &parentKey, bool withInstructions);

// Opens an exchange file for an import; a file that can't be read shows its
// fault (style 48) and gives nothing.
std::unique_ptr<TableSource> openImportFile(const QString &path, const SheetLayout &layout);

// The import command of the main window: file dialog (cancel ends silently),
// then importComponents on the file's table.
ImportResult ImportKomponenten(const QSqlDatabase &db, const Login &login, const QString &parentKey,
                               bool withInstructions, const FileChooser &choose);

// The message of a table of the wrong form.
QString wrongFormText();

}
