#pragma once
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>

namespace zol {

class Session;

// `zol export components PATH --file FILE [--with-instructions]` and
// `zol import components FILE --under PATH [--with-instructions]`. A PATH is
// the names from a top node down joined by '\', as the main window shows
// it ("WI-Rundgang\Halle 1\Pumpe 3").
struct ExchangeArgs {
    QString path;   // node in the tree
    QString file;
    bool withInstructions = false;
};
// The words behind "components", checked before the data file is touched; a
// wrong call shows the usage (style 48) and gives nothing.
std::optional<ExchangeArgs> parseExportArgs(const QStringList &args);
std::optional<ExchangeArgs> parseImportArgs(const QStringList &args);

// The node at a path in the tree: a top node's key, or the FileIndex of the
// entry reached name by name (installations and components alike). Empty
// when the path leads nowhere.
QString nodeAtPath(const QSqlDatabase &db, const QString &path);

// Export: a component is written alone; an installation gives the entries
// its list shows (its installations and components, as "Alles markieren"
// there would mark them). The format follows the file's ending (.db or
// .xlsx; a sheet gets the head rows). An existing file is refused.
// Exit status: 0 done, 1 refused, 2 wrong usage, 3 fault.
int exportComponentsCommand(Session &session, const QStringList &args);
// Import under the tree node at --under; status as above (a refused file or
// table is 1; rows left out still count as done, with their message).
int importComponentsCommand(Session &session, const QStringList &args);

}
