#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/instructions/ProtocolGridRules.h"
#include "zol/instructions/RowBuffer.h"
#include "zol/structure/Node.h"
#include <QElapsedTimer>
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {
const QString Source = QStringLiteral("0000000001");
const QString Target = QStringLiteral("0000000002");

void addComponent(const QSqlDatabase &db, const QString &key)
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = RootProtok;
    n.FileTyp = FileTypFile;
    n.Katalog = QStringLiteral("0");
    n.Text = QStringLiteral("Komponente ") + key;
    n.WIVerantwortlicher = QStringLiteral("Mechanik");
    saveNode(db, n);
}

InstructionRow addRow(const QSqlDatabase &db, const QString &te, const QString &objekt, const QString &anweisung,
                      const QString &text = {})
{
    InstructionRow r = newInstructionRow(te, QStringLiteral("Elektrik"));
    r.Objekt = objekt;
    r.Anweisung = anweisung;
    r.Text = text;
    r.Intervalltyp = QStringLiteral("L");
    if (anweisung == QLatin1String("0000"))
        applyHeadRowValues(r);
    storeInstructionRow(db, r);
    return r;
}
}

class TestRowBuffer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void copyReplacesTheBufferAndKeepsBlanks()
    {
        TempData d;
        addComponent(d.sql(), Source);
        const InstructionRow head = addRow(d.sql(), Source, "000001", "0000", "Motor");
        const InstructionRow line = addRow(d.sql(), Source, "000001", "0010");
        copyToRowBuffer(d.sql(), {addRow(d.sql(), Source, "000009", "0010", "alt")});
        copyToRowBuffer(d.sql(), {head, line});
        const QList<InstructionRow> buffered = rowBufferRows(d.sql());
        QCOMPARE(buffered.size(), 2);
        QCOMPARE(buffered[0].Text, QStringLiteral("Motor"));
        QCOMPARE(buffered[0].Intervall, QStringLiteral(" "));
        QCOMPARE(buffered[1].Text, QStringLiteral(" "));
        QCOMPARE(buffered[1].Intervall, QStringLiteral("1W"));
        copyToRowBuffer(d.sql(), {});
        QCOMPARE(rowBufferCount(d.sql()), 0);
    }

    void pasteReportsRefusedRows_data()
    {
        QTest::addColumn<bool>("clash");
        QTest::addColumn<QString>("report");
        QTest::addColumn<int>("written");
        QTest::newRow("all new") << false << QStringLiteral("3 Positionen wurden eingefügt") << 3;
        QTest::newRow("one key exists") << true
            << QStringLiteral("1 von 3 Positionen wurden aufgrund falscher oder doppelter Objekt/Anweisungs Nummern "
                              "nicht übernommen")
            << 2;
    }
    void pasteReportsRefusedRows()
    {
        QFETCH(bool, clash);
        QFETCH(QString, report);
        QFETCH(int, written);
        TempData d;
        addComponent(d.sql(), Source);
        addComponent(d.sql(), Target);
        copyToRowBuffer(d.sql(), {addRow(d.sql(), Source, "000001", "0000", "Motor"),
                                  addRow(d.sql(), Source, "000001", "0010"),
                                  addRow(d.sql(), Source, "000001", "0020", "Lager 'A'")});
        if (clash)
            addRow(d.sql(), Target, "000001", "0010", "schon da");
        ProtocolGrid grid(d.sql(), Target, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        const PasteResult r = pasteRowBuffer(grid);
        QCOMPARE(p.texts(), QStringList{report});
        QCOMPARE(r.total, 3);
        QCOMPARE(r.written, written);
        QCOMPARE(countRows(d.sql(), TabPositionen, "TeNummer = ?", {Target}), 3);
        QCOMPARE(countRows(d.sql(), TabPositionen, "TeNummer = ? AND Text = 'schon da'", {Target}), clash ? 1 : 0);
        // The pasted rows belong to the target; a head row stays a head row;
        // an empty text arrives as the buffer's blank.
        const QList<InstructionRow> rows = loadProtocolRows(d.sql(), Target);
        for (const InstructionRow &row : rows) {
            QCOMPARE(row.TeNummer, Target);
            if (row.Anweisung == QLatin1String("0000")) {
                QCOMPARE(row.Intervall, QString());
                QCOMPARE(row.AnzahlPersonen, QStringLiteral("0"));
            } else if (row.Anweisung == QLatin1String("0010") && !clash) {
                QCOMPARE(row.Text, QStringLiteral(" "));
                QCOMPARE(row.Intervalltyp, QStringLiteral("L"));
            }
        }
        QCOMPARE(rowBufferCount(d.sql()), 3);   // the buffer stays for further pastes
        QCOMPARE(countRows(d.sql(), TabPositionen, "TeNummer = ?", {Source}), 3);
    }

    void emptyBufferAndReadOnly()
    {
        TempData d;
        addComponent(d.sql(), Target);
        ProtocolGrid grid(d.sql(), Target, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        QCOMPARE(pasteRowBuffer(grid).written, 0);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Der Puffer is leer")});

        copyToRowBuffer(d.sql(), {addRow(d.sql(), Source, "000005", "0010")});
        ProtocolGrid werker(d.sql(), Target, QStringLiteral("Werker"));
        QVERIFY(werker.open());
        QCOMPARE(pasteRowBuffer(werker).written, 0);
        QCOMPARE(countRows(d.sql(), TabPositionen, "TeNummer = ?", {Target}), 0);
    }

    void aFaultWritesNothing()
    {
        TempData d;
        addComponent(d.sql(), Target);
        copyToRowBuffer(d.sql(), {addRow(d.sql(), Source, "000001", "0010", "eins"),
                                  addRow(d.sql(), Source, "000001", "0020", "boom"),
                                  addRow(d.sql(), Source, "000001", "0030", "drei")});
        exec(d.sql(), "CREATE TRIGGER boom BEFORE INSERT ON ProtokollPositionen WHEN NEW.Text = 'boom' "
                      "BEGIN SELECT RAISE(ABORT, 'Schreibfehler'); END");
        ProtocolGrid grid(d.sql(), Target, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        const PasteResult r = pasteRowBuffer(grid);
        QCOMPARE(r.written, 0);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Fehler Nummer: 3000  Beschreibung: Schreibfehler")});
        QCOMPARE(p.lastStyle(), Style::Critical);
        QCOMPARE(countRows(d.sql(), TabPositionen, "TeNummer = ?", {Target}), 0);
        QCOMPARE(grid.numbering().lastAnweisung, qint64(0));
    }

    void pasteOfAThousandRows()
    {
        TempData d;
        addComponent(d.sql(), Target);
        QList<InstructionRow> rows;
        for (int i = 0; i < 1000; ++i) {
            InstructionRow r = newInstructionRow(Source, QStringLiteral("Elektrik"));
            r.Objekt = formatMask(QString::number(i / 10 + 1), QStringLiteral("000000"));
            r.Anweisung = formatMask(QString::number((i % 10) * 10 + 10), QStringLiteral("0000"));
            r.Text = QStringLiteral("Anweisung %1").arg(i);
            rows << r;
        }
        copyToRowBuffer(d.sql(), rows);
        ProtocolGrid grid(d.sql(), Target, QStringLiteral("Administrator"));
        QVERIFY(grid.open());
        ScriptedPresenter p;
        QElapsedTimer t;
        t.start();
        const PasteResult r = pasteRowBuffer(grid);
        qInfo("paste_1000_rows %lld ms", qint64(t.elapsed()));
        QCOMPARE(r.written, 1000);
        QCOMPARE(p.lastText(), QStringLiteral("1000 Positionen wurden eingefügt"));
        t.restart();
        QCOMPARE(loadProtocolRows(d.sql(), Target).size(), 1000);
        qInfo("load_1000_rows %lld ms", qint64(t.elapsed()));
    }
};

QTEST_GUILESS_MAIN(TestRowBuffer)
#include "tst_rowbuffer.moc"
