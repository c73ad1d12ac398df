#include "gui/structure/frmBildanzeige.h"
#include "gui/structure/frmProtokollKopf.h"
#include "gui/structure/frmProtokollKopfMassen.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include "zol/structure/Node.h"
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace zol;
using zoltest::countRows;

namespace {
const QString kPumpe = QStringLiteral("0000000001");
const QString kNeu = QStringLiteral("0000000002");

void addNode(const QSqlDatabase &db, const QString &key, const QString &text, const QString &identNr)
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = QStringLiteral("0");
    n.Text = text;
    n.IdentNr = identNr;
    n.BezugsJahr = QStringLiteral("2015");
    n.BezugsWoche = QStringLiteral("07");
    n.Hersteller = QStringLiteral("KSB");
    n.Typ = QStringLiteral("Etanorm 50-200");
    n.Kostenstelle = QStringLiteral("4711");
    n.Standort = QStringLiteral("Werk Nord");
    n.Lokalisierung = QStringLiteral("Halle 3, Achse B");
    n.Klassifizierung = QStringLiteral("Pumpe");
    n.WIVerantwortlicher = QStringLiteral("Meier");
    n.AnlagenVerantwortlicher = QStringLiteral("Schulz");
    n.Option1 = QStringLiteral("Runde 2");
    n.KeineWartung = QStringLiteral("J");
    n.KeineWartungWocheVon1 = QStringLiteral("30");
    n.KeineWartungWocheBis1 = QStringLiteral("33");
    saveNode(db, n);
}

void admin(Session &s)
{
    s.login().UserName = QStringLiteral("Admin");
    s.login().Level = QStringLiteral("Administrator");
    s.login().LoginSucceeded = true;
}

template <class T>
T *child(QWidget &w, const char *name)
{
    T *c = w.findChild<T *>(QString::fromUtf8(name));
    if (!c)
        qFatal("control %s missing", name);
    return c;
}

void retype(QWidget *w, const QString &text)
{
    QLineEdit *edit = qobject_cast<QLineEdit *>(w);
    if (auto *combo = qobject_cast<QComboBox *>(w))
        edit = combo->lineEdit();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    // keyClicks takes plain ASCII only; other characters arrive as typed text
    for (const QChar c : text) {
        if (c.unicode() < 128)
            QTest::keyClicks(edit, QString(c));
        else
            edit->insert(QString(c));
    }
}
}

class TestProtokollKopf : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void controlsAndCaptions()
    {
        zoltest::TempData d;
        Session s(d.db());
        admin(s);
        frmProtokollKopf w(s);
        QCOMPARE(w.windowTitle(), QStringLiteral("Stammdaten"));
        for (const char *name : {"dbcBenennung", "dbcKostenstelle", "dbcKlassifizierung", "dbcStandort", "dbcLokalisierung",
                                 "dbcHersteller", "dbcTyp", "dbcWIVerantwortlicher", "dbcAnlagenVerantwortlicher",
                                 "dbcOption1", "dbcOption2"})
            QVERIFY2(child<QComboBox>(w, name)->isEditable(), name);
        for (const char *name : {"txtBezugsJahr", "txtBezugsWoche", "txtIdentNr", "txtWocheVon1", "txtWocheBis1",
                                 "txtWocheVon2", "txtWocheBis2"})
            child<QLineEdit>(w, name);
        QCOMPARE(child<QCheckBox>(w, "chkKeineWartung")->text(), QStringLiteral("Keine Wa&rtung in den Wochen"));
        QCOMPARE(child<QPushButton>(w, "cmdOK")->text(), QStringLiteral("&OK"));
        QCOMPARE(child<QPushButton>(w, "cmdCancle")->text(), QStringLiteral("&Abbrechen"));
        QCOMPARE(child<QLabel>(w, "lblBenennung")->text(), QStringLiteral("Na&me"));
        QCOMPARE(child<QLabel>(w, "lblWIVerantwortlicher")->text(), QStringLiteral("Inspekt&eur"));

        // The catalog buttons wait for a picker; with one they fill their combo.
        auto *cmdHersteller = child<QPushButton>(w, "cmdHersteller");
        QVERIFY(!cmdHersteller->isEnabled());
        QStringList asked;
        w.setCatalogPicker([&asked](const QString &table) {
            asked << table;
            return table == QLatin1String("Hersteller") ? QStringLiteral("Grundfos") : QString();
        });
        QVERIFY(cmdHersteller->isEnabled());
        cmdHersteller->click();
        child<QPushButton>(w, "cmdGewerk")->click();
        QCOMPARE(asked, (QStringList{"Hersteller", "Gewerke"}));
        QCOMPARE(child<QComboBox>(w, "dbcHersteller")->currentText(), QStringLiteral("Grundfos"));
    }

    // Typing values and OK writes the row; a refusal keeps the dialog open with the focus on the control.
    void editAndSave()
    {
        zoltest::TempData d;
        addNode(d.sql(), kPumpe, QStringLiteral("Pumpe 1"), QStringLiteral("P-1"));
        addNode(d.sql(), QStringLiteral("0000000003"), QStringLiteral("Pumpe 3"), QStringLiteral("P-3"));
        Session s(d.db());
        admin(s);
        frmProtokollKopf w(s);
        w.lade(kPumpe, true, std::nullopt);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QCOMPARE(child<QComboBox>(w, "dbcBenennung")->currentText(), QStringLiteral("Pumpe 1"));
        QVERIFY(child<QCheckBox>(w, "chkKeineWartung")->isChecked());
        QCOMPARE(child<QLineEdit>(w, "txtWocheBis1")->text(), QStringLiteral("33"));

        ScriptedPresenter p;
        retype(child<QLineEdit>(w, "txtIdentNr"), QStringLiteral("P-3"));
        QTest::mouseClick(child<QPushButton>(w, "cmdOK"), Qt::LeftButton);
        QCOMPARE(p.lastText(), QStringLiteral("Diese Identifikations-Nr. existiert schon; bitte andere angeben"));
        QVERIFY(w.isVisible());
        QCOMPARE(QApplication::focusWidget(), child<QLineEdit>(w, "txtIdentNr"));
        QCOMPARE(loadNode(d.sql(), kPumpe)->IdentNr, QStringLiteral("P-1"));

        p.clear();
        retype(child<QLineEdit>(w, "txtIdentNr"), QStringLiteral("P-1a"));
        retype(child<QComboBox>(w, "dbcBenennung"), QStringLiteral("Pumpe 'Süd' 100%_"));
        retype(child<QLineEdit>(w, "txtBezugsJahr"), QStringLiteral("20x16"));   // the x is dropped
        retype(child<QLineEdit>(w, "txtBezugsWoche"), QStringLiteral("3"));
        retype(child<QComboBox>(w, "dbcTyp"), QStringLiteral("Etaline"));
        retype(child<QComboBox>(w, "dbcHersteller"), QStringLiteral("KS"));   // "KSB" is in the list
        // a week above 52 is refused on leaving the box
        retype(child<QLineEdit>(w, "txtWocheVon2"), QStringLiteral("6"));
        child<QLineEdit>(w, "txtWocheBis2")->setFocus();
        QCOMPARE(p.lastText(), QStringLiteral("Die Woche muss >= 1 und <= 52 sein"));
        QTRY_COMPARE(QApplication::focusWidget(), child<QLineEdit>(w, "txtWocheVon2"));
        retype(child<QLineEdit>(w, "txtWocheVon2"), QStringLiteral("5"));
        retype(child<QLineEdit>(w, "txtWocheBis2"), QStringLiteral("08"));
        child<QLineEdit>(w, "txtWocheVon1")->setFocus();
        QCOMPARE(p.texts(), QStringList{"Die Woche muss >= 1 und <= 52 sein"});
        QCOMPARE(child<QLineEdit>(w, "txtWocheVon2")->text(), QStringLiteral("05"));
        // Enter in a week box runs OK; the box is checked as if it were left
        retype(child<QLineEdit>(w, "txtWocheVon1"), QStringLiteral("7"));
        QTest::keyClick(child<QLineEdit>(w, "txtWocheVon1"), Qt::Key_Return);
        QVERIFY(w.isVisible());
        QCOMPARE(p.lastText(), QStringLiteral("Die Woche muss >= 1 und <= 52 sein"));
        retype(child<QLineEdit>(w, "txtWocheVon1"), QStringLiteral("4"));
        QTest::keyClick(child<QLineEdit>(w, "txtWocheVon1"), Qt::Key_Return);
        QVERIFY(!w.isVisible());
        QCOMPARE(w.Tag(), QStringLiteral("OK"));
        QCOMPARE(p.texts().size(), 2);

        const Node n = *loadNode(d.sql(), kPumpe);
        QCOMPARE(n.Text, QStringLiteral("Pumpe 'Süd' 100%_"));
        QCOMPARE(n.IdentNr, QStringLiteral("P-1a"));
        QCOMPARE(n.BezugsJahr, QStringLiteral("2016"));
        QCOMPARE(n.BezugsWoche, QStringLiteral("03"));
        QCOMPARE(n.Typ, QStringLiteral("Etaline"));
        QCOMPARE(n.Hersteller, QStringLiteral("KS"));
        QCOMPARE(n.Standort, QStringLiteral("Werk Nord"));
        QCOMPARE(n.KeineWartungWocheVon1, QStringLiteral("04"));
        QCOMPARE(n.KeineWartungWocheVon2, QStringLiteral("05"));
        QCOMPARE(n.KeineWartungWocheBis2, QStringLiteral("08"));
    }

    void cancelOnANewNodeRemovesIt()
    {
        zoltest::TempData d;
        addNode(d.sql(), kNeu, QStringLiteral("File(1)"), QString());
        Session s(d.db());
        admin(s);
        frmProtokollKopf w(s);
        w.lade(kNeu, false, QStringLiteral("File(1)"));
        w.show();
        QCOMPARE(child<QComboBox>(w, "dbcBenennung")->currentText(), QStringLiteral("File(1)"));
        QTest::mouseClick(child<QPushButton>(w, "cmdCancle"), Qt::LeftButton);
        QCOMPARE(w.Tag(), QStringLiteral("Cancel"));
        QVERIFY(!loadNode(d.sql(), kNeu));
    }

    void massChangeWindow()
    {
        zoltest::TempData d;
        addNode(d.sql(), kPumpe, QStringLiteral("Pumpe 1"), QStringLiteral("P-1"));
        addNode(d.sql(), kNeu, QStringLiteral("Pumpe 2"), QStringLiteral("P-2"));
        Session s(d.db());
        admin(s);
        frmProtokollKopfMassen w(s);
        QCOMPARE(w.windowTitle(), QStringLiteral("Stammdaten - Massenänderung"));
        QVERIFY(!w.findChild<QWidget *>(QStringLiteral("dbcBenennung")));
        QVERIFY(!w.findChild<QWidget *>(QStringLiteral("txtIdentNr")));
        w.lade({kPumpe, kNeu});
        w.show();
        QCOMPARE(child<QComboBox>(w, "dbcHersteller")->count(), 1);
        QVERIFY(child<QComboBox>(w, "dbcHersteller")->currentText().isEmpty());
        retype(child<QComboBox>(w, "dbcStandort"), QStringLiteral("Werk Süd"));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        QTest::mouseClick(child<QPushButton>(w, "cmdOK"), Qt::LeftButton);
        QCOMPARE(w.Tag(), QStringLiteral("OK"));
        QCOMPARE(w.geaendert(), (QStringList{kPumpe, kNeu}));
        QCOMPARE(countRows(d.sql(), QStringLiteral("ProtokollKopf"),
                           QStringLiteral("Standort = 'Werk Süd' AND Hersteller = 'KSB' AND KeineWartung = 'N'")), 2);
    }

    void pictureWindowKeepsItsPlacePerSlot()
    {
        zoltest::TempData d;
        Session s(d.db());
        admin(s);
        QImage img(40, 30, QImage::Format_RGB32);
        img.fill(Qt::darkGreen);
        QVERIFY(img.save(d.dir() + QStringLiteral("/ZOL_B02.PNG"), "PNG"));
        ScriptedPresenter p;
        QVERIFY(!frmBildanzeige::oeffne(s, 1));
        QCOMPARE(p.texts().size(), 1);
        frmBildanzeige *w = frmBildanzeige::oeffne(s, 2);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Bild 2"));
        QVERIFY(!child<QLabel>(*w, "imgBildanzeige")->pixmap().isNull());
        QCOMPARE(frmBildanzeige::oeffne(s, 2), w);   // the open window comes to the front
        w->resize(321, 234);
        QPointer<frmBildanzeige> guard(w);
        w->close();
        QTRY_VERIFY(guard.isNull());
        QCOMPARE(GetSettingInt(QStringLiteral("Admin\\env\\Bildanzeige02"), QStringLiteral("Width"), 0), 321);
        w = frmBildanzeige::oeffne(s, 2);
        QVERIFY(w);
        QCOMPARE(w->width(), 321);
        w->close();
    }
};

QTEST_MAIN(TestProtokollKopf)
#include "tst_protokollkopf.moc"
