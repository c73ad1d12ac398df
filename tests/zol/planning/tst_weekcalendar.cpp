#include "support/TestSupport.h"
#include "zol/core/Sql.h"
#include "zol/planning/WeekCalendar.h"
#include <QSqlQuery>
#include <QtTest>

using namespace zol;

class TestWeekCalendar : public QObject {
    Q_OBJECT

    // Codes as the tests need them: a 4-week distance, a calendar code whose
    // row for reference week 10 marks week 05 (before it) and week 14 and whose
    // row for week 05 marks week 20, and a distance of 0 with no calendar row.
    static IntervalLookup lookup()
    {
        IntervalLookup l;
        l.addInterval(QStringLiteral("4W"), QStringLiteral("L"), 4);
        l.addInterval(QStringLiteral("4M"), QStringLiteral("L"), 17);
        l.addInterval(QStringLiteral("1T"), QStringLiteral("K"), 1);
        l.addInterval(QStringLiteral("XX"), QStringLiteral("L"), 0);
        IntervalLookup::Weeks w{};
        w[5 - 1] = true;
        w[14 - 1] = true;
        l.addIva(QStringLiteral("4M"), QStringLiteral("10"), w);
        IntervalLookup::Weeks w5{};
        w5[20 - 1] = true;
        l.addIva(QStringLiteral("4M"), QStringLiteral("05"), w5);
        return l;
    }

private Q_SLOTS:
    void textForms_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<int>("digits");
        QTest::addColumn<QString>("expected");
        QTest::newRow("year 16") << "16" << 4 << "0016";
        QTest::newRow("year full") << "2016" << 4 << "2016";
        QTest::newRow("year five digits") << "20160" << 4 << "20160";
        QTest::newRow("week 5") << "5" << 2 << "05";
        QTest::newRow("week 0") << "0" << 2 << "00";
        QTest::newRow("week three digits stay") << "123" << 2 << "123";
        QTest::newRow("leading zeros") << "005" << 2 << "05";
        QTest::newRow("not a number") << "ab" << 2 << "ab";
    }
    void textForms()
    {
        QFETCH(QString, input);
        QFETCH(int, digits);
        QFETCH(QString, expected);
        QCOMPARE(formatMask(input, digits), expected);
    }

    void weekRange_data()
    {
        QTest::addColumn<QString>("woche");
        QTest::addColumn<bool>("valid");
        QTest::newRow("00 short-term") << "00" << true;
        QTest::newRow("01") << "01" << true;
        QTest::newRow("52") << "52" << true;
        QTest::newRow("53") << "53" << false;
        QTest::newRow("123") << "123" << false;
        QTest::newRow("negative") << "-1" << false;
        QTest::newRow("52.9 cut to 52") << "52.9" << true;
    }
    void weekRange()
    {
        QFETCH(QString, woche);
        QFETCH(bool, valid);
        QCOMPARE(wocheImBereich(woche), valid);
        QCOMPARE(MsgWochenBereich, QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig"));
    }

    void weekIndexCrossesYearEnd()
    {
        QCOMPARE(wochenIndex(2016, 1) - wochenIndex(2015, 52), 1);
        QCOMPARE(wochenIndex(2016, 2) - wochenIndex(2015, 50), 4);
    }

    void due_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("jahr");
        QTest::addColumn<int>("woche");
        QTest::addColumn<QString>("bezugsjahr");
        QTest::addColumn<QString>("bezugsWoche");
        QTest::addColumn<int>("expected");
        const int No = int(Due::No), Yes = int(Due::Yes);
        QTest::newRow("4W d=0") << "4W" << 2015 << 50 << "2015" << "50" << Yes;
        QTest::newRow("4W d=2") << "4W" << 2015 << 52 << "2015" << "50" << No;
        QTest::newRow("4W d=4 over year end") << "4W" << 2016 << 2 << "2015" << "50" << Yes;
        QTest::newRow("4W before reference") << "4W" << 2015 << 46 << "2015" << "50" << No;
        QTest::newRow("IVA decides alone: due") << "4M" << 2016 << 14 << "2016" << "10" << Yes;
        QTest::newRow("IVA decides alone: not due though d%17==0") << "4M" << 2016 << 27 << "2016" << "10" << No;
        QTest::newRow("IVA week before reference week") << "4M" << 2016 << 5 << "2016" << "10" << No;
        QTest::newRow("IVA week 05 of a later year") << "4M" << 2017 << 5 << "2016" << "10" << Yes;
        QTest::newRow("IVA reference week padded") << "4M" << 2016 << 20 << "2016" << "5" << Yes;
        QTest::newRow("no IVA row: distance") << "4M" << 2016 << 28 << "2016" << "11" << Yes;
        QTest::newRow("lower-case code") << "4w" << 2016 << 2 << "2015" << "50" << Yes;
        QTest::newRow("short-term same year") << "1T" << 2016 << 0 << "2016" << "30" << Yes;
        QTest::newRow("short-term earlier reference year") << "1T" << 2016 << 0 << "2010" << "" << Yes;
        QTest::newRow("short-term later reference year") << "1T" << 2016 << 0 << "2017" << "01" << No;
        QTest::newRow("empty reference week, long-term") << "4W" << 2016 << 10 << "2015" << ""
                                                         << int(Due::FaultBezugsWoche);
        QTest::newRow("empty reference year") << "4W" << 2016 << 10 << "" << "10" << int(Due::FaultBezugsjahr);
        QTest::newRow("distance 0 without IVA") << "XX" << 2016 << 10 << "2015" << "10" << int(Due::FaultAbstand);
        QTest::newRow("distance 0 before reference is simply not due") << "XX" << 2015 << 9 << "2015" << "10" << No;
    }
    void due()
    {
        QFETCH(QString, code);
        QFETCH(int, jahr);
        QFETCH(int, woche);
        QFETCH(QString, bezugsjahr);
        QFETCH(QString, bezugsWoche);
        QFETCH(int, expected);
        const IntervalLookup l = lookup();
        const IntervalLookup::Interval *interval = l.interval(code);
        QVERIFY(interval);
        QCOMPARE(int(isDue(l, code, *interval, jahr, woche, Bezug::of(bezugsjahr, bezugsWoche))), expected);
    }

    void maintenanceFree_data()
    {
        QTest::addColumn<QString>("kw");
        QTest::addColumn<QString>("von1");
        QTest::addColumn<QString>("bis1");
        QTest::addColumn<QString>("von2");
        QTest::addColumn<QString>("bis2");
        QTest::addColumn<QString>("woche");
        QTest::addColumn<bool>("inside");
        QTest::newRow("50..02: 50") << "J" << "50" << "02" << "" << "" << "50" << true;
        QTest::newRow("50..02: 52") << "J" << "50" << "02" << "" << "" << "52" << true;
        QTest::newRow("50..02: 01") << "J" << "50" << "02" << "" << "" << "01" << true;
        QTest::newRow("50..02: 02") << "J" << "50" << "02" << "" << "" << "02" << true;
        QTest::newRow("50..02: 00 inside") << "J" << "50" << "02" << "" << "" << "00" << true;
        QTest::newRow("50..02: 03 outside") << "J" << "50" << "02" << "" << "" << "03" << false;
        QTest::newRow("50..02: 49 outside") << "J" << "50" << "02" << "" << "" << "49" << false;
        QTest::newRow("20..23: 21") << "J" << "20" << "23" << "" << "" << "21" << true;
        QTest::newRow("20..23: 24") << "J" << "20" << "23" << "" << "" << "24" << false;
        QTest::newRow("second range") << "J" << "20" << "23" << "40" << "41" << "41" << true;
        QTest::newRow("second range only") << "J" << "" << "" << "40" << "41" << "40" << true;
        QTest::newRow("J with both Von empty") << "J" << "" << "05" << "" << "07" << "05" << false;
        QTest::newRow("N ignores ranges") << "N" << "01" << "52" << "" << "" << "10" << false;
        QTest::newRow("text comparison: unpadded 5..6 holds 50") << "J" << "5" << "6" << "" << "" << "50" << true;
    }
    void maintenanceFree()
    {
        QFETCH(QString, kw);
        QFETCH(QString, von1);
        QFETCH(QString, bis1);
        QFETCH(QString, von2);
        QFETCH(QString, bis2);
        QFETCH(QString, woche);
        QFETCH(bool, inside);
        QCOMPARE(inKeineWartung({kw, von1, bis1, von2, bis2}, woche), inside);
    }

    void betriebszustandXL_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("xl");
        QTest::newRow("R") << "R" << "R";
        QTest::newRow("L") << "L" << "Z";
        QTest::newRow("X") << "X" << "Z";
        QTest::newRow("empty") << "" << "Z";
    }
    void betriebszustandXL()
    {
        QFETCH(QString, state);
        QFETCH(QString, xl);
        QCOMPARE(BetriebszustandXL(state), xl);
    }

    // The seeded calendar: 4M rows for every reference week, looked up from the file.
    void loadsSeededTables()
    {
        zoltest::TempData d;
        const IntervalLookup l = IntervalLookup::load(d.sql());
        QVERIFY(l.interval(QStringLiteral("10J")));
        QCOMPARE(l.interval(QStringLiteral("10J"))->abstand, 520);
        QCOMPARE(l.interval(QStringLiteral("1T"))->typ, QStringLiteral("K"));
        const IntervalLookup::Weeks *w = l.iva(QStringLiteral("4M"), QStringLiteral("50"));
        QVERIFY(w);
        QVERIFY((*w)[50 - 1]);
        QVERIFY(!l.iva(QStringLiteral("4W"), QStringLiteral("50")));
        QVERIFY(!l.interval(QStringLiteral("9X")));

        // Every calendar row is loaded with all its weeks, the last one included.
        QSqlQuery q = zol::exec(d.sql(), QStringLiteral("SELECT * FROM IVA"));
        int rows = 0, week52 = 0;
        while (q.next()) {
            ++rows;
            const QString code = q.value(QStringLiteral("Intervall")).toString();
            const QString ref = q.value(QStringLiteral("BezugsWoche")).toString();
            const IntervalLookup::Weeks *weeks = l.iva(code, ref);
            QVERIFY2(weeks, qPrintable(code + QLatin1Char('/') + ref));
            for (int w = 1; w <= 52; ++w) {
                const bool stored =
                    q.value(QStringLiteral("W%1").arg(w, 2, 10, QLatin1Char('0'))).toString() == QLatin1String("1");
                QVERIFY2((*weeks)[w - 1] == stored, qPrintable(QStringLiteral("%1/%2 week %3").arg(code, ref).arg(w)));
                week52 += w == 52 && stored;
            }
        }
        QCOMPARE(rows, 52);
        QVERIFY(week52 > 0);
    }
};

QTEST_GUILESS_MAIN(TestWeekCalendar)
#include "tst_weekcalendar.moc"
