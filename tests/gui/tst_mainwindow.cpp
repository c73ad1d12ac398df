#include "gui/structure/ExplorerListModel.h"
#include "gui/structure/ExplorerTreeModel.h"
#include "gui/structure/frmMain.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include "zol/structure/Node.h"
#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include "gui/instructions/frmMDIProtokolle.h"
#include "gui/instructions/frmProtokoll.h"
#include <QtTest>

using namespace zol;
using zoltest::countRows;

namespace {
// WI-Rundgang \ Halle \ Keller (O), Pumpe (F, KSB), Ventil (F, Wilo)
// Standards  \ Modelle \ Pumpe Std (F)
// a component whose installation is gone
struct Fixture {
    zoltest::TempData data;
    Session session{data.db()};
    QHash<QString, QString> key;

    explicit Fixture(const QString &level = QStringLiteral("Administrator"))
    {
        session.login().UserName = QStringLiteral("Admin");
        session.login().Level = level;
        session.login().LoginSucceeded = true;
        LadeOptionen(session);
        setzeSpalten(session.options(), {8, 9});
        add("Halle", RootProtok, "O", "0");
        add("Keller", key["Halle"], "O", "0");
        add("Pumpe", key["Halle"], "F", "0", "KSB");
        add("Ventil", key["Halle"], "F", "0", "Wilo");
        add("Modelle", RootKatalo, "O", "1");
        add("Pumpe Std", key["Modelle"], "F", "1", "KSB");
        add("Pumpe lose", QStringLiteral("0000008888"), "F", "0", "KSB");
    }
    QSqlDatabase db() { return data.sql(); }
    void add(const char *text, const QString &above, const char *typ, const char *katalog, const char *hersteller = "")
    {
        Node n;
        n.FileIndex = NeuerFileIndex(db(), QStringLiteral("ProtokollKopf"));
        n.FileAbove = above;
        n.FileTyp = QString::fromLatin1(typ);
        n.Katalog = QString::fromLatin1(katalog);
        n.Text = QString::fromUtf8(text);
        n.Hersteller = QString::fromUtf8(hersteller);
        saveNode(db(), n);
        key[n.Text] = n.FileIndex;
    }
    QString textOf(const QString &fileIndex)
    {
        const auto n = loadNode(db(), fileIndex);
        return n ? n->Text : QString();
    }
};

QAction *action(QWidget &w, const char *name)
{
    auto *a = w.findChild<QAction *>(QString::fromUtf8(name));
    if (!a)
        qFatal("action %s missing", name);
    return a;
}

QStringList shownNames(frmMain &w)
{
    QStringList out;
    for (int r = 0; r < w.listModel()->rowCount(); ++r)
        out << w.listModel()->rowAt(r)->Text;
    return out;
}

// Closes the next modal dialog with its button of that name; `seen` gets its class.
void answerDialog(const char *button, QString *seen = nullptr)
{
    QTimer::singleShot(0, [button, seen] {
        QWidget *d = QApplication::activeModalWidget();
        QVERIFY(d);
        if (seen)
            *seen = QString::fromLatin1(d->metaObject()->className());
        d->findChild<QPushButton *>(QString::fromUtf8(button))->click();
        // A refused OK must not leave the test waiting.
        if (auto *dialog = qobject_cast<QDialog *>(d); dialog && dialog->isVisible())
            dialog->reject();
    });
}

QTreeView *list(frmMain &w) { return w.findChild<QTreeView *>(QStringLiteral("lvListView")); }
QTreeView *tree(frmMain &w) { return w.findChild<QTreeView *>(QStringLiteral("tvTreeView")); }

void focusList(frmMain &w)
{
    QApplication::setActiveWindow(&w);
    list(w)->setFocus();
    QCoreApplication::processEvents();
}
}

class TestMainWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void structureViewAndModels()
    {
        Fixture f;
        frmMain w(f.session);
        QAbstractItemModelTester treeTester(w.treeModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QAbstractItemModelTester listTester(w.listModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        w.show();
        QCOMPARE(w.viewMode(), 0);
        QVERIFY(w.selectTreeKey(f.key["Halle"]));
        // Installations first, then components by name; columns from the options.
        QCOMPARE(shownNames(w), (QStringList{"Keller", "Pumpe", "Ventil"}));
        QCOMPARE(w.listModel()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Name"));
        QCOMPARE(w.listModel()->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Hersteller"));
        QCOMPARE(w.listModel()->index(1, 1).data().toString(), QStringLiteral("KSB"));
        QCOMPARE(w.windowTitle(), QStringLiteral("'ZOL' - WI-Rundgang\\Halle"));
        QCOMPARE(w.findChild<QLabel *>(QStringLiteral("lblTitle1"))->text(), QStringLiteral("Inhalt von: 'Halle'"));
        // The orphan hangs in no tree.
        QVERIFY(!w.treeModel()->indexOfKey(f.key["Pumpe lose"]).isValid());
        // The top nodes can't be renamed, installations can.
        QVERIFY(!(w.treeModel()->flags(w.treeModel()->indexOfKey(RootProtok)) & Qt::ItemIsEditable));
        QVERIFY(w.treeModel()->flags(w.treeModel()->indexOfKey(f.key["Keller"])) & Qt::ItemIsEditable);
        action(w, "mnuViewRefresh")->trigger();
        QCOMPARE(w.selectedTreeKey(), f.key["Halle"]);
        action(w, "mnuViewMode1")->trigger();
        action(w, "mnuViewMode0")->trigger();
    }

    void createRenameDeleteThroughMenus()
    {
        Fixture f;
        ScriptedPresenter presenter;
        frmMain w(f.session);
        w.show();
        w.selectTreeKey(f.key["Halle"]);

        // New component; Cancel in the master data removes it again. While the
        // master data of the new entry are open, the status line says so.
        QString status;
        QTimer::singleShot(0, [&] { status = w.findChild<QLabel *>(QStringLiteral("sbStatusBarPanel1"))->text(); });
        answerDialog("cmdCancle");
        action(w, "mnuFileNeuProtokoll")->trigger();
        QCOMPARE(status, QStringLiteral("Verändere Stammdaten"));
        QVERIFY(w.findChild<QLabel *>(QStringLiteral("sbStatusBarPanel1"))->text().isEmpty());
        QCOMPARE(countRows(f.db(), QStringLiteral("ProtokollKopf"), QStringLiteral("Text = 'File'")), 0);
        QCOMPARE(shownNames(w), (QStringList{"Keller", "Pumpe", "Ventil"}));
        // OK keeps it (after the question on the empty Ident-Nr).
        presenter.answer(Answer::Yes);
        answerDialog("cmdOK");
        action(w, "mnuFileNeuProtokoll")->trigger();
        QCOMPARE(countRows(f.db(), QStringLiteral("ProtokollKopf"), QStringLiteral("Text = 'File' AND FileAbove = ?"),
                           {f.key["Halle"]}),
                 1);
        QVERIFY(shownNames(w).contains(QStringLiteral("File")));
        // A new installation appears in tree and list.
        answerDialog("cmdOK");
        action(w, "mnuPopUpLv2NeuOrdner")->trigger();
        const QVariant ordner = scalar(f.db(), QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE Text = 'Ordner'"));
        QVERIFY(ordner.isValid());
        QVERIFY(w.treeModel()->indexOfKey(ordner.toString()).isValid());

        // F2 opens the editor on the selected list item; the rename rule decides.
        focusList(w);
        w.selectListKeys({f.key["Pumpe"]});
        QTest::keyClick(list(w), Qt::Key_F2);
        QVERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        const int row = w.listModel()->rowOfKey(f.key["Pumpe"]);
        QVERIFY(w.listModel()->setData(w.listModel()->index(row, 0), QStringLiteral("Hauptpumpe"), Qt::EditRole));
        QCOMPARE(f.textOf(f.key["Pumpe"]), QStringLiteral("Hauptpumpe"));
        QVERIFY(!w.listModel()->setData(w.listModel()->index(row, 0), QStringLiteral("ventil"), Qt::EditRole));
        QCOMPARE(presenter.lastText(), QStringLiteral("Diese Bezeichnung existiert in diesem Verzeichnis schon"));
        // A renamed installation changes in the tree as well.
        const QModelIndex keller = w.treeModel()->indexOfKey(f.key["Keller"]);
        QVERIFY(w.treeModel()->setData(keller, QStringLiteral("Untergeschoss"), Qt::EditRole));
        QCOMPARE(w.listModel()->rowAt(w.listModel()->rowOfKey(f.key["Keller"]))->Text, QStringLiteral("Untergeschoss"));

        // Delete the marked entries after the question.
        focusList(w);
        w.selectListKeys({f.key["Ventil"]});
        presenter.answer(Answer::No);
        action(w, "mnuFileDelete")->trigger();
        QVERIFY(loadNode(f.db(), f.key["Ventil"]));
        presenter.answer(Answer::Yes);
        action(w, "löschen")->trigger();
        QVERIFY(!loadNode(f.db(), f.key["Ventil"]));
        QVERIFY(!shownNames(w).contains(QStringLiteral("Ventil")));
    }

    void copyAndPasteThroughMenus()
    {
        Fixture f;
        ScriptedPresenter presenter;
        frmMain w(f.session);
        w.show();
        w.selectTreeKey(f.key["Halle"]);
        focusList(w);
        w.selectListKeys({f.key["Pumpe"]});
        action(w, "mnuEditCopy")->trigger();
        action(w, "mnuEditPaste")->trigger();
        action(w, "mnuPopUpLv1Paste")->trigger();
        QCOMPARE(shownNames(w), (QStringList{"Keller", "Pumpe", "Pumpe(1)", "Pumpe(2)", "Ventil"}));
        QVERIFY(presenter.texts().isEmpty());
        // Cut into Keller moves it; the buffer is empty afterwards.
        w.selectListKeys({f.key["Ventil"]});
        action(w, "ausschneiden")->trigger();
        QCOMPARE(w.listModel()->index(w.listModel()->rowOfKey(f.key["Ventil"]), 0).data(Qt::ForegroundRole).isValid(), true);
        w.selectTreeKey(f.key["Keller"]);
        action(w, "einfügen")->trigger();
        QCOMPARE(loadNode(f.db(), f.key["Ventil"])->FileAbove, f.key["Keller"]);
        QCOMPARE(shownNames(w), QStringList{"Ventil"});
        action(w, "mnuEditPaste")->trigger();
        QCOMPARE(presenter.lastText(), QStringLiteral("Der Zwischenspeicher ist leer"));
        // Select all and invert.
        w.selectTreeKey(f.key["Halle"]);
        action(w, "mnuEditDSelectAll")->trigger();
        QCOMPARE(list(w)->selectionModel()->selectedRows().size(), 4);
        w.selectListKeys({f.key["Pumpe"]});
        action(w, "mnuEditInvertSelection")->trigger();
        QCOMPARE(list(w)->selectionModel()->selectedRows().size(), 3);
    }

    void printsOfSelectionAndSearch()
    {
        Fixture f;
        ScriptedPresenter presenter;
        zoltest::RecordingPreview preview;
        frmMain w(f.session);
        w.show();
        w.selectTreeKey(f.key["Halle"]);
        focusList(w);
        w.selectListKeys({f.key["Pumpe"], f.key["Ventil"]});
        action(w, "mnuFileDruckenAusgewählt1")->trigger();
        QCOMPARE(preview.calls, 1);
        QVERIFY(preview.contains(QStringLiteral("Pumpe")));
        QVERIFY(preview.contains(QStringLiteral("Ventil")));
        QVERIFY(!preview.contains(QStringLiteral("Pumpe Std")));

        // The search result prints with its filter lines; No to the direct print means preview.
        action(w, "AnsichtSuchOhne")->trigger();
        auto *name = w.findChild<QComboBox *>(QStringLiteral("dbcParameter0"));
        name->setEditText(QStringLiteral("Pump*"));
        QTest::keyClick(name->lineEdit(), Qt::Key_Return);
        presenter.answer(Answer::No);
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdSucheDrucken")), Qt::LeftButton);
        QCOMPARE(presenter.lastText(), QStringLiteral("Direkt auf Drucker drucken?"));
        QCOMPARE(preview.calls, 2);
        QVERIFY(preview.contains(QStringLiteral("Pump*")));
        QVERIFY(preview.contains(QStringLiteral("Pumpe lose")));
        QVERIFY(!preview.contains(QStringLiteral("Ventil")));
    }

    void searchInEachView_data()
    {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("hersteller");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("all") << "mnuViewMode1" << "" << "" << QStringList{"Pumpe", "Pumpe lose", "Pumpe Std", "Ventil"};
        QTest::newRow("all, PUMP*") << "mnuViewMode1" << "PUMP*" << "" << QStringList{"Pumpe", "Pumpe lose", "Pumpe Std"};
        QTest::newRow("without standards") << "AnsichtSuchOhne" << "pump*" << "ksb" << QStringList{"Pumpe", "Pumpe lose"};
        QTest::newRow("only standards") << "mnuViewMode3" << "*" << "" << QStringList{"Pumpe Std"};
    }
    void searchInEachView()
    {
        QFETCH(QString, view);
        QFETCH(QString, name);
        QFETCH(QString, hersteller);
        QFETCH(QStringList, expected);
        Fixture f;
        ScriptedPresenter presenter;
        frmMain w(f.session);
        QAbstractItemModelTester tester(w.listModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        w.show();
        action(w, view.toUtf8().constData())->trigger();
        QVERIFY(w.findChild<QWidget *>(QStringLiteral("fraParameter"))->isVisible());
        QVERIFY(!tree(w)->isVisible());
        auto *byName = w.findChild<QComboBox *>(QStringLiteral("dbcParameter0"));
        auto *byMaker = w.findChild<QComboBox *>(QStringLiteral("dbcParameter8"));
        QVERIFY(byMaker->isVisible());
        QVERIFY(!w.findChild<QComboBox *>(QStringLiteral("dbcParameter5"))->isVisible());
        byMaker->setEditText(hersteller);
        byName->lineEdit()->setFocus();
        byName->setEditText(name);
        QTest::keyClick(byName->lineEdit(), Qt::Key_Return);
        QCOMPARE(shownNames(w), expected);
        QCOMPARE(w.findChild<QLabel *>(QStringLiteral("sbStatusBarPanel1"))->text(),
                 QString::number(expected.size()) + QStringLiteral(" Einträge gefunden."));
        // "Alle" clears the filters and shows everything of the view again.
        w.findChild<QPushButton *>(QStringLiteral("cmdAlleOptionenLöschen"))->click();
        QVERIFY(byName->currentText().isEmpty());
        QVERIFY(w.listModel()->rowCount() >= expected.size());
    }

    void searchViewKnowsWhereAComponentHangs()
    {
        Fixture f;
        ScriptedPresenter presenter;
        frmMain w(f.session);
        w.show();
        action(w, "AnsichtSuch")->trigger();
        focusList(w);
        w.selectListKeys({f.key["Pumpe lose"]});
        QCOMPARE(w.windowTitle(), QStringLiteral("'ZOL' - ACHTUNG: Diese Komponente gehört keiner Technischen Einrichtung an."));
        action(w, "mnuPopUpLv1DieseStrukturansicht")->trigger();
        QVERIFY(presenter.lastText().startsWith(QStringLiteral("ACHTUNG:")));
        QCOMPARE(w.viewMode(), 1);
        w.selectListKeys({f.key["Pumpe Std"]});
        QCOMPARE(w.windowTitle(), QStringLiteral("'ZOL' - Standards\\Modelle"));
        action(w, "mnuPopUpLv1DieseStrukturansicht")->trigger();
        QCOMPARE(w.viewMode(), 0);
        QCOMPARE(w.selectedTreeKey(), f.key["Modelle"]);
        QCOMPARE(w.listModel()->keyAt(list(w)->currentIndex().row()), f.key["Pumpe Std"]);
    }

    void commandRuleForABenutzer()
    {
        Fixture f(QStringLiteral("Benutzer"));
        frmMain w(f.session);
        w.show();
        const QStringList writing = {"mnuFileDelete", "löschen", "mnuFileEdit", "mnuEditCut", "mnuFileNeuProtokoll",
                                     "mnuEditPaste", "mnuFileEigenschaften", "Eigenschaften", "mnuPopUpTvDelete"};
        w.selectTreeKey(f.key["Halle"]);
        for (const QString &name : writing)
            QVERIFY2(action(w, name.toUtf8().constData())->isEnabled(), qPrintable(name));
        QVERIFY(w.treeModel()->flags(w.treeModel()->indexOfKey(f.key["Keller"])) & Qt::ItemIsEditable);
        w.selectTreeKey(f.key["Modelle"]);
        for (const QString &name : writing)
            QVERIFY2(!action(w, name.toUtf8().constData())->isEnabled(), qPrintable(name));
        QVERIFY(!(w.listModel()->flags(w.listModel()->index(0, 0)) & Qt::ItemIsEditable));
        // Only plant components in this view: the commands are on again, new and paste stay off.
        action(w, "mnuViewMode2")->trigger();
        for (const char *name : {"mnuFileDelete", "mnuFileEdit", "mnuEditCut", "mnuFileEigenschaften"})
            QVERIFY2(action(w, name)->isEnabled(), name);
        QVERIFY(!action(w, "mnuFileNeuProtokoll")->isEnabled());
        QVERIFY(!action(w, "mnuEditPaste")->isEnabled());
        QVERIFY(!action(w, "mnuTEStrukturDruck0")->isEnabled());
    }

    void propertiesKeysAndOpening()
    {
        Fixture f;
        ScriptedPresenter presenter;
        frmMain w(f.session);
        w.show();
        w.selectTreeKey(f.key["Halle"]);
        focusList(w);
        // One entry: its master data; several: the mass change.
        w.selectListKeys({f.key["Pumpe"]});
        QString seen;
        answerDialog("cmdCancle", &seen);
        action(w, "Eigenschaften")->trigger();
        QCOMPARE(seen, QStringLiteral("frmProtokollKopf"));
        QVERIFY(loadNode(f.db(), f.key["Pumpe"]));
        w.selectListKeys({f.key["Pumpe"], f.key["Ventil"]});
        seen.clear();
        answerDialog("cmdCancle", &seen);
        action(w, "mnuFileEigenschaften")->trigger();
        QCOMPARE(seen, QStringLiteral("frmProtokollKopfMassen"));
        // F8 on a top node of the tree.
        QApplication::setActiveWindow(&w);
        tree(w)->setFocus();
        w.selectTreeKey(RootKatalo);
        QTest::keyClick(tree(w), Qt::Key_F8);
        QCOMPARE(presenter.lastText(), QStringLiteral("'WI-Rundgang' und 'Standards' besitzen keine Stammdaten "));
        // Enter on an installation in the list opens it in the tree; on a component the grid.
        w.selectTreeKey(f.key["Halle"]);
        focusList(w);
        w.selectListKeys({f.key["Ventil"]});
        QTest::keyClick(list(w), Qt::Key_Return);
        auto *frame = w.findChild<frmMDIProtokolle *>();
        QVERIFY(frame);
        QCOMPARE(frame->findChildren<frmProtokoll *>().size(), 1);
        // The same component again brings its window forward instead of a second one.
        QTest::keyClick(list(w), Qt::Key_Return);
        QCOMPARE(frame->findChildren<frmProtokoll *>().size(), 1);
        frame->close();
        // The list refuses a rename to an empty name.
        QVERIFY(!w.listModel()->setData(w.listModel()->index(0, 0), QString(), Qt::EditRole));
        QCOMPARE(presenter.lastText(), QStringLiteral("Benennungen müssen mindestens 1 Zeichen lang sein"));
        w.selectListKeys({f.key["Keller"]});
        QTest::keyClick(list(w), Qt::Key_Return);
        QCOMPARE(w.selectedTreeKey(), f.key["Keller"]);
        QCOMPARE(w.listTag(), f.key["Keller"]);
    }

    void viewNodeAndColumnsKeptPerUser()
    {
        Fixture f;
        {
            frmMain w(f.session);
            w.show();
            w.selectTreeKey(f.key["Keller"]);
            w.findChild<QTreeView *>(QStringLiteral("lvListView"))->header()->resizeSection(1, 123);
            w.saveWindowState();
            action(w, "mnuViewMode3")->trigger();
            w.saveWindowState();
        }
        QCOMPARE(GetSettingInt(f.session.section(QStringLiteral("\\env\\MainSettings")), QStringLiteral("SpaltenBreite_Hersteller"), 0),
                 123);
        frmMain again(f.session);
        QCOMPARE(again.viewMode(), 3);
        QCOMPARE(again.selectedTreeKey(), f.key["Keller"]);
        QCOMPARE(again.findChild<QTreeView *>(QStringLiteral("lvListView"))->header()->sectionSize(1), 123);
        QCOMPARE(shownNames(again), QStringList{"Pumpe Std"});
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
