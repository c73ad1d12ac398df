#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/exchange/SqliteFile.h"
#include "zol/statistics/Effort.h"
#include "zol/statistics/EffortDistribution.h"
#include "zol/statistics/RawData.h"
#include "zol/statistics/SelectedStatistics.h"
#include "zol/statistics/StatisticsExport.h"
#include <QProcess>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using namespace zol;

namespace {


// A small plant: installation 0000000001 under the top node with the
// components 0000000002 (Pumpe) and 0000000003 (Motor), an empty
// installation 0000000004, and a catalog component 0000000005.
void plant(const QSqlDatabase &db)
{
    Statement kopf(db, QStringLiteral("INSERT INTO ProtokollKopf (FileIndex, FileAbove, FileTyp, Katalog, Text,"
                                      " BezugsJahr, BezugsWoche) VALUES (?,?,?,?,?,?,?)"));
    kopf.run({"0000000001", "ROOTProtok", "O", "0", "Halle", "", ""});
    kopf.run({"0000000002", "0000000001", "F", "0", "Pumpe", "2026", "01"});
    kopf.run({"0000000003", "0000000001", "F", "0", "Motor", "2026", "01"});
    kopf.run({"0000000004", "ROOTProtok", "O", "0", "Leer", "", ""});
    kopf.run({"0000000005", "ROOTKatalo", "F", "1", "Muster", "2026", "01"});
    exec(db, QStringLiteral("INSERT INTO Intervalle (Intervall, Typ, Abstand, \"HÄufigkeit\") VALUES ('K4','K',13,4)"));
}

void position(const QSqlDatabase &db, const QString &te, const QString &anw, const QString &gewerk,
              const QString &intervall, const QString &typ, const QString &zeit, const QString &menge = QStringLiteral("0"))
{
    exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Ausfuehrender, Intervall,"
                            " Intervalltyp, Planzeit, Materialmenge, Materialcode, Betriebszustand)"
                            " VALUES (?,'000001',?,?,?,?,?,?,'M1','R')"),
         {te, anw, gewerk, intervall, typ, zeit, menge});
}

void reported(const QSqlDatabase &db, const QString &te, const QString &woche, const QString &anw, double zeit,
              const QString &befund, const QString &intervall = QStringLiteral("3M"),
              const QString &gewerk = QStringLiteral("Elektro"))
{
    Schema::ensureYearTable(db, QStringLiteral("2026"));
    exec(db, QStringLiteral("INSERT INTO \"Rückmeldungen2026\" (TeIndex, Jahr, Woche, Objekt, Anweisung, PlanZeit,"
                            " Materialmenge, Befund, Intervall, IntervallTyp, Ausfuehrender, KompBezeichnung,"
                            " Kostenstelle, Text) VALUES (?,'2026',?,'000001',?,?,1,?,?,'L',?,'K','KS1','Prüfen')"),
         {te, woche, anw, zeit, befund, intervall, gewerk});
}

void order(const QSqlDatabase &db, const QString &te, const QString &woche, const QString &anw)
{
    exec(db, QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung) VALUES (?,'2026',?,'000001',?)"),
         {te, woche, anw});
}

IntervalLookup lookup()
{
    IntervalLookup l;
    l.addInterval(QStringLiteral("K4"), QStringLiteral("K"), 13, 4);
    l.addInterval(QStringLiteral("L13"), QStringLiteral("L"), 13, 4);
    l.addInterval(QStringLiteral("L0"), QStringLiteral("L"), 0, 0);
    l.addInterval(QStringLiteral("1J"), QStringLiteral("L"), 52, 1);
    IntervalLookup::Weeks w{};
    w[4] = w[30] = true;   // weeks 05 and 31
    l.addIva(QStringLiteral("IV"), QStringLiteral("03"), w);
    l.addInterval(QStringLiteral("IV"), QStringLiteral("L"), 17, 3);
    return l;
}

}   // namespace

class TestStatistics : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void plannedValue_data()
    {
        QTest::addColumn<QString>("intervall");
        QTest::addColumn<QString>("bezug");   // year/week
        QTest::addColumn<QString>("range");   // yyyy/ww-yyyy/ww
        QTest::addColumn<QString>("wert");
        QTest::addColumn<double>("expected");
        QTest::newRow("K over a whole year") << "K4" << "2010/01" << "2016/01-2016/52" << "30" << 120.0;
        QTest::newRow("K from its reference on") << "K4" << "2016/27" << "2016/01-2016/52" << "30" << 60.0;
        QTest::newRow("K decimal comma") << "K4" << "2010/01" << "2016/01-2016/13" << "1,5" << 1.5;
        QTest::newRow("K across the year end") << "K4" << "2010/01" << "2015/50-2016/02" << "52" << 20.0;
        QTest::newRow("L from its reference") << "L13" << "2016/01" << "2016/01-2016/52" << "60" << 240.0;
        QTest::newRow("L weeks before the reference") << "L13" << "2016/20" << "2016/01-2016/52" << "60" << 240.0;
        QTest::newRow("L across the year end adds nothing") << "L13" << "2015/01" << "2015/50-2016/02" << "60" << 0.0;
        QTest::newRow("L week bound in every year") << "L13" << "2015/10" << "2015/10-2016/20" << "10" << 10.0;
        QTest::newRow("L starts after the range") << "L13" << "2017/01" << "2016/01-2016/52" << "60" << 0.0;
        QTest::newRow("IVA row decides") << "IV" << "2016/03" << "2016/01-2016/52" << "10" << 20.0;
        QTest::newRow("yearly code") << "1J" << "2016/10" << "2016/01-2016/52" << "7" << 7.0;
        QTest::newRow("no reference week") << "L13" << "2016/" << "2016/01-2016/52" << "60" << 0.0;
        QTest::newRow("unknown interval") << "XX" << "2016/01" << "2016/01-2016/52" << "60" << 0.0;
        QTest::newRow("empty value") << "L13" << "2016/01" << "2016/01-2016/52" << "" << 0.0;
        QTest::newRow("distance 0 counts no week") << "L0" << "2016/01" << "2016/01-2016/52" << "60" << 0.0;
    }
    void plannedValue()
    {
        QFETCH(QString, intervall);
        QFETCH(QString, bezug);
        QFETCH(QString, range);
        QFETCH(QString, wert);
        QFETCH(double, expected);
        const QStringList b = bezug.split(QLatin1Char('/'));
        const QStringList r = range.split(QRegularExpression(QStringLiteral("[-/]")));
        const WochenBereich bereich{r[0].toInt(), r[1].toInt(), r[2].toInt(), r[3].toInt()};
        QCOMPARE(GeplanterWert(lookup(), intervall, b[0], b[1], wert, bereich), expected);
    }

    void reportedValue()
    {
        QCOMPARE(RueckgemeldeterWert(lookup(), QStringLiteral("K4"), 52), 4.0);
        QCOMPARE(RueckgemeldeterWert(lookup(), QStringLiteral("L13"), 52), 52.0);
        QCOMPARE(RueckgemeldeterWert(lookup(), QStringLiteral("gone"), 52), 0.0);
    }

    void periodChecks_data()
    {
        QTest::addColumn<QString>("von");
        QTest::addColumn<QString>("bis");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("field");
        QTest::newRow("ok, padded") << "1" << "52" << "" << int(PeriodField::None);
        QTest::newRow("equal weeks") << "07" << "7" << "" << int(PeriodField::None);
        QTest::newRow("week 0") << "0" << "10" << MsgNurWochen << int(PeriodField::WocheVon);
        QTest::newRow("week 53") << "01" << "53" << MsgNurWochen << int(PeriodField::WocheBis);
        QTest::newRow("text") << "ab" << "10" << MsgNurWochen << int(PeriodField::WocheVon);
        QTest::newRow("bis before von") << "10" << "09" << MsgBisMussGroesser << int(PeriodField::WocheBis);
    }
    void periodChecks()
    {
        QFETCH(QString, von);
        QFETCH(QString, bis);
        QFETCH(QString, message);
        QFETCH(int, field);
        const PeriodCheck c = checkWeeks(von, bis, MsgNurWochen, MsgBisMussGroesser);
        QCOMPARE(c.message, message);
        QCOMPARE(int(c.field), field);
        QCOMPARE(von.size(), 2);
        QString jahr = QStringLiteral("26");
        QVERIFY(checkJahr(jahr).ok());
        QCOMPARE(jahr, QStringLiteral("0026"));
        for (QString bad : {QStringLiteral("20261"), QStringLiteral("20x6"), QString()})
            QCOMPARE(checkJahr(bad).message, MsgJahreszahl);
    }

    // Measures, ratios per minute in a row and per hour in the sum row.
    void measuresAndRatios()
    {
        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        order(db, "0000000002", "05", "0001");
        order(db, "0000000002", "00", "0002");    // short-term: never in the range
        order(db, "0000000002", "30", "0001");    // outside the range
        reported(db, "0000000002", "05", "0001", 90, "F");
        reported(db, "0000000003", "05", "0001", 60, "F");
        reported(db, "0000000003", "06", "0001", 30, "S");
        reported(db, "0000000003", "06", "0002", 0, "R");
        reported(db, "0000000003", "40", "0002", 500, "R");   // outside the range

        // The tree's node: its children in key order, the installation for its components.
        const QStringList entries = selectedEntries(db, false, {}, QStringLiteral("ROOTProtok"));
        QCOMPARE(entries, QStringList({"0000000001", "0000000004"}));
        const StatistikErgebnis e = statistikAuswerten(db, "2026", "01", "10", entries);
        QVERIFY(e.jahrestabelle);
        QCOMPARE(e.zeilen.size(), 2);
        const QStringList pumpe = e.zeilen[0].cells();
        QCOMPARE(pumpe.mid(0, 8), QStringList({"Pumpe", "WI-Rundgang\\Halle", "1", "1", "1.50", "1", "0", "0"}));
        QCOMPARE(pumpe.mid(8), QStringList({"1.00", "0.00", "1.00", "0.00", "1.00", "0.00", "1.00", "0.00",
                                            "0.01", "0.00", "0.01", "0.00"}));
        const QStringList motor = e.zeilen[1].cells();
        QCOMPARE(motor.mid(2, 6), QStringList({"0", "3", "1.50", "1", "1", "1"}));
        QCOMPARE(motor.mid(8, 4), QStringList({"-", "-", "-", "-"}));
        QCOMPARE(motor.mid(12, 4), QStringList({"0.33", "0.33", "0.67", "0.33"}));

        QList<QStringList> rows = {pumpe, motor};
        const QStringList sum = summenZeile(rows);
        QCOMPARE(sum.at(0), SummenText);
        QCOMPARE(sum.mid(2, 6), QStringList({"1", "4", "3", "2", "1", "1"}));
        QCOMPARE(sum.mid(16), QStringList({"0.67", "0.33", "1.00", "0.33"}));   // per hour

        // A list selection of one component; an unknown key is passed over.
        const StatistikErgebnis one = statistikAuswerten(db, "2026", "05", "05",
                                                         selectedEntries(db, true, {"0000000003", "9999999999"}, {}));
        QCOMPARE(one.zeilen.size(), 1);
        QCOMPARE(one.zeilen[0].cells().mid(2, 6), QStringList({"0", "1", "1.00", "1", "0", "0"}));
    }

    void yearNeverPosted()
    {
        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        order(db, "0000000002", "05", "0001");
        const StatistikErgebnis e = statistikAuswerten(db, "2025", "01", "52", {"0000000002"});
        QVERIFY(!e.jahrestabelle);
        QCOMPARE(e.zeilen.size(), 1);
        QCOMPARE(e.zeilen[0].cells().mid(2), QStringList({"0", "0", "0.00", "0", "0", "0", "-", "-", "-", "-", "-",
                                                          "-", "-", "-", "-", "-", "-", "-"}));
        // An empty installation: only the sum row, zeros and "-".
        QVERIFY(statistikAuswerten(db, "2026", "01", "52", {"0000000004"}).zeilen.isEmpty());
        QCOMPARE(summenZeile({}).mid(2, 7), QStringList({"0", "0", "0", "0", "0", "0", "-"}));
    }

    void plannedGrouping()
    {
        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        position(db, "0000000002", "0001", "Elektro", "K4", "K", "52");   // 4 a year over 52 weeks: 208
        position(db, "0000000002", "0002", "elektro", "3M", "L", "10");   // weeks 1, 14, 27, 40: 40
        position(db, "0000000003", "0001", "Mechanik", "3M", "L", "5");   // 20
        position(db, "0000000003", "0002", "Elektro", "3M", "L", "");     // nothing: the group vanishes
        position(db, "0000000003", "0003", "Bau", "3M", "L", "");
        position(db, "0000000005", "0001", "Elektro", "3M", "L", "1000"); // a Standard: not in the plant
        const WochenBereich year{2026, 1, 2026, 52};

        AufwandParameter p;
        p.schluessel = {QStringLiteral("Ausfuehrender"), QStringLiteral("TeNummer")};
        AufwandErgebnis r = geplanterAufwand(db, p, year);
        QCOMPARE(r.spalten, QStringList({"Gewerk", "Komponente", "Zeitaufwand"}));
        QCOMPARE(r.zeilen, QList<QStringList>({{"Elektro", "Pumpe", "248"}, {"Mechanik", "Motor", "20"}}));

        p.schluessel = {QStringLiteral("TeNummer"), QStringLiteral("IntervallTyp")};
        r = geplanterAufwand(db, p, year);
        QCOMPARE(r.zeilen, QList<QStringList>({{"Pumpe", "K", "208"}, {"Pumpe", "L", "40"}, {"Motor", "L", "20"}}));

        p.schluessel.clear();
        r = geplanterAufwand(db, p, year);
        QCOMPARE(r.zeilen, QList<QStringList>({{"268"}}));

        // Selected entries: one walk each, the same trade twice; a Standard counts when selected.
        p.alle = false;
        p.schluessel = {QStringLiteral("Ausfuehrender")};
        p.entries = {QStringLiteral("0000000003"), QStringLiteral("0000000002"), QStringLiteral("0000000005")};
        r = geplanterAufwand(db, p, year);
        QCOMPARE(r.zeilen, QList<QStringList>({{"Mechanik", "20"}, {"Elektro", "248"}, {"Elektro", "4000"}}));

        p.auswertung = Auswertung::Material;
        p.alle = true;
        p.schluessel = {QStringLiteral("MaterialCode")};
        r = geplanterAufwand(db, p, year);
        QCOMPARE(r.spalten.last(), QStringLiteral("Materialverbrauch"));
        QVERIFY(r.zeilen.isEmpty());   // every quantity is 0
    }

    void reportedGrouping()
    {
        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        AufwandParameter p;
        p.schluessel = {QStringLiteral("Ausfuehrender")};
        QVERIFY(!rueckgemeldeterAufwand(db, p, "2026", "01", "52"));

        reported(db, "0000000002", "05", "0001", 90, "F");
        reported(db, "0000000002", "06", "0001", 30, "S");             // cancelled: left out
        reported(db, "0000000003", "05", "0001", 52, "", "K4", "ELEKTRO");   // short-term: 4 / 52 of it
        reported(db, "0000000003", "05", "0002", 70, "", "gone", "Bau");     // unknown interval: vanishes
        reported(db, "9999999999", "05", "0001", 70, "", "3M", "Bau");       // component gone
        reported(db, "0000000003", "20", "0003", 10, "", "3M", "Mechanik");  // outside the weeks
        const auto r = rueckgemeldeterAufwand(db, p, "2026", "01", "10");
        QVERIFY(r);
        QCOMPARE(r->spalten, QStringList({"Gewerk", "Zeitaufwand"}));
        // Case never splits a group; the group shows one of its spellings.
        QCOMPARE(r->zeilen.size(), 1);
        QCOMPARE(r->zeilen[0][0].toUpper(), QStringLiteral("ELEKTRO"));
        QCOMPARE(r->zeilen[0][1], QStringLiteral("94"));

        p.schluessel = {QStringLiteral("TeIndex"), QStringLiteral("Kostenstelle")};
        p.alle = false;
        p.entries = {QStringLiteral("0000000001")};
        const auto s = rueckgemeldeterAufwand(db, p, "2026", "01", "52");
        QCOMPARE(s->zeilen, QList<QStringList>({{"Pumpe", "KS1", "90"}, {"Motor", "KS1", "14"}}));
    }

    void distribution()
    {
        std::array<double, 52> w{};
        const IntervalLookup l = lookup();
        // Reference year: from the reference week on, in its rhythm.
        VerteileAufwand(l, "2016", "L13", "L", "60", "2016", "20", w);
        QCOMPARE(w[19], 60.0);
        QCOMPARE(w[32], 60.0);
        QCOMPARE(w[6], 0.0);
        // Another year: the rhythm moved to its first week (20 - 13 = 7).
        w = {};
        VerteileAufwand(l, "2017", "L13", "L", "60", "2016", "20", w);
        QCOMPARE(w[6], 60.0);
        QCOMPARE(w[19], 60.0);
        QCOMPARE(std::accumulate(w.begin(), w.end(), 0.0), 240.0);
        // A component that starts after the year adds nothing.
        w = {};
        VerteileAufwand(l, "2015", "L13", "L", "60", "2016", "20", w);
        QCOMPARE(std::accumulate(w.begin(), w.end(), 0.0), 0.0);
        // Short-term: evenly from the reference week on in the reference year, all weeks later.
        w = {};
        VerteileAufwand(l, "2016", "K4", "K", "52", "2016", "27", w);
        QCOMPARE(w[25], 0.0);
        QCOMPARE(w[26], 4.0);
        w = {};
        VerteileAufwand(l, "2017", "K4", "K", "52", "2016", "27", w);
        QCOMPARE(w[0], 4.0);
        // IVA weeks from the reference week on; a yearly code by the running week count.
        w = {};
        VerteileAufwand(l, "2016", "IV", "L", "10", "2016", "03", w);
        QCOMPARE(w[4] + w[30], 20.0);
        w = {};
        VerteileAufwand(l, "2017", "1J", "L", "7", "2016", "10", w);
        QCOMPARE(std::accumulate(w.begin(), w.end(), 0.0), 7.0);
        QCOMPARE(w[9], 7.0);

        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        position(db, "0000000002", "0001", "Elektro", "3M", "L", "60");
        position(db, "0000000003", "0001", "Elektronik", "3M", "L", "30");
        position(db, "0000000003", "0002", "Mechanik", "3M", "L", "");
        QString jahr = QStringLiteral("2026");
        Aufwandsverteilung v = aufwandsverteilung(db, QStringLiteral("elektr*"), jahr);
        QVERIFY(v.ok());
        QCOMPARE(v.summe, 360.0);
        QCOMPARE(v.WochenZeit[0], 90.0);
        QCOMPARE(v.WochenProzent[0], 0.25);
        QCOMPARE(v.WochenBalken[13], 1.0);
        QCOMPARE(aufwandsverteilungZeilen(v).at(0), QStringList({"1", "25.00", "1.50"}));
        QCOMPARE(aufwandsverteilung(db, QStringLiteral("  "), jahr).message, MsgGewerkAuswaehlen);
        QCOMPARE(aufwandsverteilung(db, QStringLiteral("Bau"), jahr).message, MsgKeineAuftraegeGewerk);
        QCOMPARE(aufwandsverteilung(db, QStringLiteral("Mechanik"), jahr).message, MsgGesamtzeitNull);
        QString bad = QStringLiteral("x");
        QCOMPARE(int(aufwandsverteilung(db, QStringLiteral("*"), bad).field), int(Aufwandsverteilung::Field::Jahr));
    }

    void rawDataExport()
    {
        zoltest::TempData data;
        const QSqlDatabase db = data.sql();
        plant(db);
        QCOMPARE(rohdatenAnzahl(db, "2026", "01", "52"), -1);
        reported(db, "0000000003", "06", "0001", 30, "S");
        reported(db, "0000000002", "05", "0002", 1.5, "F");
        reported(db, "0000000002", "05", "0001", 90, "");
        reported(db, "0000000002", "40", "0001", 90, "");
        QCOMPARE(rohdatenAnzahl(db, "2026", "05", "06"), 3);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("ZOL_Rohdaten.xlsx"));
        RohdatenErgebnis e = rohdatenSchreiben(db, "2026", "05", "06", path, true);
        QCOMPARE(e.zeilen, 3);
        QCOMPARE(e.blaetter, 1);
        QVERIFY(rohdatenBlaetterText(e).isEmpty());
        QVERIFY(zoltest::zipMember(path, QStringLiteral("xl/workbook.xml")).contains(QStringLiteral("name=\"Rohdaten\"")));
        const QString sheet = zoltest::zipMember(path, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY(sheet.contains(QStringLiteral("Interne_Komponenten-Nr")));
        QVERIFY(!sheet.contains(QStringLiteral("<row r=\"2\"")));
        // Row 3: the first row by component and instruction, its time a number.
        const qsizetype row3 = sheet.indexOf(QStringLiteral("<row r=\"3\""));
        QVERIFY(row3 > 0);
        QVERIFY(sheet.indexOf(QStringLiteral("0000000002"), row3) > row3);
        QVERIFY(sheet.indexOf(QStringLiteral("<c r=\"J3\"><v>90</v>")) > 0);
        QVERIFY(sheet.indexOf(QStringLiteral("<c r=\"J4\"><v>1.5</v>")) > 0);

        // An existing file is never written.
        QVERIFY_THROWS_EXCEPTION(OutputRefused, rohdatenSchreiben(db, "2026", "05", "06", path, true));

        // More rows than a sheet holds go on to further sheets, each with its head.
        const QString more = dir.filePath(QStringLiteral("mehr.xlsx"));
        e = rohdatenSchreiben(db, "2026", "01", "52", more, true, {}, 3);
        QCOMPARE(e.zeilen, 4);
        QCOMPARE(e.blaetter, 4);
        QVERIFY(rohdatenBlaetterText(e).contains(QStringLiteral("4 Blättern")));
        QVERIFY(zoltest::zipMember(more, QStringLiteral("xl/workbook.xml")).contains(QStringLiteral("name=\"Rohdaten (4)\"")));
        const QString without = dir.filePath(QStringLiteral("ohne.xlsx"));
        e = rohdatenSchreiben(db, "2026", "01", "52", without, false, {}, 3);
        QCOMPARE(e.blaetter, 2);
        QVERIFY(!zoltest::zipMember(without, QStringLiteral("xl/worksheets/sheet1.xml")).contains(QStringLiteral("Gewerk")));
    }

    void tableExports()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath(QStringLiteral("ZOL_Statistik.db"));
        const QList<QStringList> rows = {{"Pumpe", "1.50", "-"}, {"Motor's", "0", ""}};
        exportDatenbank(db, QStringLiteral("Stat'istik"), textFields({"Benennung", "Rückg_Zeit_in_Std_(C)", "D/A"}, {100}), rows);
        {
            SqliteFile f(db, SqliteFile::ReadOnly);
            QSqlQuery q = exec(f.db(), QStringLiteral("SELECT Benennung, \"Rückg_Zeit_in_Std_(C)\", \"D/A\" FROM \"Stat'istik\""));
            QVERIFY(q.next());
            QCOMPARE(q.value(1).toString(), QStringLiteral("1.50"));
            QVERIFY(q.next());
            QCOMPARE(q.value(0).toString(), QStringLiteral("Motor's"));
        }
        QVERIFY_THROWS_EXCEPTION(OutputRefused, exportDatenbank(db, QStringLiteral("X"), textFields({"A"}), {}));

        const QString xlsx = dir.filePath(QStringLiteral("stat.xlsx"));
        exportArbeitsmappe(xlsx, QStringLiteral("Statistik"), {"Benennung", "C", "D/A"}, false, rows);
        const QString sheet = zoltest::zipMember(xlsx, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY(sheet.contains(QStringLiteral("<c r=\"B1\"><v>1.5</v>")));
        QVERIFY(sheet.contains(QStringLiteral("<c r=\"A1\" t=\"inlineStr\"><is><t>Pumpe</t>")));
        QVERIFY(sheet.contains(QStringLiteral("<c r=\"C1\" t=\"inlineStr\"><is><t>-</t>")));

        // The data file is never an export's target.
        QVERIFY_THROWS_EXCEPTION(OutputRefused, exportArbeitsmappe(dir.filePath(QStringLiteral("ZOL.db")),
                                                                   QStringLiteral("S"), {}, false, {}));
        // A folder that cannot be written leaves nothing behind and names the file.
        try {
            exportArbeitsmappe(QStringLiteral("/proc/nicht/da.xlsx"), QStringLiteral("S"), {}, false, rows);
            QFAIL("written");
        } catch (const Fault &f) {
            QVERIFY(f.description().contains(QStringLiteral("da.xlsx")));
        }

        for (const char *bad : {"a]b", "a[b", "x`y", " lead", "sqlite_x"})
            QCOMPARE(tabellenNameFehler(QString::fromUtf8(bad)), MsgTabelleUnzulaessig);
        QVERIFY(tabellenNameFehler(QStringLiteral("Statistik's")).isEmpty());

        double v = 0;
        QVERIFY(cellNumber(QStringLiteral("0.67"), v) && v == 0.67);
        QVERIFY(cellNumber(QStringLiteral("-3"), v) && v == -3);
        QVERIFY(!cellNumber(QStringLiteral("0000000123"), v));
        QVERIFY(!cellNumber(QStringLiteral("1.2.3"), v));
        QVERIFY(!cellNumber(QStringLiteral("."), v));
    }
};

QTEST_GUILESS_MAIN(TestStatistics)
#include "tst_statistics.moc"
