#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/structure/MasterData.h"
#include "zol/structure/Node.h"
#include <QtTest>
#include <functional>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {
const QString kPlant = QStringLiteral("0000000001");      // component under WI-Rundgang
const QString kStandard = QStringLiteral("0000000002");   // component under Standards
const QString kHalle = QStringLiteral("0000000003");      // installation under WI-Rundgang
const QString kOther = QStringLiteral("0000000004");      // component with IdentNr "P-200"

const QString msgDuplicate = QStringLiteral("Diese Identifikations-Nr. existiert schon; bitte andere angeben");
const QString msgAskEmpty = QStringLiteral(
    "Solange keine Ident-Nr angegeben ist, können für diese Komponente keine IS-Aufträge angelegt werden. "
    "Wollen Sie das Feld Ident-Nr also wirklich leer lassen?");
const QString msgAskWeeks = QStringLiteral(
    "Sie haben Intervalle eingegeben, aber 'Keine Wartung' nicht angeklickt! Bei 'OK' werden die Intervalle nicht gespeichert");
const QString msgStandardIdent = QStringLiteral(
    "Im Bereich 'Standards' darf keine Ident-Nr angegeben werden. Dies ist nur im Bereich 'WI-Rundgang' möglich "
    "(und dort auch sehr zu empfehlen)");
const QString msgOrdnerIdent = QStringLiteral(
    "Bei einer 'Technischen Einrichtung' darf keine Ident-Nr angegeben werden. Dies ist nur bei 'Komponenten' im "
    "Bereich 'WI-Rundgang' möglich (und dort auch sehr zu empfehlen)");

void add(const QSqlDatabase &db, const QString &key, const QString &typ, const QString &katalog, const QString &text,
         const QString &identNr = {})
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = katalog == QLatin1String("1") ? RootKatalo : RootProtok;
    n.FileTyp = typ;
    n.Katalog = katalog;
    n.Text = text;
    n.IdentNr = identNr;
    n.BezugsJahr = QStringLiteral("2015");
    n.BezugsWoche = QStringLiteral("07");
    n.KeineWartung = QStringLiteral("N");
    saveNode(db, n);
}

void addPlant(const QSqlDatabase &db)
{
    add(db, kPlant, FileTypFile, QStringLiteral("0"), QStringLiteral("Pumpe 1"), QStringLiteral("P-100"));
    add(db, kStandard, FileTypFile, QStringLiteral("1"), QStringLiteral("Kreiselpumpe"));
    add(db, kHalle, FileTypOrdner, QStringLiteral("0"), QStringLiteral("Halle 1"));
    add(db, kOther, FileTypFile, QStringLiteral("0"), QStringLiteral("Pumpe 2"), QStringLiteral("P-200"));
}

void addRepairOrder(const QSqlDatabase &db, const QString &identNr, const QString &nr)
{
    exec(db, QStringLiteral("INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer) VALUES (?, ?, ?)"),
         {QStringLiteral("Pumpe 1"), identNr, nr});
}

// A valid input for the node as the dialog would show it.
MasterDataInput inputOf(const QSqlDatabase &db, const QString &key)
{
    return stammdatenFuerDialog(db, key, true, std::nullopt, 2016);
}

void session(Session &s, const QString &level = QStringLiteral("Administrator"))
{
    s.login().UserName = QStringLiteral("Admin");
    s.login().Level = level;
    s.login().LoginSucceeded = true;
}
}

class TestMasterData : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Refusals of OK not met in refusalsComeInOrder, with message and focus.
    void okRefusals_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("focus");

        QTest::newRow("week 0") << kPlant << "BezugsWoche" << "0" << QList<int>{}
                                << QStringList{"Als Wochenzahl sind nur 1 bis 52 zulässig"} << "txtBezugsWoche";
        QTest::newRow("week on installation") << kHalle << "BezugsWoche" << "60" << QList<int>{}
                                              << QStringList{"Als Wochenzahl sind nur 1 bis 52 zulässig"} << "txtBezugsWoche";
        QTest::newRow("name too long") << kPlant << "Benennung" << QString(101, QLatin1Char('x')) << QList<int>{}
                                       << QStringList{"Der Text ist zu lang (max. Länge: 100)"} << "dbcBenennung";
        QTest::newRow("weeks without Keine Wartung, Cancel") << kPlant << "WeeksOnly" << "" << QList<int>{Answer::Cancel}
                                                             << QStringList{msgAskWeeks} << "chkKeineWartung";
        QTest::newRow("IdentNr on a Standard") << kStandard << "IdentNr" << "S-1" << QList<int>{}
                                               << QStringList{msgStandardIdent} << "txtIdentNr";
        QTest::newRow("IdentNr on an installation") << kHalle << "IdentNr" << "H-1" << QList<int>{}
                                                    << QStringList{msgOrdnerIdent} << "txtIdentNr";
        // the duplicate test runs only for components: on an installation the number is refused later
        QTest::newRow("duplicate on installation") << kHalle << "IdentNr" << "P-200" << QList<int>{}
                                                   << QStringList{msgOrdnerIdent} << "txtIdentNr";
    }
    void okRefusals()
    {
        QFETCH(QString, key);
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, messages);
        QFETCH(QString, focus);

        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), key);
        if (field == QLatin1String("WeeksOnly")) {
            in.WocheBis2 = QStringLiteral("05");
        } else if (field == QLatin1String("Benennung")) {
            in.Benennung = value;
        } else if (field == QLatin1String("BezugsWoche")) {
            in.BezugsWoche = value;
        } else if (field == QLatin1String("IdentNr")) {
            in.IdentNr = value;
        }
        const Node before = *loadNode(d.sql(), key);

        ScriptedPresenter p;
        for (int a : answers)
            p.answer(a);
        const StammdatenErgebnis r = StammdatenSpeichern(s, key, in);
        QVERIFY(!r.ok);
        QCOMPARE(r.focus, focus);
        QCOMPARE(p.texts(), messages);
        QCOMPARE(p.lastStyle(), answers.isEmpty() ? Style::Exclamation
                                                     : Style::OkCancel);
        QCOMPARE(loadNode(d.sql(), key)->value(QStringLiteral("Text")), before.Text);
        QCOMPARE(loadNode(d.sql(), key)->IdentNr, before.IdentNr);
        if (field == QLatin1String("Benennung") && value.size() > 100)
            QCOMPARE(in.Benennung.size(), 100);   // cut, shown so for the next OK
    }

    // With every fault present at once, OK names them one after the other in
    // its order; each is mended before the next OK.
    void refusalsComeInOrder()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), kPlant);
        in.Benennung.clear();
        in.BezugsJahr.clear();
        in.BezugsWoche.clear();
        in.IdentNr = QStringLiteral("P-200");
        in.Typ = QString(51, QLatin1Char('t'));
        in.KeineWartung = true;

        const QList<std::pair<QString, std::function<void()>>> steps = {
            {QStringLiteral("dbcBenennung"), [&] { in.Benennung = QStringLiteral("Pumpe 1"); }},
            {QStringLiteral("txtBezugsJahr"), [&] { in.BezugsJahr = QStringLiteral("2015"); }},
            {QStringLiteral("txtBezugsWoche"), [&] { in.BezugsWoche = QStringLiteral("53"); }},
            {QStringLiteral("txtBezugsWoche"), [&] { in.BezugsWoche = QStringLiteral("7"); }},
            {QStringLiteral("txtIdentNr"), [&] { in.IdentNr.clear(); }},
            {QStringLiteral("dbcTyp"), [] {}},   // the text was cut to the field
            {QStringLiteral("txtWocheVon1"), [&] { in.WocheVon1 = QStringLiteral("10"); }},
            {QStringLiteral("txtWocheVon1"), [&] { in.WocheBis1 = QStringLiteral("12"); in.WocheBis2 = QStringLiteral("3"); }},
            {QStringLiteral("txtWocheVon2"), [&] { in.WocheVon2 = QStringLiteral("01"); }},
        };
        ScriptedPresenter p;
        for (const auto &step : steps) {
            const StammdatenErgebnis r = StammdatenSpeichern(s, kPlant, in);
            QVERIFY(!r.ok);
            QCOMPARE(r.focus, step.first);
            step.second();
        }
        QCOMPARE(p.texts(), (QStringList{"Bitte eine Benennung eingeben", "Bitte Bezugsjahr eingeben",
                                         "Bitte Bezugswoche eingeben", "Als Wochenzahl sind nur 1 bis 52 zulässig",
                                         msgDuplicate, "Der Text ist zu lang (max. Länge: 50)",
                                         "Bitte ein Wochenintervall eingeben", "Das Wochenintervall ist nicht plausibel",
                                         "Das Wochenintervall ist nicht plausibel"}));
        QCOMPARE(loadNode(d.sql(), kPlant)->Text, QStringLiteral("Pumpe 1"));
        QCOMPARE(loadNode(d.sql(), kPlant)->IdentNr, QStringLiteral("P-100"));
        p.clear();
        p.answer(Answer::No).answer(Answer::Yes);
        QCOMPARE(StammdatenSpeichern(s, kPlant, in).focus, QStringLiteral("txtIdentNr"));
        QVERIFY(StammdatenSpeichern(s, kPlant, in).ok);
        QCOMPARE(p.texts(), (QStringList{msgAskEmpty, msgAskEmpty}));
        const Node n = *loadNode(d.sql(), kPlant);
        QCOMPARE(n.Typ, QString(50, QLatin1Char('t')));
        QCOMPARE(n.BezugsWoche, QStringLiteral("07"));
        QCOMPARE(n.KeineWartungWocheBis2, QStringLiteral("3"));
        QVERIFY(n.IdentNr.isEmpty());
    }

    // On a Standard the question about weeks comes before the refused IdentNr.
    void standardAsksAboutWeeksFirst()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), kStandard);
        in.IdentNr = QStringLiteral("S-1");
        in.WocheVon1 = QStringLiteral("10");
        ScriptedPresenter p;
        p.answer(Answer::Ok);
        const StammdatenErgebnis r = StammdatenSpeichern(s, kStandard, in);
        QCOMPARE(r.focus, QStringLiteral("txtIdentNr"));
        QCOMPARE(p.texts(), (QStringList{msgAskWeeks, msgStandardIdent}));
        QVERIFY(loadNode(d.sql(), kStandard)->IdentNr.isEmpty());
    }

    // A valid entry writes every field; quotes and wildcards are plain text.
    void writesTheRow()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        addRepairOrder(d.sql(), QStringLiteral("P-100"), QStringLiteral("00001"));
        MasterDataInput in = inputOf(d.sql(), kPlant);
        in.Benennung = QStringLiteral("Pumpe 'Nord' 100%_x");
        in.BezugsJahr = QStringLiteral("16");
        in.BezugsWoche = QStringLiteral("3");
        in.Hersteller = QStringLiteral("O'Neil");
        in.Option2 = QStringLiteral("50%");
        in.KeineWartung = true;
        in.WocheVon1 = QStringLiteral("50");
        in.WocheBis1 = QStringLiteral("02");   // across the year end
        ScriptedPresenter p;
        const StammdatenErgebnis r = StammdatenSpeichern(s, kPlant, in);
        QVERIFY(r.ok);
        QVERIFY(p.texts().isEmpty());
        const Node n = *loadNode(d.sql(), kPlant);
        QCOMPARE(n.Text, QStringLiteral("Pumpe 'Nord' 100%_x"));
        QCOMPARE(n.BezugsJahr, QStringLiteral("0016"));
        QCOMPARE(n.BezugsWoche, QStringLiteral("03"));
        QCOMPARE(n.Hersteller, QStringLiteral("O'Neil"));
        QCOMPARE(n.Option2, QStringLiteral("50%"));
        QCOMPARE(n.IdentNr, QStringLiteral("P-100"));   // its own number is no duplicate
        QCOMPARE(n.KeineWartung, QStringLiteral("J"));
        QCOMPARE(n.KeineWartungWocheVon1, QStringLiteral("50"));
        QCOMPARE(n.KeineWartungWocheBis1, QStringLiteral("02"));
        QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung"), QStringLiteral("IdentNr = 'P-100'")), 1);
    }

    void weeksWithoutKeineWartungAreDroppedOnOk()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), kPlant);
        in.WocheVon1 = QStringLiteral("10");
        in.WocheBis1 = QStringLiteral("12");
        ScriptedPresenter p;
        p.answer(Answer::Ok);
        QVERIFY(StammdatenSpeichern(s, kPlant, in).ok);
        QCOMPARE(p.texts(), QStringList{msgAskWeeks});
        QCOMPARE(p.lastStyle(), Style::OkCancel);
        QVERIFY(in.WocheVon1.isEmpty() && in.WocheBis1.isEmpty());
        const Node n = *loadNode(d.sql(), kPlant);
        QCOMPARE(n.KeineWartung, QStringLiteral("N"));
        QVERIFY(n.KeineWartungWocheVon1.isEmpty());
    }

    // A Standard needs no reference week; an installation is written without question on IdentNr.
    void standardsAndInstallations()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        session(s);
        ScriptedPresenter p;
        MasterDataInput in = inputOf(d.sql(), kStandard);
        in.BezugsJahr.clear();
        in.BezugsWoche = QStringLiteral("77");
        QVERIFY(StammdatenSpeichern(s, kStandard, in).ok);
        QCOMPARE(loadNode(d.sql(), kStandard)->BezugsWoche, QStringLiteral("77"));
        MasterDataInput h = inputOf(d.sql(), kHalle);
        QVERIFY(StammdatenSpeichern(s, kHalle, h).ok);
        QVERIFY(p.texts().isEmpty());
    }

    // The repair orders follow a changed number; a removed number takes them with it.
    void repairOrdersFollowTheIdentNr_data()
    {
        QTest::addColumn<QString>("oldNr");
        QTest::addColumn<QString>("newNr");
        QTest::addColumn<int>("ordersOld");
        QTest::addColumn<int>("ordersNew");
        QTest::newRow("changed") << "P-100" << "P-101" << 0 << 2;
        QTest::newRow("blanked") << "P-100" << "" << 0 << 0;
        QTest::newRow("unchanged") << "P-100" << "P-100" << 2 << 2;
        // orders left behind under a number the component doesn't have are not taken over
        QTest::newRow("first number") << "" << "P-100" << 2 << 2;
    }
    void repairOrdersFollowTheIdentNr()
    {
        QFETCH(QString, oldNr);
        QFETCH(QString, newNr);
        QFETCH(int, ordersOld);
        QFETCH(int, ordersNew);
        TempData d;
        addPlant(d.sql());
        exec(d.sql(), QStringLiteral("UPDATE ProtokollKopf SET IdentNr = ? WHERE FileIndex = ?"), {oldNr, kPlant});
        addRepairOrder(d.sql(), QStringLiteral("P-100"), QStringLiteral("00001"));
        addRepairOrder(d.sql(), QStringLiteral("P-100"), QStringLiteral("00002"));
        addRepairOrder(d.sql(), QStringLiteral("P-200"), QStringLiteral("00001"));
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), kPlant);
        in.IdentNr = newNr;
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        QVERIFY(StammdatenSpeichern(s, kPlant, in).ok);
        QCOMPARE(loadNode(d.sql(), kPlant)->IdentNr, newNr);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung"), QStringLiteral("IdentNr = 'P-100'")), ordersOld);
        if (!newNr.isEmpty())
            QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung"), QStringLiteral("IdentNr = ?"), {newNr}), ordersNew);
        else
            QCOMPARE(p.texts(), QStringList{msgAskEmpty});
        QCOMPARE(countRows(d.sql(), QStringLiteral("Erfassung"), QStringLiteral("IdentNr = 'P-200'")), 1);
    }

    // A fault in the write of the repair orders leaves the row as it was.
    void faultLeavesTheRowAsBefore()
    {
        TempData d;
        addPlant(d.sql());
        exec(d.sql(), QStringLiteral("DROP TABLE Erfassung"));
        Session s(d.db());
        session(s);
        MasterDataInput in = inputOf(d.sql(), kPlant);
        in.IdentNr = QStringLiteral("P-101");
        in.Typ = QStringLiteral("Etaline");
        ScriptedPresenter p;
        const StammdatenErgebnis r = StammdatenSpeichern(s, kPlant, in);
        QVERIFY(!r.ok);
        QCOMPARE(p.lastStyle(), Style::Critical);
        QVERIFY(p.lastText().contains(QLatin1String("3078")));
        QCOMPARE(loadNode(d.sql(), kPlant)->IdentNr, QStringLiteral("P-100"));
        QVERIFY(loadNode(d.sql(), kPlant)->Typ.isEmpty());
    }

    void cancelRemovesOnlyANewNode()
    {
        TempData d;
        addPlant(d.sql());
        exec(d.sql(), QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text) VALUES (?, '000010', '0000', 'Kopf')"),
             {kOther});
        Session s(d.db());
        session(s);
        ScriptedPresenter p;
        StammdatenAbbrechen(s, kPlant, true);
        QVERIFY(loadNode(d.sql(), kPlant));
        StammdatenAbbrechen(s, kOther, false);
        QVERIFY(!loadNode(d.sql(), kOther));
        QCOMPARE(countRows(d.sql(), QStringLiteral("ProtokollPositionen"), QStringLiteral("TeNummer = ?"), {kOther}), 0);
        QVERIFY(p.texts().isEmpty());
    }

    // What the dialog shows when it opens.
    void dialogValues()
    {
        TempData d;
        addPlant(d.sql());
        exec(d.sql(), QStringLiteral("UPDATE ProtokollKopf SET BezugsJahr = '', BezugsWoche = '', KeineWartung = 'J',"
                                     " KeineWartungWocheVon1 = '10' WHERE FileIndex = ?"), {kPlant});
        const MasterDataInput existing = stammdatenFuerDialog(d.sql(), kPlant, true, std::nullopt, 2016);
        QCOMPARE(existing.Benennung, QStringLiteral("Pumpe 1"));
        QCOMPARE(existing.BezugsJahr, QStringLiteral("2016"));
        QCOMPARE(existing.BezugsWoche, QStringLiteral("01"));
        QCOMPARE(existing.IdentNr, QStringLiteral("P-100"));
        QVERIFY(existing.KeineWartung);
        QCOMPARE(existing.WocheVon1, QStringLiteral("10"));
        const MasterDataInput fresh = stammdatenFuerDialog(d.sql(), kPlant, false, QStringLiteral("File(3)"), 2016);
        QCOMPARE(fresh.Benennung, QStringLiteral("File(3)"));
        QVERIFY(fresh.IdentNr.isEmpty());
        QVERIFY(stammdatenFuerDialog(d.sql(), kPlant, false, std::nullopt, 2016).Benennung.isEmpty());
    }

    void comboSources()
    {
        TempData d;
        addPlant(d.sql());
        add(d.sql(), QStringLiteral("0000000005"), FileTypFile, QStringLiteral("1"), QStringLiteral("Armatur"));
        add(d.sql(), QStringLiteral("0000000006"), FileTypFile, QStringLiteral("1"), QStringLiteral("Armatur"));
        exec(d.sql(), QStringLiteral("UPDATE ProtokollKopf SET Hersteller = 'KSB' WHERE FileTyp = 'F'"));
        exec(d.sql(), QStringLiteral("UPDATE ProtokollKopf SET Hersteller = 'Wilo' WHERE FileIndex = ?"), {kOther});
        exec(d.sql(), QStringLiteral("UPDATE ProtokollKopf SET Hersteller = 'Aaa' WHERE FileIndex = ?"), {kHalle});
        QCOMPARE(benennungAuswahl(d.sql()), (QStringList{"Armatur", "Kreiselpumpe"}));
        QCOMPARE(stammdatenAuswahl(d.sql(), QStringLiteral("Hersteller")), (QStringList{"KSB", "Wilo"}));
        exec(d.sql(), QStringLiteral("INSERT INTO Hersteller (FileIndex, FileAbove, FileTyp, Text) VALUES"
                                     " ('0000000001', 'ROOT', 'O', 'Ordner'), ('0000000002', '0000000001', 'F', 'Grundfos')"));
        QCOMPARE(katalogEintraege(d.sql(), QStringLiteral("Hersteller")), QStringList{"Grundfos"});
        QVERIFY(katalogEintraege(d.sql(), QStringLiteral("ProtokollKopf")).isEmpty());
    }

    void weekBoxOnLeaving_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<QString>("shown");
        QTest::newRow("empty") << "" << false << "";
        QTest::newRow("52") << "52" << false << "52";
        QTest::newRow("01") << "01" << false << "01";
        QTest::newRow("5 is padded") << "5" << false << "05";
        QTest::newRow("53") << "53" << true << "";
        QTest::newRow("0") << "0" << true << "";
        QTest::newRow("00") << "00" << true << "";
        QTest::newRow("6 compares above 52") << "6" << true << "";
        QTest::newRow("letters") << "ab" << true << "";
    }
    void weekBoxOnLeaving()
    {
        QFETCH(QString, typed);
        QFETCH(bool, refused);
        QFETCH(QString, shown);
        ScriptedPresenter p;
        const std::optional<QString> r = WocheVerlassen(typed);
        QCOMPARE(!r.has_value(), refused);
        if (refused) {
            QCOMPARE(p.texts(), QStringList{"Die Woche muss >= 1 und <= 52 sein"});
            QCOMPARE(p.lastStyle(), Style::Exclamation);
        } else {
            QCOMPARE(*r, shown);
            QVERIFY(p.texts().isEmpty());
        }
    }

    void yearKeyFilter()
    {
        for (char c = '0'; c <= '9'; ++c)
            QVERIFY(BezugsJahrNimmtTaste(c));
        QVERIFY(BezugsJahrNimmtTaste(8));
        for (int c : {int('a'), int(' '), int('-'), int(','), int('/'), int(':'), 0xE4})
            QVERIFY2(!BezugsJahrNimmtTaste(c), qPrintable(QString::number(c)));
    }
};

QTEST_GUILESS_MAIN(TestMasterData)
#include "tst_masterdata.moc"
