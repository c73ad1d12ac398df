#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/exchange/ComponentExchange.h"
#include "zol/exchange/ExchangeCommands.h"
#include "zol/exchange/InstructionExchange.h"
#include "zol/exchange/SqliteFile.h"
#include "zol/instructions/ProtocolGridRules.h"
#include "zol/core/RecordKeys.h"
#include "zol/structure/Explorer.h"
#include "zol/structure/Node.h"
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

using namespace zol;

namespace {

QByteArray member(const QString &xlsx, const QString &name)
{
    QProcess p;
    p.start(QStringLiteral("unzip"), {QStringLiteral("-p"), xlsx, name});
    p.waitForFinished();
    return p.readAllStandardOutput();
}

// The cells of the first sheet by reference ("B3" -> text), read from the XML
// of the workbook itself, not through the program's reader.
QMap<QString, QString> sheetCells(const QString &xlsx)
{
    QStringList shared;
    QXmlStreamReader sst(member(xlsx, QStringLiteral("xl/sharedStrings.xml")));
    while (!sst.atEnd())
        if (sst.readNext() == QXmlStreamReader::StartElement && sst.name() == QLatin1String("t"))
            shared << sst.readElementText();
    QXmlStreamReader xml(member(xlsx, QStringLiteral("xl/worksheets/sheet1.xml")));
    QMap<QString, QString> cells;
    QString ref, type;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("c")) {
            ref = xml.attributes().value(QLatin1String("r")).toString();
            type = xml.attributes().value(QLatin1String("t")).toString();
        } else if (xml.name() == QLatin1String("v")) {
            const QString v = xml.readElementText();
            cells[ref] = type == QLatin1String("s") ? shared.value(v.toInt()) : v;
        } else if (xml.name() == QLatin1String("t")) {
            cells[ref] += xml.readElementText();
        }
    }
    return cells;
}

QString cellRef(int row, int col)   // both from 1
{
    QString letters;
    for (int c = col; c > 0; c = (c - 1) / 26)
        letters.prepend(QChar(u'A' + (c - 1) % 26));
    return letters + QString::number(row);
}

Node makeNode(const QSqlDatabase &db, const QString &above, const QString &typ, const QString &name)
{
    Node n;
    n.FileIndex = NeuerFileIndex(db, QStringLiteral("ProtokollKopf"));
    n.FileAbove = above;
    n.FileTyp = typ;
    n.Katalog = QStringLiteral("0");
    n.Text = name;
    return n;
}

void addLine(const QSqlDatabase &db, const QString &te, const QString &obj, const QString &anw, const QString &text,
             const QString &intervall = QStringLiteral("1W"))
{
    exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender, "
                            "Betriebszustand, AnzahlPersonen, Sicherheitshinweis, Intervall, Planzeit, Materialcode, "
                            "Materialmenge, Intervalltyp) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"),
         {te, obj, anw, text, anw == QLatin1String("0000") ? QString() : QStringLiteral("Elektrik"),
          anw == QLatin1String("0000") ? QString() : QStringLiteral("R"),
          anw == QLatin1String("0000") ? QStringLiteral("0") : QStringLiteral("2"), QString(), intervall,
          anw == QLatin1String("0000") ? QStringLiteral("0,0") : QStringLiteral("1,5"), QString(), QStringLiteral("0,0"),
          QStringLiteral("L")});
}

// A plant of: Halle 'Süd' (installation) holding Pumpe (with three lines,
// an empty Hersteller) and Lüfter (no lines).
struct Plant {
    QString halle, pumpe, luefter;
    explicit Plant(const QSqlDatabase &db)
    {
        Node h = makeNode(db, RootProtok, FileTypOrdner, QStringLiteral("Halle 'Süd'"));
        saveNode(db, h);
        Node p = makeNode(db, h.FileIndex, FileTypFile, QStringLiteral("Pumpe"));
        p.BezugsJahr = QStringLiteral("2024");
        p.BezugsWoche = QStringLiteral("07");
        p.IdentNr = QStringLiteral("P-1");
        p.Typ = QStringLiteral("KSB");
        p.WIVerantwortlicher = QStringLiteral("Elektrik");
        p.AnlagenVerantwortlicher = QStringLiteral("Meier");
        p.Option1 = QStringLiteral("Weg 3");
        p.KeineWartungWocheBis2 = QStringLiteral("30");
        saveNode(db, p);
        addLine(db, p.FileIndex, QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("Lager prüfen"));
        addLine(db, p.FileIndex, QStringLiteral("000010"), QStringLiteral("0000"), QStringLiteral("Motor"), {});
        addLine(db, p.FileIndex, QStringLiteral("000020"), QStringLiteral("0010"), QStringLiteral("Dichtung"),
                QStringLiteral("3M"));
        Node l = makeNode(db, h.FileIndex, FileTypFile, QStringLiteral("Lüfter"));
        l.BezugsWoche = QStringLiteral("01");
        saveNode(db, l);
        halle = h.FileIndex;
        pumpe = p.FileIndex;
        luefter = l.FileIndex;
    }
};

Login admin()
{
    Login l;
    l.UserName = QStringLiteral("Admin");
    l.Level = QStringLiteral("Administrator");
    l.LoginSucceeded = true;
    return l;
}

QList<QStringList> tableRows(const QString &path, const QString &table)
{
    SqliteFile f(path, SqliteFile::ReadOnly);
    QList<QStringList> rows;
    QSqlQuery q = exec(f.db(), QStringLiteral("SELECT * FROM %1").arg(ident(table)));
    while (q.next()) {
        QStringList r;
        for (int i = 0; i < q.record().count(); ++i)
            r << q.value(i).toString();
        rows << r;
    }
    return rows;
}

// What the plant holds below a node, comparable between two parents: each
// child's fields but its keys, and its lines but the component number.
QStringList snapshot(const QSqlDatabase &db, const QString &parent)
{
    QStringList out;
    QSqlQuery q = exec(db, QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE FileAbove = ? ORDER BY Text"), {parent});
    QStringList keys;
    while (q.next())
        keys << q.value(0).toString();
    for (const QString &k : keys) {
        Node n = *loadNode(db, k);
        n.FileIndex.clear();
        n.FileAbove.clear();
        QStringList f;
        for (const QString &name : Node::fieldNames())
            f << n.value(name);
        out << f.join(QLatin1Char('|'));
        QSqlQuery l = exec(db, QStringLiteral("SELECT Objekt, Anweisung, Text, Ausfuehrender, Betriebszustand, "
                                              "AnzahlPersonen, Sicherheitshinweis, Intervall, Planzeit, Materialcode, "
                                              "Materialmenge, Intervalltyp FROM ProtokollPositionen WHERE TeNummer = ? "
                                              "ORDER BY Objekt, Anweisung"),
                           {k});
        while (l.next()) {
            QStringList v;
            for (int i = 0; i < 12; ++i)
                v << l.value(i).toString();
            out << QStringLiteral("  ") + v.join(QLatin1Char('|'));
        }
    }
    return out;
}

// A source whose table breaks after some rows, as a damaged file does.
class BreakingSource : public TableSource {
public:
    BreakingSource(MemorySource::Table t, int breakAfter) : m_inner({t}), m_breakAfter(breakAfter) {}
    QString path() const override { return QStringLiteral("kaputt.mdb"); }
    QStringList tables() const override { return m_inner.tables(); }
    bool knowsSizes() const override { return true; }
    std::unique_ptr<TableReader> open(const QString &table) override
    {
        struct R : TableReader {
            std::unique_ptr<TableReader> inner;
            int left;
            QList<SourceField> fields() const override { return inner->fields(); }
            bool next(QStringList &v) override
            {
                if (left-- == 0)
                    throw Fault(FaultNo::NotADatabase, QStringLiteral("Seite 7 ist beschädigt"));
                return inner->next(v);
            }
            int rowNumber() const override { return inner->rowNumber(); }
        };
        auto r = std::make_unique<R>();
        r->inner = m_inner.open(table);
        r->left = m_breakAfter;
        return r;
    }

private:
    MemorySource m_inner;
    int m_breakAfter;
};

// The fields of an exchange table as a legacy Access file declares them.
QList<SourceField> accessFields(bool withInstructions)
{
    QList<SourceField> out;
    for (const FieldDef &f : exportTableFields(withInstructions))
        out << SourceField{f.name, f.size};
    return out;
}

// A row of ExportAuftraege from a few named values.
QStringList auftragRow(const QMap<QString, QString> &values)
{
    QStringList row;
    for (const FieldDef &f : exportTableFields(true))
        row << values.value(f.name);
    return row;
}

int count(const QSqlDatabase &db, const QString &table) { return zoltest::countRows(db, table); }

}

class TestComponentExchange : public QObject {
    Q_OBJECT
private slots:
    void exportTablesFieldByField_data();
    void exportTablesFieldByField();
    void exportSheetsCellByCell_data();
    void exportSheetsCellByCell();
    void exportCommandDialogAndMessages();
    void roundTripGivesTheSameNodesAndLines_data();
    void roundTripGivesTheSameNodesAndLines();
    void importNamesNodesFreeAndKeepsWhatExists();
    void formCheckRefusesTheTable_data();
    void formCheckRefusesTheTable();
    void rowRefusalsAreCounted();
    void aBrokenFileLeavesTheDataAsTheyWere();
    void damagedFilesGiveAMessage_data();
    void damagedFilesGiveAMessage();
    void instructionExchangeOfOneComponent();
    void batchCommands();
};

void TestComponentExchange::exportTablesFieldByField_data()
{
    QTest::addColumn<bool>("withInstructions");
    QTest::newRow("ExportObjekte") << false;
    QTest::newRow("ExportAuftraege") << true;
}

void TestComponentExchange::exportTablesFieldByField()
{
    QFETCH(bool, withInstructions);
    zoltest::TempData data;
    const Plant plant(data.sql());
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("x.db"));
    const ExportCount n = writeExportTable(data.sql(), {plant.halle, plant.pumpe}, path, withInstructions);
    QCOMPARE(n.components, 2);
    QCOMPARE(n.positions, withInstructions ? 3 : 0);

    const QString table = withInstructions ? TabExportAuftraege : TabExportObjekte;
    std::unique_ptr<TableSource> src = openTableSource(path);
    std::unique_ptr<TableReader> r = src->open(table);
    QStringList names;
    QList<int> sizes;
    for (const SourceField &f : r->fields()) {
        names << f.name;
        sizes << f.size;
    }
    const QString pre = withInstructions ? QStringLiteral("Objekt_") : QString();
    QStringList expected = {pre + "FileTyp", pre + "Name", pre + "BezugsJahr", pre + "BezugsWoche", pre + "Kostenstelle",
                            pre + "IdentNr", pre + "Klassifizierung", pre + "Standort", pre + "Lokalisierung",
                            pre + "Hersteller", pre + "Typ", pre + "WIVerantwortlicher", pre + "AnlagenVerantwortlicher",
                            pre + "Option1", pre + "Option2", pre + "KeineWartung", pre + "KeineWartungWocheVon1",
                            pre + "KeineWartungWocheBis1", pre + "KeineWartungWocheVon2", pre + "KeineWartungWocheBis2"};
    if (withInstructions) {
        expected.prepend(QStringLiteral("Satzart"));
        for (const char *f : {"Objekt", "Anweisung", "Text", "Ausfuehrender", "Betriebszustand", "AnzahlPersonen",
                              "Sicherheitshinweis", "Intervall", "Planzeit", "Materialcode", "Materialmenge",
                              "Intervalltyp"})
            expected << QStringLiteral("Auftragsposition_") + QLatin1String(f);
    }
    QCOMPARE(names, expected);
    QCOMPARE(sizes.at(names.indexOf(pre + "Name")), 100);
    QCOMPARE(sizes.at(names.indexOf(pre + "BezugsWoche")), 2);
    if (withInstructions) {
        QCOMPARE(sizes.at(0), 1);
        QCOMPARE(sizes.at(names.indexOf("Auftragsposition_Text")), 255);
    }

    const QList<QStringList> rows = tableRows(path, table);
    QCOMPARE(rows.size(), withInstructions ? 5 : 2);
    auto cell = [&](int row, const QString &field) { return rows.at(row).at(names.indexOf(field)); };
    QCOMPARE(cell(0, pre + "FileTyp"), QStringLiteral("O"));
    QCOMPARE(cell(0, pre + "Name"), QStringLiteral("Halle 'Süd'"));
    const int p = 1;
    QCOMPARE(cell(p, pre + "Name"), QStringLiteral("Pumpe"));
    QCOMPARE(cell(p, pre + "BezugsWoche"), QStringLiteral("07"));
    QCOMPARE(cell(p, pre + "AnlagenVerantwortlicher"), QStringLiteral("Meier"));
    QCOMPARE(cell(p, pre + "Option1"), QStringLiteral("Weg 3"));
    QCOMPARE(cell(p, pre + "Hersteller"), QString());
    if (withInstructions) {
        QCOMPARE(cell(0, "Satzart"), QStringLiteral("1"));
        QCOMPARE(cell(p, "Satzart"), QStringLiteral("1"));
        // The lines follow their component by Objekt, Anweisung, with only their own fields.
        QCOMPARE(cell(2, "Satzart"), QStringLiteral("2"));
        QCOMPARE(cell(2, "Auftragsposition_Anweisung"), QStringLiteral("0000"));
        QCOMPARE(cell(2, "Auftragsposition_Text"), QStringLiteral("Motor"));
        QCOMPARE(cell(2, "Objekt_Name"), QString());
        QCOMPARE(cell(3, "Auftragsposition_Text"), QStringLiteral("Lager prüfen"));
        QCOMPARE(cell(3, "Auftragsposition_Ausfuehrender"), QStringLiteral("Elektrik"));
        QCOMPARE(cell(4, "Auftragsposition_Intervall"), QStringLiteral("3M"));
        QCOMPARE(cell(4, "Auftragsposition_Planzeit"), QStringLiteral("1,5"));
    }
}

void TestComponentExchange::exportSheetsCellByCell_data()
{
    QTest::addColumn<bool>("withInstructions");
    QTest::addColumn<bool>("headRows");
    QTest::newRow("Objekte with heads") << false << true;
    QTest::newRow("Objekte without heads") << false << false;
    QTest::newRow("Aufträge with heads") << true << true;
    QTest::newRow("Aufträge without heads") << true << false;
}

void TestComponentExchange::exportSheetsCellByCell()
{
    QFETCH(bool, withInstructions);
    QFETCH(bool, headRows);
    zoltest::TempData data;
    const Plant plant(data.sql());
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("x.xlsx"));
    writeExportSheet(data.sql(), {plant.pumpe, plant.luefter}, path, withInstructions, headRows);
    const QMap<QString, QString> cells = sheetCells(path);

    const QStringList heads = exportSheetColumns(withInstructions);
    QCOMPARE(heads.size(), withInstructions ? 32 : 19);
    const int first = headRows ? 3 : 1;
    if (headRows) {
        for (int c = 0; c < heads.size(); ++c)
            QCOMPARE(cells.value(cellRef(1, c + 1)), heads.at(c));
        QCOMPARE(cells.value(cellRef(2, 1)), QString());
    } else {
        QVERIFY(!cells.contains(cellRef(first + (withInstructions ? 5 : 2), 1)));
    }
    const int o = withInstructions ? 1 : 0;   // column offset of the node's columns
    if (withInstructions) {
        QCOMPARE(heads.at(3), QStringLiteral("Objekt_Bezugsjahr"));
        QCOMPARE(heads.at(12), QStringLiteral("Objekt_Laufweg"));
        QCOMPARE(heads.at(23), QStringLiteral("Auftragsposition_Gewerk"));
        QCOMPARE(cells.value(cellRef(first, 1)), QStringLiteral("1"));
    } else {
        QCOMPARE(heads.at(10), QStringLiteral("Inspekteur"));
        QCOMPARE(heads.at(11), QStringLiteral("Laufweg"));
    }
    QCOMPARE(cells.value(cellRef(first, o + 1)), QStringLiteral("F"));
    QCOMPARE(cells.value(cellRef(first, o + 2)), QStringLiteral("Pumpe"));
    QCOMPARE(cells.value(cellRef(first, o + 4)), QStringLiteral("07"));
    QCOMPARE(cells.value(cellRef(first, o + 6)), QStringLiteral("P-1"));
    QVERIFY(!cells.contains(cellRef(first, o + 9)));   // empty Hersteller: no cell, Typ stays in column 10
    QCOMPARE(cells.value(cellRef(first, o + 10)), QStringLiteral("KSB"));
    QCOMPARE(cells.value(cellRef(first, o + 11)), QStringLiteral("Elektrik"));
    QCOMPARE(cells.value(cellRef(first, o + 12)), QStringLiteral("Weg 3"));
    QCOMPARE(cells.value(cellRef(first, o + 19)), QStringLiteral("30"));
    QVERIFY(!cells.values().contains(QStringLiteral("Meier")));   // AnlagenVerantwortlicher is not on a sheet
    if (withInstructions) {
        QCOMPARE(cells.value(cellRef(first + 1, 1)), QStringLiteral("2"));
        QVERIFY(!cells.contains(cellRef(first + 1, 3)));
        QCOMPARE(cells.value(cellRef(first + 1, 21)), QStringLiteral("000010"));
        QCOMPARE(cells.value(cellRef(first + 1, 22)), QStringLiteral("0000"));
        QCOMPARE(cells.value(cellRef(first + 2, 23)), QStringLiteral("Lager prüfen"));
        QCOMPARE(cells.value(cellRef(first + 2, 24)), QStringLiteral("Elektrik"));
        QCOMPARE(cells.value(cellRef(first + 3, 28)), QStringLiteral("3M"));
        QCOMPARE(cells.value(cellRef(first + 3, 32)), QStringLiteral("L"));
        QCOMPARE(cells.value(cellRef(first + 4, 3)), QStringLiteral("Lüfter"));   // no lines under Lüfter
    } else {
        QCOMPARE(cells.value(cellRef(first + 1, 2)), QStringLiteral("Lüfter"));
    }
}

void TestComponentExchange::exportCommandDialogAndMessages()
{
    zoltest::TempData data;
    const Plant plant(data.sql());
    QTemporaryDir dir;
    const QString existing = dir.filePath(QStringLiteral("da.xlsx"));
    QFile(existing).open(QIODevice::WriteOnly);
    const QString fresh = dir.filePath(QStringLiteral("neu.xlsx"));
    {
        // Cancel on any command: no export.
        ScriptedPresenter msgs;
        QStringList asked;
        const ExportOutcome out = ExportKomponenten(data.sql(), {plant.pumpe}, ExportKind::AuftraegeDb,
                                                    [&](const QString &proposed, const QString &) {
                                                        asked << proposed;
                                                        return QString();
                                                    });
        QVERIFY(!out.written);
        QCOMPARE(asked, QStringList{QStringLiteral("ZOL_Auftraege.db")});
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Es fand kein Export statt")});
    }
    {
        // An existing file brings the dialog back; No to the head rows puts the data in row 1.
        ScriptedPresenter msgs;
        msgs.answer(Answer::Ok).answer(Answer::No).answer(Answer::Ok).answer(Answer::Yes);
        QStringList names{existing, fresh};
        const ExportOutcome out = ExportKomponenten(data.sql(), {plant.pumpe}, ExportKind::ObjekteXlsx,
                                                    [&](const QString &, const QString &) { return names.takeFirst(); });
        QVERIFY(out.written);
        QVERIFY(out.openWorkbook);
        QCOMPARE(msgs.texts(), (QStringList{QStringLiteral("Es muß eine noch nicht existierende Datei angegeben werden"),
                                            QStringLiteral("2 Kopfzeilen mit Feldbezeichnungen einfügen?"),
                                            QStringLiteral("Die Objekte wurden exportiert"),
                                            QStringLiteral("Excel-Tabelle jetzt aufrufen?")}));
        QCOMPARE(sheetCells(fresh).value(QStringLiteral("B1")), QStringLiteral("Pumpe"));
        QCOMPARE(QFile(existing).size(), 0);
    }
    {
        // The data file itself is never a target.
        ScriptedPresenter msgs;
        QStringList names{data.db().filePath(), QString()};
        ExportKomponenten(data.sql(), {plant.pumpe}, ExportKind::ObjekteDb,
                          [&](const QString &, const QString &) { return names.takeFirst(); });
        QCOMPARE(msgs.shown().size(), 2);
        QCOMPARE(msgs.lastText(), QStringLiteral("Es fand kein Export statt"));
    }
    {
        // Nothing selected, or a root node: nothing happens, no dialog.
        ScriptedPresenter msgs;
        ExplorerSelection sel;
        sel.listHasFocus = false;
        sel.treeKey = RootProtok;
        bool asked = false;
        ExportKomponenten(data.sql(), exportKeys(sel), ExportKind::ObjekteDb, [&](const QString &, const QString &) {
            asked = true;
            return QString();
        });
        QVERIFY(!asked);
        QVERIFY(msgs.shown().isEmpty());
    }
}

void TestComponentExchange::roundTripGivesTheSameNodesAndLines_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("headRows");
    QTest::newRow(".db") << QStringLiteral("db") << false;
    QTest::newRow(".xlsx with head rows") << QStringLiteral("xlsx") << true;
    QTest::newRow(".xlsx without head rows") << QStringLiteral("xlsx") << false;
}

void TestComponentExchange::roundTripGivesTheSameNodesAndLines()
{
    QFETCH(QString, suffix);
    QFETCH(bool, headRows);
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("rund.") + suffix);
    if (suffix == QLatin1String("db"))
        writeExportTable(db, {plant.pumpe, plant.luefter}, path, true);
    else
        writeExportSheet(db, {plant.pumpe, plant.luefter}, path, true, headRows);

    Node target = makeNode(db, RootProtok, FileTypOrdner, QStringLiteral("Neu"));
    saveNode(db, target);
    ScriptedPresenter msgs;
    std::unique_ptr<TableSource> src = openTableSource(path, importSheetLayout(true));
    const ImportResult r = importComponents(db, admin(), *src, target.FileIndex, true);
    QCOMPARE(msgs.lastText(), QStringLiteral("Alle 5 Objekte und Auftragspositionen wurden übernommen"));
    QCOMPARE(r.newKeys.size(), 2);
    QStringList before = snapshot(db, plant.halle);
    QStringList after = snapshot(db, target.FileIndex);
    if (suffix != QLatin1String("db")) {
        // AnlagenVerantwortlicher doesn't travel on a sheet.
        before.replaceInStrings(QStringLiteral("|Meier|"), QStringLiteral("||"));
    }
    QCOMPARE(after, before);
}

void TestComponentExchange::importNamesNodesFreeAndKeepsWhatExists()
{
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("o.db"));
    writeExportTable(db, {plant.pumpe, plant.luefter}, path, false);
    const QStringList before = snapshot(db, plant.halle);
    ScriptedPresenter msgs;
    for (int i = 0; i < 2; ++i) {
        std::unique_ptr<TableSource> src = openTableSource(path);
        importComponents(db, admin(), *src, plant.halle, false);
    }
    QCOMPARE(msgs.texts(), (QStringList{QStringLiteral("Alle 2 Objekte wurden importiert"),
                                        QStringLiteral("Alle 2 Objekte wurden importiert")}));
    QStringList names;
    QSqlQuery q = exec(db, QStringLiteral("SELECT Text, IdentNr FROM ProtokollKopf WHERE FileAbove = ? ORDER BY Text"),
                       {plant.halle});
    while (q.next())
        names << q.value(0).toString() + QLatin1Char('/') + q.value(1).toString();
    QCOMPARE(names, (QStringList{"Lüfter/", "Lüfter(1)/", "Lüfter(2)/", "Pumpe/P-1", "Pumpe(1)/P-1", "Pumpe(2)/P-1"}));
    QCOMPARE(zoltest::countRows(db, TabPositionen), 3);   // without instructions no lines come
    // A user without rights in Standards imports nothing there.
    Login werker;
    werker.Level = QStringLiteral("Werker");
    std::unique_ptr<TableSource> src = openTableSource(path);
    const ImportResult r = importComponents(db, werker, *src, plant.halle, false);
    QVERIFY(r.refused);
    QCOMPARE(msgs.lastText(), QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren"));
}

void TestComponentExchange::formCheckRefusesTheTable_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("message");
    const QString wrong = wrongFormText();
    QTest::newRow("field missing") << "drop Objekt_Typ" << wrong;
    QTest::newRow("field of a larger size") << "size 300 Auftragsposition_Text" << wrong;
    QTest::newRow("field of a smaller size") << "size 50 Objekt_Name" << wrong;
    QTest::newRow("table missing") << "rename" << "Fehler Nummer: 3078 Beschreibung: Die Datei alt.mdb enthält keine Tabelle ExportAuftraege.";
    QTest::newRow("extra field is ignored") << "extra" << "Alle 2 Objekte und Auftragspositionen wurden übernommen";
}

void TestComponentExchange::formCheckRefusesTheTable()
{
    QFETCH(QString, change);
    QFETCH(QString, message);
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    MemorySource::Table t{TabExportAuftraege, accessFields(true),
                          {auftragRow({{"Satzart", "1"}, {"Objekt_FileTyp", "F"}, {"Objekt_Name", "Ventil"}}),
                           auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"},
                                       {"Auftragsposition_Anweisung", "10"}, {"Auftragsposition_Text", "Sitz"}})}};
    if (change.startsWith(QLatin1String("drop "))) {
        for (int k = 0; k < t.fields.size(); ++k)
            if (t.fields.at(k).name == change.mid(5)) {
                t.fields.removeAt(k);
                for (QStringList &r : t.rows)
                    r.removeAt(k);
                break;
            }
    } else if (change.startsWith(QLatin1String("size "))) {
        for (SourceField &f : t.fields)
            if (f.name == change.section(QLatin1Char(' '), 2))
                f.size = change.section(QLatin1Char(' '), 1, 1).toInt();
    } else if (change == QLatin1String("rename")) {
        t.name = QStringLiteral("Tabelle1");
    } else {
        t.fields << SourceField{QStringLiteral("Bemerkung"), 50};
        for (QStringList &r : t.rows)
            r << QStringLiteral("x");
    }
    MemorySource src({t}, QStringLiteral("alt.mdb"));
    const int nodes = count(db, QStringLiteral("ProtokollKopf"));
    ScriptedPresenter msgs;
    importComponents(db, admin(), src, plant.halle, true);
    QCOMPARE(msgs.texts(), QStringList{message});
    QCOMPARE(count(db, QStringLiteral("ProtokollKopf")), nodes + (change == QLatin1String("extra") ? 1 : 0));
}

void TestComponentExchange::rowRefusalsAreCounted()
{
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    const QString longName(101, QLatin1Char('x'));
    MemorySource::Table t{
        TabExportAuftraege, accessFields(true),
        {auftragRow({{"Satzart", "2"}, {"Auftragsposition_Text", "vor allem"}}),                      // no component
         auftragRow({{"Satzart", "1"}, {"Objekt_FileTyp", "F"}, {"Objekt_Name", "Kessel 'A'"},
                     {"Objekt_BezugsJahr", "2025,0"}, {"Objekt_BezugsWoche", "x"}}),
         auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"}, {"Auftragsposition_Anweisung", "10"},
                     {"Auftragsposition_Text", "Brenner"}}),
         auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "000010"}, {"Auftragsposition_Anweisung", "0010"},
                     {"Auftragsposition_Text", "doppelt"}}),                                          // key exists
         auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"}, {"Auftragsposition_Anweisung", "20"},
                     {"Auftragsposition_Intervall", "9X"}}),                                          // unknown interval
         auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"}, {"Auftragsposition_Anweisung", "30"},
                     {"Auftragsposition_Intervall", "3m"}, {"Auftragsposition_Betriebszustand", "l"}}),
         auftragRow({{"Satzart", "1"}, {"Objekt_Name", longName}}),                                   // too long
         auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"}})}};                         // its line
    MemorySource src({t}, QStringLiteral("alt.mdb"));
    ScriptedPresenter msgs;
    const ImportResult r = importComponents(db, admin(), src, plant.halle, true);
    QCOMPARE(r.total, 8);
    QCOMPARE(r.failed, 5);
    QCOMPARE(msgs.lastText(), QStringLiteral("5 von 8 Objekten bzw. Auftragspositionen konnten nicht übernommen werden"));
    QCOMPARE(msgs.shown().size(), 2);
    const QString reasons = msgs.shown().first().text;
    QVERIFY2(reasons.contains(QStringLiteral("Zeile 1: Auftragsposition ohne Komponente")), qPrintable(reasons));
    QVERIFY(reasons.contains(QStringLiteral("Zeile 4: Objekt/Anweisung 000010/0010 gibt es schon")));
    QVERIFY(reasons.contains(QStringLiteral("Zeile 5: Dieses Intervall ist nicht definiert")));
    QVERIFY(reasons.contains(QStringLiteral("Zeile 7: Feld Objekt_Name: Höchstens 100 Zeichen erlaubt")));
    QVERIFY(reasons.contains(QStringLiteral("Zeile 8: Auftragsposition ohne Komponente")));

    QCOMPARE(r.newKeys.size(), 1);
    const Node kessel = *loadNode(db, r.newKeys.first());
    QCOMPARE(kessel.Text, QStringLiteral("Kessel 'A'"));
    QCOMPARE(kessel.BezugsJahr, QStringLiteral("2025"));
    QCOMPARE(kessel.BezugsWoche, QStringLiteral("00"));
    QSqlQuery q = exec(db, QStringLiteral("SELECT Anweisung, Ausfuehrender, Betriebszustand, AnzahlPersonen, Intervall, "
                                          "Planzeit, Intervalltyp FROM ProtokollPositionen WHERE TeNummer = ? "
                                          "ORDER BY Anweisung"),
                       {kessel.FileIndex});
    QStringList lines;
    while (q.next()) {
        QStringList v;
        for (int i = 0; i < 7; ++i)
            v << q.value(i).toString();
        lines << v.join(QLatin1Char('|'));
    }
    // The grid's defaults: trade of the component (none here), state X, one person, 1W, the type of the interval.
    QCOMPARE(lines, (QStringList{"0010||X|1|1W|0,0|L", "0030||L|1|3M|0,0|L"}));
}

void TestComponentExchange::aBrokenFileLeavesTheDataAsTheyWere()
{
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    MemorySource::Table t{TabExportAuftraege, accessFields(true), {}};
    for (int i = 0; i < 6; ++i)
        t.rows << auftragRow({{"Satzart", "1"}, {"Objekt_Name", QStringLiteral("K%1").arg(i)}})
               << auftragRow({{"Satzart", "2"}, {"Auftragsposition_Objekt", "10"}});
    BreakingSource src(t, 7);
    const int nodes = count(db, QStringLiteral("ProtokollKopf"));
    const int lines = count(db, TabPositionen);
    const QString lastIndex = scalar(db, QStringLiteral("SELECT max(FileIndex) FROM ProtokollKopf")).toString();
    ScriptedPresenter msgs;
    const ImportResult r = importComponents(db, admin(), src, plant.halle, true);
    QVERIFY(r.refused);
    QVERIFY(r.newKeys.isEmpty());
    QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Fehler Nummer: 3343 Beschreibung: Seite 7 ist beschädigt")});
    QCOMPARE(count(db, QStringLiteral("ProtokollKopf")), nodes);
    QCOMPARE(count(db, TabPositionen), lines);
    QCOMPARE(scalar(db, QStringLiteral("SELECT max(FileIndex) FROM ProtokollKopf")).toString(), lastIndex);
}

void TestComponentExchange::damagedFilesGiveAMessage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("says");
    const QByteArray junk = QByteArray("PK\x03\x04 this is no archive at all", 32).repeated(40);
    QTest::newRow("empty .db") << "leer.db" << QByteArray() << "ist leer";
    QTest::newRow("text as .db") << "text.db" << QByteArray("Name;Typ\nPumpe;F\n").repeated(300) << "keine Datenbank-Datei";
    QTest::newRow("junk as .xlsx") << "junk.xlsx" << junk << "keine lesbare Tabellen-Datei";
    QTest::newRow("junk as .ods") << "junk.ods" << junk << "keine lesbare Tabellen-Datei";
    QTest::newRow("junk as .mdb") << "junk.mdb" << junk << "keine Access-Datei";
    QByteArray jet(4096 * 2 + 100, '\0');
    jet.replace(4, 15, "Standard Jet DB");
    QTest::newRow("cut .mdb") << "kurz.mdb" << jet << "unvollständig";
    QTest::newRow("unknown ending") << "x.csv" << QByteArray("a;b") << "keine lesbare Endung";
}

void TestComponentExchange::damagedFilesGiveAMessage()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, says);
    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();
    try {
        openTableSource(path, importSheetLayout(true));
        QFAIL("the file was taken");
    } catch (const Fault &fault) {
        QVERIFY2(fault.description().contains(says), qPrintable(fault.description()));
        QVERIFY(fault.description().contains(name));
    }
}

void TestComponentExchange::instructionExchangeOfOneComponent()
{
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("komp.db"));
    auto chooser = [&](const QString &proposed, const QString &) {
        return proposed == DefaultInstructionFile ? path : QString();
    };
    {
        ScriptedPresenter msgs;
        QVERIFY(!ExportAnweisungen(db, plant.luefter, chooser));
        QCOMPARE(msgs.texts(), QStringList{QStringLiteral("Es gibt keine Aufträge zu exportieren")});
        QVERIFY(ExportAnweisungen(db, plant.pumpe, chooser));
        // Again into the same file: the table of the component is there already; No keeps it.
        msgs.answer(Answer::No);
        QVERIFY(!ExportAnweisungen(db, plant.pumpe, chooser));
        QCOMPARE(msgs.texts().mid(1), (QStringList{QStringLiteral("Die Aufträge für diese Komponente wurden exportiert"),
                                                   QStringLiteral("Diese Komponente existiert schon in der Datenbank. "
                                                                  "Sollen ihre Aufträge überschrieben werden?")}));
    }
    std::unique_ptr<TableSource> src = openTableSource(path);
    QCOMPARE(importTables(*src), QStringList{QStringLiteral("Pumpe")});
    ProtocolGrid grid(db, plant.luefter, QStringLiteral("Administrator"));
    QVERIFY(grid.open());
    ScriptedPresenter msgs;
    InstructionImport r = importInstructions(grid, *src, QStringLiteral("Pumpe"));
    QCOMPARE(r.total, 3);
    QCOMPARE(msgs.lastText(), QStringLiteral("Alle 3 Positionen wurden übernommen"));
    QCOMPARE(grid.rows().size(), 3);
    r = importInstructions(grid, *src, QStringLiteral("Pumpe"));
    QCOMPARE(msgs.lastText(), QStringLiteral("3 von 3 Positionen wurden aufgrund falscher oder doppelter "
                                             "Objekt/Anweisungs Nummern nicht übernommen"));
    MemorySource wrong({{QStringLiteral("MSysObjects"), {}, {}},
                        {QStringLiteral("Liste"), {{QStringLiteral("Objekt"), 6}, {QStringLiteral("Text"), 255}}, {}}});
    QCOMPARE(importTables(wrong), QStringList{QStringLiteral("Liste")});
    r = importInstructions(grid, wrong, QStringLiteral("Liste"));
    QVERIFY(r.refused);
    QCOMPARE(msgs.lastText(), QStringLiteral("Diese Tabelle hat nicht die geforderte Form!"));
    QCOMPARE(zoltest::countRows(db, TabPositionen, QStringLiteral("TeNummer = ?"), {plant.luefter}), 3);
}

void TestComponentExchange::batchCommands()
{
    zoltest::TempData data;
    const QSqlDatabase db = data.sql();
    const Plant plant(db);
    Session session(data.db());
    session.login() = admin();
    QTemporaryDir dir;
    const QString db1 = dir.filePath(QStringLiteral("halle.db"));
    const QString halle = QStringLiteral("WI-Rundgang\\Halle 'Süd'");
    QCOMPARE(nodeAtPath(db, halle + QStringLiteral("\\pumpe")), plant.pumpe);
    QCOMPARE(nodeAtPath(db, QStringLiteral("WI-Rundgang")), RootProtok);
    QCOMPARE(nodeAtPath(db, QStringLiteral("WI-Rundgang\\Keller")), QString());
    ScriptedPresenter msgs;
    struct Call {
        bool exporting;
        QStringList args;
        int status;
    };
    const QList<Call> calls = {
        {true, {halle, "--file", db1, "--with-instructions"}, 0},   // the entries of the installation's list
        {true, {halle, "--file", db1}, 1},                          // the file exists now
        {true, {halle, "--file", dir.filePath("x.csv")}, 2},
        {true, {"WI-Rundgang\\Keller", "--file", dir.filePath("k.db")}, 1},
        {true, {halle, "--file", data.db().filePath()}, 2},
        {false, {db1, "--under", "WI-Rundgang", "--with-instructions"}, 0},
        {false, {db1, "--under", halle + "\\Pumpe"}, 1},             // a component holds no entries
        {false, {db1}, 2},
        {false, {dir.filePath("fehlt.db"), "--under", "WI-Rundgang"}, 1},
    };
    for (const Call &c : calls) {
        const int status = c.exporting ? exportComponentsCommand(session, c.args) : importComponentsCommand(session, c.args);
        QVERIFY2(status == c.status, qPrintable(c.args.join(' ') + " -> " + QString::number(status) + ": " + msgs.lastText()));
    }
    QCOMPARE(tableRows(db1, TabExportAuftraege).size(), 5);
    const QStringList names = snapshot(db, RootProtok).filter(QRegularExpression(QStringLiteral("^\\|\\|F")));
    QCOMPARE(names.size(), 2);   // Pumpe and Lüfter came back under the top node
}

QTEST_GUILESS_MAIN(TestComponentExchange)
#include "tst_componentexchange.moc"
