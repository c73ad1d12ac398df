#include "support/TestSupport.h"
#include "zol/core/Passwords.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/instructions/IntervalCodes.h"
#include "zol/instructions/InstructionRow.h"
#include "zol/structure/DemoPlant.h"
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

class TestDemoPlant : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void plantShape()
    {
        TempData d;
        addDemoPlant(d.sql(), 2026);
        const QSqlDatabase db = d.sql();
        const int components = countRows(db, "ProtokollKopf", "FileTyp = 'F' AND Katalog = '0'");
        QVERIFY2(components >= 25 && components <= 40, qPrintable(QString::number(components)));
        QVERIFY(countRows(db, "ProtokollKopf", "FileTyp = 'F' AND Katalog = '1'") >= 3);
        // Installations in more than one level under WI-Rundgang.
        QVERIFY(countRows(db, "ProtokollKopf",
                          "FileTyp = 'O' AND FileAbove IN (SELECT FileIndex FROM ProtokollKopf WHERE FileTyp = 'O' "
                          "AND FileAbove = 'ROOTProtok')") >= 2);
        // Every parent exists and is an installation or a root.
        QCOMPARE(countRows(db, "ProtokollKopf",
                           "FileIndex <> 'LastIndex' AND FileAbove NOT IN ('ROOTProtok','ROOTKatalo') AND FileAbove NOT IN "
                           "(SELECT FileIndex FROM ProtokollKopf WHERE FileTyp = 'O')"), 0);

        QSet<QString> identNrs, weeks;
        const QRegularExpression week("^(0[1-9]|[1-4][0-9]|5[0-2])$");
        QSqlQuery c = exec(db, "SELECT FileIndex, BezugsJahr, BezugsWoche, IdentNr, Kostenstelle, WIVerantwortlicher, "
                               "KeineWartung, KeineWartungWocheVon1, KeineWartungWocheBis1 FROM ProtokollKopf "
                               "WHERE FileTyp = 'F' AND Katalog = '0'");
        int keineWartung = 0, acrossYearEnd = 0;
        while (c.next()) {
            const QString key = c.value(0).toString();
            QCOMPARE(c.value(1).toString(), QStringLiteral("2026"));
            QVERIFY2(week.match(c.value(2).toString()).hasMatch(), qPrintable(key));
            weeks << c.value(2).toString();
            QVERIFY(!c.value(3).toString().isEmpty());
            QVERIFY2(!identNrs.contains(c.value(3).toString()), qPrintable(c.value(3).toString()));
            identNrs << c.value(3).toString();
            QVERIFY(!c.value(4).toString().isEmpty());
            QVERIFY(!c.value(5).toString().isEmpty());
            if (c.value(6).toString() == "J") {
                ++keineWartung;
                QVERIFY(week.match(c.value(7).toString()).hasMatch());
                QVERIFY(week.match(c.value(8).toString()).hasMatch());
                acrossYearEnd += c.value(7).toInt() > c.value(8).toInt();
            } else {
                QCOMPARE(c.value(6).toString(), QStringLiteral("N"));
            }
            const int lines = countRows(db, "ProtokollPositionen", "TeNummer = ? AND Anweisung <> '0000'", {key});
            QVERIFY2(lines >= 5 && lines <= 15, qPrintable(key));
            // Each object has its head row.
            QCOMPARE(countRows(db, "ProtokollPositionen",
                               "TeNummer = ? AND Objekt NOT IN (SELECT Objekt FROM ProtokollPositionen "
                               "WHERE TeNummer = ? AND Anweisung = '0000')", {key, key}), 0);
        }
        QVERIFY(weeks.size() >= 20);   // spread over the year
        QVERIFY(keineWartung >= 2);
        QVERIFY(acrossYearEnd >= 1);
        QVERIFY(countRows(db, "ProtokollKopf", "IdentNr <> '' AND Katalog = '1'") == 0);
    }

    void instructionLines()
    {
        TempData d;
        addDemoPlant(d.sql(), 2026);
        const QSqlDatabase db = d.sql();
        QSet<QString> known;
        for (const IntervalCode &c : standardIntervalCodes())
            known << c.code;
        QSet<QString> used;
        QSqlQuery q = exec(db, "SELECT p.Intervall, p.Intervalltyp, i.Typ, p.Ausfuehrender, p.Betriebszustand, "
                               "p.Planzeit, p.Materialmenge, p.AnzahlPersonen, p.Objekt, p.Anweisung "
                               "FROM ProtokollPositionen p LEFT JOIN Intervalle i ON i.Intervall = p.Intervall "
                               "WHERE p.Anweisung <> '0000'");
        const QSet<QString> trades{"Elektro", "Mechanik", "MSR", "Schlosserei"};
        while (q.next()) {
            QVERIFY2(known.contains(q.value(0).toString()), qPrintable(q.value(0).toString()));
            used << q.value(0).toString();
            QCOMPARE(q.value(1).toString(), q.value(2).toString());
            QVERIFY(trades.contains(q.value(3).toString()));
            QVERIFY(QStringList({"R", "L", "X"}).contains(q.value(4).toString()));
            QVERIFY2(QRegularExpression("^\\d+,\\d$").match(q.value(5).toString()).hasMatch(), qPrintable(q.value(5).toString()));
            // Minutes: no check of the plant takes less than one.
            QVERIFY2(numericValue(q.value(5).toString()) >= 1, qPrintable(q.value(5).toString()));
            QVERIFY(!q.value(6).toString().contains('.'));
            QVERIFY(q.value(7).toInt() >= 1);
            QVERIFY(QRegularExpression("^\\d{6}$").match(q.value(8).toString()).hasMatch());
            QVERIFY(QRegularExpression("^\\d{4}$").match(q.value(9).toString()).hasMatch());
        }
        for (const char *code : {"WT", "1W", "4M", "1J", "2J"})
            QVERIFY2(used.contains(code), code);
        QVERIFY(countRows(db, "ProtokollPositionen", "Materialcode <> ''") > 0);
    }

    void catalogsAndUsers()
    {
        TempData d;
        addDemoPlant(d.sql(), 2026);
        const QSqlDatabase db = d.sql();
        for (const QString &table : Schema::catalogTables()) {
            QVERIFY2(countRows(db, table, "FileTyp = 'O' AND FileAbove = 'ROOT'") >= 1, qPrintable(table));
            QVERIFY2(countRows(db, table, "FileTyp = 'F' AND FileAbove IN (SELECT FileIndex FROM " + ident(table)
                                              + " WHERE FileTyp = 'O')") >= 2, qPrintable(table));
            // Keys came from the table's counter, so the next key follows on.
            QVERIFY(scalar(db, "SELECT Text FROM " + ident(table) + " WHERE FileIndex = 'LastIndex'").toLongLong()
                    > scalar(db, "SELECT max(CAST(FileIndex AS INTEGER)) FROM " + ident(table)
                                     + " WHERE FileIndex <> 'LastIndex'").toLongLong());
        }
        QCOMPARE(countRows(db, "Gewerke", "FileTyp = 'F' AND Text IN ('Elektro','Mechanik','MSR','Schlosserei')"), 4);

        QCOMPARE(countRows(db, "User"), demoUsers().size());
        for (const DemoUser &u : demoUsers()) {
            QSqlQuery q = exec(db, "SELECT \"Paßwort\", Level FROM \"User\" WHERE Name = ?", {u.name});
            QVERIFY(q.next());
            QVERIFY(isPasswordHash(q.value(0).toString()));
            QVERIFY(checkPassword(q.value(0).toString(), u.password).matches);
            QCOMPARE(q.value(1).toString(), u.level);
        }
        QStringList levels;
        for (const DemoUser &u : demoUsers())
            levels << u.level.left(6);
        for (const char *role : {"Admini", "Master", "Benutz", "Auswer", "Werker"})
            QVERIFY(levels.contains(role));
    }
};

QTEST_GUILESS_MAIN(TestDemoPlant)
#include "tst_demoplant.moc"
