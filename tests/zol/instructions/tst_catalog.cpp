#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Schema.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/instructions/Catalog.h"
#include "zol/print/PrinterF.h"
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {

// A catalog of one kind on a fresh data file:
//   Schrauben (O) \ M6 (F, "verzinkt"), M8 (F)
//                 \ Sonder (O) \ Passschraube (F, "gehärtet")
//   Dichtungen (O) \ O-Ring (F)
struct Fixture {
    TempData data;
    Session session{data.db()};
    Catalog cat;
    QHash<QString, QString> key;

    explicit Fixture(const QString &table = QStringLiteral("Material"), bool filled = true)
        : cat(session, *catalogKindOfTable(table))
    {
        session.login().UserName = QStringLiteral("Anna");
        session.login().Level = QStringLiteral("Administrator");
        if (filled) {
            add("Schrauben", CatalogRoot, "O");
            add("M6", key["Schrauben"], "F", "verzinkt");
            add("M8", key["Schrauben"], "F");
            add("Sonder", key["Schrauben"], "O");
            add("Passschraube", key["Sonder"], "F", "gehärtet");
            add("Dichtungen", CatalogRoot, "O");
            add("O-Ring", key["Dichtungen"], "F");
        }
        cat.Init();
    }
    QSqlDatabase db() { return data.sql(); }
    QString table() const { return cat.kind().Table; }

    QString add(const char *text, const QString &above, const char *typ, const char *further = "")
    {
        const QString k = NeuerFileIndex(db(), table());
        const QString f = catalogFurtherFields(db(), table()).value(0);
        exec(db(), QStringLiteral("INSERT INTO %1 (FileIndex, FileAbove, FileTyp, Text, %2) VALUES (?, ?, ?, ?, ?)")
                       .arg(ident(table()), ident(f)),
             {k, above, QString::fromLatin1(typ), QString::fromUtf8(text), QString::fromUtf8(further)});
        key[QString::fromUtf8(text)] = k;
        return k;
    }
    QStringList namesIn(const QString &folder)
    {
        QStringList out;
        for (const CatalogRow &r : cat.loadListView(folder))
            out << r.Text;
        return out;
    }
    QString textOf(const QString &k)
    {
        return scalar(db(), QStringLiteral("SELECT Text FROM %1 WHERE FileIndex = ?").arg(ident(table())), {k}).toString();
    }
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
        ExplorerSelection s;
        s.listHasFocus = false;
        s.treeKey = node;
        s.listFolder = node;
        return s;
    }
};

// Keeps the pages of a preview job.
struct KeepPages : PreviewPresenter {
    PageStore store;
    int shown = 0;
    KeepPages() { installPreviewPresenter(this); }
    ~KeepPages() override { installPreviewPresenter(nullptr); }
    void showPreview(PrinterF &printer) override
    {
        store = printer.store();
        ++shown;
    }
    QStringList texts(int page) const
    {
        QStringList out;
        for (const PrintItem &i : store.page(page).items)
            if (!i.Text.isEmpty())
                out << i.Text;
        return out;
    }
};

}

class TestCatalog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnsFollowTheTable_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("alter");
        QTest::addColumn<QStringList>("headers");
        QTest::newRow("Texte") << "Texte" << "" << QStringList{"Anweisung", "Standardintervall"};
        QTest::newRow("Material") << "Material" << "" << QStringList{"Material-Code", "Beschreibung"};
        QTest::newRow("SHinweise") << "SHinweise" << "" << QStringList{"Sicherheitshinweis", "Hinweis"};
        QTest::newRow("Option1") << "Option1" << "" << QStringList{"Laufweg", "Beschreibung"};
        QTest::newRow("foreign field") << "Gewerke" << "ALTER TABLE Gewerke ADD COLUMN Farbe TEXT"
                                       << QStringList{"Gewerk", "Beschreibung", "Farbe"};
        QTest::newRow("known field in other case") << "Hersteller" << "ALTER TABLE Hersteller ADD COLUMN LAUFWEG TEXT"
                                                   << QStringList{"Hersteller", "Beschreibung", "Laufweg"};
        QTest::newRow("no further field") << "Option2" << "ALTER TABLE Option2 DROP COLUMN Beschreibung"
                                          << QStringList{"Option"};
    }
    void columnsFollowTheTable()
    {
        QFETCH(QString, table);
        QFETCH(QString, alter);
        QFETCH(QStringList, headers);
        TempData data;
        Session session(data.db());
        if (!alter.isEmpty())
            exec(data.sql(), alter);
        Catalog cat(session, *catalogKindOfTable(table));
        QVERIFY(cat.Init());
        QCOMPARE(cat.columnHeaders(), headers);
    }

    void missingTableIsFatalForThatCatalogOnly()
    {
        TempData data;
        Session session(data.db());
        exec(data.sql(), QStringLiteral("DROP TABLE Benennungen"));
        ScriptedPresenter msgs;
        Catalog broken(session, *catalogKindOfTable(QStringLiteral("Benennungen")));
        QVERIFY(!broken.Init());
        QCOMPARE(msgs.texts(), QStringList{"Fehler beim Öffnen der Datenbank"});
        QCOMPARE(msgs.lastStyle(), Style::Critical);
        Catalog fine(session, *catalogKindOfTable(QStringLiteral("Hersteller")));
        QVERIFY(fine.Init());
    }

    void kindsInTheirOrder()
    {
        QCOMPARE(catalogKinds().size(), 11);
        QStringList tables;
        for (const CatalogKind &k : catalogKinds()) {
            QCOMPARE(k.No, int(tables.size()) + 1);
            tables << k.Table;
        }
        QCOMPARE(tables, Schema::catalogTables());
        QCOMPARE(catalogKindOfTable(QStringLiteral("Option1"))->Title, QStringLiteral("Laufweg-Katalog"));
    }

    void treeAndList()
    {
        Fixture f;
        const ExplorerTree tree = f.cat.explorer().loadTree();
        QCOMPARE(tree.topKeys(), (QStringList{f.key["Dichtungen"], f.key["Schrauben"]}));
        QCOMPARE(tree.fullPath(f.key["Sonder"]), QStringLiteral("Schrauben\\Sonder"));
        QVERIFY(!tree.contains(QStringLiteral("LastIndex")));
        QCOMPARE(f.namesIn(f.key["Schrauben"]), (QStringList{"Sonder", "M6", "M8"}));
        const CatalogRow m6 = f.cat.loadListView(f.key["Schrauben"]).at(1);
        QCOMPARE(m6.further, QStringList{"verzinkt"});
        QCOMPARE(keyAfterRefresh(tree, QStringLiteral("0000009999")), f.key["Dichtungen"]);
    }

    void newEntriesAreNumbered()
    {
        Fixture f(QStringLiteral("Material"), false);
        Explorer &ex = f.cat.explorer();
        ScriptedPresenter msgs;
        QVERIFY(!ex.NeuerFile(f.inList({})));
        QCOMPARE(msgs.texts(), QStringList{"Bitte erst einen Ordner auswählen"});

        // Top folders hang at ROOT, named by what stands there already.
        const auto a = ex.NeuerOrdner(f.inList({}));
        const auto b = ex.NeuerOrdner(f.inList({}));
        QVERIFY(a && b);
        QCOMPARE(a->Text, QStringLiteral("Ordner(1)"));
        QCOMPARE(b->Text, QStringLiteral("Ordner(2)"));
        QCOMPARE(a->FileAbove, CatalogRoot);

        const auto e1 = ex.NeuerFile(f.inList(a->FileIndex));
        QCOMPARE(e1->Text, QStringLiteral("File(1)"));
        exec(f.db(), QStringLiteral("UPDATE Material SET Text = 'FILE(2)' WHERE FileIndex = ?"), {e1->FileIndex});
        QCOMPARE(ex.NeuerFile(f.inList(a->FileIndex))->Text, QStringLiteral("File(1)"));
        QCOMPARE(ex.NeuerFile(f.inList(a->FileIndex))->Text, QStringLiteral("File(3)"));
        QCOMPARE(ex.NeuerOrdner(f.inList(a->FileIndex))->FileAbove, a->FileIndex);
        QCOMPARE(f.namesIn(a->FileIndex), (QStringList{"Ordner(1)", "File(1)", "FILE(2)", "File(3)"}));
        QCOMPARE(msgs.texts().size(), 1);
    }

    void renameRules()
    {
        Fixture f;
        Explorer &ex = f.cat.explorer();
        ScriptedPresenter msgs;
        const auto sel = f.inList(f.key["Schrauben"]);
        QString name;
        QVERIFY(ex.RenameEntry(sel, f.key["M6"], name));
        name = QStringLiteral("m8");
        QVERIFY(ex.RenameEntry(sel, f.key["M6"], name));
        QCOMPARE(msgs.texts(), (QStringList{"Benennungen müssen mindestens 1 Zeichen lang sein",
                                            "Diese Bezeichnung existiert in diesem Verzeichnis schon"}));
        QCOMPARE(f.textOf(f.key["M6"]), QStringLiteral("M6"));

        msgs.clear();
        name = QStringLiteral("Schraube 'M6' ") + QString(60, QLatin1Char('x'));
        QVERIFY(!ex.RenameEntry(sel, f.key["M6"], name));
        const int size = Schema::Size(QStringLiteral("Material"), QStringLiteral("Text"));
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Benennungen dürfen höchstens %1 Zeichen lang sein").arg(size)});
        QCOMPARE(name.size(), size);
        QCOMPARE(f.textOf(f.key["M6"]), name);

        // In the tree the folder's siblings count.
        msgs.clear();
        name = QStringLiteral("dichtungen");
        QVERIFY(ex.RenameEntry(f.inTree(f.key["Schrauben"]), f.key["Schrauben"], name));
        QCOMPARE(msgs.lastText(), QStringLiteral("Diese Bezeichnung existiert in diesem Verzeichnis schon"));
    }

    void deleteTakesTheSubtree()
    {
        Fixture f;
        ScriptedPresenter msgs;
        msgs.answer(Answer::Yes);
        const DeleteResult r = f.cat.explorer().DeleteEntries(f.inTree(f.key["Schrauben"]));
        QCOMPARE(r.deleted, QStringList{f.key["Schrauben"]});
        QCOMPARE(msgs.texts(), QStringList{"Wollen Sie die gekennzeichneten Einträge jetzt wirklich löschen?"});
        QCOMPARE(countRows(f.db(), QStringLiteral("Material"), QStringLiteral("FileTyp IN ('O','F')")), 2);
        QCOMPARE(f.namesIn(f.key["Dichtungen"]), QStringList{"O-Ring"});
        QCOMPARE(countRows(f.db(), QStringLiteral("Material"), QStringLiteral("FileIndex = 'LastIndex'")), 1);
    }

    void deleteFaultKeepsTheData()
    {
        Fixture f;
        exec(f.db(), QStringLiteral("CREATE TRIGGER keep BEFORE DELETE ON Material WHEN old.Text = 'Passschraube' "
                                    "BEGIN SELECT RAISE(ABORT, 'gesperrt'); END"));
        ScriptedPresenter msgs;
        const DeleteResult r = f.cat.explorer().DeleteEntries(
            f.inList(f.key["Schrauben"], {f.key["M8"], f.key["Sonder"]}), true);
        QVERIFY(r.faulted);
        QVERIFY(r.deleted.isEmpty());
        QCOMPARE(msgs.shown().size(), 1);
        QVERIFY(msgs.lastText().contains(QStringLiteral("Eintrag mit dem FileIndex: ") + f.key["Sonder"]
                                         + QStringLiteral(" konnte nicht gelöscht werden")));
        QCOMPARE(countRows(f.db(), QStringLiteral("Material"), QStringLiteral("FileTyp IN ('O','F')")), 7);
    }

    void copyCutAndPaste()
    {
        Fixture f;
        Explorer &ex = f.cat.explorer();
        ScriptedPresenter msgs;
        ExplorerBuffer buffer;

        // A copy into its own folder gets a free name and keeps its further fields.
        ex.CopyToBuffer(f.inList(f.key["Schrauben"], {f.key["M6"]}), buffer);
        QVERIFY(ex.PasteEntries(f.inList(f.key["Schrauben"]), buffer).changed);
        QVERIFY(ex.PasteEntries(f.inList(f.key["Schrauben"]), buffer).changed);
        QCOMPARE(f.namesIn(f.key["Schrauben"]), (QStringList{"Sonder", "M6", "M6(1)", "M6(2)", "M8"}));
        QCOMPARE(f.cat.loadListView(f.key["Schrauben"]).at(2).further, QStringList{"verzinkt"});

        // A folder goes with its subtree; below the top copy the names stay.
        ex.CopyToBuffer(f.inTree(f.key["Sonder"]), buffer);
        const PasteResult copied = ex.PasteEntries(f.inTree(f.key["Dichtungen"]), buffer);
        QCOMPARE(copied.newKeys.size(), 1);
        QCOMPARE(f.namesIn(f.key["Dichtungen"]), (QStringList{"Sonder", "O-Ring"}));
        QCOMPARE(f.namesIn(copied.newKeys.first()), QStringList{"Passschraube"});

        // A cut moves and empties the buffer.
        ex.CutToBuffer(f.inList(f.key["Schrauben"], {f.key["M8"]}), buffer);
        QVERIFY(ex.PasteEntries(f.inTree(f.key["Dichtungen"]), buffer).changed);
        QCOMPARE(f.namesIn(f.key["Dichtungen"]), (QStringList{"Sonder", "M8", "O-Ring"}));
        QVERIFY(msgs.texts().isEmpty());
        QVERIFY(!ex.PasteEntries(f.inTree(f.key["Dichtungen"]), buffer).changed);
        QCOMPARE(msgs.lastText(), QStringLiteral("Der Zwischenspeicher ist leer"));
    }

    void rootsAndNonFoldersAreRefused_data()
    {
        QTest::addColumn<int>("command");   // 0 copy, 1 cut, 2 paste
        QTest::addColumn<QString>("node");
        QTest::addColumn<QString>("message");
        QTest::newRow("copy root") << 0 << RootKatalo << "'WI-Rundgang' und 'Standards' können nicht kopiert werden";
        QTest::newRow("cut root") << 1 << RootProtok << "'WI-Rundgang' und 'Standards' können nicht ausgeschnitten werden";
        QTest::newRow("paste into root") << 2 << RootKatalo << "Bitte wählen Sie vorher einen Ordner aus";
        QTest::newRow("paste into entry") << 2 << "M8" << "Bitte wählen Sie vorher einen Ordner aus";
    }
    void rootsAndNonFoldersAreRefused()
    {
        QFETCH(int, command);
        QFETCH(QString, node);
        QFETCH(QString, message);
        Fixture f;
        const QString k = f.key.value(node, node);
        ScriptedPresenter msgs;
        ExplorerBuffer buffer;
        buffer.keys = {f.key["M6"]};
        if (command == 0)
            f.cat.explorer().CopyToBuffer(f.inTree(k), buffer);
        else if (command == 1)
            f.cat.explorer().CutToBuffer(f.inTree(k), buffer);
        else
            QVERIFY(!f.cat.explorer().PasteEntries(f.inTree(k), buffer).changed);
        QCOMPARE(msgs.texts(), QStringList{message});
        QCOMPARE(countRows(f.db(), QStringLiteral("Material"), QStringLiteral("FileTyp IN ('O','F')")), 7);
    }

    void rightsByRole_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("edit");
        QTest::newRow("Administrator") << "Administrator" << true;
        QTest::newRow("Master") << "Master" << true;
        QTest::newRow("User") << "User" << true;
        QTest::newRow("Auswerter") << "Auswerter" << false;
        QTest::newRow("Werker") << "Werker" << false;
    }
    void rightsByRole()
    {
        QFETCH(QString, level);
        QFETCH(bool, edit);
        Fixture f;
        f.session.login().Level = level;
        ScriptedPresenter msgs;
        Explorer &ex = f.cat.explorer();
        QCOMPARE(f.cat.mayEdit(), edit);
        QCOMPARE(bool(ex.NeuerFile(f.inList(f.key["Schrauben"]))), edit);
        QString name = QStringLiteral("M10");
        QCOMPARE(ex.RenameEntry(f.inList(f.key["Schrauben"]), f.key["M8"], name), !edit);
        QCOMPARE(bool(f.cat.Eigenschaften(f.key["M6"])), edit);
        QCOMPARE(f.cat.doubleClick(f.key["M6"], false).action,
                 edit ? CatalogPick::OpenProperties : CatalogPick::Nothing);
        // Everyone may choose.
        QCOMPARE(f.cat.doubleClick(f.key["M6"], true).Tag, QStringLiteral("M6"));
        if (!edit)
            QCOMPARE(msgs.texts(), QStringList(2, QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren")));
        else
            QVERIFY(msgs.texts().isEmpty());
    }

    void pickerResult()
    {
        Fixture texte(QStringLiteral("Texte"));
        CatalogPick p = texte.cat.doubleClick(texte.key["M6"], true);
        QCOMPARE(p.action, CatalogPick::Choose);
        QCOMPARE(p.Tag, QStringLiteral("M6"));
        QCOMPARE(p.interval, QStringLiteral("verzinkt"));   // the Standardintervall column
        QCOMPARE(texte.cat.doubleClick(texte.key["M8"], true).interval, QString());
        QCOMPARE(texte.cat.doubleClick(texte.key["Sonder"], true).action, CatalogPick::OpenFolder);
        QCOMPARE(texte.cat.doubleClick(QStringLiteral("0000009999"), true).action, CatalogPick::Nothing);

        Fixture material;
        p = material.cat.doubleClick(material.key["M6"], true);
        QCOMPARE(p.Tag, QStringLiteral("M6"));
        QVERIFY(p.interval.isEmpty());
    }

    void propertiesLimitedBySize()
    {
        Fixture f;
        const auto props = f.cat.Eigenschaften(f.key["M6"]);
        QVERIFY(props);
        QCOMPARE(props->size(), 2);
        QCOMPARE(props->at(0).header, QStringLiteral("Material-Code"));
        QCOMPARE(props->at(1).header, QStringLiteral("Beschreibung"));
        QCOMPARE(props->at(1).value, QStringLiteral("verzinkt"));
        QCOMPARE(props->at(0).size, Schema::Size(QStringLiteral("Material"), QStringLiteral("Text")));
        QCOMPARE(props->at(1).size, Schema::Size(QStringLiteral("Material"), QStringLiteral("BESCHREIBUNG")));

        // A value beyond its field is left as it stood; the others are written.
        const QString tooLong(props->at(0).size + 1, QLatin1Char('x'));
        QVERIFY(f.cat.saveEigenschaften(f.key["M6"], {tooLong, QStringLiteral("O'Brien Stahl")}));
        const CatalogRow r = *f.cat.row(f.key["M6"]);
        QCOMPARE(r.Text, QStringLiteral("M6"));
        QCOMPARE(r.further, QStringList{"O'Brien Stahl"});
        const QString fills(props->at(0).size, QLatin1Char('y'));   // exactly as long as the field
        QVERIFY(f.cat.saveEigenschaften(f.key["M6"], {fills, QStringLiteral("O'Brien Stahl")}));
        QCOMPARE(f.cat.row(f.key["M6"])->Text, fills);
        QVERIFY(f.cat.saveEigenschaften(f.key["M6"], {QStringLiteral("M6 neu"), QString()}));
        QCOMPARE(f.cat.row(f.key["M6"])->Text, QStringLiteral("M6 neu"));
        QVERIFY(!f.cat.saveEigenschaften(QStringLiteral("0000009999"), {QStringLiteral("x"), QString()}));
    }

    void printAllAndSelected()
    {
        Fixture f;
        KeepPages keep;
        QStringList status;
        f.cat.setStatusSink([&](const QString &s) { status << s; });
        PrinterF printer;
        f.cat.Drucken(printer, true, {}, true);
        QCOMPARE(keep.shown, 1);
        QCOMPARE(status, (QStringList{"Erstelle Druckauftrag", ""}));
        const QString head = QStringLiteral("Ausdruck aus dem Material-Katalog               Blatt Nr. 1   Gedruckt : ")
            + QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
        const QString sep = QStringLiteral("     ---     ");
        QCOMPARE(keep.texts(1), (QStringList{head, "Dichtungen", "O-Ring" + sep + "-", "Schrauben", "M6" + sep + "verzinkt",
                                             "M8" + sep + "-", "Schrauben\\Sonder", "Passschraube" + sep + "gehärtet"}));

        f.cat.Drucken(printer, false, {f.key["Sonder"], f.key["M8"]}, true);
        QCOMPARE(keep.texts(1).mid(1), (QStringList{"Schrauben\\Sonder", "Passschraube" + sep + "gehärtet", "Schrauben",
                                                    "M8" + sep + "-"}));
    }

    void printNothingOrManyPages()
    {
        Fixture empty(QStringLiteral("Gewerke"), false);
        KeepPages keep;
        PrinterF printer;
        ScriptedPresenter msgs;
        empty.cat.Drucken(printer, true, {}, true);
        empty.cat.Drucken(printer, false, {}, true);
        QCOMPARE(msgs.texts(), QStringList(2, QStringLiteral("Keine zu druckenden Einträge vorhanden")));
        QCOMPARE(keep.shown, 0);

        const QString folder = empty.add("Elektro", CatalogRoot, "O");
        for (int i = 0; i < 150; ++i)
            empty.add(QStringLiteral("Gewerk %1").arg(i, 3, 10, QLatin1Char('0')).toUtf8().constData(), folder, "F");
        empty.cat.Drucken(printer, true, {}, true);
        QVERIFY(keep.store.pageCount() >= 2);
        int entries = 0;
        for (int p = 1; p <= keep.store.pageCount(); ++p) {
            const QStringList t = keep.texts(p);
            QVERIFY(t.first().contains(QStringLiteral("Blatt Nr. %1   Gedruckt").arg(p)));
            entries += int(t.filter(QStringLiteral("Gewerk ")).size());
        }
        QCOMPARE(entries, 150);
    }
};

QTEST_MAIN(TestCatalog)
#include "tst_catalog.moc"
