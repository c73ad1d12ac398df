#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Passwords.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/structure/Node.h"
#include <QFile>
#include <QCryptographicHash>
#include <QSqlRecord>
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

class TestDataStore : public QObject {
    Q_OBJECT

    static void addNode(const QSqlDatabase &db, const QString &key, const QString &katalog = QStringLiteral("0"),
                        const QString &identNr = {})
    {
        Node n;
        n.FileIndex = key;
        n.FileAbove = RootProtok;
        n.FileTyp = FileTypFile;
        n.Katalog = katalog;
        n.Text = QStringLiteral("Pumpe ") + key;
        n.IdentNr = identNr;
        saveNode(db, n);
    }
    static QString counter(const QSqlDatabase &db, const QString &table = QStringLiteral("ProtokollKopf"))
    {
        return scalar(db, QStringLiteral("SELECT Text FROM %1 WHERE FileIndex = 'LastIndex'").arg(ident(table))).toString();
    }

private Q_SLOTS:
    void newFileIsSeeded()
    {
        TempData d;
        QCOMPARE(Schema::storedVersion(d.sql()), Schema::Version);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Intervalle")), 20);
        QCOMPARE(countRows(d.sql(), QStringLiteral("Intervalle"), QStringLiteral("Typ = 'K'")), 6);
        // Every long-term code is plannable: a distance, or a calendar row for every reference week.
        QSqlQuery q = exec(d.sql(), QStringLiteral("SELECT Intervall, Abstand FROM Intervalle WHERE Typ = 'L'"));
        while (q.next()) {
            const int rows = countRows(d.sql(), QStringLiteral("IVA"), QStringLiteral("Intervall = ?"), {q.value(0)});
            QVERIFY2(rows == 52 || (rows == 0 && q.value(1).toInt() > 0), qPrintable(q.value(0).toString()));
        }
        QCOMPARE(countRows(d.sql(), QStringLiteral("IVA"), QStringLiteral("Intervall = '4M'")), 52);
        // A 4M row is due three times a year, starting at its reference week.
        QSqlQuery iva = exec(d.sql(), QStringLiteral("SELECT * FROM IVA WHERE Intervall = '4M' AND BezugsWoche = '50'"));
        QVERIFY(iva.next());
        int due = 0;
        for (int w = 1; w <= 52; ++w)
            due += iva.value(QStringLiteral("W%1").arg(w, 2, 10, QLatin1Char('0'))).toString() == QLatin1String("1");
        QCOMPARE(due, 3);
        QCOMPARE(iva.value(QStringLiteral("W50")).toString(), QStringLiteral("1"));

        QSqlQuery admin = exec(d.sql(), QStringLiteral("SELECT \"Paßwort\", Level FROM \"User\" WHERE Name = 'admin'"));
        QVERIFY(admin.next());   // found without regard to case
        QCOMPARE(admin.value(1).toString(), QStringLiteral("Administrator"));
        QVERIFY(isPasswordHash(admin.value(0).toString()));
        QVERIFY(checkPassword(admin.value(0).toString(), QStringLiteral("admin")).matches);
        QVERIFY(!checkPassword(admin.value(0).toString(), QStringLiteral("Admin")).matches);
    }

    void everyTableAndSize()
    {
        TempData d;
        for (const TableDef &t : Schema::tables()) {
            QVERIFY2(Schema::tableExists(d.sql(), t.name), qPrintable(t.name));
            QSqlQuery q = exec(d.sql(), QStringLiteral("SELECT * FROM %1 LIMIT 0").arg(ident(t.name)));
            QCOMPARE(q.record().count(), t.fields.size());
            for (int i = 0; i < t.fields.size(); ++i)
                QCOMPARE(q.record().fieldName(i), t.fields.at(i).name);
        }
        QCOMPARE(Schema::catalogTables().size(), 11);
        QVERIFY(Schema::Size(QStringLiteral("ProtokollPositionen"), QStringLiteral("Objekt")) >= 6);
        QVERIFY(Schema::Size(QStringLiteral("ProtokollPositionen"), QStringLiteral("anweisung")) >= 4);
        QCOMPARE(Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("PlanZeit")), -1);
        QCOMPARE(Schema::Size(QStringLiteral("Rückmeldungen2016"), QStringLiteral("Woche")), 2);
        QCOMPARE(Schema::fieldNames(QStringLiteral("ProtokollPositionen")).size(), 13);

        QVERIFY(Schema::ensureYearTable(d.sql(), QStringLiteral("2016")));
        QVERIFY(!Schema::ensureYearTable(d.sql(), QStringLiteral("2016")));
        QSqlQuery y = exec(d.sql(), QStringLiteral("SELECT * FROM \"Rückmeldungen2016\" LIMIT 0"));
        QCOMPARE(y.record().count(), Schema::fieldNames(QStringLiteral("Auftrag")).size());
    }

    void neuerFileIndex_data()
    {
        QTest::addColumn<QString>("table");
        QTest::newRow("ProtokollKopf") << QStringLiteral("ProtokollKopf");
        QTest::newRow("catalog") << QStringLiteral("Gewerke");
    }
    void neuerFileIndex()
    {
        QFETCH(QString, table);
        TempData d;
        const QSqlDatabase db = d.sql();
        auto add = [&](const QString &key) {
            exec(db, QStringLiteral("INSERT INTO %1 (FileIndex, FileAbove, FileTyp, Text) VALUES (?, 'ROOT', 'F', 'x')")
                         .arg(ident(table)), {key});
        };
        // Empty table: first key 1, counter 2.
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000001"));
        QCOMPARE(counter(db, table), QStringLiteral("2"));
        add(QStringLiteral("0000000001"));
        const QString second = NeuerFileIndex(db, table);
        QCOMPARE(second, QStringLiteral("0000000002"));
        add(second);
        // Deleting the highest key leaves a gap: the next key is higher.
        exec(db, QStringLiteral("DELETE FROM %1 WHERE FileIndex = ?").arg(ident(table)), {second});
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000003"));

        // A counter that is not numeric starts again at 1 and skips keys in use.
        exec(db, QStringLiteral("UPDATE %1 SET Text = 'abc' WHERE FileIndex = 'LastIndex'").arg(ident(table)));
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000002"));
        QCOMPARE(counter(db, table), QStringLiteral("3"));

        // Counter at the number never given out: back to 1, first free key.
        exec(db, QStringLiteral("UPDATE %1 SET Text = '2147483647' WHERE FileIndex = 'LastIndex'").arg(ident(table)));
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000002"));

        // Counter fallen behind (after an import): skips the keys in use.
        add(QStringLiteral("0000000005"));
        add(QStringLiteral("0000000006"));
        exec(db, QStringLiteral("UPDATE %1 SET Text = '5' WHERE FileIndex = 'LastIndex'").arg(ident(table)));
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000007"));
        QCOMPARE(counter(db, table), QStringLiteral("8"));

        // Bookkeeping row lost, key 7 the last row: next is 8, the row comes back with 9.
        add(QStringLiteral("0000000007"));
        exec(db, QStringLiteral("DELETE FROM %1 WHERE FileIndex = 'LastIndex'").arg(ident(table)));
        QCOMPARE(NeuerFileIndex(db, table), QStringLiteral("0000000008"));
        QCOMPARE(counter(db, table), QStringLiteral("9"));
        QCOMPARE(countRows(db, table, QStringLiteral("FileIndex = 'LastIndex'")), 1);
    }

    void identNrAndStandards()
    {
        TempData d;
        addNode(d.sql(), QStringLiteral("0000000001"), QStringLiteral("0"), QStringLiteral("P-1"));
        addNode(d.sql(), QStringLiteral("0000000002"), QStringLiteral("0"), QStringLiteral("P-2"));
        addNode(d.sql(), QStringLiteral("0000000003"), QStringLiteral("1"));
        QVERIFY(IdentNrEindeutig(d.sql(), QStringLiteral("P-1")));
        QVERIFY(IdentNrEindeutig(d.sql(), QStringLiteral("P-9")));
        addNode(d.sql(), QStringLiteral("0000000004"), QStringLiteral("0"), QStringLiteral("P-1"));
        QVERIFY(!IdentNrEindeutig(d.sql(), QStringLiteral("P-1")));
        QVERIFY(IdentNrEindeutig(d.sql(), QStringLiteral("O'Brien")));

        QVERIFY(!IsStandard(d.sql(), QStringLiteral("0000000001")));
        QVERIFY(IsStandard(d.sql(), QStringLiteral("0000000003")));
        QVERIFY(IsStandard(d.sql(), QStringLiteral("0000009999")));   // unknown key
        QCOMPARE(katalogForPath(QStringLiteral("Standards\\Pumpen")), QStringLiteral("1"));
        QCOMPARE(katalogForPath(QStringLiteral("WI-Rundgang\\Standards")), QStringLiteral("0"));
        QCOMPARE(fileIndexOfKey(nodeKey(QStringLiteral("0000000364"))), QStringLiteral("0000000364"));
        QCOMPARE(fileIndexOfKey(nodeKey(RootProtok)), RootProtok);
    }

    void quotesAndWildcardsAreText()
    {
        TempData d;
        Node n;
        n.FileIndex = QStringLiteral("0000000001");
        n.FileAbove = RootProtok;
        n.FileTyp = FileTypFile;
        n.Katalog = QStringLiteral("0");
        n.Text = QStringLiteral("O'Neil's 100% Pumpe_1");
        saveNode(d.sql(), n);
        QCOMPARE(loadNode(d.sql(), n.FileIndex)->Text, n.Text);
        auto matches = [&](const QString &pattern) {
            return countRows(d.sql(), QStringLiteral("ProtokollKopf"), QStringLiteral("Text LIKE ? ESCAPE '\\'"),
                             {likePattern(pattern)});
        };
        QCOMPARE(matches(QStringLiteral("o'neil*")), 1);
        QCOMPARE(matches(QStringLiteral("*100%*")), 1);
        QCOMPARE(matches(QStringLiteral("*10%%*")), 0);     // % is no wildcard
        QCOMPARE(matches(QStringLiteral("*Pumpe?1")), 1);   // ? is one character
        QCOMPARE(matches(QStringLiteral("*Pumpe_?")), 1);
        QCOMPARE(matches(QStringLiteral("*Pumpe__")), 0);   // _ is no wildcard
    }

    void transactionsRollBackWhole()
    {
        TempData d;
        const QSqlDatabase db = d.sql();
        try {
            Transaction outer(db);
            exec(db, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('01','02','a')"));
            {
                Transaction inner(db);
                exec(db, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('03','04','b')"));
                inner.commit();
            }
            exec(db, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('01','02','dup')"));   // unique pair
            outer.commit();
            QFAIL("a duplicate key must fault");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::KeyExists);
        }
        QCOMPARE(countRows(db, QStringLiteral("WartungsfreieZeit")), 0);

        {
            Transaction ok(db);
            exec(db, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('05','06','c')"));
            ok.commit();
        }
        QCOMPARE(countRows(db, QStringLiteral("WartungsfreieZeit")), 1);
        try {
            exec(db, QStringLiteral("SELECT * FROM Nirgendwo"));
            QFAIL("a missing table must fault");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::TableMissing);
        }
    }

    void lockAndMonthlyCopy()
    {
        TempData d;
        Database second(d.dir());
        try {
            second.lock();
            QFAIL("a second session must be refused");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::FileInUse);
        }
        try {
            second.open();
            QFAIL("a second session must not open the file");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::FileInUse);
        }

        const QDate day(2016, 11, 1);
        QVERIFY(d.db().makeMonthlyCopy(day));
        const QString copy = d.db().monthlyCopyPath(day);
        QVERIFY(copy.endsWith(QLatin1String("ZOL_201611.db")));
        QFile f(copy);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray before = QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
        f.close();
        exec(d.sql(), QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('05','06','later')"));
        QVERIFY(!d.db().makeMonthlyCopy(day));   // once a month, never overwritten
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256), before);
        f.close();

        // The copy is a complete data file of its own.
        Database fromCopy(d.dir() + QStringLiteral("/copy"));
        QDir().mkpath(fromCopy.dataDir());
        QVERIFY(QFile::copy(copy, fromCopy.filePath()));
        fromCopy.open();
        QCOMPARE(countRows(fromCopy.connection(), QStringLiteral("Intervalle")), 20);
        QCOMPARE(countRows(fromCopy.connection(), QStringLiteral("WartungsfreieZeit")), 0);

        // After the session ends another may start.
        d.closeDatabase();
        second.open();
        QVERIFY(second.isOpen());
    }

    // A file made before an index was added gets it when opened, its yearly
    // tables too, and opening again changes nothing; a yearly table of another
    // build is left without the indexes over fields it lacks.
    void olderFileGetsTheIndexes()
    {
        TempData d;
        QVERIFY(Schema::ensureYearTable(d.sql(), QStringLiteral("2016")));
        exec(d.sql(), QStringLiteral("CREATE TABLE \"Rückmeldungen2015\" (TeIndex TEXT, Jahr TEXT)"));
        const auto indexes = [&] {
            QStringList out;
            QSqlQuery q = exec(d.sql(), QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'index' "
                                                       "AND sql IS NOT NULL ORDER BY name"));
            while (q.next())
                out << q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString().section(QLatin1Char('('), 1);
            return out;
        };
        const QStringList full = indexes();
        QVERIFY(full.filter(QStringLiteral("ix_Auftrag_")).size() >= 4);
        // The feedback views read a week by component, and by trade.
        for (const char *first : {"\"Jahr\", \"Woche\", \"KompBezeichnung\"", "\"Ausfuehrender\""})
            QCOMPARE(full.filter(QRegularExpression(QStringLiteral("^ix_Auftrag_\\d+ ") + QString::fromUtf8(first))).size(), 1);
        exec(d.sql(), QStringLiteral("DROP INDEX ix_Auftrag_3"));
        exec(d.sql(), QStringLiteral("DROP INDEX ix_Auftrag_4"));
        exec(d.sql(), QStringLiteral("DROP INDEX \"ix_Rückmeldungen2016_1\""));
        QCOMPARE(indexes().size(), full.size() - 3);
        d.reopen();
        QCOMPARE(indexes(), full);
        d.reopen();
        QCOMPARE(indexes(), full);
        QVERIFY(indexes().filter(QStringLiteral("Rückmeldungen2015")).isEmpty());
    }

    void missingAndDamagedFiles()
    {
        TempData d(false);
        try {
            d.db().open();
            QFAIL("a missing file must fault");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::FileNotFound);
        }
        QFile junk(d.db().filePath());
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write(QByteArray(4096, 'x'));
        junk.close();
        try {
            d.db().open();
            QFAIL("a damaged file must fault");
        } catch (const Fault &f) {
            QCOMPARE(f.number(), FaultNo::NotADatabase);
        }
        // create refuses to touch an existing file
        Database other(d.dir());
        QVERIFY_THROWS_EXCEPTION(Fault, other.create(QStringLiteral("a"), QStringLiteral("b")));
        QCOMPARE(QFileInfo(d.db().filePath()).size(), qint64(4096));
    }
};

QTEST_GUILESS_MAIN(TestDataStore)
#include "tst_datastore.moc"
