#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanCommand.h"
#include "zol/planning/PlanningRun.h"
#include "zol/structure/Node.h"
#include <QSqlRecord>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {

struct Comp {
    QString key;
    QString bezugsjahr = QStringLiteral("2015");
    QString bezugsWoche = QStringLiteral("01");
    QString katalog = QStringLiteral("0");
    QString kw = QStringLiteral("N"), von1 = {}, bis1 = {};
    QString text = QStringLiteral("Pumpe");
};

void addComponent(const QSqlDatabase &db, const Comp &c)
{
    Node n;
    n.FileIndex = c.key;
    n.FileAbove = RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = c.katalog;
    n.Text = c.text;
    n.BezugsJahr = c.bezugsjahr;
    n.BezugsWoche = c.bezugsWoche;
    n.Kostenstelle = QStringLiteral("4711");
    n.Lokalisierung = QStringLiteral("Halle 1");
    n.WIVerantwortlicher = QStringLiteral("Meier");
    n.Option1 = QStringLiteral("Laufweg 3");
    n.KeineWartung = c.kw;
    n.KeineWartungWocheVon1 = c.von1;
    n.KeineWartungWocheBis1 = c.bis1;
    saveNode(db, n);
}

void addPosition(const QSqlDatabase &db, const QString &te, const QString &objekt, const QString &anweisung,
                 const QString &intervall, const QString &typ, const QString &text = QStringLiteral("Prüfen"),
                 const QString &planzeit = QStringLiteral("1,5"))
{
    exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender,"
                            " Betriebszustand, AnzahlPersonen, Sicherheitshinweis, Intervall, Planzeit, Materialcode,"
                            " Materialmenge, Intervalltyp) VALUES (?,?,?,?,'Elektro','R','2','Freischalten',?,?,"
                            "'Fett K2','0,25',?)"),
         {te, objekt, anweisung, text, intervall, planzeit, typ});
}

QString key(int n) { return QStringLiteral("%1").arg(n, 10, 10, QLatin1Char('0')); }

// Every row of Auftrag with every field, in stored order: equal dumps mean an untouched table.
QString dumpAuftrag(const QSqlDatabase &db)
{
    QStringList out;
    QSqlQuery q = exec(db, QStringLiteral("SELECT rowid, * FROM Auftrag ORDER BY rowid"));
    while (q.next()) {
        QStringList row;
        for (int i = 0; i < q.record().count(); ++i)
            row << q.value(i).toString();
        out << row.join(QLatin1Char('|'));
    }
    return out.join(QLatin1Char('\n'));
}

// An old plan of week 10/2016 with a row that has feedback.
void addOldPlan(const QSqlDatabase &db, const QString &woche = QStringLiteral("10"))
{
    exec(db, QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, \"Rückmeldung\", Befund,"
                            " KeineWartung) VALUES ('0000009999', '2016', ?, '000010', '0010', 'J', 'R', 'N')"),
         {woche});
}

Session *makeSession(TempData &d, const QString &level, const QString &gewerk = {})
{
    auto *s = new Session(d.db());
    s->login().UserName = QStringLiteral("Admin");
    s->login().Level = level;
    s->login().WerkerGewerk = gewerk;
    s->login().LoginSucceeded = true;
    return s;
}

const QString askLong10 = QStringLiteral(
    "Wollen Sie die Planung der langfristigen Aufträge für die Woche 10 im Jahr 2016 jetzt wirklich durchführen?");
const QString askOverwrite10 =
    QStringLiteral("Wollen Sie die Planung der Woche 10 im Jahr 2016 neu durchführen und die alte Planung überschreiben?");

}   // namespace

class TestPlanningRun : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Checks, questions and refusals in their order; nothing is written by any of them.
    void refusalsAndQuestions_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("jahr");
        QTest::addColumn<QString>("woche");
        QTest::addColumn<bool>("oldPlan");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("outcome");
        QTest::addColumn<int>("focus");
        const int refused = int(PlanResult::Outcome::Refused), declined = int(PlanResult::Outcome::Declined);
        const int none = int(PlanResult::Focus::None), jahr = int(PlanResult::Focus::Jahr),
                  woche = int(PlanResult::Focus::Woche);
        QTest::newRow("Auswerter stops silently") << "Auswerter" << "2016" << "10" << false << QList<int>{}
                                                   << QStringList{} << refused << none;
        QTest::newRow("empty year") << "Administrator" << " " << "10" << false << QList<int>{}
                                    << QStringList{"Bitte Jahr eingeben"} << refused << jahr;
        QTest::newRow("empty week") << "Administrator" << "2016" << "" << false << QList<int>{}
                                    << QStringList{"Bitte Woche eingeben"} << refused << woche;
        QTest::newRow("week 53") << "Administrator" << "2016" << "53" << false << QList<int>{}
                                 << QStringList{"Nur Werte von 00 bis 52 sind als Wochenzahl zulässig"} << refused
                                 << woche;
        QTest::newRow("No to the first question") << "Administrator" << "2016" << "10" << false
                                                  << QList<int>{Answer::No} << QStringList{askLong10} << declined
                                                  << none;
        QTest::newRow("short-term question") << "Master" << "16" << "0" << false << QList<int>{Answer::No}
                                             << QStringList{"Wollen Sie die Planung der kurzfristigen Aufträge für "
                                                            "das Jahr 0016 jetzt wirklich durchführen?"}
                                             << declined << none;
        QTest::newRow("No to overwriting") << "Administrator" << "2016" << "10" << true
                                           << QList<int>{Answer::Yes, Answer::No}
                                           << QStringList{askLong10, askOverwrite10} << declined << none;
        QTest::newRow("Werker may not plan a planned week")
            << "Werker" << "2016" << "10" << true << QList<int>{Answer::Yes}
            << QStringList{askLong10, "Als Werker dürfen Sie nicht eine bereits geplante Woche noch einmal planen"}
            << refused << none;
    }
    void refusalsAndQuestions()
    {
        QFETCH(QString, level);
        QFETCH(QString, jahr);
        QFETCH(QString, woche);
        QFETCH(bool, oldPlan);
        QFETCH(QList<int>, answers);
        QFETCH(QStringList, texts);
        QFETCH(int, outcome);
        QFETCH(int, focus);
        TempData d;
        addComponent(d.sql(), {key(1)});
        addPosition(d.sql(), key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));
        addPosition(d.sql(), key(1), QStringLiteral("000010"), QStringLiteral("0020"), QStringLiteral("1T"),
                    QStringLiteral("K"));
        if (oldPlan)
            addOldPlan(d.sql());
        const QString before = dumpAuftrag(d.sql());
        std::unique_ptr<Session> s(makeSession(d, level, QStringLiteral("Elektro")));
        ScriptedPresenter p;
        for (int a : answers)
            p.answer(a);
        PlanningRun run(*s);
        const PlanResult r = run.run(jahr, woche);
        QCOMPARE(p.texts(), texts);
        for (const auto &shown : p.shown())
            QCOMPARE(shown.style, shown.text.startsWith(QLatin1String("Wollen")) ? Style::YesNo : Style::Exclamation);
        QCOMPARE(int(r.outcome), outcome);
        QCOMPARE(int(r.focus), focus);
        QCOMPARE(dumpAuftrag(d.sql()), before);
    }

    // A long-term week: every field from its source; what is not planned stays out.
    void plansEveryField()
    {
        TempData d;
        const QSqlDatabase db = d.sql();
        Comp c{key(1)};
        c.text = QStringLiteral("Pumpe 'Süd'");
        addComponent(db, c);
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0000"), QString(), QStringLiteral("L"),
                    QStringLiteral("Motor"));   // head row
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"), QStringLiteral("Lager 'A' prüfen"));
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0020"), QStringLiteral("ZZ"),
                    QStringLiteral("L"));   // unknown code: skipped silently
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0030"), QString(), QStringLiteral("L"));
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0040"), QStringLiteral("1T"),
                    QStringLiteral("K"));   // short-term: not in a week run
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0050"), QStringLiteral("2W"),
                    QStringLiteral("L"));   // d = 9: not due in week 10
        addPosition(db, key(1), QStringLiteral("000020"), QStringLiteral("0010"), QStringLiteral("1w"),
                    QStringLiteral("L"), QStringLiteral("Klemmen"), QStringLiteral(""));   // lower-case code, empty time
        exec(db, QStringLiteral("UPDATE ProtokollPositionen SET Betriebszustand = 'r' WHERE Objekt = '000020'"));
        addComponent(db, {key(2), QStringLiteral("2015"), QStringLiteral("01"), QStringLiteral("1")});   // Standards
        addPosition(db, key(2), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));
        addComponent(db, {key(3), QStringLiteral("2017")});   // reference year not reached
        addPosition(db, key(3), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));

        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        PlanningRun run(*s);
        QStringList status;
        QList<QPair<int, int>> progress;
        run.onStatus = [&](const QString &t) { status << t; };
        run.onProgress = [&](int done, int total) { progress << qMakePair(done, total); };
        const PlanResult r = run.run(QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Planned));
        QCOMPARE(p.texts(), QStringList{askLong10});
        QCOMPARE(r.count, 2);
        QCOMPARE(status, (QStringList{QString(), QStringLiteral("Woche 10/2016 wird geplant"),
                                      QStringLiteral("2 langfristige Aufträge geplant. Warte auf Eingaben")}));
        QVERIFY(progress.size() >= 2);
        QCOMPARE(progress.last().first, 0);

        QCOMPARE(countRows(db, QStringLiteral("Auftrag")), 2);
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Objekt = '000020' AND Intervall = '1w'"
                                                                         " AND BetriebszustandXL = 'Z' AND PlanZeit = 0")), 1);
        QSqlQuery q = exec(db, QStringLiteral("SELECT * FROM Auftrag WHERE Objekt = '000010'"));
        QVERIFY(q.next());
        const QList<QPair<QString, QVariant>> expected{
            {"TeIndex", key(1)}, {"Jahr", "2016"}, {"Woche", "10"}, {"Objekt", "000010"}, {"Anweisung", "0010"},
            {"WIVerantwortlicher", "Meier"}, {"Ausfuehrender", "Elektro"}, {"Kostenstelle", "4711"},
            {"Lokalisierung", "Halle 1"}, {"Option1", "Laufweg 3"}, {"KompBezeichnung", "Pumpe 'Süd'"},
            {"Betriebszustand", "R"}, {"BetriebszustandXL", "R"}, {"PlanZeit", 1.5}, {"Materialcode", "Fett K2"},
            {"Materialmenge", 0.25}, {"Bemerkung", ""}, {"Text", "Lager 'A' prüfen"}, {"Rückmeldung", "N"},
            {"Befund", ""}, {"Verbal", ""}, {"Intervall", "1W"},
            {"Datum", QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"))}, {"AnzahlPersonen", 2},
            {"SicherheitsHinweis", "Freischalten"}, {"IntervallTyp", "L"}, {"KeineWartung", "N"}};
        for (const auto &[field, value] : expected)
            QCOMPARE(q.value(field), value);
        QCOMPARE(q.value(QStringLiteral("PlanZeit")).typeId(), QMetaType::Double);
        QCOMPARE(q.value(QStringLiteral("AnzahlPersonen")).typeId(), QMetaType::LongLong);
    }

    // The edges of the year through the whole run: a component's own reference
    // year and week, the calendar's last week, the turn of the year.
    void dueAtTheEdges_data()
    {
        QTest::addColumn<QString>("bezugsjahr");
        QTest::addColumn<QString>("bezugsWoche");
        QTest::addColumn<QString>("intervall");
        QTest::addColumn<QString>("woche");
        QTest::addColumn<bool>("planned");
        QTest::newRow("in its reference week") << "2016" << "10" << "1W" << "10" << true;
        QTest::newRow("a week before its reference week") << "2016" << "10" << "1W" << "09" << false;
        QTest::newRow("reference year not reached") << "2017" << "01" << "1W" << "52" << false;
        QTest::newRow("calendar code due in week 52") << "2016" << "35" << "4M" << "52" << true;
        QTest::newRow("calendar code not due in week 51") << "2016" << "35" << "4M" << "51" << false;
        QTest::newRow("calendar row of reference week 52") << "2016" << "52" << "4M" << "52" << true;
        QTest::newRow("short-term in its reference year") << "2016" << "30" << "1T" << "00" << true;
        QTest::newRow("short-term before its reference year") << "2017" << "01" << "1T" << "00" << false;
    }
    void dueAtTheEdges()
    {
        QFETCH(QString, bezugsjahr);
        QFETCH(QString, bezugsWoche);
        QFETCH(QString, intervall);
        QFETCH(QString, woche);
        QFETCH(bool, planned);
        TempData d;
        addComponent(d.sql(), {key(1), bezugsjahr, bezugsWoche});
        addPosition(d.sql(), key(1), QStringLiteral("000010"), QStringLiteral("0010"), intervall,
                    intervall == QLatin1String("1T") ? QStringLiteral("K") : QStringLiteral("L"));
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        const PlanResult r = PlanningRun(*s).run(QStringLiteral("2016"), woche);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag"), QStringLiteral("TeIndex = ? AND Jahr = '2016' AND Woche = ?"),
                           {key(1), woche}),
                 planned ? 1 : 0);
        if (planned) {
            QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Planned));
            QCOMPARE(r.count, 1);
        }
    }

    // Week 00: every short-term instruction, maintenance-free rows written, marked and counted.
    void shortTermWithMaintenanceFree()
    {
        TempData d;
        const QSqlDatabase db = d.sql();
        Comp free{key(1)};
        free.kw = QStringLiteral("J");
        free.von1 = QStringLiteral("50");
        free.bis1 = QStringLiteral("02");
        addComponent(db, free);
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1T"),
                    QStringLiteral("K"));
        addComponent(db, {key(2)});
        addPosition(db, key(2), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("WT"),
                    QStringLiteral("K"));
        addPosition(db, key(2), QStringLiteral("000010"), QStringLiteral("0020"), QStringLiteral("XY"),
                    QStringLiteral("K"));   // unknown code, short-term too
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Werker"), QStringLiteral("Mechanik")));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        PlanningRun run(*s);
        QString last;
        run.onStatus = [&](const QString &t) { last = t; };
        const PlanResult r = run.run(QStringLiteral("2016"), QStringLiteral("0"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Planned));
        QCOMPARE(r.woche, QStringLiteral("00"));
        QCOMPARE(r.count, 2);
        QCOMPARE(last, QStringLiteral("2 kurzfristige Aufträge geplant. Warte auf Eingaben"));
        // A Werker plans an unplanned week for all trades.
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Woche = '00' AND Ausfuehrender = 'Elektro'")), 2);
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("TeIndex = ? AND KeineWartung = 'J'"), {key(1)}), 1);
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("TeIndex = ? AND KeineWartung = 'N'"), {key(2)}), 1);
    }

    void overwriteReplacesWeekWithFeedback()
    {
        TempData d;
        const QSqlDatabase db = d.sql();
        addComponent(db, {key(1)});
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));
        addOldPlan(db);
        addOldPlan(db, QStringLiteral("11"));
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Master")));
        ScriptedPresenter p;
        p.answer(Answer::Yes).answer(Answer::Yes);
        const PlanResult r = PlanningRun(*s).run(QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Planned));
        QCOMPARE(p.texts(), (QStringList{askLong10, askOverwrite10}));
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Woche = '10'")), 1);
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Woche = '10' AND TeIndex = ?"), {key(1)}), 1);
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Woche = '11'")), 1);   // other weeks stay
    }

    // Keys are whatever an import brought in: every due component is planned,
    // whichever order its key takes among the others and whatever the case of
    // the instruction's copy of it.
    void plansEveryKey_data()
    {
        QTest::addColumn<QStringList>("componentKeys");
        QTest::addColumn<QStringList>("positionKeys");
        const QString fullWidthA = QString::fromUtf8("\uFF21");    // last plane-0 block, UTF-8 EF BC A1
        const QString emoji = QString::fromUtf8("\U0001F600");   // surrogate pair, UTF-8 F0 9F 98 80
        const QString privateUse = QString::fromUtf8("\uE000");
        const QString plane1 = QString::fromUtf8("\U00010000");
        QTest::newRow("above the basic plane after U+FFxx")
            << QStringList{fullWidthA + "000000001", emoji + "00000002", key(3)}
            << QStringList{fullWidthA + "000000001", emoji + "00000002", key(3)};
        QTest::newRow("above the basic plane after U+E000")
            << QStringList{"K" + plane1 + "0000001", "K" + privateUse + "0000002", "K" + plane1 + "0000003"}
            << QStringList{"K" + plane1 + "0000001", "K" + privateUse + "0000002", "K" + plane1 + "0000003"};
        QTest::newRow("umlauts and case")
            << QStringList{"Ä000000001", "ä000000002", "abc0000003", "[000000004"}
            << QStringList{"Ä000000001", "ä000000002", "ABC0000003", "[000000004"};
    }
    void plansEveryKey()
    {
        QFETCH(QStringList, componentKeys);
        QFETCH(QStringList, positionKeys);
        TempData d;
        const QSqlDatabase db = d.sql();
        for (int i = 0; i < componentKeys.size(); ++i) {
            addComponent(db, {componentKeys.at(i)});
            addPosition(db, positionKeys.at(i), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                        QStringLiteral("L"));
        }
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        const PlanResult r = PlanningRun(*s).run(QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Planned));
        QCOMPARE(r.count, positionKeys.size());
        for (const QString &k : positionKeys)
            QVERIFY2(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("TeIndex = ? COLLATE BINARY"), {k}) == 1,
                     qPrintable(k));
    }

    void noOrdersKeepsOldPlan()
    {
        TempData d;
        const QSqlDatabase db = d.sql();
        addComponent(db, {key(1), QStringLiteral("2015"), QStringLiteral("01"), QStringLiteral("1")});
        addPosition(db, key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));   // only a Standards component: nothing to plan
        addOldPlan(db);
        const QString before = dumpAuftrag(db);
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        const PlanResult r = PlanningRun(*s).run(QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Refused));
        QCOMPARE(p.texts(), (QStringList{askLong10, QStringLiteral("Es gibt keine Aufträge zu planen")}));
        QCOMPARE(p.lastStyle(), Style::Exclamation);
        QCOMPARE(dumpAuftrag(db), before);
    }

    // A fault halfway through leaves the old plan as it was, to the byte.
    void faultLeavesOldPlan_data()
    {
        QTest::addColumn<QString>("bezugsWoche");
        QTest::addColumn<QString>("intervall");
        QTest::addColumn<QString>("planzeit");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty reference week") << "" << "1W" << "1,0" << "Fehler Nummer: 13";
        QTest::newRow("distance 0 without IVA") << "01" << "0W" << "1,0" << "Fehler Nummer: 11";
        QTest::newRow("time is no number") << "01" << "1W" << "zwei" << "Fehler Nummer: 13";
    }
    void faultLeavesOldPlan()
    {
        QFETCH(QString, bezugsWoche);
        QFETCH(QString, intervall);
        QFETCH(QString, planzeit);
        QFETCH(QString, expected);
        TempData d;
        const QSqlDatabase db = d.sql();
        exec(db, QStringLiteral("INSERT INTO Intervalle (Intervall, Typ, Abstand) VALUES ('0W', 'L', 0)"));
        {
            Transaction tx(db);
            for (int i = 1; i <= 300; ++i) {
                addComponent(db, {key(i)});
                addPosition(db, key(i), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                            QStringLiteral("L"));
            }
            Comp bad{key(301)};
            bad.bezugsWoche = bezugsWoche;
            bad.text = QStringLiteral("Lüfter 'Nord'");
            addComponent(db, bad);
            addPosition(db, key(301), QStringLiteral("000010"), QStringLiteral("0010"), intervall, QStringLiteral("L"),
                        QStringLiteral("x"), planzeit);
            addComponent(db, {key(302)});
            addPosition(db, key(302), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                        QStringLiteral("L"));
            tx.commit();
        }
        addOldPlan(db);
        const QString before = dumpAuftrag(db);
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        p.answer(Answer::Yes).answer(Answer::Yes);
        PlanningRun run(*s);
        QString last = QStringLiteral("-");
        run.onStatus = [&](const QString &t) { last = t; };
        const PlanResult r = run.run(QStringLiteral("2016"), QStringLiteral("10"));
        QCOMPARE(int(r.outcome), int(PlanResult::Outcome::Fault));
        QCOMPARE(p.texts().size(), 3);
        QCOMPARE(p.lastStyle(), Style::Critical);
        QVERIFY2(p.lastText().startsWith(expected), qPrintable(p.lastText()));
        QVERIFY2(p.lastText().contains(key(301)) && p.lastText().contains(QStringLiteral("'Lüfter 'Nord''"))
                     && p.lastText().contains(QStringLiteral("Intervall '%1'").arg(intervall)),
                 qPrintable(p.lastText()));
        QCOMPARE(last, QString());
        QCOMPARE(dumpAuftrag(db), before);

        // Repaired, the week plans.
        exec(db, QStringLiteral("UPDATE ProtokollPositionen SET Intervall = '1W', Planzeit = '1,0' WHERE TeNummer = ?"),
             {key(301)});
        exec(db, QStringLiteral("UPDATE ProtokollKopf SET BezugsWoche = '01' WHERE FileIndex = ?"), {key(301)});
        p.answer(Answer::Yes).answer(Answer::Yes);
        QCOMPARE(int(run.run(QStringLiteral("2016"), QStringLiteral("10")).outcome), int(PlanResult::Outcome::Planned));
        QCOMPARE(countRows(db, QStringLiteral("Auftrag"), QStringLiteral("Woche = '10'")), 302);
    }

    // zol plan YEAR WEEK [--yes]: exit status, status line, questions answered by --yes.
    void planCommand_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("brokenInterval");
        QTest::addColumn<int>("exitStatus");
        QTest::addColumn<QString>("printed");
        QTest::addColumn<int>("messages");
        QTest::newRow("missing week") << QStringList{"2016"} << false << 2 << "" << 0;
        QTest::newRow("week not digits") << QStringList{"2016", "1a"} << false << 2 << "" << 0;
        QTest::newRow("year wider than its field") << QStringList{"20160", "10"} << false << 2 << "" << 0;
        QTest::newRow("empty week") << QStringList{"2016", ""} << false << 2 << "" << 0;
        QTest::newRow("Arabic-Indic year") << QStringList{QString::fromUtf8("٢٠١٦"), "10"} << false << 2 << "" << 0;
        QTest::newRow("full-width week") << QStringList{"2016", QString::fromUtf8("１０")} << false << 2 << "" << 0;
        QTest::newRow("question without --yes") << QStringList{"2016", "10"} << false << 1 << "" << 1;
        QTest::newRow("week 53") << QStringList{"2016", "53", "--yes"} << false << 1 << "" << 1;
        QTest::newRow("planned") << QStringList{"2016", "10", "--yes"} << false << 0
                                 << "1 langfristige Aufträge geplant. Warte auf Eingaben\n" << 1;
        QTest::newRow("fault") << QStringList{"--yes", "2016", "10"} << true << 3 << "" << 2;
    }
    void planCommand()
    {
        QFETCH(QStringList, args);
        QFETCH(bool, brokenInterval);
        QFETCH(int, exitStatus);
        QFETCH(QString, printed);
        QFETCH(int, messages);
        TempData d;
        addComponent(d.sql(), {key(1)});
        addPosition(d.sql(), key(1), QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("1W"),
                    QStringLiteral("L"));
        if (brokenInterval)
            exec(d.sql(), QStringLiteral("UPDATE Intervalle SET Abstand = 0 WHERE Intervall = '1W'"));
        std::unique_ptr<Session> s(makeSession(d, QStringLiteral("Administrator")));
        ScriptedPresenter p;
        QString out, err;
        QTextStream o(&out), e(&err);
        QCOMPARE(zol::planCommand(*s, args, false, &o, &e), exitStatus);
        QCOMPARE(out, printed);
        QCOMPARE(err.isEmpty(), exitStatus != 2);
        QCOMPARE(p.shown().size(), messages);
        // With --yes the question is shown as a message and not left to the presenter to answer.
        if (exitStatus == 0 || exitStatus == 3)
            QCOMPARE(p.shown().first().style, Style::Information);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Auftrag")), exitStatus == 0 ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(TestPlanningRun)
#include "tst_planningrun.moc"
