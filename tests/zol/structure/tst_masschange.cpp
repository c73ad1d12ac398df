#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/structure/MassChange.h"
#include "zol/structure/Node.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;

namespace {
const QString kA = QStringLiteral("0000000001");
const QString kB = QStringLiteral("0000000002");
const QString kStd = QStringLiteral("0000000003");
const QString msgAsk = QStringLiteral("Wollen Sie diese Änderungen jetzt wirklich an allen ausgewählten Objekten durchführen?");

void add(const QSqlDatabase &db, const QString &key, const QString &katalog, const QString &text, const QString &identNr)
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = katalog == QLatin1String("1") ? RootKatalo : RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = katalog;
    n.Text = text;
    n.IdentNr = identNr;
    n.BezugsJahr = QStringLiteral("2015");
    n.BezugsWoche = QStringLiteral("07");
    n.Hersteller = QStringLiteral("KSB");
    n.Typ = QStringLiteral("Etanorm");
    n.KeineWartung = QStringLiteral("J");
    n.KeineWartungWocheVon1 = QStringLiteral("30");
    n.KeineWartungWocheBis1 = QStringLiteral("32");
    saveNode(db, n);
}

void addPlant(const QSqlDatabase &db)
{
    add(db, kA, QStringLiteral("0"), QStringLiteral("Pumpe 1"), QStringLiteral("P-1"));
    add(db, kB, QStringLiteral("0"), QStringLiteral("Pumpe 2"), QStringLiteral("P-2"));
    add(db, kStd, QStringLiteral("1"), QStringLiteral("Kreiselpumpe"), QString());
}

void login(Session &s, const QString &level)
{
    s.login().UserName = QStringLiteral("Hans");
    s.login().Level = level;
    s.login().LoginSucceeded = true;
}
}

class TestMassChange : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // One field filled: it changes on every entry the role may change, the
    // other fields stay, the maintenance-free weeks go; refused entries are
    // skipped without a word.
    void writesTheSelectedEntries_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QStringList>("changed");
        QTest::newRow("Administrator") << "Administrator" << QStringList{kA, kB, kStd};
        QTest::newRow("Master") << "Master" << QStringList{kA, kB, kStd};
        QTest::newRow("Benutzer") << "User" << QStringList{kA, kB};
        QTest::newRow("Auswerter") << "Auswerter" << QStringList{};
        QTest::newRow("Werker") << "Werker" << QStringList{};
    }
    void writesTheSelectedEntries()
    {
        QFETCH(QString, level);
        QFETCH(QStringList, changed);
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        login(s, level);
        MassChangeInput in;
        in.Hersteller = QStringLiteral("Wilo's 100%");
        in.Typ = QStringLiteral("   ");
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        const MassChangeResult r = MassenAenderung(s, {kA, QStringLiteral("0000000099"), kStd, kB}, in);
        QVERIFY(r.done);
        QCOMPARE(p.texts(), QStringList{msgAsk});
        QStringList expected;
        for (const QString &k : {kA, kStd, kB})
            if (changed.contains(k))
                expected << k;
        QCOMPARE(r.changed, expected);
        for (const QString &k : {kA, kB, kStd}) {
            const Node n = *loadNode(d.sql(), k);
            const bool c = changed.contains(k);
            QCOMPARE(n.Hersteller, c ? QStringLiteral("Wilo's 100%") : QStringLiteral("KSB"));
            QCOMPARE(n.Typ, QStringLiteral("Etanorm"));
            QCOMPARE(n.BezugsJahr, QStringLiteral("2015"));
            QCOMPARE(n.BezugsWoche, QStringLiteral("07"));
            QCOMPARE(n.KeineWartung, c ? QStringLiteral("N") : QStringLiteral("J"));
            QCOMPARE(n.KeineWartungWocheVon1, c ? QString() : QStringLiteral("30"));
        }
        QCOMPARE(loadNode(d.sql(), kA)->Text, QStringLiteral("Pumpe 1"));
        QCOMPARE(loadNode(d.sql(), kA)->IdentNr, QStringLiteral("P-1"));
        QCOMPARE(loadNode(d.sql(), kB)->Text, QStringLiteral("Pumpe 2"));
        QCOMPARE(loadNode(d.sql(), kB)->IdentNr, QStringLiteral("P-2"));
    }

    void keineWartungAndReferenceWeek()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        login(s, QStringLiteral("Master"));
        MassChangeInput in;
        in.BezugsJahr = QStringLiteral("17");
        in.BezugsWoche = QStringLiteral("4");
        in.KeineWartung = true;
        in.WocheVon2 = QStringLiteral("51");
        in.WocheBis2 = QStringLiteral("02");
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        QVERIFY(MassenAenderung(s, {kA, kB}, in).done);
        for (const QString &k : {kA, kB}) {
            const Node n = *loadNode(d.sql(), k);
            QCOMPARE(n.BezugsJahr, QStringLiteral("0017"));
            QCOMPARE(n.BezugsWoche, QStringLiteral("04"));
            QCOMPARE(n.KeineWartung, QStringLiteral("J"));
            QVERIFY(n.KeineWartungWocheVon1.isEmpty());
            QCOMPARE(n.KeineWartungWocheVon2, QStringLiteral("51"));
            QCOMPARE(n.KeineWartungWocheBis2, QStringLiteral("02"));
        }
    }

    void refusalsAndNo_data()
    {
        QTest::addColumn<QString>("week");
        QTest::addColumn<bool>("keineWartung");
        QTest::addColumn<QString>("von1");
        QTest::addColumn<QString>("bis2");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("focus");
        QTest::newRow("No") << "53" << false << "" << "" << int(Answer::No) << QStringList{msgAsk} << "";
        QTest::newRow("week 53") << "53" << false << "" << "" << int(Answer::Yes)
                                 << QStringList{msgAsk, "Als Wochenzahl sind nur 1 bis 52 zulässig"} << "txtBezugsWoche";
        QTest::newRow("week 0") << "0" << false << "" << "" << int(Answer::Yes)
                                << QStringList{msgAsk, "Als Wochenzahl sind nur 1 bis 52 zulässig"} << "txtBezugsWoche";
        QTest::newRow("no weeks") << "" << true << "" << "" << int(Answer::Yes)
                                  << QStringList{msgAsk, "Bitte ein Wochenintervall eingeben, wenn Sie 'Keine Wartung' definieren wollen"}
                                  << "txtWocheVon1";
        QTest::newRow("period 1 open") << "" << true << "10" << "" << int(Answer::Yes)
                                       << QStringList{msgAsk, "Das Wochenintervall ist nicht plausibel"} << "txtWocheVon1";
    }
    void refusalsAndNo()
    {
        QFETCH(QString, week);
        QFETCH(bool, keineWartung);
        QFETCH(QString, von1);
        QFETCH(QString, bis2);
        QFETCH(int, answer);
        QFETCH(QStringList, messages);
        QFETCH(QString, focus);
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        login(s, QStringLiteral("Administrator"));
        MassChangeInput in;
        in.Hersteller = QStringLiteral("Wilo");
        in.BezugsWoche = week;
        in.KeineWartung = keineWartung;
        in.WocheVon1 = von1;
        in.WocheBis2 = bis2;
        ScriptedPresenter p;
        p.answer(answer);
        const MassChangeResult r = MassenAenderung(s, {kA, kB}, in);
        QVERIFY(!r.done);
        QCOMPARE(r.focus, focus);
        QCOMPARE(p.texts(), messages);
        QCOMPARE(loadNode(d.sql(), kA)->Hersteller, QStringLiteral("KSB"));
        QCOMPARE(loadNode(d.sql(), kA)->KeineWartungWocheVon1, QStringLiteral("30"));
    }

    // Weeks typed without "Keine Wartung": told, emptied, and the change goes on.
    void weeksWithoutKeineWartungAreDropped()
    {
        TempData d;
        addPlant(d.sql());
        Session s(d.db());
        login(s, QStringLiteral("Administrator"));
        MassChangeInput in;
        in.WocheVon1 = QStringLiteral("10");
        in.WocheBis1 = QStringLiteral("12");
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        QVERIFY(MassenAenderung(s, {kA}, in).done);
        QCOMPARE(p.texts(), (QStringList{msgAsk, "Sie haben ein Wochenintervall eingegeben, ohne 'Keine Wartung' markiert zu haben"}));
        QVERIFY(in.WocheVon1.isEmpty());
        QCOMPARE(loadNode(d.sql(), kA)->KeineWartung, QStringLiteral("N"));
        QVERIFY(loadNode(d.sql(), kA)->KeineWartungWocheVon1.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestMassChange)
#include "tst_masschange.moc"
