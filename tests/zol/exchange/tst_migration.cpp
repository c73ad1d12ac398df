#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Passwords.h"
#include "zol/core/Sql.h"
#include "zol/exchange/Migration.h"
#include <QtTest>

using namespace zol;

namespace {

// An old data file as the Access reader would give it: text fields with sizes.
MemorySource::Table table(const QString &name, const QStringList &fields, const QList<QStringList> &rows)
{
    MemorySource::Table t{name, {}, rows};
    for (const QString &f : fields)
        t.fields << SourceField{f, 255};
    return t;
}

QList<MemorySource::Table> oldFile(const QString &name = QStringLiteral("Pumpe"))
{
    return {table(QStringLiteral("MSysObjects"), {"Id"}, {{"1"}}),
            table(QStringLiteral("User"), {"Name", "Paßwort", "Level"},
                  {{"Admin", "geheim", "Administrator"}, {"Meier", "", "Werker"}}),
            table(QStringLiteral("protokollkopf"), {"FileIndex", "FileAbove", "FileTyp", "Katalog", "Text", "Alt"},
                  {{"0000000001", "ROOTProtok", "O", "0", "Halle", "x"}, {"0000000002", "0000000001", "F", "0", name, "y"}}),
            table(QStringLiteral("Intervalle"), {"Intervall", "Typ", "Abstand", "HÄufigkeit"},
                  {{"1W", "L", "1", "52"}, {"2W", "L", "2", "26"}}),
            table(QStringLiteral("Rückmeldungen2016"), {"TeIndex", "Jahr", "Woche", "Objekt", "Anweisung"},
                  {{"0000000002", "2016", "05", "000010", "0010"}}),
            table(QStringLiteral("Tabelle1"), {"A"}, {{"1"}})};
}

}

class TestMigration : public QObject {
    Q_OBJECT
private slots:
    void everyKnownTableComesOver();
    void aRefusedValueLeavesNoDataFile_data();
    void aRefusedValueLeavesNoDataFile();
};

void TestMigration::everyKnownTableComesOver()
{
    zoltest::TempData data(false);
    MemorySource old(oldFile(), QStringLiteral("ZOL.mdb"));
    QList<MigratedTable> counts;
    data.db().create(QStringLiteral("Admin"), QStringLiteral("x"),
                     [&](const QSqlDatabase &db) { counts = migrateTables(db, old); });
    QStringList shown;
    for (const MigratedTable &t : counts)
        shown << QStringLiteral("%1 %2").arg(t.table).arg(t.rows);
    // MSys tables are no user tables of the memory source, so they are left as unknown.
    QCOMPARE(shown, (QStringList{"MSysObjects -1", "User 2", "ProtokollKopf 2", "Intervalle 2", "Rückmeldungen2016 1",
                                 "Tabelle1 -1"}));
    const QSqlDatabase db = data.sql();
    QCOMPARE(zoltest::countRows(db, QStringLiteral("Intervalle")), 2);   // the old rows, not the seed
    QCOMPARE(scalar(db, QStringLiteral("SELECT Abstand FROM Intervalle WHERE Intervall = '2W'")).toInt(), 2);
    QCOMPARE(zoltest::countRows(db, QStringLiteral("Rückmeldungen2016"), QStringLiteral("Woche = '05'")), 1);
    const QString stored = scalar(db, QStringLiteral("SELECT Paßwort FROM User WHERE Name = 'Admin'")).toString();
    QVERIFY(isPasswordHash(stored));
    QVERIFY(!stored.contains(QStringLiteral("geheim")));
    QVERIFY(checkPassword(stored, QStringLiteral("geheim")).matches);
    QCOMPARE(scalar(db, QStringLiteral("SELECT Paßwort FROM User WHERE Name = 'Meier'")).toString(), QString());
}

void TestMigration::aRefusedValueLeavesNoDataFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("withUsers");
    QTest::newRow("name longer than its field") << QString(101, QLatin1Char('x')) << true;
    QTest::newRow("no table User") << QStringLiteral("Pumpe") << false;
}

void TestMigration::aRefusedValueLeavesNoDataFile()
{
    QFETCH(QString, name);
    QFETCH(bool, withUsers);
    zoltest::TempData data(false);
    QList<MemorySource::Table> tables = oldFile(name);
    if (!withUsers)
        tables.removeAt(1);
    MemorySource old(tables, QStringLiteral("ZOL.mdb"));
    try {
        data.db().create(QStringLiteral("Admin"), QStringLiteral("x"), [&](const QSqlDatabase &db) { migrateTables(db, old); });
        QFAIL("the file was taken");
    } catch (const Fault &f) {
        QVERIFY2(f.description().contains(withUsers ? QStringLiteral("Tabelle protokollkopf, Zeile 2, Feld Text")
                                                    : QStringLiteral("keine Tabelle User")),
                 qPrintable(f.description()));
    }
    QVERIFY(!data.db().fileExists());
}

QTEST_GUILESS_MAIN(TestMigration)
#include "tst_migration.moc"
