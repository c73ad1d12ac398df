#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/instructions/PositionDialogRules.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {
const QString Comp = QStringLiteral("0000000001");

QList<InstructionRow> listOf(const QStringList &keys)
{
    QList<InstructionRow> rows;
    for (const QString &k : keys) {
        InstructionRow r = newInstructionRow(Comp, {});
        r.Objekt = k.section('/', 0, 0);
        r.Anweisung = k.section('/', 1, 1);
        rows << r;
    }
    return rows;
}

QList<InstructionRow> stored(const QSqlDatabase &db, const QStringList &keys)
{
    QList<InstructionRow> rows = listOf(keys);
    for (InstructionRow &r : rows)
        storeInstructionRow(db, r);
    return rows;
}
}

class TestPositionDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void proposals_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("objekt");
        QTest::addColumn<QString>("anweisung");
        QTest::addColumn<int>("currentAfter");
        const QStringList list{"000001/0000", "000001/0010", "000001/0020", "000002/0000", "000002/0010", "000002/0011"};
        const int before = PositionMode::InsertBefore, after = PositionMode::InsertAfter;
        QTest::newRow("before the first instruction") << list << 1 << before << "000001" << "0005" << 1;
        QTest::newRow("before a head row stays in its object") << list << 3 << before << "000002" << "0010" << 3;
        QTest::newRow("before the very first row") << QStringList{"000001/0010", "000001/0020"} << 0 << before
                                                   << "000001" << "0010" << 1;
        QTest::newRow("after the last row of an object") << list << 2 << after << "000001" << "0030" << 2;
        QTest::newRow("after the last row") << QStringList{"000001/0040"} << 0 << after << "000001" << "0050" << 0;
        QTest::newRow("after the last of many goes to the first") << list << 5 << after << "000002" << "0021" << 0;
        QTest::newRow("midpoint rounds half to even") << list << 4 << after << "000002" << "0010" << 4;
        QTest::newRow("midpoint of 0000 and 0010") << list << 0 << after << "000001" << "0005" << 0;
        QTest::newRow("empty list, before") << QStringList() << -1 << before << "000000" << "0000" << -1;
        QTest::newRow("empty list, after") << QStringList() << -1 << after << "000000" << "0000" << -1;
    }
    void proposals()
    {
        QFETCH(QStringList, keys);
        QFETCH(int, current);
        QFETCH(int, mode);
        QFETCH(QString, objekt);
        QFETCH(QString, anweisung);
        QFETCH(int, currentAfter);
        const PositionProposal p = fillPositionForm(listOf(keys), current, mode);
        QCOMPARE(p.form.Objekt, objekt);
        QCOMPARE(p.form.Anweisung, anweisung);
        QCOMPARE(p.currentRow, currentAfter);
        QCOMPARE(p.form.AnzahlPersonen, QStringLiteral("1"));
        QCOMPARE(p.form.Intervall, QStringLiteral("1W"));
        QCOMPARE(p.form.Betriebszustand, QStringLiteral("X"));
        QCOMPARE(p.form.Planzeit, QStringLiteral("0,0"));
    }

    void okChecksInOrder_data()
    {
        QTest::addColumn<QStringList>("form");   // Objekt, Anweisung, AnzahlPersonen, Intervall
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("field");   // where the window puts the focus
        QTest::newRow("no Anweisung") << QStringList{"", " ", ""} << "Es wird eine Anweisungs-Nummer erwartet" << "Anweisung";
        QTest::newRow("no Objekt") << QStringList{"", "0030", ""} << "Es wird eine Objekt-Nummer erwartet" << "Objekt";
        QTest::newRow("no persons") << QStringList{"1", "0030", ""} << "Es wird eine Personen-Anzahl erwartet" << "AnzahlPersonen";
        QTest::newRow("pair exists") << QStringList{"1", "10", "2"} << "Ein Eintrag mit diesem Objekt/Anweisungs-Paar existiert schon" << "Anweisung";
        QTest::newRow("midpoint collision") << QStringList{"000001", "0010", "1"} << "Ein Eintrag mit diesem Objekt/Anweisungs-Paar existiert schon" << "Anweisung";
        QTest::newRow("letters") << QStringList{"1", "3a", "1"} << "Nur numerische Zeichen erlaubt" << "Anweisung";
        QTest::newRow("letters in persons") << QStringList{"1", "30", "x"} << "Nur numerische Zeichen erlaubt" << "AnzahlPersonen";
        QTest::newRow("undefined interval") << QStringList{"1", "30", "1", "9X"} << "Dieses Intervall ist nicht definiert" << "Intervall";
        QTest::newRow("persons too long") << QStringList{"1", "30", "1234"} << "Höchstens 3 Zeichen erlaubt" << "AnzahlPersonen";
    }
    void okChecksInOrder()
    {
        QFETCH(QStringList, form);
        QFETCH(QString, message);
        QFETCH(QString, field);
        TempData d;
        const QList<InstructionRow> rows = stored(d.sql(), {"000001/0000", "000001/0010", "000001/0011"});
        PositionDialogRules rules(d.sql(), Comp, QStringLiteral("Administrator"));
        ScriptedPresenter p;
        PositionForm f = fillPositionForm(rows, 1, PositionMode::InsertAfter).form;
        f.Objekt = form[0];
        f.Anweisung = form[1];
        f.AnzahlPersonen = form[2];
        if (form.size() > 3)
            f.Intervall = form[3];
        QVERIFY(!rules.ok(f, PositionMode::InsertAfter, rows, nullptr));
        QCOMPARE(p.texts(), QStringList{message});
        QCOMPARE(rules.refusedField(), field);
        QCOMPARE(countRows(d.sql(), TabPositionen), 3);
    }

    void insertAndEditWrite()
    {
        TempData d;
        QList<InstructionRow> rows = stored(d.sql(), {"000001/0000", "000001/0010"});
        PositionDialogRules rules(d.sql(), Comp, QStringLiteral("Administrator"));
        ScriptedPresenter p;

        PositionForm f = fillPositionForm(rows, 1, PositionMode::InsertAfter).form;
        QCOMPARE(f.Anweisung, QStringLiteral("0020"));
        f.Text = QStringLiteral("Riemen 'B' spannen");
        f.Intervall = QStringLiteral("2t");
        f.Planzeit = QStringLiteral("viel");
        InstructionRow written;
        QVERIFY(rules.ok(f, PositionMode::InsertAfter, rows, nullptr, &written));
        QVERIFY(p.texts().isEmpty());
        rows = loadProtocolRows(d.sql(), Comp);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[2].TeNummer, Comp);
        QCOMPARE(rows[2].Anweisung, QStringLiteral("0020"));
        QCOMPARE(rows[2].Text, QStringLiteral("Riemen 'B' spannen"));
        QCOMPARE(rows[2].Intervall, QStringLiteral("2T"));
        QCOMPARE(rows[2].Intervalltyp, QStringLiteral("K"));
        QCOMPARE(rows[2].Planzeit, QStringLiteral("0,0"));
        QCOMPARE(rows[2].rowId, written.rowId);

        // An emptied control keeps the old value; a head row keeps what it holds.
        f = fillPositionForm(rows, 2, PositionMode::Edit).form;
        QCOMPARE(f.Text, QStringLiteral("Riemen 'B' spannen"));
        f.Text.clear();
        f.Anweisung = QStringLiteral("0");
        f.Gewerk = QStringLiteral("Mechanik");
        QVERIFY(!rules.ok(f, PositionMode::Edit, rows, &rows[2]));
        QCOMPARE(p.texts(), QStringList{PositionDialogRules::duplicatePairText()});
        f.Objekt = QStringLiteral("2");
        QVERIFY(rules.ok(f, PositionMode::Edit, rows, &rows[2]));
        rows = loadProtocolRows(d.sql(), Comp);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[2].Objekt, QStringLiteral("000002"));
        QCOMPARE(rows[2].Anweisung, QStringLiteral("0000"));
        QCOMPARE(rows[2].Text, QStringLiteral("Riemen 'B' spannen"));
        QCOMPARE(rows[2].Intervall, QStringLiteral("2T"));
        QCOMPARE(rows[2].Ausfuehrender, QStringLiteral("Mechanik"));

        // A text may fill its field, not more.
        const int size = Schema::Size(TabPositionen, QStringLiteral("Text"));
        p.clear();
        f = fillPositionForm(rows, 2, PositionMode::InsertAfter).form;
        f.Objekt = QStringLiteral("3");
        f.Anweisung = QStringLiteral("10");
        f.Text = QString(size + 1, QLatin1Char('t'));
        QVERIFY(!rules.ok(f, PositionMode::InsertAfter, rows, nullptr));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Höchstens %1 Zeichen erlaubt").arg(size)});
        f.Text.chop(1);
        QVERIFY(rules.ok(f, PositionMode::InsertAfter, rows, nullptr));
        rows = loadProtocolRows(d.sql(), Comp);
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows.last().Text, f.Text);

        // Outside the plant (no component row counts as a Standard) a User writes nothing.
        PositionDialogRules user(d.sql(), Comp, QStringLiteral("User"));
        f = fillPositionForm(rows, 0, PositionMode::InsertBefore).form;
        f.Anweisung = QStringLiteral("0099");
        QVERIFY(!user.ok(f, PositionMode::InsertBefore, rows, nullptr));
        QCOMPARE(countRows(d.sql(), TabPositionen), 4);
    }
};

QTEST_GUILESS_MAIN(TestPositionDialog)
#include "tst_positiondialog.moc"
