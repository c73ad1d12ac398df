#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/instructions/IntervalCodes.h"
#include "zol/instructions/ProtocolGridRules.h"
#include "zol/structure/Node.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {
const QString Comp = QStringLiteral("0000000001");
const QString Std = QStringLiteral("0000000002");

void addComponent(const QSqlDatabase &db, const QString &key, const QString &katalog)
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = katalog;
    n.Text = QStringLiteral("Pumpe");
    n.WIVerantwortlicher = QStringLiteral("Elektrik");
    saveNode(db, n);
}

InstructionRow stored(const QSqlDatabase &db, const QString &objekt, const QString &anweisung)
{
    for (const InstructionRow &r : loadProtocolRows(db, Comp))
        if (r.Objekt == objekt && r.Anweisung == anweisung)
            return r;
    return {};
}
}

class TestProtocolGrid : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowRuleCompletesAndCorrects_data()
    {
        QTest::addColumn<qint64>("lastObjekt");
        QTest::addColumn<qint64>("lastAnweisung");
        QTest::addColumn<QStringList>("typed");     // Objekt, Anweisung, Betriebszustand, Intervall, Planzeit, AnzahlPersonen
        QTest::addColumn<QStringList>("expected");  // Objekt, Anweisung, Betriebszustand, Intervall, Intervalltyp, Planzeit, AnzahlPersonen, Ausfuehrender
        QTest::addColumn<QString>("message");

        const QStringList headValues{"0000", "", "", "", "0,0", "0"};
        QTest::newRow("head row with an interval is emptied") << qint64(1) << qint64(0)
            << QStringList{"1", "0000", "R", "1W", "5", "2"}
            << QStringList{"000001", "0000", "", "", "L", "0,0", "0", ""} << QString();
        QTest::newRow("0 is a head row") << qint64(1) << qint64(0) << QStringList{"1", "0", "", "", "", ""}
            << QStringList{"000001", "0000", "", "", "", "0,0", "0", ""} << QString();
        QTest::newRow("00 is a head row") << qint64(1) << qint64(0) << QStringList{"1", "00", "L", "2W", "", ""}
            << QStringList{"000001", "0000", "", "", "L", "0,0", "0", ""} << QString();
        QTest::newRow("9989 + 10 is the last number") << qint64(3) << qint64(9989) << QStringList{"", "", "", "", "", ""}
            << QStringList{"000003", "9999", "X", "1W", "L", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("9995 + 10 becomes the head row") << qint64(3) << qint64(9995) << QStringList{"", "", "", "", "", ""}
            << QStringList{"000003", "0000", "", "", "", "0,0", "0", ""} << QString();
        QTest::newRow("new Objekt without Anweisung heads it") << qint64(1) << qint64(20) << QStringList{"2", "", "", "", "", ""}
            << QStringList{"000002", "0000", "", "", "", "0,0", "0", ""} << QString();
        QTest::newRow("empty table") << qint64(0) << qint64(0) << QStringList{"", "", "", "", "", ""}
            << QStringList{"000000", "0010", "X", "1W", "L", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("next number in the object") << qint64(4) << qint64(30) << QStringList{"4", "", "", "", "", ""}
            << QStringList{"000004", "0040", "X", "1W", "L", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("1w becomes 1W") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "1w", "1,5", "2"}
            << QStringList{"000001", "0010", "X", "1W", "L", "1,5", "2", "Elektrik"} << QString();
        QTest::newRow("10J keeps three characters") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "10j", "", ""}
            << QStringList{"000001", "0010", "X", "10J", "L", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("short-term code") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "2t", "", ""}
            << QStringList{"000001", "0010", "X", "2T", "K", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("r becomes R") << qint64(1) << qint64(0) << QStringList{"1", "10", "r", "", "", ""}
            << QStringList{"000001", "0010", "R", "1W", "L", "0,0", "1", "Elektrik"} << QString();
        QTest::newRow("y refused") << qint64(1) << qint64(0) << QStringList{"1", "10", "y", "", "", ""} << QStringList()
            << QStringLiteral("Nur 'R'=in Ruhe, 'L'=in Lauf/Betrieb oder 'X'=egal sind erlaubt");
        QTest::newRow("undefined interval refused") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "9Q", "", ""}
            << QStringList() << QStringLiteral("Dieses Intervall ist nicht definiert");
        QTest::newRow("non-numeric Planzeit refused") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "", "zwei", ""}
            << QStringList() << QStringLiteral("Nur numerische Zeichen erlaubt");
        QTest::newRow("too many persons") << qint64(1) << qint64(0) << QStringList{"1", "10", "", "", "", "1000"}
            << QStringList() << QStringLiteral("Höchstens 3 Zeichen erlaubt");
    }
    void rowRuleCompletesAndCorrects()
    {
        QFETCH(qint64, lastObjekt);
        QFETCH(qint64, lastAnweisung);
        QFETCH(QStringList, typed);
        QFETCH(QStringList, expected);
        QFETCH(QString, message);
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        grid.setNumbering({lastObjekt, lastAnweisung});
        ScriptedPresenter p;

        InstructionRow row;
        row.Objekt = typed[0];
        row.Anweisung = typed[1];
        row.Betriebszustand = typed[2];
        row.Intervall = typed[3];
        row.Planzeit = typed[4];
        row.AnzahlPersonen = typed[5];
        row.TeNummer = QStringLiteral("9999999999");
        const auto result = grid.writeRow(row);

        if (!message.isEmpty()) {
            QCOMPARE(result, ProtocolGrid::WriteResult::Refused);
            QCOMPARE(p.texts(), QStringList{message});
            QCOMPARE(countRows(d.sql(), TabPositionen), 0);
            QCOMPARE(grid.numbering().lastAnweisung, lastAnweisung);
            return;
        }
        QCOMPARE(result, ProtocolGrid::WriteResult::Written);
        QVERIFY(p.texts().isEmpty());
        const InstructionRow s = stored(d.sql(), expected[0], expected[1]);
        QCOMPARE(s.TeNummer, Comp);
        QCOMPARE(s.Betriebszustand, expected[2]);
        QCOMPARE(s.Intervall, expected[3]);
        QCOMPARE(s.Intervalltyp, expected[4]);
        QCOMPARE(s.Planzeit, expected[5]);
        QCOMPARE(s.AnzahlPersonen, expected[6]);
        QCOMPARE(s.Ausfuehrender, expected[7]);
        QCOMPARE(s.Materialmenge, QStringLiteral("0,0"));
        QCOMPARE(grid.numbering().lastObjekt, expected[0].toLongLong());
        QCOMPARE(grid.numbering().lastAnweisung, expected[1].toLongLong());
    }

    void columnRule_data()
    {
        QTest::addColumn<int>("col");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("cell");
        QTest::addColumn<QString>("message");
        const QString num = QStringLiteral("Nur numerische Zeichen erlaubt");
        const QString bz = QStringLiteral("Nur 'R'=in Ruhe, 'L'=in Lauf/Betrieb oder 'X'=egal sind erlaubt");
        const QString undef = QStringLiteral("Dieses Intervall ist nicht definiert");
        QTest::newRow("Objekt 12") << Col::Objekt << "12" << true << "000012" << QString();
        QTest::newRow("Objekt too long") << Col::Objekt << "1234567" << false << "1234567" << "Höchstens 6 Zeichen erlaubt";
        QTest::newRow("Anweisung abc") << Col::Anweisung << "abc" << false << "abc" << num;
        QTest::newRow("Anweisung 5") << Col::Anweisung << "5" << true << "0005" << QString();
        QTest::newRow("Text at full size") << Col::Text << QString(255, 'a') << true << QString(255, 'a') << QString();
        QTest::newRow("Text too long") << Col::Text << QString(256, 'a') << false << QString(256, 'a') << "Höchstens 255 Zeichen erlaubt";
        QTest::newRow("state r") << Col::Betriebszustand << "r" << true << "R" << QString();
        QTest::newRow("state y") << Col::Betriebszustand << "y" << false << "Y" << bz;
        QTest::newRow("state emptied") << Col::Betriebszustand << "" << false << "" << bz;
        QTest::newRow("persons x") << Col::AnzahlPersonen << "x" << false << "x" << num;
        QTest::newRow("interval 1w") << Col::Intervall << "1w" << true << "1W" << QString();
        QTest::newRow("interval 10j") << Col::Intervall << "10j" << true << "10J" << QString();
        QTest::newRow("interval emptied") << Col::Intervall << "" << false << "" << undef;
        QTest::newRow("interval too long") << Col::Intervall << "123456" << false << "123456" << "Höchstens 5 Zeichen erlaubt";
        QTest::newRow("Planzeit 1,5") << Col::Planzeit << "1,5" << true << "1,5" << QString();
        QTest::newRow("Materialmenge x") << Col::Materialmenge << "x" << false << "x" << num;
        QTest::newRow("Planzeit 0.5 gets a comma") << Col::Planzeit << "0.5" << true << "0,5" << QString();
        QTest::newRow("Materialmenge .25 gets a comma") << Col::Materialmenge << ".25" << true << ",25" << QString();
    }
    void columnRule()
    {
        QFETCH(int, col);
        QFETCH(QString, typed);
        QFETCH(bool, accepted);
        QFETCH(QString, cell);
        QFETCH(QString, message);
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        InstructionRow row = grid.newRow();
        row.Intervalltyp = QStringLiteral("?");
        const CellCheck c = grid.leaveCell(row, col, typed);
        QCOMPARE(c.accepted, accepted);
        QCOMPARE(c.cellText, cell);
        QCOMPARE(row.value(col), cell);
        QCOMPARE(p.texts(), message.isEmpty() ? QStringList() : QStringList{message});
        if (!message.isEmpty())
            QCOMPARE(p.lastStyle(), Style::Information);
        if (col == Col::Intervall && accepted)
            QCOMPARE(row.Intervalltyp, QStringLiteral("L"));
    }

    // A head row typed into the grid's new row has no interval, and its type stays empty.
    void newHeadRowKeepsItsType()
    {
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        grid.setNumbering({1, 20});
        InstructionRow row = grid.newRow();
        QVERIFY(grid.leaveCell(row, Col::Objekt, QStringLiteral("2")).accepted);
        QVERIFY(grid.leaveCell(row, Col::Text, QStringLiteral("Getriebe")).accepted);
        QCOMPARE(grid.writeRow(row), ProtocolGrid::WriteResult::Written);
        const InstructionRow s = stored(d.sql(), "000002", "0000");
        QCOMPARE(s.Intervall, QString());
        QCOMPARE(s.Intervalltyp, QString());
        // An instruction row typed the same way gets its interval and type from the row rule.
        InstructionRow next = grid.newRow();
        QVERIFY(grid.leaveCell(next, Col::Text, QStringLiteral("Ölstand")).accepted);
        QCOMPARE(grid.writeRow(next), ProtocolGrid::WriteResult::Written);
        QCOMPARE(stored(d.sql(), "000002", "0010").Intervalltyp, QStringLiteral("L"));
        QCOMPARE(stored(d.sql(), "000002", "0010").Intervall, QStringLiteral("1W"));
    }

    void anweisungCellSideEffects()
    {
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        InstructionRow row = grid.newRow();
        row.Objekt = QStringLiteral("000003");
        row.Intervall = QStringLiteral("3M");
        grid.leaveCell(row, Col::Anweisung, QStringLiteral("0"));
        QCOMPARE(row.Intervall, QStringLiteral("1W"));
        row.Objekt = QStringLiteral("000000");
        grid.leaveCell(row, Col::Anweisung, QStringLiteral("10"));
        QCOMPARE(row.Intervall, QString());
    }

    void writeRefusesDuplicatesAndKeepsQuotes()
    {
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Master"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        InstructionRow a = grid.newRow();
        a.Objekt = QStringLiteral("1");
        a.Anweisung = QStringLiteral("10");
        a.Text = QStringLiteral("Lager 'links' prüfen");
        QCOMPARE(grid.writeRow(a), ProtocolGrid::WriteResult::Written);
        QVERIFY(a.rowId > 0);
        QCOMPARE(stored(d.sql(), "000001", "0010").Text, QStringLiteral("Lager 'links' prüfen"));

        InstructionRow b = grid.newRow();
        b.Objekt = QStringLiteral("000001");
        b.Anweisung = QStringLiteral("0010");
        b.Text = QStringLiteral("zweite");
        QCOMPARE(grid.writeRow(b), ProtocolGrid::WriteResult::DuplicateKey);
        QCOMPARE(p.lastText(), ProtocolGrid::duplicateRowText());
        QCOMPARE(countRows(d.sql(), TabPositionen), 1);
        QCOMPARE(b.rowId, qint64(0));

        // Changing the key of a stored row onto another existing key is refused the same way.
        b.Anweisung = QStringLiteral("20");
        QCOMPARE(grid.writeRow(b), ProtocolGrid::WriteResult::Written);
        a.Anweisung = QStringLiteral("0020");
        QCOMPARE(grid.writeRow(a), ProtocolGrid::WriteResult::DuplicateKey);
        QCOMPARE(stored(d.sql(), "000001", "0010").Text, QStringLiteral("Lager 'links' prüfen"));
        a.Anweisung = QStringLiteral("30");
        QCOMPARE(grid.writeRow(a), ProtocolGrid::WriteResult::Written);
        QCOMPARE(countRows(d.sql(), TabPositionen), 2);
        QCOMPARE(stored(d.sql(), "000001", "0030").rowId, a.rowId);
    }

    void readOnlyByRoleAndStandards_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("standard");
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<bool>("mayReplace");
        QTest::newRow("Administrator on a Standard") << "Administrator" << true << false << true;
        QTest::newRow("Master on a Standard") << "Master" << true << false << true;
        QTest::newRow("User on the plant") << "User" << false << false << true;
        QTest::newRow("User on a Standard") << "User" << true << true << true;
        QTest::newRow("Auswerter on the plant") << "Auswerter" << false << true << false;
        QTest::newRow("Werker on the plant") << "Werker" << false << true << false;
    }
    void readOnlyByRoleAndStandards()
    {
        QFETCH(QString, level);
        QFETCH(bool, standard);
        QFETCH(bool, readOnly);
        QFETCH(bool, mayReplace);
        TempData d;
        addComponent(d.sql(), Comp, standard ? QStringLiteral("1") : QStringLiteral("0"));
        ProtocolGrid grid(d.sql(), Comp, level);
        QVERIFY(grid.open());
        QCOMPARE(grid.rights().readOnly, readOnly);
        QCOMPARE(grid.rights().mayReplace, mayReplace);
        QCOMPARE(grid.rights().mayUseCatalogs, mayReplace);
        InstructionRow row = grid.newRow();
        row.Objekt = QStringLiteral("1");
        const auto result = grid.writeRow(row);
        QCOMPARE(result == ProtocolGrid::WriteResult::Written, !readOnly);
        QCOMPARE(countRows(d.sql(), TabPositionen), readOnly ? 0 : 1);
    }

    void unknownComponentStaysEmpty()
    {
        TempData d;
        ProtocolGrid grid(d.sql(), QStringLiteral("0000000077"), QStringLiteral("User"));
        QVERIFY(!grid.open());
        QVERIFY(grid.rows().isEmpty());
        QVERIFY(grid.rights().readOnly);
    }

    void openOrdersByObjektAndTakesLastNumbers()
    {
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        for (const auto &[o, a] : QList<QPair<QString, QString>>{{"000002", "0000"}, {"000001", "0010"},
                                                                  {"000001", "0000"}, {"000002", "0040"}}) {
            InstructionRow r = newInstructionRow(Comp, {});
            r.Objekt = o;
            r.Anweisung = a;
            storeInstructionRow(d.sql(), r);
        }
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        QStringList objekte;
        for (const InstructionRow &r : grid.rows())
            objekte << r.Objekt;
        QCOMPARE(objekte, (QStringList{"000001", "000001", "000002", "000002"}));
        QCOMPARE(grid.numbering().lastObjekt, qint64(2));
        QCOMPARE(grid.numbering().lastAnweisung, qint64(40));
    }

    void deleteAsksTheRightQuestion()
    {
        TempData d;
        addComponent(d.sql(), Comp, QStringLiteral("0"));
        QList<qint64> ids;
        for (int i = 1; i <= 4; ++i) {
            InstructionRow r = newInstructionRow(Comp, {});
            r.Objekt = QStringLiteral("000001");
            r.Anweisung = formatMask(QString::number(i * 10), QStringLiteral("0000"));
            storeInstructionRow(d.sql(), r);
            ids << r.rowId;
        }
        ProtocolGrid grid(d.sql(), Comp, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        p.answer(Answer::No).answer(Answer::Yes).answer(Answer::Yes);
        QCOMPARE(grid.deleteRows({ids[1]}, ids[0]), 0);
        QCOMPARE(grid.deleteRows({ids[1]}, ids[0]), 1);   // one selected row: the current one goes
        QCOMPARE(grid.deleteRows({ids[1], ids[2]}, ids[3]), 2);
        QCOMPARE(p.texts(), (QStringList{"Wollen Sie die Position wirklich löschen?",
                                         "Wollen Sie die Position wirklich löschen?",
                                         "Wollen Sie die Position(en) wirklich löschen?"}));
        QCOMPARE(loadProtocolRows(d.sql(), Comp).size(), 1);
        QCOMPARE(loadProtocolRows(d.sql(), Comp).first().rowId, ids[3]);
        QCOMPARE(grid.deleteRows({}, -1), 0);   // no current row: no question
        QCOMPARE(p.shown().size(), 3);
    }

    void columnButtons()
    {
        ScriptedPresenter p;
        QVERIFY(showColumnHint(Col::Intervall));
        QVERIFY(showColumnHint(Col::Betriebszustand));
        QVERIFY(!showColumnHint(Col::Text));
        QCOMPARE(p.texts(), (QStringList{intervalLegend(), "Zulässige Werte: R=in Ruhe, L=in Lauf/Betrieb, X=egal"}));
        InstructionRow row = newInstructionRow(Comp, {});
        applyCatalogChoice(row, Col::Text, QStringLiteral("Filter wechseln"), QStringLiteral("3M"));
        QCOMPARE(row.Intervall, QStringLiteral("3M"));
        applyCatalogChoice(row, Col::Text, QStringLiteral("Sichtprüfung"), QString());
        QCOMPARE(row.Text, QStringLiteral("Sichtprüfung"));
        QCOMPARE(row.Intervall, QStringLiteral("3M"));
        applyCatalogChoice(row, Col::Materialcode, QString());
        QCOMPARE(row.Materialcode, QString());
    }

    void shiftSelectionNeedsAllRowsVisible()
    {
        ScriptedPresenter p;
        QCOMPARE(shiftSelection(1, 3, 5, 10), std::optional<QList<int>>(QList<int>{1, 2, 3}));
        QCOMPARE(shiftSelection(3, 1, 5, 10), std::optional<QList<int>>(QList<int>{}));
        QVERIFY(p.texts().isEmpty());
        QVERIFY(!shiftSelection(0, 2, 11, 10));
        QVERIFY(p.lastText().startsWith("Leider ist ein Markieren mit der Shift-Taste nicht möglich"));
    }
};

QTEST_GUILESS_MAIN(TestProtocolGrid)
#include "tst_protocolgrid.moc"
