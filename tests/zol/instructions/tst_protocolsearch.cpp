#include "zol/core/Messages.h"
#include "zol/instructions/ProtocolSearch.h"
#include <QElapsedTimer>
#include <QtTest>

using namespace zol;

namespace {
InstructionRow line(const QString &objekt, const QString &text, const QString &gewerk = QStringLiteral("Elektrik"))
{
    InstructionRow r = newInstructionRow(QStringLiteral("0000000001"), gewerk);
    r.Objekt = objekt;
    r.Anweisung = QStringLiteral("0010");
    r.Text = text;
    r.Intervalltyp = QStringLiteral("L");
    return r;
}

QList<InstructionRow> sample()
{
    return {line("000001", "Pumpe reinigen"), line("000002", "Filter prüfen"), line("000003", "Lager der PUMPE fetten"),
            line("000004", "Sichtprüfung")};
}
}

class TestProtocolSearch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void find_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("col");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("direction");
        QTest::addColumn<int>("hitRow");
        QTest::addColumn<int>("hitCol");
        QTest::addColumn<int>("hitStart");
        const int down = int(SearchDirection::Down), up = int(SearchDirection::Up);
        QTest::newRow("down, case ignored") << 0 << Col::Text << "pumpe" << down << 2 << Col::Text << 10;
        QTest::newRow("down wraps to the first row") << 3 << Col::Text << "reinigen" << down << 0 << Col::Text << 6;
        QTest::newRow("up from the first row wraps to the last") << 0 << Col::Text << "sicht" << up << 3 << Col::Text << 0;
        QTest::newRow("up finds the row above") << 2 << Col::Text << "filter" << up << 1 << Col::Text << 0;
        QTest::newRow("other columns count") << 0 << Col::Objekt << "ELEK" << down << 0 << Col::Ausfuehrender << 0;
        QTest::newRow("the start cell comes last") << 0 << Col::Text << "Pumpe reinigen" << down << 0 << Col::Text << 0;
        QTest::newRow("earlier cell of the start row") << 3 << Col::Text << "000004" << down << 3 << Col::Objekt << 0;
    }
    void find()
    {
        QFETCH(int, row);
        QFETCH(int, col);
        QFETCH(QString, text);
        QFETCH(int, direction);
        QFETCH(int, hitRow);
        QFETCH(int, hitCol);
        QFETCH(int, hitStart);
        ScriptedPresenter p;
        const auto hit = findInRows(sample(), row, col, text, SearchDirection(direction));
        QVERIFY(hit);
        QCOMPARE(*hit, (SearchHit{hitRow, hitCol, hitStart, int(text.size())}));
        QVERIFY(p.texts().isEmpty());
    }

    void notFound()
    {
        ScriptedPresenter p;
        // Neither the component number nor Intervalltyp is searched.
        QVERIFY(!findInRows(sample(), 0, 1, QStringLiteral("0000000001"), SearchDirection::Down));
        QVERIFY(!findInRows(sample(), 1, 1, QStringLiteral("Ventil"), SearchDirection::Up));
        QVERIFY(!findInRows({}, 0, 0, QStringLiteral("x"), SearchDirection::Down));
        QCOMPARE(p.texts(), (QStringList{"'0000000001' nicht gefunden", "'Ventil' nicht gefunden", "'x' nicht gefunden"}));
        QVERIFY(!findInRows(sample(), 0, 1, QStringLiteral("   "), SearchDirection::Down));
        QCOMPARE(p.shown().size(), 3);
    }

    void replaceFindsThenReplaces()
    {
        QList<InstructionRow> rows = sample();
        ScriptedPresenter p;
        // No selection yet: only a search.
        ReplaceStep s = replaceInRows(rows, {0, Col::Objekt, 0, 0}, "pumpe", "Motor", SearchDirection::Down);
        QVERIFY(!s.changedRow);
        QCOMPARE(*s.next, (SearchHit{0, Col::Text, 0, 5}));
        // The selection is the hit: replace it and find the next.
        s = replaceInRows(rows, {s.next->row, s.next->col, s.next->start, s.next->length}, "pumpe", "Motor",
                          SearchDirection::Down);
        QCOMPARE(s.changedRow, std::optional<int>(0));
        QCOMPARE(rows[0].Text, QStringLiteral("Motor reinigen"));
        QCOMPARE(*s.next, (SearchHit{2, Col::Text, 10, 5}));
        s = replaceInRows(rows, {2, Col::Text, 10, 5}, "pumpe", "Motor", SearchDirection::Down);
        QCOMPARE(rows[2].Text, QStringLiteral("Lager der Motor fetten"));
        QVERIFY(!s.next);
        QCOMPARE(p.lastText(), QStringLiteral("'pumpe' nicht gefunden"));
        // A selection that is not the search text is left alone.
        s = replaceInRows(rows, {1, Col::Text, 0, 5}, "Lager", "X", SearchDirection::Down);
        QVERIFY(!s.changedRow);
        QCOMPARE(rows[1].Text, QStringLiteral("Filter prüfen"));
        QVERIFY(replaceEnabled("a", "b"));
        QVERIFY(!replaceEnabled("a", "  "));
        QVERIFY(!replaceEnabled(" ", "b"));
    }

    void searchOverTwoThousandRows()
    {
        QList<InstructionRow> rows;
        for (int i = 0; i < 2000; ++i)
            rows << line(QString::number(i).rightJustified(6, '0'), QStringLiteral("Anweisung %1").arg(i));
        ScriptedPresenter p;
        QElapsedTimer t;
        t.start();
        QVERIFY(!findInRows(rows, 0, 1, QStringLiteral("nirgends"), SearchDirection::Down));
        qInfo("search_2000_rows %lld ms", qint64(t.elapsed()));
        QCOMPARE(findInRows(rows, 0, 1, QStringLiteral("Anweisung 1999"), SearchDirection::Up)->row, 1999);
    }
};

QTEST_GUILESS_MAIN(TestProtocolSearch)
#include "tst_protocolsearch.moc"
