#pragma once
#include "Node.h"
#include "zol/core/Session.h"
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace zol {

// ---------------------------------------------------------------------------
// The plant tree, and the catalogs, as the explorer shows them.
//
// Keys below are plain keys: a FileIndex, or RootProtok / RootKatalo for the two
// top nodes. A window that keeps keys in quotes converts with nodeKey() and
// fileIndexOfKey() (Node.h).

// The table an explorer works on. The plant tree (ProtokollKopf) hangs below
// the two top nodes; its rows carry Katalog and IdentNr, and a component takes
// its instruction lines, orders and repair orders along when it is copied or
// deleted, and the standard check guards each record. A catalog table has only
// the four tree fields and fields of its own; its top folders hang at "ROOT",
// and only the role decides whether its rows may be changed.
struct ExplorerTable {
    QString name;
    bool plant = true;
    static ExplorerTable plantTree() { return {QStringLiteral("ProtokollKopf"), true}; }
    static ExplorerTable catalog(const QString &table) { return {table, false}; }
};

// FileAbove of the top folders of a catalog.
inline const QString CatalogRoot = QStringLiteral("ROOT");

// An installation in the tree.
struct TreeNode {
    QString FileIndex;
    QString FileAbove;
    QString Text;
};

// The installations below the two top nodes (a catalog: the folders from
// "ROOT" down), read in one query. Rows whose parent is missing (in the plant
// also "ROOT") hang in no tree and are left out; a damaged chain that runs in
// a circle is read only once.
class ExplorerTree {
public:
    // Child installations of a key, ordered by name.
    QList<TreeNode> children(const QString &key) const { return m_children.value(key); }
    bool contains(const QString &key) const { return (m_plant && isRootKey(key)) || m_nodes.contains(key); }
    // The nodes at top level: the two top nodes, or a catalog's top folders.
    QStringList topKeys() const;
    QString text(const QString &key) const;
    QString parentOf(const QString &key) const { return m_nodes.value(key).FileAbove; }
    // "WI-Rundgang\Halle 1\Pumpen": the names from the top node down, joined by '\'.
    QString fullPath(const QString &key) const;
    // The installations in the order the tree shows them (depth first, by name).
    QStringList keysInOrder() const;
    int size() const { return int(m_nodes.size()); }

    static bool isRootKey(const QString &key) { return key == RootProtok || key == RootKatalo; }

private:
    friend ExplorerTree LoadTree(const QSqlDatabase &db, const ExplorerTable &table);
    QStringList walkFrom() const;
    bool m_plant = true;
    QHash<QString, QList<TreeNode>> m_children;
    QHash<QString, TreeNode> m_nodes;
};

// The whole tree (status "Lade Verzeichnis-Einträge" while it loads).
ExplorerTree LoadTree(const QSqlDatabase &db);
ExplorerTree LoadTree(const QSqlDatabase &db, const ExplorerTable &table);
// The child installations of one key, by name.
QList<TreeNode> LoadTreeSub(const QSqlDatabase &db, const QString &parentKey);
// The content of a folder: installations first, then components, each by name;
// rows without a name are not shown.
QList<Node> LoadListView(const QSqlDatabase &db, const QString &folderKey);
// The full path of a node read from the table, as ExplorerTree::fullPath gives it.
// For a node whose chain ends nowhere the path starts at its topmost ancestor.
QString FullPath(const QSqlDatabase &db, const QString &key);
QString FullPath(const QSqlDatabase &db, const ExplorerTable &table, const QString &key);

// Name tests, without regard to case (as UCase compares, umlauts included).
// ExistsInList: a shown entry (installation or component) of the folder has the name.
bool ExistsInList(const QSqlDatabase &db, const QString &folderKey, const QString &name);
bool ExistsInList(const QSqlDatabase &db, const ExplorerTable &table, const QString &folderKey, const QString &name);
// ExistsInTree: a tree node beside the given one (same parent, the node itself
// included) has the name; beside a top node the two top nodes are compared.
bool ExistsInTree(const QSqlDatabase &db, const QString &key, const QString &name);
bool ExistsInTree(const QSqlDatabase &db, const ExplorerTable &table, const QString &key, const QString &name);

// The name a pasted entry gets in a folder: the name itself, else name(1),
// name(2), ...; a form longer than the field takes the name cut to the field
// size. Nothing when no free name can be formed that way.
std::optional<QString> uniqueNameInFolder(const QSqlDatabase &db, const QString &folderKey, const QString &text);
std::optional<QString> uniqueNameInFolder(const QSqlDatabase &db, const ExplorerTable &table, const QString &folderKey,
                                          const QString &text);
// The names a folder shows, folded for the name tests; and the same search
// for a free name over such a set, for a rule that names many new entries of
// one folder (and adds each to the set) without asking the table each time.
QSet<QString> shownNamesInFolder(const QSqlDatabase &db, const QString &folderKey);
std::optional<QString> uniqueNameAmong(const QSet<QString> &taken, const QString &text, int size);
QString foldedName(const QString &name);

// How the list shows an entry.
enum class ListImage { Installation, PlantComponent, StandardComponent };
ListImage listImageOf(const Node &node);
// The sub-items of a list entry: one per displayed column of the options, in
// display order, each the value of that column's field.
QStringList listSubItems(const Node &node, const OptionState &options);
// The main window's caption for the selected node, and the title over the list.
QString mainCaption(const QString &fullPath, bool minimized);
QString listTitle(const QString &nodeText);

// ---------------------------------------------------------------------------
// Rights on a record.

// True when the key stands for a Standard: a row whose Katalog is not "0"
// (IsStandard), the top node Standards, or any unknown key.
bool isStandardKey(const QSqlDatabase &db, const QString &key);
// The standard check: Level neither Administrator nor Master, and the record a
// Standard or the role Auswerter or Werker.
bool standardCheckRefuses(const Login &login, const QSqlDatabase &db, const QString &key);

// ---------------------------------------------------------------------------
// What the window has selected when it runs a command.
struct ExplorerSelection {
    bool listHasFocus = true;
    QString treeKey;             // selected tree node (FileIndex or a root key); empty: none
    QString listFolder;          // the folder the list shows (its Tag); empty: none
    QStringList listSelected;    // FileIndex of the selected list items, in list order
};

// The cut-and-copy buffer the main window holds for the session.
struct ExplorerBuffer {
    bool cut = false;            // false copy, true cut
    QStringList keys;            // FileIndex values
    bool isEmpty() const { return keys.isEmpty(); }
    void clear() { keys.clear(); }
};

struct DeleteResult {
    QStringList deleted;         // the entries removed (their subtrees went with them)
    bool faulted = false;        // a fault ended it; nothing was removed
};

struct PasteResult {
    bool changed = false;        // rows were written: reload tree and list
    QStringList newKeys;         // copy: the top copies; cut: the moved entries
};

// The explorer operations of the main window and of the catalog windows. Each
// command asks and reports through ZeigeMeldung, writes in one transaction,
// and tells the status line what it does through onStatus (the text at the
// start, "" at the end).
class Explorer {
public:
    explicit Explorer(Session &session, ExplorerTable table = ExplorerTable::plantTree())
        : m_session(session), m_table(std::move(table)) {}

    const ExplorerTable &table() const { return m_table; }
    std::function<void(const QString &)> onStatus;

    ExplorerTree loadTree();
    QList<Node> loadListView(const QString &folderKey);

    // "Anlegen &Komponente" in the shown folder; the new row, or nothing.
    // In a catalog the row holds only the four tree fields, and the names
    // are numbered from the first: "File(1)", "Ordner(1)".
    std::optional<Node> NeuerFile(const ExplorerSelection &sel);
    // "Anlegen &Technische Einrichtung" in the shown folder, or with FileAbove
    // "ROOT" when no folder is shown.
    std::optional<Node> NeuerOrdner(const ExplorerSelection &sel);

    // Label edit ended on the entry `key` with `name` (tree or list after
    // sel.listHasFocus). True: cancel the edit. A name too long for the field
    // is cut, written, and handed back in `name`.
    bool RenameEntry(const ExplorerSelection &sel, const QString &key, QString &name);

    // Deletes the marked entries with everything below them, their instruction
    // lines, orders and repair orders. `silent` skips the question.
    DeleteResult DeleteEntries(const ExplorerSelection &sel, bool silent = false);

    void CutToBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer);
    void CopyToBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer);
    // Inserts the buffer into the selected tree node.
    PasteResult PasteEntries(const ExplorerSelection &sel, ExplorerBuffer &buffer);

    // Reload of the tree; `select` is the node to select again (the noted one,
    // or the first top node when it is gone). The window then reloads the list.
    struct Refreshed {
        ExplorerTree tree;
        QString select;
    };
    Refreshed RefreshAll(const QString &notedKey);
    // "Alles markieren" and "Auswahl umkehren": the keys to be selected.
    QStringList selectAll(const QStringList &shownKeys);
    QStringList invertSelection(const QStringList &shownKeys, const QStringList &selected);

private:
    void fillBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer, bool cut);
    std::optional<Node> newEntry(const ExplorerSelection &sel, bool folder);
    bool refuses(const QString &key) const;
    QString editRefusal(const QString &key) const;
    Session &m_session;
    ExplorerTable m_table;
};

// Copies one node with its whole subtree below `targetKey`: IdentNr emptied,
// Katalog by the target's path, a component's instruction lines with it. The
// top copy gets `topName`. The subtree is read before the first row is
// written, so a copy into its own subtree ends. Returns the new key of the top copy.
// In a catalog every field of the row is copied, only key, parent and name change.
QString CopyEntry(const QSqlDatabase &db, const QString &oldKey, const QString &targetKey, const QString &topName);
QString CopyEntry(const QSqlDatabase &db, const ExplorerTable &table, const QString &oldKey, const QString &targetKey,
                  const QString &topName);

// Removes the node, everything below it, and for each of them the instruction
// lines, the orders and (when it has an IdentNr) the repair orders. In a
// catalog just the rows of the subtree.
void DeleteSubtree(const QSqlDatabase &db, const QString &key);
void DeleteSubtree(const QSqlDatabase &db, const ExplorerTable &table, const QString &key);

// The key to select after a reload: the noted one if the tree still has it,
// else the first top node (empty for a catalog without folders).
QString keyAfterRefresh(const ExplorerTree &tree, const QString &notedKey);
// "Alles markieren" and "Auswahl umkehren" over the keys the list shows.
QStringList SelectAllEntries(const QStringList &shownKeys);
QStringList InvertSelection(const QStringList &shownKeys, const QStringList &selected);

}
