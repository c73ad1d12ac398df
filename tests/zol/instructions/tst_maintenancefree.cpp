#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/instructions/MaintenanceFreeTimes.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

class TestMaintenanceFree : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnRule_data()
    {
        QTest::addColumn<QString>("von");
        QTest::addColumn<int>("col");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expectVon");
        QTest::addColumn<QString>("expectBis");
        QTest::addColumn<QString>("message");
        const QString num = QStringLiteral("Es sind nur numerische Zeichen erlaubt");
        QTest::newRow("first week 7") << "" << 0 << "7" << "07" << "" << QString();
        QTest::newRow("first week letters") << "" << 0 << "ab" << "ab" << "" << num;
        QTest::newRow("last week 9") << "07" << 1 << "9" << "07" << "09" << QString();
        QTest::newRow("last week letters") << "07" << 1 << "x" << "07" << "x" << num;
        QTest::newRow("last week 60 passes") << "10" << 1 << "60" << "10" << "60" << QString();
        QTest::newRow("first week above 52") << "53" << 1 << "5" << "53" << "05" << "Die Woche muß <= 52 sein";
        QTest::newRow("first week 00") << "00" << 1 << "5" << "00" << "05" << "Die Woche muß >= 1 sein";
    }
    void columnRule()
    {
        QFETCH(QString, von);
        QFETCH(int, col);
        QFETCH(QString, typed);
        QFETCH(QString, expectVon);
        QFETCH(QString, expectBis);
        QFETCH(QString, message);
        ScriptedPresenter p;
        WartungsfreieZeitRow row{von, {}, {}};
        QCOMPARE(leaveMaintenanceFreeCell(row, col, typed), message.isEmpty());
        QCOMPARE(row.WocheVon, expectVon);
        QCOMPARE(row.WocheBis, expectBis);
        QCOMPARE(p.texts(), message.isEmpty() ? QStringList() : QStringList{message});
    }

    void writeChecksRangeAndDuplicates()
    {
        TempData d;
        ScriptedPresenter p;
        const QString admin = QStringLiteral("Administrator");
        WartungsfreieZeitRow a{"7", "9", "Sommer 'Stillstand'"};
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), admin, a), MaintenanceFreeWrite::Written);
        WartungsfreieZeitRow b{"10", "09", {}};
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), admin, b), MaintenanceFreeWrite::Refused);
        WartungsfreieZeitRow c{"07", "09", "doppelt"};
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), admin, c), MaintenanceFreeWrite::DuplicateKey);
        QCOMPARE(p.texts(), (QStringList{"Das Wochen-Intervall ist nicht plausibel", maintenanceFreeDuplicateText()}));
        const QList<WartungsfreieZeitRow> rows = loadMaintenanceFreeTimes(d.sql());
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows[0].WocheVon, QStringLiteral("07"));
        QCOMPARE(rows[0].WocheBis, QStringLiteral("09"));
        QCOMPARE(rows[0].Kommentar, QStringLiteral("Sommer 'Stillstand'"));
        QCOMPARE(rows[0].rowId, a.rowId);

        a.WocheBis = QStringLiteral("12");
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), QStringLiteral("Master"), a), MaintenanceFreeWrite::Written);
        QCOMPARE(countRows(d.sql(), "WartungsfreieZeit", "WocheBis = '12'"), 1);
        QVERIFY(deleteMaintenanceFreeTime(d.sql(), admin, a.rowId));
        QCOMPARE(countRows(d.sql(), "WartungsfreieZeit"), 0);

        // One week alone is a range too.
        WartungsfreieZeitRow one{"20", "20", {}};
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), admin, one), MaintenanceFreeWrite::Written);
        QCOMPARE(countRows(d.sql(), "WartungsfreieZeit", "WocheVon = '20' AND WocheBis = '20'"), 1);
    }

    void onlyAdministratorAndMasterWrite_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("Administrator") << "Administrator" << false;
        QTest::newRow("Master") << "Master" << false;
        QTest::newRow("User") << "User" << true;
        QTest::newRow("Auswerter") << "Auswerter" << true;
        QTest::newRow("Werker") << "Werker" << true;
    }
    void onlyAdministratorAndMasterWrite()
    {
        QFETCH(QString, level);
        QFETCH(bool, readOnly);
        TempData d;
        QCOMPARE(maintenanceFreeTimesReadOnly(level), readOnly);
        WartungsfreieZeitRow row{"01", "02", {}};
        QCOMPARE(writeMaintenanceFreeTime(d.sql(), level, row) == MaintenanceFreeWrite::Written, !readOnly);
        QCOMPARE(countRows(d.sql(), "WartungsfreieZeit"), readOnly ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(TestMaintenanceFree)
#include "tst_maintenancefree.moc"
