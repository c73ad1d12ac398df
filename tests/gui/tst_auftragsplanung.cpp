#include "gui/planning/frmAuftragsplanung.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/print/PrinterF.h"
#include "zol/structure/Node.h"
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

using namespace zol;
using zoltest::countRows;

namespace {

using zoltest::RecordingPreview;

QStringList items(const QComboBox *c)
{
    QStringList t;
    for (int i = 0; i < c->count(); ++i)
        t << c->itemText(i);
    return t;
}

}

class TestAuftragsplanung : public QObject {
    Q_OBJECT

    // A second instruction of the same component for another trade.
    static void addSecondTrade(const QSqlDatabase &db)
    {
        exec(db, QStringLiteral("UPDATE ProtokollPositionen SET Ausfuehrender = 'Elektro'"));
        exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Intervall, Planzeit,"
                                " Materialmenge, Intervalltyp, AnzahlPersonen, Ausfuehrender)"
                                " VALUES ('0000000001', '000010', '0020', 'Motor messen', '1W', '1,0', '0,0', 'L', '1',"
                                " 'Mechanik')"));
    }

    static void addPlant(const QSqlDatabase &db)
    {
        Node n;
        n.FileIndex = QStringLiteral("0000000001");
        n.FileAbove = RootProtok;
        n.FileTyp = FileTypFile;
        n.Katalog = QStringLiteral("0");
        n.Text = QStringLiteral("Pumpe 'Süd'");
        n.BezugsJahr = QStringLiteral("2015");
        n.BezugsWoche = QStringLiteral("01");
        saveNode(db, n);
        exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Intervall,"
                                " Planzeit, Materialmenge, Intervalltyp, AnzahlPersonen)"
                                " VALUES ('0000000001', '000010', '0010', 'Lager prüfen', '1W', '0,5', '0,0', 'L', '1')"));
        exec(db, QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung)"
                                " VALUES ('0000000001', '2016', '03', '000010', '0010')"));
    }

    static void setSession(Session &s, const QString &level)
    {
        s.login().UserName = QStringLiteral("Admin");
        s.login().Level = level;
        s.login().LoginSucceeded = true;
    }

private Q_SLOTS:
    void plansThroughTheWindow()
    {
        zoltest::TempData d;
        addPlant(d.sql());
        Session session(d.db());
        setSession(session, QStringLiteral("Administrator"));
        frmAuftragsplanung w(session);
        w.zeig();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        auto *txtJahr = w.findChild<QLineEdit *>(QStringLiteral("txtJahr"));
        auto *dbcWoche = w.findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        auto *cmdPlanen = w.findChild<QPushButton *>(QStringLiteral("cmdPlanen"));
        auto *lblTitel = w.findChild<QLabel *>(QStringLiteral("lblTitel"));
        QVERIFY(txtJahr && dbcWoche && cmdPlanen && lblTitel && w.findChild<QProgressBar *>(QStringLiteral("ProgressBar")));
        QCOMPARE(txtJahr->text(), QString::number(QDate::currentDate().year()));
        QCOMPARE(lblTitel->text(), QStringLiteral("Status: Warte auf Eingaben"));

        // Only digits reach the year; four of them load the planned weeks of that year.
        txtJahr->clear();
        QTest::keyClicks(txtJahr, QStringLiteral("2a01-6"));
        QCOMPARE(txtJahr->text(), QStringLiteral("2016"));
        QCOMPARE(dbcWoche->count(), 1);
        QCOMPARE(dbcWoche->itemText(0), QStringLiteral("03"));
        QTest::keyClick(txtJahr, Qt::Key_Return);
        QVERIFY(dbcWoche->hasFocus() || dbcWoche->lineEdit()->hasFocus());

        ScriptedPresenter p;
        p.answer(Answer::Yes);
        QTest::keyClicks(dbcWoche->lineEdit(), QStringLiteral("x5"));
        QCOMPARE(dbcWoche->currentText(), QStringLiteral("5"));
        QTest::mouseClick(cmdPlanen, Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Wollen Sie die Planung der langfristigen Aufträge für die "
                                                       "Woche 05 im Jahr 2016 jetzt wirklich durchführen?")});
        QCOMPARE(dbcWoche->currentText(), QStringLiteral("05"));
        QCOMPARE(lblTitel->text(), QStringLiteral("1 langfristige Aufträge geplant. Warte auf Eingaben"));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag"), QStringLiteral("Jahr = '2016' AND Woche = '05'"
                                                                              " AND KompBezeichnung = 'Pumpe ''Süd'''")), 1);
        QCOMPARE(dbcWoche->count(), 1);   // the list is not reloaded after a run
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS"))
            w.grab().save(QDir(qEnvironmentVariable("ZOL_SCREENSHOTS")).filePath(QStringLiteral("frmAuftragsplanung.png")));

        // Enter in the week runs the planning at once: the week is planned, so it asks to overwrite.
        p.clear();
        p.answer(Answer::Yes).answer(Answer::No);
        QTest::keyClick(dbcWoche->lineEdit(), Qt::Key_Return);
        QCOMPARE(p.texts().size(), 2);
        QVERIFY(p.texts().at(1).contains(QStringLiteral("alte Planung überschreiben")));

    }

    void refusalSendsFocusBack()
    {
        zoltest::TempData d;
        addPlant(d.sql());
        Session session(d.db());
        setSession(session, QStringLiteral("Administrator"));
        frmAuftragsplanung w(session);
        w.zeig();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        auto *dbcWoche = w.findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        ScriptedPresenter p;
        dbcWoche->setEditText(QStringLiteral("53"));
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdPlanen")), Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig")});
        QTRY_VERIFY(dbcWoche->hasFocus() || dbcWoche->lineEdit()->hasFocus());
    }

    // An Auswerter can't plan: the button is off, and Enter in the week does nothing.
    void auswerterCannotPlan()
    {
        zoltest::TempData d;
        addPlant(d.sql());
        Session session(d.db());
        setSession(session, QStringLiteral("Auswerter"));
        frmAuftragsplanung w(session);
        w.zeig();
        QVERIFY(!w.findChild<QPushButton *>(QStringLiteral("cmdPlanen"))->isEnabled());
        auto *dbcWoche = w.findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        dbcWoche->setEditText(QStringLiteral("05"));
        QTest::keyClick(dbcWoche->lineEdit(), Qt::Key_Return);
        QVERIFY(p.shown().isEmpty());
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), 1);
    }

    // Plan a week, then print its sheets for one trade: the lists of the print
    // frame hold the week's values, the preview asks nothing and shows the
    // trade's orders only, the direct print asks first.
    void printsTheSheetsOfOneTrade()
    {
        zoltest::TempData d;
        addPlant(d.sql());
        addSecondTrade(d.sql());
        Session session(d.db());
        setSession(session, QStringLiteral("Administrator"));
        frmAuftragsplanung w(session);
        w.zeig();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto *txtJahr = w.findChild<QLineEdit *>(QStringLiteral("txtJahr"));
        auto *dbcWoche = w.findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        auto *dbcGewerk = w.findChild<QComboBox *>(QStringLiteral("dbcGewerk"));
        auto *dbcKostenstelle = w.findChild<QComboBox *>(QStringLiteral("dbcKostenstelle"));
        auto *lblTitel = w.findChild<QLabel *>(QStringLiteral("lblTitel"));
        auto *cmdDrucken = w.findChild<QPushButton *>(QStringLiteral("cmdDrucken"));
        auto *cmdDruckVorschau = w.findChild<QPushButton *>(QStringLiteral("cmdDruckVorschau"));
        QVERIFY(dbcGewerk && dbcKostenstelle && cmdDrucken && cmdDruckVorschau
                && w.findChild<QComboBox *>(QStringLiteral("dbcLokalisierung")));
        QCOMPARE(cmdDrucken->text(), QStringLiteral("&Drucken"));
        QCOMPARE(cmdDruckVorschau->text(), QStringLiteral("Druck - &Vorschau"));
        QCOMPARE(w.findChild<QLabel *>(QStringLiteral("lblGewerk"))->text(), QStringLiteral("&Gewerk"));
        // Without a catalog picker the catalog buttons are off.
        QVERIFY(!w.findChild<QPushButton *>(QStringLiteral("cmdGewerk"))->isEnabled());

        ScriptedPresenter p;
        p.answer(Answer::Yes);
        txtJahr->setText(QStringLiteral("2016"));
        dbcWoche->setEditText(QStringLiteral("05"));
        dbcGewerk->setEditText(QStringLiteral("alt"));
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdPlanen")), Qt::LeftButton);
        QCOMPARE(lblTitel->text(), QStringLiteral("2 langfristige Aufträge geplant. Warte auf Eingaben"));
        // The run empties the filters and fills their lists with the planned week.
        QCOMPARE(dbcGewerk->currentText(), QString());
        QCOMPARE(items(dbcGewerk), (QStringList{QStringLiteral("Elektro"), QStringLiteral("Mechanik")}));

        // The fields take no more than their field holds.
        const int size = Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Kostenstelle"));
        QTest::keyClicks(dbcKostenstelle, QString(size + 3, QLatin1Char('k')));
        QCOMPARE(dbcKostenstelle->currentText().size(), size);
        dbcKostenstelle->setEditText(QString());

        RecordingPreview preview;
        p.clear();
        QTest::keyClicks(dbcGewerk, QStringLiteral("mECH*"));
        QTest::mouseClick(cmdDruckVorschau, Qt::LeftButton);
        QVERIFY(p.texts().isEmpty());
        QCOMPARE(preview.calls, 1);
        QVERIFY(preview.contains(QStringLiteral("Motor messen")));
        QVERIFY(!preview.contains(QStringLiteral("Lager prüfen")));
        QCOMPARE(lblTitel->text(), QStringLiteral("Warte auf Eingaben"));
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS"))
            w.grab().save(QDir(qEnvironmentVariable("ZOL_SCREENSHOTS")).filePath(QStringLiteral("frmAuftragsplanung-druck.png")));

        p.answer(Answer::No);
        QTest::mouseClick(cmdDrucken, Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Aufträge für die Woche 05 im Jahr 2016 jetzt wirklich drucken?")});
        QCOMPARE(preview.calls, 1);

        // Leaving the week empties the filters and reloads their lists for the week typed.
        dbcWoche->setFocus();
        QTRY_VERIFY(dbcWoche->hasFocus());
        dbcWoche->lineEdit()->clear();
        QTest::keyClicks(dbcWoche, QStringLiteral("x6"));
        txtJahr->setFocus();
        QTRY_COMPARE(dbcWoche->currentText(), QStringLiteral("06"));
        QCOMPARE(dbcGewerk->currentText(), QString());
        QCOMPARE(dbcGewerk->count(), 0);
    }

    // A Werker's trade is locked; the catalogs fill the other fields.
    void werkerTradeAndCatalogPicker()
    {
        zoltest::TempData d;
        addPlant(d.sql());
        Session session(d.db());
        setSession(session, QStringLiteral("Werker"));
        session.login().WerkerGewerk = QStringLiteral("Mechanik");
        frmAuftragsplanung w(session);
        QStringList asked;
        w.setKatalogPicker([&asked](const QString &table) {
            asked << table;
            return table == QLatin1String("Kostenstellen") ? QStringLiteral("K 7") : QString();
        });
        w.zeig();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto *dbcGewerk = w.findChild<QComboBox *>(QStringLiteral("dbcGewerk"));
        auto *dbcKostenstelle = w.findChild<QComboBox *>(QStringLiteral("dbcKostenstelle"));
        auto *dbcLokalisierung = w.findChild<QComboBox *>(QStringLiteral("dbcLokalisierung"));
        QCOMPARE(dbcGewerk->currentText(), QStringLiteral("Mechanik"));
        QVERIFY(!dbcGewerk->isEnabled());
        QVERIFY(!w.findChild<QPushButton *>(QStringLiteral("cmdGewerk"))->isEnabled());
        dbcLokalisierung->setEditText(QStringLiteral("Dach"));
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdKostenstelle")), Qt::LeftButton);
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdLokalisierung")), Qt::LeftButton);
        QCOMPARE(asked, (QStringList{QStringLiteral("Kostenstellen"), QStringLiteral("Lokalisierungen")}));
        QCOMPARE(dbcKostenstelle->currentText(), QStringLiteral("K 7"));
        QCOMPARE(dbcLokalisierung->currentText(), QStringLiteral("Dach"));   // nothing picked: unchanged

        // Leaving the week keeps the locked trade in its field.
        auto *dbcWoche = w.findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        dbcWoche->setFocus();
        QTRY_VERIFY(dbcWoche->lineEdit()->hasFocus());
        dbcWoche->setEditText(QStringLiteral("03"));
        w.findChild<QLineEdit *>(QStringLiteral("txtJahr"))->setFocus();
        QTRY_COMPARE(dbcKostenstelle->currentText(), QString());
        QCOMPARE(dbcGewerk->currentText(), QStringLiteral("Mechanik"));
    }
};

QTEST_MAIN(TestAuftragsplanung)
#include "tst_auftragsplanung.moc"
