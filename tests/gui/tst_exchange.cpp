#include "gui/core/FileDialogs.h"
#include "gui/instructions/frmMDIProtokolle.h"
#include "gui/instructions/frmProtokoll.h"
#include "gui/instructions/ProtocolModel.h"
#include "gui/structure/frmMain.h"
#include "support/GuiSession.h"
#include "zol/core/Sql.h"
#include "zol/exchange/ComponentExchange.h"
#include "zol/exchange/TableReader.h"
#include <QApplication>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

using zoltest::GuiSession;

namespace {

// Answers every question of the message window with Yes, as a user clicking through.
void clickYes(QWidget *m)
{
    if (auto *b = m->findChild<QPushButton *>(QStringLiteral("cmdYNYes")); b && b->isVisible())
        b->click();
}

QString parentOf(GuiSession &s, const QString &key)
{
    return zol::scalar(s.sql(), QStringLiteral("SELECT FileAbove FROM ProtokollKopf WHERE FileIndex = ?"), {key}).toString();
}

QString nameOf(GuiSession &s, const QString &key)
{
    return zol::scalar(s.sql(), QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = ?"), {key}).toString();
}

int lines(GuiSession &s, const QString &te)
{
    return zoltest::countRows(s.sql(), QStringLiteral("ProtokollPositionen"), QStringLiteral("TeNummer = ?"), {te});
}

frmProtokoll *openProtocol(GuiSession &s, QString *teNummer)
{
    *teNummer = s.pointAtComponent();
    GuiSession::press(Qt::Key_Return);
    QApplication::processEvents();
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *mdi = qobject_cast<frmMDIProtokolle *>(w); mdi && mdi->isVisible() && !mdi->protocols().isEmpty())
            return mdi->protocols().constLast();
    return nullptr;
}

}

class TestExchangeWindows : public QObject {
    Q_OBJECT
private slots:
    void exportThenImportFromTheMainWindow_data();
    void exportThenImportFromTheMainWindow();
    void cancelledDialogExportsNothing();
    void linesOfOneComponentOutAndBack();
};

void TestExchangeWindows::exportThenImportFromTheMainWindow_data()
{
    QTest::addColumn<QString>("exportEntry");
    QTest::addColumn<QString>("importEntry");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("exportMessages");
    QTest::addColumn<QString>("importMessage");
    QTest::newRow("Datenbank") << "mnuFileExportObjekt" << "mnuFileImportObjekt" << "o.db"
                               << QStringList{"Die Objekte wurden exportiert"} << "Alle 1 Objekte wurden importiert";
    QTest::newRow("Datenbank mit Aufträgen")
        << "mnuFileExportAufträge" << "mnuFileImportAufträge" << "a.db"
        << QStringList{"Die Objekte und Auftragspositionen wurden exportiert"}
        << "Alle %1 Objekte und Auftragspositionen wurden übernommen";
    QTest::newRow("Excel") << "mnuFileExportExcelObjekt" << "mnuFileImportObjekt" << "o.xlsx"
                           << QStringList{"2 Kopfzeilen mit Feldbezeichnungen einfügen?", "Die Objekte wurden exportiert",
                                          "Excel-Tabelle jetzt aufrufen?"}
                           << "Alle 1 Objekte wurden importiert";
    QTest::newRow("Excel mit Aufträgen")
        << "mnuFileExportExcelAufträge" << "mnuFileImportAufträge" << "a.xlsx"
        << QStringList{"2 Kopfzeilen mit Feldbezeichnungen einfügen?", "Die Objekte/Aufträge wurden exportiert",
                       "Excel-Tabelle jetzt aufrufen?"}
        << "Alle %1 Objekte und Auftragspositionen wurden übernommen";
}

void TestExchangeWindows::exportThenImportFromTheMainWindow()
{
    QFETCH(QString, exportEntry);
    QFETCH(QString, importEntry);
    QFETCH(QString, file);
    QFETCH(QStringList, exportMessages);
    QFETCH(QString, importMessage);
    GuiSession s;
    QVERIFY(s.login(QStringLiteral("Meister")));
    const QString key = s.pointAtComponent();
    QVERIFY(!key.isEmpty());
    const int lineCount = lines(s, key);
    QVERIFY(lineCount > 0);
    QTemporaryDir dir;
    const QString path = dir.filePath(file);
    {
        zolgui::ScriptedFiles files({path});
        const GuiSession::Opened out = s.trigger(exportEntry, clickYes);
        QCOMPARE(out.messages, exportMessages);
        QVERIFY(QFile::exists(path));
        QCOMPARE(files.proposed.size(), 1);
        QVERIFY(files.proposed.first().startsWith(QStringLiteral("ZOL_")));
        QCOMPARE(files.shown, file.endsWith(QLatin1String(".xlsx")) ? QStringList{path} : QStringList{});
    }
    // Back under the same installation, chosen in the tree.
    const QString parent = parentOf(s, key);
    frmMain &w = s.main();
    QVERIFY(w.selectTreeKey(parent));
    w.findChild<QTreeView *>(QStringLiteral("tvTreeView"))->setFocus();
    {
        zolgui::ScriptedFiles files({path});
        const GuiSession::Opened in = s.trigger(importEntry);
        const bool withLines = importEntry.endsWith(QStringLiteral("Aufträge"));
        const QString expected = withLines ? importMessage.arg(1 + lineCount) : importMessage;
        QCOMPARE(in.messages, QStringList{expected});
        const QString copy = zol::scalar(s.sql(), QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE FileAbove = ? "
                                                               "AND Text = ?"),
                                         {parent, nameOf(s, key) + QStringLiteral("(1)")})
                                 .toString();
        QVERIFY(!copy.isEmpty());
        QCOMPARE(lines(s, copy), withLines ? lineCount : 0);
    }
}

void TestExchangeWindows::cancelledDialogExportsNothing()
{
    GuiSession s;
    QVERIFY(s.login(QStringLiteral("Admin")));
    s.pointAtComponent();
    for (const char *entry : {"mnuFileExportObjekt", "mnuFileExportAufträge", "mnuFileExportExcelObjekt",
                              "mnuFileExportExcelAufträge"}) {
        zolgui::ScriptedFiles files;   // no name: the dialog is cancelled
        const GuiSession::Opened out = s.trigger(QString::fromUtf8(entry));
        QCOMPARE(out.messages, QStringList{QStringLiteral("Es fand kein Export statt")});
    }
    // An import cancelled in its dialog ends without a word.
    zolgui::ScriptedFiles files;
    QCOMPARE(s.trigger(QStringLiteral("mnuFileImportObjekt")).messages, QStringList{});
}

void TestExchangeWindows::linesOfOneComponentOutAndBack()
{
    GuiSession s;
    QVERIFY(s.login(QStringLiteral("Admin")));
    QString te;
    frmProtokoll *p = openProtocol(s, &te);
    QVERIFY(p);
    const int n = lines(s, te);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("komp.db"));
    {
        zolgui::ScriptedFiles files({path});
        zoltest::ModalWatcher watch;
        p->findChild<QAction *>(QStringLiteral("mnuAnweisungenExport"))->trigger();
        QCOMPARE(files.proposed, QStringList{QStringLiteral("ZOL_AuftraegeKomp.db")});
        QCOMPARE(watch.messages, QStringList{QStringLiteral("Die Aufträge für diese Komponente wurden exportiert")});
    }
    // The lines gone, they come back from the file through the table choice.
    zol::exec(s.sql(), QStringLiteral("DELETE FROM ProtokollPositionen WHERE TeNummer = ?"), {te});
    {
        zolgui::ScriptedFiles files({path});
        QStringList tables;
        QString title;
        zoltest::ModalWatcher watch([&](QWidget *m) {
            if (auto *list = m->findChild<QListWidget *>(QStringLiteral("lstTabellen"))) {
                title = m->windowTitle();
                for (int i = 0; i < list->count(); ++i)
                    tables << list->item(i)->text();
                GuiSession::press(Qt::Key_Return);
            }
        });
        p->findChild<QAction *>(QStringLiteral("mnuAnweisungenImport"))->trigger();
        QCOMPARE(title, QStringLiteral("Import-Tabelle aussuchen"));
        QCOMPARE(tables, QStringList{nameOf(s, te)});
        QCOMPARE(watch.modals.first(), QStringLiteral("frmProtokollTabelle"));
        QCOMPARE(watch.messages, QStringList{QStringLiteral("Alle %1 Positionen wurden übernommen").arg(n)});
    }
    QCOMPARE(lines(s, te), n);
    QCOMPARE(p->model()->rows().size(), n);
}

QTEST_MAIN(TestExchangeWindows)
#include "tst_exchange.moc"
