#include "Explorer.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/NameOrder.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/instructions/Positions.h"
#include <QSqlRecord>

namespace zol {

namespace {

const ExplorerTable kPlant = ExplorerTable::plantTree();

// The status line shows what runs, and is cleared when it ends however it ends.
class StatusScope {
public:
    StatusScope(const std::function<void(const QString &)> &sink, const QString &text) : m_sink(sink)
    {
        if (m_sink)
            m_sink(text);
    }
    ~StatusScope()
    {
        if (m_sink)
            m_sink(QString());
    }

private:
    const std::function<void(const QString &)> &m_sink;
};

QString rootText(const QString &key) { return key == RootKatalo ? gStrStandards : gStrWIRundgang; }

Node nodeFromQuery(const QSqlQuery &q)
{
    Node n;
    const QStringList &names = Node::fieldNames();
    for (int i = 0; i < names.size(); ++i)
        n.setValue(names.at(i), q.value(i).toString());
    return n;
}

// Names compare as UCase compares them: umlauts too, which SQLite's NOCASE doesn't fold.
QString fold(const QString &name) { return name.toUpper(); }

QString tableSql(const ExplorerTable &table) { return ident(table.name); }

QSet<QString> shownNamesOf(const QSqlDatabase &db, const ExplorerTable &table, const QString &folderKey)
{
    QSet<QString> names;
    QSqlQuery q = exec(db, QStringLiteral("SELECT Text FROM %1 WHERE FileAbove = ? AND FileTyp IN ('O','F')").arg(tableSql(table)),
                       {folderKey});
    while (q.next()) {
        const QString t = q.value(0).toString();
        if (!t.isEmpty())
            names.insert(fold(t));
    }
    return names;
}

bool isPrivileged(const Login &login)
{
    return login.Level == QLatin1String("Administrator") || login.Level == QLatin1String("Master");
}

// Only an Auswerter or a Werker is barred from a catalog.
bool roleRefuses(const Login &login)
{
    return !isPrivileged(login)
        && (login.Level == QLatin1String("Auswerter") || login.Level == QLatin1String("Werker"));
}

// What the explorer needs of a row, in either kind of table.
struct RowHead {
    QString FileIndex, FileAbove, FileTyp, Text;
};

std::optional<RowHead> loadHead(const QSqlDatabase &db, const ExplorerTable &table, const QString &key)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex, FileAbove, FileTyp, Text FROM %1 WHERE FileIndex = ?").arg(tableSql(table)),
                       {key});
    if (!q.next())
        return std::nullopt;
    return RowHead{q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString()};
}

// True when `ancestor` lies on the way from `key` up to the top (key itself excluded).
bool isBelow(const QSqlDatabase &db, const ExplorerTable &table, const QString &key, const QString &ancestor)
{
    Statement up(db, QStringLiteral("SELECT FileAbove FROM %1 WHERE FileIndex = ?").arg(tableSql(table)));
    QSet<QString> seen{key};
    QString k = key;
    for (;;) {
        QSqlQuery &q = up.run({k});
        if (!q.next())
            return false;
        k = q.value(0).toString();
        q.finish();
        if (k == ancestor)
            return true;
        if (seen.contains(k))
            return false;
        seen.insert(k);
    }
}

// The subtree of a key (the key included), each row once even in a damaged
// chain that runs in a circle.
QString subtreeSql(const ExplorerTable &table)
{
    return QStringLiteral("WITH RECURSIVE sub(k) AS (SELECT ? UNION SELECT p.FileIndex FROM %1 p JOIN sub ON p.FileAbove = sub.k) ")
        .arg(tableSql(table));
}

}   // namespace

// ---------------------------------------------------------------------------

QString ExplorerTree::text(const QString &key) const
{
    if (isRootKey(key))
        return rootText(key);
    return m_nodes.value(key).Text;
}

QString ExplorerTree::fullPath(const QString &key) const
{
    QStringList parts;
    QSet<QString> seen;
    QString k = key;
    while (!k.isEmpty() && !seen.contains(k)) {
        seen.insert(k);
        if (isRootKey(k)) {
            parts.prepend(rootText(k));
            break;
        }
        const auto it = m_nodes.constFind(k);
        if (it == m_nodes.constEnd())
            break;
        parts.prepend(it->Text);
        k = it->FileAbove;
    }
    return parts.join(QLatin1Char('\\'));
}

QStringList ExplorerTree::walkFrom() const
{
    return m_plant ? QStringList{RootProtok, RootKatalo} : QStringList{CatalogRoot};
}

QStringList ExplorerTree::topKeys() const
{
    if (m_plant)
        return {RootProtok, RootKatalo};
    QStringList out;
    for (const TreeNode &n : m_children.value(CatalogRoot))
        out << n.FileIndex;
    return out;
}

QStringList ExplorerTree::keysInOrder() const
{
    QStringList out;
    std::function<void(const QString &)> walk = [&](const QString &k) {
        for (const TreeNode &c : m_children.value(k))
            if (m_nodes.contains(c.FileIndex)) {
                out << c.FileIndex;
                walk(c.FileIndex);
            }
    };
    for (const QString &k : walkFrom())
        walk(k);
    return out;
}

ExplorerTree LoadTree(const QSqlDatabase &db) { return LoadTree(db, kPlant); }

ExplorerTree LoadTree(const QSqlDatabase &db, const ExplorerTable &table)
{
    ExplorerTree tree;
    tree.m_plant = table.plant;
    QHash<QString, QList<TreeNode>> all;
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex, FileAbove, Text FROM %1 WHERE FileTyp = 'O' ORDER BY %2").arg(tableSql(table), nameOrder(QStringLiteral("Text"))));
    while (q.next()) {
        TreeNode n{q.value(0).toString(), q.value(1).toString(), q.value(2).toString()};
        all[n.FileAbove].append(n);
    }
    // Only what hangs below the top is in the tree.
    QList<QString> todo = tree.walkFrom();
    while (!todo.isEmpty()) {
        const QString k = todo.takeLast();
        const auto it = all.constFind(k);
        if (it == all.constEnd())
            continue;
        QList<TreeNode> kids;
        for (const TreeNode &c : *it) {
            if (tree.m_nodes.contains(c.FileIndex) || ExplorerTree::isRootKey(c.FileIndex))
                continue;
            tree.m_nodes.insert(c.FileIndex, c);
            kids << c;
            todo << c.FileIndex;
        }
        tree.m_children.insert(k, kids);
    }
    return tree;
}

QList<TreeNode> LoadTreeSub(const QSqlDatabase &db, const QString &parentKey)
{
    QList<TreeNode> out;
    QSqlQuery q = exec(db,
                       QStringLiteral("SELECT FileIndex, FileAbove, Text FROM ProtokollKopf "
                                      "WHERE FileAbove = ? AND FileTyp = 'O' ORDER BY ")
                           + nameOrder(QStringLiteral("Text")),
                       {parentKey});
    while (q.next())
        out << TreeNode{q.value(0).toString(), q.value(1).toString(), q.value(2).toString()};
    return out;
}

QList<Node> LoadListView(const QSqlDatabase &db, const QString &folderKey)
{
    QList<Node> out;
    Statement st(db, QStringLiteral("SELECT * FROM ProtokollKopf WHERE FileAbove = ? AND FileTyp = ? ORDER BY ") + nameOrder(QStringLiteral("Text")));
    for (const QString &typ : {FileTypOrdner, FileTypFile}) {
        QSqlQuery &q = st.run({folderKey, typ});
        while (q.next()) {
            Node n = nodeFromQuery(q);
            if (!n.Text.isEmpty())
                out << n;
        }
        q.finish();
    }
    return out;
}

QString FullPath(const QSqlDatabase &db, const QString &key) { return FullPath(db, kPlant, key); }

QString FullPath(const QSqlDatabase &db, const ExplorerTable &table, const QString &key)
{
    Statement up(db, QStringLiteral("SELECT FileAbove, Text FROM %1 WHERE FileIndex = ?").arg(tableSql(table)));
    QStringList parts;
    QSet<QString> seen;
    QString k = key;
    while (!k.isEmpty() && !seen.contains(k)) {
        seen.insert(k);
        if (table.plant && ExplorerTree::isRootKey(k)) {
            parts.prepend(rootText(k));
            break;
        }
        QSqlQuery &q = up.run({k});
        if (!q.next())
            break;
        parts.prepend(q.value(1).toString());
        k = q.value(0).toString();
        q.finish();
    }
    return parts.join(QLatin1Char('\\'));
}

bool ExistsInList(const QSqlDatabase &db, const QString &folderKey, const QString &name)
{
    return ExistsInList(db, kPlant, folderKey, name);
}

bool ExistsInList(const QSqlDatabase &db, const ExplorerTable &table, const QString &folderKey, const QString &name)
{
    if (folderKey.isEmpty())
        return false;
    return shownNamesOf(db, table, folderKey).contains(fold(name));
}

bool ExistsInTree(const QSqlDatabase &db, const QString &key, const QString &name)
{
    return ExistsInTree(db, kPlant, key, name);
}

bool ExistsInTree(const QSqlDatabase &db, const ExplorerTable &table, const QString &key, const QString &name)
{
    if (key.isEmpty())
        return false;
    if (table.plant && ExplorerTree::isRootKey(key))
        return fold(name) == fold(gStrWIRundgang) || fold(name) == fold(gStrStandards);
    const QVariant above = scalar(db, QStringLiteral("SELECT FileAbove FROM %1 WHERE FileIndex = ?").arg(tableSql(table)), {key});
    if (!above.isValid())
        return false;
    QSqlQuery q = exec(db, QStringLiteral("SELECT Text FROM %1 WHERE FileAbove = ? AND FileTyp = 'O'").arg(tableSql(table)),
                       {above.toString()});
    while (q.next())
        if (fold(q.value(0).toString()) == fold(name))
            return true;
    return false;
}

std::optional<QString> uniqueNameInFolder(const QSqlDatabase &db, const QString &folderKey, const QString &text)
{
    return uniqueNameInFolder(db, kPlant, folderKey, text);
}

std::optional<QString> uniqueNameInFolder(const QSqlDatabase &db, const ExplorerTable &table, const QString &folderKey,
                                          const QString &text)
{
    return uniqueNameAmong(shownNamesOf(db, table, folderKey), text, Schema::Size(table.name, QStringLiteral("Text")));
}

QSet<QString> shownNamesInFolder(const QSqlDatabase &db, const QString &folderKey)
{
    return shownNamesOf(db, kPlant, folderKey);
}

QString foldedName(const QString &name) { return fold(name); }

std::optional<QString> uniqueNameAmong(const QSet<QString> &taken, const QString &text, int size)
{
    QString candidate = text;
    bool cut = false;
    // Each number gives a new name until the forms outgrow the field; from then
    // on every form is the same cut name, so a taken one ends the search.
    for (int n = 1; taken.contains(fold(candidate)); ++n) {
        if (cut)
            return std::nullopt;
        candidate = text + QLatin1Char('(') + QString::number(n) + QLatin1Char(')');
        if (candidate.size() > size) {
            candidate = text.left(size);
            cut = true;
        }
    }
    return candidate;
}

ListImage listImageOf(const Node &node)
{
    if (node.isInstallation())
        return ListImage::Installation;
    return node.inStandards() ? ListImage::StandardComponent : ListImage::PlantComponent;
}

QStringList listSubItems(const Node &node, const OptionState &options)
{
    QStringList out;
    for (int index : options.gSpaltenIndex)
        out << (index >= 1 && index <= options.gSpaltenFeld.size() ? node.value(options.gSpaltenFeld.at(index - 1)) : QString());
    return out;
}

QString mainCaption(const QString &fullPath, bool minimized)
{
    return minimized ? QStringLiteral("'ZOL'") : QStringLiteral("'ZOL' - ") + fullPath;
}

QString listTitle(const QString &nodeText) { return QStringLiteral("Inhalt von: '") + nodeText + QLatin1Char('\''); }

bool isStandardKey(const QSqlDatabase &db, const QString &key)
{
    if (key == RootProtok)
        return false;
    if (key == RootKatalo)
        return true;
    return IsStandard(db, key);
}

bool standardCheckRefuses(const Login &login, const QSqlDatabase &db, const QString &key)
{
    if (isPrivileged(login))
        return false;
    return isStandardKey(db, key) || login.Level == QLatin1String("Auswerter")
        || login.Level == QLatin1String("Werker");
}

// ---------------------------------------------------------------------------

bool Explorer::refuses(const QString &key) const
{
    if (!m_table.plant)
        return roleRefuses(m_session.login());
    return standardCheckRefuses(m_session.login(), m_session.db(), key);
}

QString Explorer::editRefusal(const QString &key) const
{
    return m_table.plant && isStandardKey(m_session.db(), key)
        ? QStringLiteral("Sie sind nicht berechtigt, Standards zu editieren")
        : QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren");
}

ExplorerTree Explorer::loadTree()
{
    StatusScope status(onStatus, QStringLiteral("Lade Verzeichnis-Einträge"));
    return LoadTree(m_session.db(), m_table);
}

QList<Node> Explorer::loadListView(const QString &folderKey)
{
    StatusScope status(onStatus, QStringLiteral("Lade Verzeichnis-Einträge neu"));
    return LoadListView(m_session.db(), folderKey);
}

std::optional<Node> Explorer::NeuerFile(const ExplorerSelection &sel) { return newEntry(sel, false); }
std::optional<Node> Explorer::NeuerOrdner(const ExplorerSelection &sel) { return newEntry(sel, true); }

std::optional<Node> Explorer::newEntry(const ExplorerSelection &sel, bool folder)
{
    const QSqlDatabase db = m_session.db();
    const QString &tag = sel.listFolder;
    if (!folder && tag.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Bitte erst einen Ordner auswählen"), Style::Exclamation);
        return std::nullopt;
    }
    try {
        // Without a shown folder a new installation hangs at "ROOT" with Katalog "0",
        // so only the role decides there.
        const bool refused = tag.isEmpty() ? roleRefuses(m_session.login()) : refuses(tag);
        if (refused) {
            ZeigeMeldung(tag.isEmpty() ? QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren")
                                       : editRefusal(tag),
                         Style::Exclamation);
            return std::nullopt;
        }
        const QString base = folder ? QStringLiteral("Ordner") : QStringLiteral("File");
        auto exists = [&](const QString &name) {
            // A catalog's top folders are rows too, so a new one is named beside them.
            if (!m_table.plant && tag.isEmpty())
                return ExistsInList(db, m_table, CatalogRoot, name);
            if (folder && !sel.listHasFocus)
                return ExistsInTree(db, m_table, sel.treeKey, name);
            return ExistsInList(db, m_table, tag, name);
        };
        auto numbered = [&](int n) { return base + QLatin1Char('(') + QString::number(n) + QLatin1Char(')'); };
        // A catalog numbers its new names from the first one on.
        int n = 1;
        QString name = m_table.plant ? base : numbered(n++);
        while (exists(name))
            name = numbered(n++);

        StatusScope status(onStatus, folder ? QStringLiteral("Erstelle neuen Ordner-Eintrag")
                                            : QStringLiteral("Erstelle neuen File-Eintrag"));
        Transaction tx(db);
        Node row;
        row.FileIndex = NeuerFileIndex(db, m_table.name);
        row.FileAbove = tag.isEmpty() ? CatalogRoot : tag;
        row.FileTyp = folder ? FileTypOrdner : FileTypFile;
        row.Text = name;
        if (m_table.plant) {
            const QString pathOf = sel.treeKey.isEmpty() ? tag : sel.treeKey;
            row.Katalog = katalogForPath(pathOf.isEmpty() ? QString() : FullPath(db, pathOf));
            saveNode(db, row);
        } else {
            exec(db, QStringLiteral("INSERT INTO %1 (FileIndex, FileAbove, FileTyp, Text) VALUES (?, ?, ?, ?)").arg(tableSql(m_table)),
                 {row.FileIndex, row.FileAbove, row.FileTyp, row.Text});
        }
        tx.commit();
        return row;
    } catch (const Fault &f) {
        ZeigeFehler(f, folder ? QStringLiteral("Kann keine neue Technische Einrichtung anlegen")
                              : QStringLiteral("Kann keine neue Komponente anlegen"));
        return std::nullopt;
    }
}

bool Explorer::RenameEntry(const ExplorerSelection &sel, const QString &key, QString &name)
{
    const QSqlDatabase db = m_session.db();
    if (key.isEmpty() || (m_table.plant && ExplorerTree::isRootKey(key)))
        return true;
    if (name.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Benennungen müssen mindestens 1 Zeichen lang sein"), Style::Exclamation);
        return true;
    }
    try {
        const std::optional<RowHead> node = loadHead(db, m_table, key);
        // The test doesn't spare the entry itself: a change of case alone is refused.
        const bool exists = sel.listHasFocus ? ExistsInList(db, m_table, node ? node->FileAbove : sel.listFolder, name)
                                             : ExistsInTree(db, m_table, key, name);
        if (exists) {
            ZeigeMeldung(QStringLiteral("Diese Bezeichnung existiert in diesem Verzeichnis schon"), Style::Exclamation);
            return true;
        }
        if (refuses(key)) {
            ZeigeMeldung(editRefusal(key), Style::Exclamation);
            return true;
        }
        StatusScope status(onStatus, QStringLiteral("Trage neuen Namen ein"));
        if (!node)
            return false;
        const int size = Schema::Size(m_table.name, QStringLiteral("Text"));
        if (name.size() > size) {
            ZeigeMeldung(QStringLiteral("Benennungen dürfen höchstens ") + QString::number(size)
                             + QStringLiteral(" Zeichen lang sein"),
                         Style::Exclamation);
            name = name.left(size);
        }
        exec(db, QStringLiteral("UPDATE %1 SET Text = ? WHERE FileIndex = ?").arg(tableSql(m_table)), {name, key});
        return false;
    } catch (const Fault &f) {
        ZeigeFehler(f, QStringLiteral("Kann Umbenennung nicht durchführen"));
        return true;
    }
}

void DeleteSubtree(const QSqlDatabase &db, const QString &key) { DeleteSubtree(db, kPlant, key); }

void DeleteSubtree(const QSqlDatabase &db, const ExplorerTable &table, const QString &key)
{
    Transaction tx(db);
    const QString sub = subtreeSql(table);
    if (!table.plant) {
        exec(db, sub + QStringLiteral("DELETE FROM %1 WHERE FileIndex IN (SELECT k FROM sub)").arg(tableSql(table)), {key});
        tx.commit();
        return;
    }
    // Repair orders go by number; the numbers must be read before their rows go.
    exec(db, sub + QStringLiteral("DELETE FROM Erfassung WHERE IdentNr IN (SELECT p.IdentNr FROM ProtokollKopf p "
                                  "JOIN sub ON p.FileIndex = sub.k WHERE p.IdentNr <> '')"),
         {key});
    exec(db, sub + QStringLiteral("DELETE FROM ProtokollPositionen WHERE TeNummer IN (SELECT k FROM sub)"), {key});
    exec(db, sub + QStringLiteral("DELETE FROM Auftrag WHERE TeIndex IN (SELECT k FROM sub)"), {key});
    exec(db, sub + QStringLiteral("DELETE FROM ProtokollKopf WHERE FileIndex IN (SELECT k FROM sub)"), {key});
    tx.commit();
}

DeleteResult Explorer::DeleteEntries(const ExplorerSelection &sel, bool silent)
{
    DeleteResult result;
    if (!silent
        && ZeigeMeldung(QStringLiteral("Wollen Sie die gekennzeichneten Einträge jetzt wirklich löschen?"), Style::YesNo)
            != Answer::Yes)
        return result;
    StatusScope status(onStatus, QStringLiteral("Lösche gekennzeichnete Einträge"));
    const QSqlDatabase db = m_session.db();
    QString current;
    try {
        Transaction tx(db);
        if (sel.listHasFocus) {
            for (int i = int(sel.listSelected.size()) - 1; i >= 0; --i) {
                current = sel.listSelected.at(i);
                const std::optional<RowHead> node = loadHead(db, m_table, current);
                if (!node)
                    continue;
                if (refuses(current)) {
                    ZeigeMeldung(QStringLiteral("'") + node->Text + QStringLiteral("' ist ein Standard.")
                                     + QStringLiteral(" ") + QStringLiteral("Sie sind nicht berechtigt, diesen zu löschen."),
                                 Style::Exclamation);
                    continue;
                }
                DeleteSubtree(db, m_table, current);
                result.deleted << current;
            }
        } else if (!sel.treeKey.isEmpty() && !ExplorerTree::isRootKey(sel.treeKey)) {
            current = sel.treeKey;
            // In the tree a refused user sees nothing happen.
            if (loadHead(db, m_table, current) && !refuses(current)) {
                DeleteSubtree(db, m_table, current);
                result.deleted << current;
            }
        }
        tx.commit();
    } catch (const Fault &f) {
        ZeigeFehler(f, QStringLiteral("Eintrag mit dem FileIndex: ") + current + QStringLiteral(" konnte nicht gelöscht werden"));
        result.deleted.clear();
        result.faulted = true;
    }
    return result;
}

// ---------------------------------------------------------------------------

void Explorer::fillBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer, bool cut)
{
    StatusScope status(onStatus, cut ? QStringLiteral("Schneide Daten aus") : QStringLiteral("Kopiere Daten"));
    buffer.cut = cut;
    buffer.clear();
    if (sel.listHasFocus) {
        buffer.keys = sel.listSelected;
    } else if (!sel.treeKey.isEmpty()) {
        if (!ExplorerTree::isRootKey(sel.treeKey))
            buffer.keys = {sel.treeKey};
        else
            ZeigeMeldung(QStringLiteral("'") + gStrWIRundgang + QStringLiteral("' und '") + gStrStandards
                             + (cut ? QStringLiteral("' können nicht ausgeschnitten werden")
                                    : QStringLiteral("' können nicht kopiert werden")),
                         Style::Exclamation);
    }
}

void Explorer::CutToBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer) { fillBuffer(sel, buffer, true); }
void Explorer::CopyToBuffer(const ExplorerSelection &sel, ExplorerBuffer &buffer) { fillBuffer(sel, buffer, false); }

namespace {
// Ends a paste whose name search found no free name; the data stay as before.
struct NoFreeName {
    QString text;
};

QString nameFor(const QSqlDatabase &db, const ExplorerTable &table, const QString &folder, const QString &text)
{
    std::optional<QString> name = uniqueNameInFolder(db, table, folder, text);
    if (!name)
        throw NoFreeName{text};
    return *name;
}
}

QString CopyEntry(const QSqlDatabase &db, const QString &oldKey, const QString &targetKey, const QString &topName)
{
    return CopyEntry(db, kPlant, oldKey, targetKey, topName);
}

namespace {
// INSERT ... SELECT of one row of a table with FileIndex, FileAbove, Text (and
// in the plant Katalog) bound, IdentNr emptied, every other field copied. A
// catalog copies the fields its table has in the file. `bound` receives the
// upper-case names of the bound fields in the order of their marks.
QString copyRowSql(const QSqlDatabase &db, const ExplorerTable &table, QStringList &bound)
{
    QStringList fields;
    if (table.plant) {
        fields = Node::fieldNames();
    } else {
        const QSqlRecord rec = db.record(table.name);
        for (int i = 0; i < rec.count(); ++i)
            fields << rec.fieldName(i);
    }
    QStringList cols, sel;
    for (const QString &f : fields) {
        cols << ident(f);
        const QString u = f.toUpper();
        if (u == QLatin1String("FILEINDEX") || u == QLatin1String("FILEABOVE") || u == QLatin1String("TEXT")
            || (table.plant && u == QLatin1String("KATALOG"))) {
            sel << QStringLiteral("?");
            bound << u;
        }
        else if (table.plant && u == QLatin1String("IDENTNR"))
            sel << QStringLiteral("''");
        else
            sel << ident(f);
    }
    return QStringLiteral("INSERT INTO %1 (%2) SELECT %3 FROM %1 WHERE FileIndex = ?")
        .arg(tableSql(table), cols.join(QLatin1Char(',')), sel.join(QLatin1Char(',')));
}
}

QString CopyEntry(const QSqlDatabase &db, const ExplorerTable &table, const QString &oldKey, const QString &targetKey,
                  const QString &topName)
{
    struct Row {
        QString key, above, typ, text;
    };
    // The source subtree is read whole before the first copy is written.
    QHash<QString, QList<Row>> kids;
    std::optional<Row> top;
    {
        QSqlQuery q = exec(db, subtreeSql(table)
                                   + QStringLiteral("SELECT p.FileIndex, p.FileAbove, p.FileTyp, p.Text FROM %1 p "
                                                    "JOIN sub ON p.FileIndex = sub.k ORDER BY p.Text").arg(tableSql(table)),
                           {oldKey});
        while (q.next()) {
            Row r{q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString()};
            if (r.key == oldKey)
                top = r;
            else
                kids[r.above].append(r);
        }
    }
    if (!top)
        return {};

    Transaction tx(db);
    const QString katalog = table.plant ? katalogForPath(FullPath(db, targetKey)) : QString();
    QStringList bound;
    Statement insert(db, copyRowSql(db, table, bound));
    QSet<QString> done;
    QString topKey;
    std::function<void(const Row &, const QString &, const QString &)> copy =
        [&](const Row &r, const QString &parent, const QString &name) {
            done.insert(r.key);
            const QString newKey = NeuerFileIndex(db, table.name);
            if (topKey.isEmpty())
                topKey = newKey;
            QVariantList values;
            for (const QString &f : bound)
                values << (f == QLatin1String("FILEINDEX") ? newKey
                           : f == QLatin1String("FILEABOVE") ? parent
                           : f == QLatin1String("KATALOG")   ? katalog
                                                             : name);
            values << r.key;
            insert.run(values);
            if (table.plant && r.typ == FileTypFile)
                CopyTePositionenNeu(db, r.key, newKey);
            for (const Row &c : kids.value(r.key))
                if (!done.contains(c.key))
                    copy(c, newKey, c.text);
        };
    copy(*top, targetKey, topName);
    tx.commit();
    return topKey;
}

PasteResult Explorer::PasteEntries(const ExplorerSelection &sel, ExplorerBuffer &buffer)
{
    PasteResult result;
    if (buffer.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Der Zwischenspeicher ist leer"), Style::Exclamation);
        return result;
    }
    const QString target = sel.treeKey;
    const QSqlDatabase db = m_session.db();
    // Only the top nodes and installations take entries (a catalog: its folders);
    // a node gone meanwhile is no target.
    if (target.isEmpty()
        || (!(m_table.plant && ExplorerTree::isRootKey(target))
            && scalar(db, QStringLiteral("SELECT FileTyp FROM %1 WHERE FileIndex = ?").arg(tableSql(m_table)), {target}).toString()
                != FileTypOrdner)) {
        ZeigeMeldung(QStringLiteral("Bitte wählen Sie vorher einen Ordner aus"), Style::Exclamation);
        return result;
    }
    StatusScope status(onStatus, QStringLiteral("Füge Daten ein"));
    try {
        if (refuses(target)) {
            ZeigeMeldung(editRefusal(target), Style::Exclamation);
            return result;
        }
        Transaction tx(db);
        if (!buffer.cut) {
            for (const QString &key : buffer.keys) {
                const std::optional<RowHead> node = loadHead(db, m_table, key);
                if (!node)
                    continue;
                result.newKeys << CopyEntry(db, m_table, key, target, nameFor(db, m_table, target, node->Text));
            }
        } else {
            const QString targetText = m_table.plant && ExplorerTree::isRootKey(target)
                ? rootText(target)
                : scalar(db, QStringLiteral("SELECT Text FROM %1 WHERE FileIndex = ?").arg(tableSql(m_table)), {target}).toString();
            const QString katalog = m_table.plant ? katalogForPath(FullPath(db, target)) : QString();
            for (const QString &key : buffer.keys) {
                const std::optional<RowHead> node = loadHead(db, m_table, key);
                if (!node)
                    continue;
                if (key == target) {
                    ZeigeMeldung(QStringLiteral("Kann '") + targetText + QStringLiteral("' nicht in sich selber verschieben"),
                                 Style::Exclamation);
                    continue;
                }
                // Moved below its own descendant, an installation would hang in no tree at all.
                if (isBelow(db, m_table, target, key)) {
                    ZeigeMeldung(QStringLiteral("Kann '") + node->Text + QStringLiteral("' nicht nach '") + targetText
                                     + QStringLiteral("' verschieben, da '") + targetText + QStringLiteral("' in '")
                                     + node->Text + QStringLiteral("' enthalten ist"),
                                 Style::Exclamation);
                    continue;
                }
                if (refuses(key)) {
                    ZeigeMeldung(editRefusal(key), Style::Exclamation);
                    continue;
                }
                const QString name = nameFor(db, m_table, target, node->Text);
                // Only the moved row takes the Katalog of its new place.
                if (m_table.plant)
                    exec(db, QStringLiteral("UPDATE ProtokollKopf SET FileAbove = ?, Katalog = ?, Text = ? WHERE FileIndex = ?"),
                         {target, katalog, name, key});
                else
                    exec(db, QStringLiteral("UPDATE %1 SET FileAbove = ?, Text = ? WHERE FileIndex = ?").arg(tableSql(m_table)),
                         {target, name, key});
                result.newKeys << key;
            }
        }
        tx.commit();
        if (buffer.cut)
            buffer.clear();
        result.changed = !result.newKeys.isEmpty();
    } catch (const NoFreeName &e) {
        ZeigeMeldung(QStringLiteral("Für '") + e.text
                         + QStringLiteral("' lässt sich in diesem Verzeichnis kein eindeutiger Name mehr bilden. "
                                          "Bitte benennen Sie vorher einen der Einträge um."),
                     Style::Exclamation);
        result = {};
    } catch (const Fault &f) {
        ZeigeFehler(f, QStringLiteral("Kann Daten nicht einfügen"));
        result = {};
    }
    return result;
}

Explorer::Refreshed Explorer::RefreshAll(const QString &notedKey)
{
    StatusScope status(onStatus, QStringLiteral("Aktualisiere alle Einträge"));
    Refreshed r;
    r.tree = LoadTree(m_session.db(), m_table);
    r.select = keyAfterRefresh(r.tree, notedKey);
    return r;
}

QStringList Explorer::selectAll(const QStringList &shownKeys)
{
    StatusScope status(onStatus, QStringLiteral("Kennzeichne alle Einträge"));
    return SelectAllEntries(shownKeys);
}

QStringList Explorer::invertSelection(const QStringList &shownKeys, const QStringList &selected)
{
    StatusScope status(onStatus, QStringLiteral("Kehre Auswahl um"));
    return InvertSelection(shownKeys, selected);
}

// ---------------------------------------------------------------------------

QString keyAfterRefresh(const ExplorerTree &tree, const QString &notedKey)
{
    if (!notedKey.isEmpty() && tree.contains(notedKey))
        return notedKey;
    const QStringList tops = tree.topKeys();
    return tops.isEmpty() ? QString() : tops.first();
}

QStringList SelectAllEntries(const QStringList &shownKeys) { return shownKeys; }

QStringList InvertSelection(const QStringList &shownKeys, const QStringList &selected)
{
    const QSet<QString> sel(selected.begin(), selected.end());
    QStringList out;
    for (const QString &k : shownKeys)
        if (!sel.contains(k))
            out << k;
    return out;
}

}
