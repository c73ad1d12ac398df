#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Schema.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/repair/RepairOrderLinks.h"
#include "zol/structure/Explorer.h"
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {

// A small plant:
//   WI-Rundgang \ Halle (O) \ Keller (O) \ Ventil (F, V-1)
//                           \ Motor (F), Pumpe (F, P-1)
//   Standards  \ Modelle (O) \ Gruppe (O) \ Lüfter (F)
//                            \ Pumpe Std (F)
// Each component has two instruction lines, one order and (with an IdentNr) one repair order.
struct Plant {
    TempData data;
    Session session{data.db()};
    Explorer explorer{session};
    QHash<QString, QString> key;   // name -> FileIndex

    Plant()
    {
        session.login().Level = QStringLiteral("Administrator");
        add("Halle", RootProtok, "O", "0");
        add("Keller", key["Halle"], "O", "0");
        add("Ventil", key["Keller"], "F", "0", "V-1");
        add("Motor", key["Halle"], "F", "0");
        add("Pumpe", key["Halle"], "F", "0", "P-1");
        add("Modelle", RootKatalo, "O", "1");
        add("Gruppe", key["Modelle"], "O", "1");
        add("Lüfter", key["Gruppe"], "F", "1");
        add("Pumpe Std", key["Modelle"], "F", "1");
    }
    QSqlDatabase db() { return data.sql(); }

    QString add(const QString &text, const QString &above, const char *typ, const char *katalog, const QString &ident = {})
    {
        Node n;
        n.FileIndex = NeuerFileIndex(db(), QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = QString::fromLatin1(typ);
        n.Katalog = QString::fromLatin1(katalog);
        n.Text = text;
        n.IdentNr = ident;
        n.Hersteller = QStringLiteral("KSB");
        saveNode(db(), n);
        key[text] = n.FileIndex;
        if (n.isComponent()) {
            for (const char *a : {"0000", "0010"})
                exec(db(), QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text) VALUES (?, '000010', ?, ?)"),
                     {n.FileIndex, QString::fromLatin1(a), text});
            exec(db(), QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung) VALUES (?, '2026', '10', '000010', '0010')"),
                 {n.FileIndex});
            if (!ident.isEmpty())
                exec(db(), QStringLiteral("INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer) VALUES (?, ?, '00001')"),
                     {text, ident});
        }
        return n.FileIndex;
    }
    // Names of the rows directly below a key.
    QStringList namesIn(const QString &folder)
    {
        QStringList out;
        for (const Node &n : LoadListView(db(), folder))
            out << n.Text;
        return out;
    }
    Node childNamed(const QString &folder, const QString &text)
    {
        for (const Node &n : LoadListView(db(), folder))
            if (n.Text == text)
                return n;
        return {};
    }
    int lines(const QString &k) { return countRows(db(), QStringLiteral("ProtokollPositionen"), QStringLiteral("TeNummer = ?"), {k}); }
    ExplorerSelection inList(const QString &folder, const QStringList &selected = {})
    {
        ExplorerSelection s;
        s.listHasFocus = true;
        s.treeKey = folder;
        s.listFolder = folder;
        s.listSelected = selected;
        return s;
    }
    ExplorerSelection inTree(const QString &node)
    {
        ExplorerSelection s = inList(node);
        s.listHasFocus = false;
        return s;
    }
};

const QString kNoRightStd = QStringLiteral("Sie sind nicht berechtigt, Standards zu editieren");
const QString kNoRightData = QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren");

}

class TestExplorer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Names are listed as the legacy database ordered them: case ignored, an
    // umlaut with its plain letter, ß as ss.
    void namesOrderedWithUmlauts()
    {
        Plant pl;
        for (const char *name : {"Zahnrad", "Ölpumpe", "oberteil", "Übergabe", "Achse", "äußere Tür", "Strasse", "Straße"})
            pl.add(QString::fromUtf8(name), pl.key["Keller"], "F", "0");
        QStringList names;
        for (const Node &n : LoadListView(pl.data.sql(), pl.key["Keller"]))
            names << n.Text;
        QCOMPARE(names, (QStringList{"Achse", "äußere Tür", "oberteil", "Ölpumpe", "Strasse", "Straße", "Übergabe",
                                     "Ventil", "Zahnrad"}));
        pl.add(QStringLiteral("Ärmel"), pl.key["Halle"], "O", "0");
        QStringList folders;
        for (const TreeNode &t : LoadTreeSub(pl.data.sql(), pl.key["Halle"]))
            folders << t.Text;
        QCOMPARE(folders, (QStringList{"Ärmel", "Keller"}));
    }

    void newEntryNames_data()
    {
        QTest::addColumn<bool>("folder");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("expected");
        QTest::newRow("first file") << false << QStringList{} << "File";
        QTest::newRow("File(2) ignoring case") << false << QStringList{"file", "FILE(1)"} << "File(2)";
        QTest::newRow("an installation named File counts") << false << QStringList{"File"} << "File(1)";
        QTest::newRow("Ordner(1)") << true << QStringList{"Ordner", "File(1)"} << "Ordner(1)";
    }
    void newEntryNames()
    {
        QFETCH(bool, folder);
        QFETCH(QStringList, present);
        QFETCH(QString, expected);
        Plant p;
        ScriptedPresenter msgs;
        const QString pumpen = p.add("Pumpen", RootKatalo, "O", "1");
        for (int i = 0; i < present.size(); ++i)
            p.add(present.at(i), pumpen, i % 2 ? "F" : "O", "1");
        const auto made = folder ? p.explorer.NeuerOrdner(p.inList(pumpen)) : p.explorer.NeuerFile(p.inList(pumpen));
        QVERIFY(made);
        QCOMPARE(made->Text, expected);
        const auto stored = loadNode(p.db(), made->FileIndex);
        QCOMPARE(stored->Katalog, QStringLiteral("1"));
        QCOMPARE(stored->FileAbove, pumpen);
        QCOMPARE(stored->FileTyp, folder ? QStringLiteral("O") : QStringLiteral("F"));
        QVERIFY(msgs.shown().isEmpty());
    }

    void newEntryPlacesAndRefusals()
    {
        Plant p;
        ScriptedPresenter msgs;
        QCOMPARE(loadNode(p.db(), p.explorer.NeuerFile(p.inList(p.key["Keller"]))->FileIndex)->Katalog, QStringLiteral("0"));
        // No folder shown: a component is refused, an installation hangs at ROOT.
        QVERIFY(!p.explorer.NeuerFile(p.inList(QString())));
        QCOMPARE(msgs.lastText(), QStringLiteral("Bitte erst einen Ordner auswählen"));
        QCOMPARE(p.explorer.NeuerOrdner(p.inList(QString()))->FileAbove, QStringLiteral("ROOT"));
        p.session.login().Level = QStringLiteral("User");
        QVERIFY(!p.explorer.NeuerFile(p.inList(p.key["Modelle"])));
        QCOMPARE(msgs.lastText(), kNoRightStd);
        QVERIFY(p.explorer.NeuerFile(p.inList(RootProtok)));
        p.session.login().Level = QStringLiteral("Werker");
        QVERIFY(!p.explorer.NeuerOrdner(p.inList(p.key["Halle"])));
        QCOMPARE(msgs.lastText(), kNoRightData);
        // Names compare as UCase does, umlauts included.
        QVERIFY(ExistsInList(p.db(), p.key["Gruppe"], QStringLiteral("LÜFTER")));
        QVERIFY(!ExistsInList(p.db(), p.key["Gruppe"], QStringLiteral("LUFTER")));
    }

    void rename_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<bool>("tree");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("stored");
        const QString big = QString(105, QLatin1Char('x'));
        QTest::newRow("empty") << "Administrator" << "Pumpe" << false << "" << "Benennungen müssen mindestens 1 Zeichen lang sein" << "Pumpe";
        QTest::newRow("taken other case") << "Administrator" << "Pumpe" << false << "MOTOR" << "Diese Bezeichnung existiert in diesem Verzeichnis schon" << "Pumpe";
        QTest::newRow("case change only") << "Administrator" << "Pumpe" << false << "PUMPE" << "Diese Bezeichnung existiert in diesem Verzeichnis schon" << "Pumpe";
        QTest::newRow("component beside") << "Administrator" << "Pumpe Std" << false << "gruppe" << "Diese Bezeichnung existiert in diesem Verzeichnis schon" << "Pumpe Std";
        QTest::newRow("tree ignores components") << "Administrator" << "Keller" << true << "pumpe" << "" << "pumpe";
        QTest::newRow("tree sibling") << "Administrator" << "Modelle" << true << "HALLE" << "" << "HALLE";
        QTest::newRow("user on standard") << "User" << "Pumpe Std" << false << "Neu" << kNoRightStd << "Pumpe Std";
        QTest::newRow("user on plant") << "User" << "Pumpe" << false << "Neu" << "" << "Neu";
        QTest::newRow("auswerter on plant") << "Auswerter" << "Pumpe" << false << "Neu" << kNoRightData << "Pumpe";
        QTest::newRow("werker on plant") << "Werker" << "Halle" << true << "Neu" << kNoRightData << "Halle";
        QTest::newRow("master on standard") << "Master" << "Lüfter" << false << "LÜFTER 2" << "" << "LÜFTER 2";
        QTest::newRow("cut to field") << "Administrator" << "Pumpe" << false << big << "Benennungen dürfen höchstens 100 Zeichen lang sein" << big.left(100);
        QTest::newRow("exactly the field") << "Administrator" << "Pumpe" << false << big.left(100) << "" << big.left(100);
        QTest::newRow("quote percent underscore") << "Administrator" << "Pumpe" << false << "O'Brien 50%_a" << "" << "O'Brien 50%_a";
    }
    void rename()
    {
        QFETCH(QString, level);
        QFETCH(QString, entry);
        QFETCH(bool, tree);
        QFETCH(QString, name);
        QFETCH(QString, message);
        QFETCH(QString, stored);
        Plant p;
        ScriptedPresenter msgs;
        p.session.login().Level = level;
        const QString k = p.key[entry];
        ExplorerSelection sel = tree ? p.inTree(k) : p.inList(loadNode(p.db(), k)->FileAbove, {k});
        QString edited = name;
        const bool cancel = p.explorer.RenameEntry(sel, k, edited);
        QCOMPARE(msgs.texts(), message.isEmpty() ? QStringList{} : QStringList{message});
        QCOMPARE(loadNode(p.db(), k)->Text, stored);
        QCOMPARE(cancel, stored != edited);
    }

    void copyComponentTwice()
    {
        Plant p;
        ScriptedPresenter msgs;
        ExplorerBuffer buffer;
        QStringList status;
        p.explorer.onStatus = [&](const QString &t) { status << t; };
        p.explorer.CopyToBuffer(p.inList(p.key["Halle"], {p.key["Pumpe"]}), buffer);
        for (const QString &expected : {QStringLiteral("Pumpe(1)"), QStringLiteral("Pumpe(2)")}) {
            const PasteResult r = p.explorer.PasteEntries(p.inList(p.key["Halle"]), buffer);
            QVERIFY(r.changed);
            const Node copy = p.childNamed(p.key["Halle"], expected);
            QCOMPARE(copy.FileIndex, r.newKeys.value(0));
            QCOMPARE(copy.IdentNr, QString());
            QCOMPARE(copy.Hersteller, QStringLiteral("KSB"));
            QCOMPARE(copy.Katalog, QStringLiteral("0"));
            QCOMPARE(p.lines(copy.FileIndex), 2);
            QCOMPARE(countRows(p.db(), QStringLiteral("Auftrag"), QStringLiteral("TeIndex = ?"), {copy.FileIndex}), 0);
        }
        QCOMPARE(countRows(p.db(), QStringLiteral("Erfassung")), 2);
        QVERIFY(msgs.shown().isEmpty());
        QCOMPARE(status, (QStringList{"Kopiere Daten", "", "Füge Daten ein", "", "Füge Daten ein", ""}));
    }

    void cutThenPasteTwice()
    {
        Plant p;
        ScriptedPresenter msgs;
        ExplorerBuffer buffer;
        const QString motor = p.key["Motor"];
        p.add("MOTOR", p.key["Keller"], "F", "0");   // a namesake waits in the target
        p.explorer.CutToBuffer(p.inList(p.key["Halle"], {motor}), buffer);
        QVERIFY(buffer.cut);
        QVERIFY(p.explorer.PasteEntries(p.inList(p.key["Keller"]), buffer).changed);
        const auto moved = loadNode(p.db(), motor);
        QCOMPARE(moved->FileAbove, p.key["Keller"]);
        QCOMPARE(moved->Text, QStringLiteral("Motor(1)"));
        QCOMPARE(p.lines(motor), 2);
        QVERIFY(buffer.isEmpty());
        QVERIFY(!p.explorer.PasteEntries(p.inList(p.key["Keller"]), buffer).changed);
        QCOMPARE(msgs.texts(), QStringList{"Der Zwischenspeicher ist leer"});
    }

    void standardsIntoPlant()
    {
        Plant p;
        ScriptedPresenter msgs;
        p.session.login().Level = QStringLiteral("User");   // copies from Standards are what users do
        ExplorerBuffer buffer;
        p.explorer.CopyToBuffer(p.inTree(p.key["Modelle"]), buffer);
        const PasteResult r = p.explorer.PasteEntries(p.inTree(p.key["Halle"]), buffer);
        QVERIFY(r.changed);
        const QString top = r.newKeys.value(0);
        QCOMPARE(p.namesIn(top), (QStringList{"Gruppe", "Pumpe Std"}));
        const QString gruppe = p.childNamed(top, "Gruppe").FileIndex;
        QCOMPARE(p.namesIn(gruppe), QStringList{"Lüfter"});
        QCOMPARE(p.lines(p.childNamed(gruppe, "Lüfter").FileIndex), 2);
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf"),
                           QStringLiteral("FileIndex IN (?,?,?,?) AND Katalog = '0'"),
                           {top, gruppe, p.childNamed(gruppe, "Lüfter").FileIndex, p.childNamed(top, "Pumpe Std").FileIndex}),
                 4);
        QCOMPARE(FullPath(p.db(), gruppe), QStringLiteral("WI-Rundgang\\Halle\\Modelle\\Gruppe"));

        // Moving takes the Katalog of the new place on the moved row only.
        p.session.login().Level = QStringLiteral("Master");
        p.explorer.CutToBuffer(p.inTree(p.key["Modelle"]), buffer);
        QVERIFY(p.explorer.PasteEntries(p.inTree(RootProtok), buffer).changed);
        QCOMPARE(loadNode(p.db(), p.key["Modelle"])->Katalog, QStringLiteral("0"));
        QCOMPARE(loadNode(p.db(), p.key["Gruppe"])->Katalog, QStringLiteral("1"));
        QCOMPARE(loadNode(p.db(), p.key["Lüfter"])->Katalog, QStringLiteral("1"));
        QVERIFY(msgs.shown().isEmpty());
    }

    void pasteRights_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("cut");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("message");
        QTest::newRow("user copies into Standards") << "User" << false << "Pumpe" << "Modelle" << kNoRightStd;
        QTest::newRow("user moves out of Standards") << "User" << true << "Pumpe Std" << "Halle" << kNoRightStd;
        QTest::newRow("werker copies in plant") << "Werker" << false << "Pumpe" << "Keller" << kNoRightData;
        QTest::newRow("auswerter moves in plant") << "Auswerter" << true << "Motor" << "Keller" << kNoRightData;
    }
    void pasteRights()
    {
        QFETCH(QString, level);
        QFETCH(bool, cut);
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QString, message);
        Plant p;
        ScriptedPresenter msgs;
        p.session.login().Level = level;
        const int rows = countRows(p.db(), QStringLiteral("ProtokollKopf"));
        ExplorerBuffer buffer{cut, {p.key[source]}};
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key[target]), buffer).changed);
        QCOMPARE(msgs.texts(), QStringList{message});
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf")), rows);
        QVERIFY(loadNode(p.db(), p.key[source])->FileAbove != p.key[target]);
    }

    void moveIntoItselfRefused()
    {
        Plant p;
        ScriptedPresenter msgs;
        ExplorerBuffer buffer;
        p.explorer.CutToBuffer(p.inTree(p.key["Halle"]), buffer);
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key["Keller"]), buffer).changed);
        p.explorer.CutToBuffer(p.inTree(p.key["Halle"]), buffer);
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key["Halle"]), buffer).changed);
        QCOMPARE(msgs.texts(), (QStringList{"Kann 'Halle' nicht nach 'Keller' verschieben, da 'Keller' in 'Halle' enthalten ist",
                                            "Kann 'Halle' nicht in sich selber verschieben"}));
        QCOMPARE(loadNode(p.db(), p.key["Halle"])->FileAbove, RootProtok);
        QCOMPARE(loadNode(p.db(), p.key["Keller"])->FileAbove, p.key["Halle"]);
        QVERIFY(LoadTree(p.db()).contains(p.key["Keller"]));

        // A copy into its own subtree is allowed and copies the subtree once.
        p.explorer.CopyToBuffer(p.inTree(p.key["Halle"]), buffer);
        const QString top = p.explorer.PasteEntries(p.inTree(p.key["Keller"]), buffer).newKeys.value(0);
        QCOMPARE(p.namesIn(top), (QStringList{"Keller", "Motor", "Pumpe"}));
        QCOMPARE(p.namesIn(p.childNamed(top, "Keller").FileIndex), QStringList{"Ventil"});
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf"), QStringLiteral("FileTyp <> 'X'")), 9 + 5);
    }

    void bufferOfTopNodes()
    {
        Plant p;
        ScriptedPresenter msgs;
        ExplorerBuffer buffer{false, {p.key["Motor"]}};
        p.explorer.CopyToBuffer(p.inTree(RootProtok), buffer);
        p.explorer.CutToBuffer(p.inTree(RootKatalo), buffer);
        QVERIFY(buffer.isEmpty());
        QCOMPARE(msgs.texts(), (QStringList{"'WI-Rundgang' und 'Standards' können nicht kopiert werden",
                                            "'WI-Rundgang' und 'Standards' können nicht ausgeschnitten werden"}));
        QVERIFY(!p.explorer.PasteEntries(ExplorerSelection{}, buffer).changed);
        buffer.keys = {p.key["Motor"]};
        QVERIFY(!p.explorer.PasteEntries(ExplorerSelection{}, buffer).changed);
        // A component is no folder to paste into.
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key["Pumpe"]), buffer).changed);
        QCOMPARE(msgs.texts().mid(2), (QStringList{"Der Zwischenspeicher ist leer", "Bitte wählen Sie vorher einen Ordner aus",
                                                   "Bitte wählen Sie vorher einen Ordner aus"}));
        QCOMPARE(p.namesIn(p.key["Pumpe"]), QStringList{});
    }

    void nameSuffixAtFullLength_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("full length") << 100;
        QTest::newRow("no room for (1)") << 98;
    }
    void nameSuffixAtFullLength()
    {
        QFETCH(int, length);
        Plant p;
        ScriptedPresenter msgs;
        const QString name(length, QLatin1Char('L'));
        const QString k = p.add(name, p.key["Halle"], "F", "0");
        const int rows = countRows(p.db(), QStringLiteral("ProtokollKopf"));
        ExplorerBuffer buffer{false, {p.key["Motor"], k}};
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key["Halle"]), buffer).changed);
        QCOMPARE(msgs.texts(), QStringList{"Für '" + name + "' lässt sich in diesem Verzeichnis kein eindeutiger Name mehr "
                                           "bilden. Bitte benennen Sie vorher einen der Einträge um."});
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf")), rows);   // the first copy is undone too
        QCOMPARE(uniqueNameInFolder(p.db(), p.key["Keller"], name), std::optional<QString>(name));
    }

    void deleteCascades()
    {
        Plant p;
        ScriptedPresenter msgs;
        msgs.answer(Answer::No);
        QVERIFY(p.explorer.DeleteEntries(p.inTree(p.key["Halle"])).deleted.isEmpty());
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf"), QStringLiteral("FileTyp <> 'X'")), 9);

        msgs.answer(Answer::Yes);
        QCOMPARE(p.explorer.DeleteEntries(p.inTree(p.key["Halle"])).deleted, QStringList{p.key["Halle"]});
        QCOMPARE(msgs.texts(), QStringList(2, "Wollen Sie die gekennzeichneten Einträge jetzt wirklich löschen?"));
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf"), QStringLiteral("FileTyp <> 'X'")), 4);
        for (const char *gone : {"Halle", "Keller", "Ventil", "Motor", "Pumpe"})
            QVERIFY(!loadNode(p.db(), p.key[gone]));
        // Only the Standards' lines and orders are left; both repair orders went with their components.
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollPositionen")), 4);
        QCOMPARE(countRows(p.db(), QStringLiteral("Auftrag")), 2);
        QCOMPARE(countRows(p.db(), QStringLiteral("Erfassung")), 0);
    }

    void deleteRights_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("tree");
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QStringList>("deleted");
        QTest::addColumn<QStringList>("messages");
        const QString refused = "' ist ein Standard. Sie sind nicht berechtigt, diesen zu löschen.";
        QTest::newRow("user: standard refused, plant deleted")
            << "User" << false << QStringList{"Pumpe Std", "Motor"} << QStringList{"Motor"} << QStringList{"'Pumpe Std" + refused};
        QTest::newRow("auswerter: each refused, last first")
            << "Auswerter" << false << QStringList{"Motor", "Pumpe"} << QStringList{} << QStringList{"'Pumpe" + refused, "'Motor" + refused};
        QTest::newRow("werker in tree: silent") << "Werker" << true << QStringList{"Keller"} << QStringList{} << QStringList{};
        QTest::newRow("master deletes standards") << "Master" << true << QStringList{"Modelle"} << QStringList{"Modelle"} << QStringList{};
    }
    void deleteRights()
    {
        QFETCH(QString, level);
        QFETCH(bool, tree);
        QFETCH(QStringList, entries);
        QFETCH(QStringList, deleted);
        QFETCH(QStringList, messages);
        Plant p;
        ScriptedPresenter msgs;
        p.session.login().Level = level;
        QStringList keys, expected;
        for (const QString &e : entries)
            keys << p.key[e];
        for (const QString &e : deleted)
            expected.prepend(p.key[e]);
        const ExplorerSelection sel = tree ? p.inTree(keys.value(0)) : p.inList(p.key["Halle"], keys);
        const DeleteResult r = p.explorer.DeleteEntries(sel, true);
        QCOMPARE(r.deleted, expected);
        QCOMPARE(msgs.texts(), messages);
        for (const QString &k : keys)
            QCOMPARE(bool(loadNode(p.db(), k)), !expected.contains(k));
    }

    void damagedTreeStillLoads()
    {
        Plant p;
        p.add("Waise", QStringLiteral("0000099999"), "O", "0");
        const QString lost = p.add("Irgendwo", QStringLiteral("ROOT"), "O", "0");
        // Two installations that name each other as parent.
        const QString a = p.add("Kreis A", RootProtok, "O", "0");
        const QString b = p.add("Kreis B", a, "O", "0");
        exec(p.db(), QStringLiteral("UPDATE ProtokollKopf SET FileAbove = ? WHERE FileIndex = ?"), {b, a});
        const ExplorerTree tree = LoadTree(p.db());
        QCOMPARE(tree.keysInOrder(), (QStringList{p.key["Halle"], p.key["Keller"], p.key["Modelle"], p.key["Gruppe"]}));
        QCOMPARE(tree.children(RootProtok).size(), 1);
        QVERIFY(!tree.contains(p.key["Waise"]) && !tree.contains(lost) && !tree.contains(a));
        QCOMPARE(tree.fullPath(p.key["Gruppe"]), QStringLiteral("Standards\\Modelle\\Gruppe"));
        QCOMPARE(FullPath(p.db(), p.key["Waise"]), QStringLiteral("Waise"));
        QCOMPARE(FullPath(p.db(), a), QStringLiteral("Kreis B\\Kreis A"));
        QCOMPARE(keyAfterRefresh(tree, p.key["Keller"]), p.key["Keller"]);
        QCOMPARE(keyAfterRefresh(tree, a), RootProtok);
        // The circle can be deleted and copied without running on.
        ScriptedPresenter msgs;
        ExplorerBuffer buffer{false, {a}};
        QVERIFY(p.explorer.PasteEntries(p.inTree(p.key["Halle"]), buffer).changed);
        QVERIFY(!p.explorer.DeleteEntries(p.inTree(a), true).deleted.isEmpty());
        QVERIFY(!loadNode(p.db(), b));
        QVERIFY(msgs.shown().isEmpty());
    }

    void faultInPasteLeavesNothing()
    {
        Plant p;
        ScriptedPresenter msgs;
        const QVariant counter = scalar(p.db(), QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = 'LastIndex'"));
        const int rows = countRows(p.db(), QStringLiteral("ProtokollKopf"));
        const int lines = countRows(p.db(), QStringLiteral("ProtokollPositionen"));
        // Left-over lines of a vanished component under the numbers the copies will get:
        // copying the lines of the first copied component clashes with them.
        const qint64 next = counter.toLongLong();
        for (qint64 n = next; n < next + 10; ++n)
            exec(p.db(), QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung) VALUES (?, '000010', '0010')"),
                 {formatFileIndex(n)});
        ExplorerBuffer buffer{false, {p.key["Halle"]}};
        QVERIFY(!p.explorer.PasteEntries(p.inTree(p.key["Modelle"]), buffer).changed);
        QCOMPARE(msgs.shown().size(), 1);
        QCOMPARE(msgs.lastStyle(), Style::Critical);
        QVERIFY(msgs.lastText().startsWith(QStringLiteral("Fehler Nummer: 3022")));
        QVERIFY(msgs.lastText().contains(QStringLiteral("Kann Daten nicht einfügen")));
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollKopf")), rows);
        QCOMPARE(countRows(p.db(), QStringLiteral("ProtokollPositionen")), lines + 10);
        QCOMPARE(scalar(p.db(), QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = 'LastIndex'")), counter);
    }

    void repairOrdersFollowTheNumber()
    {
        Plant p;
        QCOMPARE(UpdateErfassungAufträge(p.db(), "P-1", "P-1"), 0);
        QCOMPARE(UpdateErfassungAufträge(p.db(), "P-1", "P-2"), 1);
        QCOMPARE(countRows(p.db(), "Erfassung", "IdentNr = 'P-2'"), 1);
        QCOMPARE(DeleteErfassungAufträge(p.db(), "P-2"), 1);
        QCOMPARE(countRows(p.db(), "Erfassung"), 1);
    }

    void folderList()
    {
        Plant p;
        p.add("Aggregat", p.key["Halle"], "F", "0", "A-9");
        p.add("Zentrale", p.key["Halle"], "O", "0");
        p.add("", p.key["Halle"], "F", "0");   // nameless rows are not shown
        QCOMPARE(p.namesIn(p.key["Halle"]), (QStringList{"Keller", "Zentrale", "Aggregat", "Motor", "Pumpe"}));
        const QList<Node> list = LoadListView(p.db(), p.key["Halle"]);
        OptionState o;
        o.gSpaltenFeld = QStringList{"Kostenstelle", "IdentNr", "BezugsJahr", "BezugsWoche", "Klassifizierung", "Standort",
                                     "Lokalisierung", "Hersteller"};
        o.gSpaltenIndex = {8, 2};
        QCOMPARE(listSubItems(list.at(2), o), (QStringList{"KSB", "A-9"}));
        QCOMPARE(listSubItems(list.at(3), o), (QStringList{"KSB", ""}));
    }
};

QTEST_GUILESS_MAIN(TestExplorer)
#include "tst_explorer.moc"
