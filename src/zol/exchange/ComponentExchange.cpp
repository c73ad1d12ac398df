#include "ComponentExchange.h"
#include "DbTableWriter.h"
#include "InstructionExchange.h"
#include "XlsxWriter.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/instructions/InstructionRow.h"
#include "zol/instructions/ProtocolGridRules.h"
#include "zol/structure/Explorer.h"
#include "zol/structure/Node.h"
#include <QFileInfo>
#include <QHash>
#include <utility>

namespace zol {

namespace {

const QString TabKopf = QStringLiteral("ProtokollKopf");
const QString ObjektPrefix = QStringLiteral("Objekt_");
const QString PositionPrefix = QStringLiteral("Auftragsposition_");
const QString Satzart = QStringLiteral("Satzart");
const QStringList kNotExported = {QStringLiteral("FileIndex"), QStringLiteral("FileAbove"), QStringLiteral("Katalog")};
const QList<QPair<QString, QString>> kRenames = {{QStringLiteral("Text"), QStringLiteral("Name")}};

QString errorText(const Fault &f)
{
    return QStringLiteral("Fehler Nummer: %1 Beschreibung: %2").arg(f.number()).arg(f.description());
}

// Row rules speak through ZeigeMeldung; while many rows are read their
// refusals are kept as the reasons of the rows, not shown one by one.
class ReasonCollector : public MessagePresenter {
public:
    ReasonCollector() : m_previous(installedPresenter()) { installPresenter(this); }
    ~ReasonCollector() override { installPresenter(m_previous); }
    int present(const QString &text, int style) override
    {
        m_last = text;
        return defaultAnswer(style);
    }
    QString take() { return std::exchange(m_last, QString()); }

private:
    MessagePresenter *m_previous;
    QString m_last;
};

// Rows of one key at a time, read by a statement prepared once; values in
// the order of the field list.
class RowsByKey {
public:
    RowsByKey(const QSqlDatabase &db, const QString &table, const QStringList &fields, const QString &keyField,
              const QString &order = {})
        : m_fields(int(fields.size())),
          m_st(db, QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?%4")
                       .arg(fields.join(QLatin1Char(',')), ident(table), ident(keyField),
                            order.isEmpty() ? QString() : QStringLiteral(" ORDER BY ") + order))
    {
    }
    QList<QStringList> rows(const QString &key)
    {
        QList<QStringList> out;
        QSqlQuery &q = m_st.run({key});
        while (q.next()) {
            QStringList r;
            r.reserve(m_fields);
            for (int i = 0; i < m_fields; ++i)
                r << q.value(i).toString();
            out << r;
        }
        return out;
    }

private:
    int m_fields;
    Statement m_st;
};

// Where each output column takes its value: Satzart, or the field of that
// index in a node's or a line's row.
struct ColumnSource {
    enum Kind { Kind1, NodeField, LineField } kind;
    int field = -1;
};

QList<ColumnSource> sourcesOf(const QList<ExchangeColumn> &cols)
{
    QList<ColumnSource> out;
    for (const ExchangeColumn &c : cols) {
        if (c.target.isEmpty())
            out << ColumnSource{ColumnSource::Kind1, -1};
        else if (c.position)
            out << ColumnSource{ColumnSource::LineField, int(InstructionRow::fieldNames().indexOf(c.target))};
        else
            out << ColumnSource{ColumnSource::NodeField, int(Node::fieldNames().indexOf(c.target))};
    }
    return out;
}

// Walks the nodes and their lines and hands each output row to `put`.
template <typename Put>
ExportCount walkExport(const QSqlDatabase &db, const QStringList &keys, bool withInstructions,
                       const QList<ColumnSource> &sources, Put put)
{
    ExportCount count;
    RowsByKey nodes(db, TabKopf, Node::fieldNames(), QStringLiteral("FileIndex"));
    RowsByKey lines(db, TabPositionen, InstructionRow::fieldNames(), QStringLiteral("TeNummer"),
                    QStringLiteral("Objekt, Anweisung"));
    QStringList values(sources.size());
    auto fill = [&](const QString &satzart, ColumnSource::Kind kind, const QStringList &row) {
        for (int i = 0; i < sources.size(); ++i) {
            const ColumnSource &s = sources.at(i);
            values[i] = s.kind == ColumnSource::Kind1 ? satzart : s.kind == kind ? row.at(s.field) : QString();
        }
        put(values);
    };
    for (const QString &key : keys) {
        const QList<QStringList> node = nodes.rows(key);
        if (node.isEmpty())
            continue;
        fill(QStringLiteral("1"), ColumnSource::NodeField, node.first());
        ++count.components;
        if (!withInstructions)
            continue;
        for (const QStringList &line : lines.rows(key)) {
            fill(QStringLiteral("2"), ColumnSource::LineField, line);
            ++count.positions;
        }
    }
    return count;
}

QList<ExchangeColumn> columnsInTableOrder(bool withInstructions)
{
    // The database table follows the schema's order; the columns carry the names.
    const QList<ExchangeColumn> all = exchangeColumns(withInstructions);
    QList<ExchangeColumn> out;
    for (const FieldDef &f : exportTableFields(withInstructions))
        for (const ExchangeColumn &c : all)
            if (c.tableName == f.name)
                out << c;
    return out;
}

}

QList<ExchangeColumn> exchangeColumns(bool withInstructions)
{
    // The order of the import's form check; the sheets keep it too, without
    // AnlagenVerantwortlicher.
    struct Obj {
        const char *table, *sheet, *target;
    };
    static const Obj objects[] = {
        {"FileTyp", "FileTyp", "FileTyp"},
        {"Name", "Name", "Text"},
        {"BezugsJahr", "BezugsJahr", "BezugsJahr"},
        {"BezugsWoche", "BezugsWoche", "BezugsWoche"},
        {"Kostenstelle", "Kostenstelle", "Kostenstelle"},
        {"IdentNr", "IdentNr", "IdentNr"},
        {"Klassifizierung", "Klassifizierung", "Klassifizierung"},
        {"Lokalisierung", "Lokalisierung", "Lokalisierung"},
        {"Hersteller", "Hersteller", "Hersteller"},
        {"Typ", "Typ", "Typ"},
        {"WIVerantwortlicher", "Inspekteur", "WIVerantwortlicher"},
        {"AnlagenVerantwortlicher", "", "AnlagenVerantwortlicher"},
        {"Option1", "Laufweg", "Option1"},
        {"Option2", "Option2", "Option2"},
        {"Standort", "Standort", "Standort"},
        {"KeineWartung", "KeineWartung", "KeineWartung"},
        {"KeineWartungWocheVon1", "KeineWartungWocheVon1", "KeineWartungWocheVon1"},
        {"KeineWartungWocheBis1", "KeineWartungWocheBis1", "KeineWartungWocheBis1"},
        {"KeineWartungWocheVon2", "KeineWartungWocheVon2", "KeineWartungWocheVon2"},
        {"KeineWartungWocheBis2", "KeineWartungWocheBis2", "KeineWartungWocheBis2"},
    };
    QList<ExchangeColumn> out;
    if (withInstructions)
        out << ExchangeColumn{Satzart, Satzart, {}, false};
    for (const Obj &o : objects) {
        ExchangeColumn c{QString::fromLatin1(o.table), QString::fromLatin1(o.sheet), QString::fromLatin1(o.target), false};
        if (withInstructions) {
            c.tableName.prepend(ObjektPrefix);
            // The long sheet spells these two with a small letter.
            if (c.target == QLatin1String("BezugsJahr"))
                c.sheetName = QStringLiteral("Bezugsjahr");
            else if (c.target == QLatin1String("BezugsWoche"))
                c.sheetName = QStringLiteral("Bezugswoche");
            if (!c.sheetName.isEmpty())
                c.sheetName.prepend(ObjektPrefix);
        }
        out << c;
    }
    if (withInstructions) {
        for (const QString &f : InstructionRow::fieldNames().mid(1)) {
            const QString sheet = f == QLatin1String("Ausfuehrender") ? QStringLiteral("Gewerk") : f;
            out << ExchangeColumn{PositionPrefix + f, PositionPrefix + sheet, f, true};
        }
    }
    return out;
}

QList<FieldDef> exportTableFields(bool withInstructions)
{
    if (!withInstructions)
        return DbTableWriter::cloneFields(TabKopf, kNotExported, {}, kRenames);
    QList<FieldDef> fields{FieldDef{Satzart, FieldType::Text, 1}};
    fields << DbTableWriter::cloneFields(TabKopf, kNotExported, ObjektPrefix, kRenames);
    fields << DbTableWriter::cloneFields(TabPositionen, {QStringLiteral("TeNummer")}, PositionPrefix);
    return fields;
}

QStringList exportSheetColumns(bool withInstructions)
{
    QStringList heads;
    for (const ExchangeColumn &c : exchangeColumns(withInstructions))
        if (!c.sheetName.isEmpty())
            heads << c.sheetName;
    return heads;
}

const ExportSpec &exportSpec(ExportKind kind)
{
    static const QString dbFilter = QStringLiteral("Datenbank (*.db)");
    static const QString xlsxFilter = QStringLiteral("Excel Tabelle (*.xlsx)");
    static const ExportSpec specs[] = {
        {QStringLiteral("mnuFileExportObjekt"), QStringLiteral("ZOL_Objekte.db"), dbFilter, TabExportObjekte, false,
         false, QStringLiteral("Die Objekte wurden exportiert")},
        {QStringLiteral("mnuFileExportAufträge"), QStringLiteral("ZOL_Auftraege.db"), dbFilter, TabExportAuftraege,
         true, false, QStringLiteral("Die Objekte und Auftragspositionen wurden exportiert")},
        {QStringLiteral("mnuFileExportExcelObjekt"), QStringLiteral("ZOL_Objekte.xlsx"), xlsxFilter, TabExportObjekte,
         false, true, QStringLiteral("Die Objekte wurden exportiert")},
        {QStringLiteral("mnuFileExportExcelAufträge"), QStringLiteral("ZOL_Auftraege.xlsx"), xlsxFilter,
         TabExportObjekte, true, true, QStringLiteral("Die Objekte/Aufträge wurden exportiert")},
    };
    return specs[int(kind)];
}

QStringList exportKeys(const ExplorerSelection &sel)
{
    if (sel.listHasFocus)
        return sel.listSelected;
    if (sel.treeKey.isEmpty() || ExplorerTree::isRootKey(sel.treeKey))
        return {};
    return {sel.treeKey};
}

ExportCount writeExportTable(const QSqlDatabase &db, const QStringList &keys, const QString &path,
                             bool withInstructions)
{
    const QList<FieldDef> fields = exportTableFields(withInstructions);
    DbTableWriter writer(path, withInstructions ? TabExportAuftraege : TabExportObjekte, fields,
                         withInstructions ? QStringList{Satzart} : QStringList{});
    QVariantList row(fields.size());
    const ExportCount n = walkExport(db, keys, withInstructions, sourcesOf(columnsInTableOrder(withInstructions)),
                                     [&](const QStringList &values) {
                                         for (int i = 0; i < values.size(); ++i)
                                             row[i] = values.at(i);
                                         writer.addRow(row);
                                     });
    writer.finish();
    return n;
}

ExportCount writeExportSheet(const QSqlDatabase &db, const QStringList &keys, const QString &path,
                             bool withInstructions, bool headRows)
{
    QList<ExchangeColumn> cols;
    for (const ExchangeColumn &c : exchangeColumns(withInstructions))
        if (!c.sheetName.isEmpty())
            cols << c;
    // The sheet comes back through the import, whose reader needs the shared strings.
    XlsxWriter book(path, XlsxWriter::SharedStrings);
    book.addSheet(TabExportObjekte);
    int row = 0;
    if (headRows) {
        for (int c = 0; c < cols.size(); ++c)
            book.writeText(0, c, cols.at(c).sheetName);
        row = 2;
    }
    const ExportCount n = walkExport(db, keys, withInstructions, sourcesOf(cols), [&](const QStringList &values) {
        if (row >= XlsxWriter::MaxRows)
            throw Fault(FaultNo::General, QStringLiteral("Mehr als %1 Zeilen passen nicht auf ein Tabellenblatt.")
                                              .arg(XlsxWriter::MaxRows));
        for (int c = 0; c < values.size(); ++c)
            book.writeText(row, c, values.at(c));
        ++row;
    });
    book.finish();
    return n;
}

bool confirmTableReplace(const QString &path, const QString &table)
{
    if (!DbTableWriter::fileHasTable(path, table))
        return true;
    return ZeigeMeldung(QStringLiteral("Diese Komponente existiert schon in der Datenbank") + QStringLiteral(". ")
                            + QStringLiteral("Sollen ihre Aufträge überschrieben werden?"),
                        Style::YesNo)
        == Answer::Yes;
}

ExportOutcome ExportKomponenten(const QSqlDatabase &db, const QStringList &keys, ExportKind kind,
                                const FileChooser &choose)
{
    ExportOutcome out;
    if (keys.isEmpty())
        return out;
    const ExportSpec &spec = exportSpec(kind);
    QString path;
    for (;;) {
        path = choose(spec.defaultName, spec.filter);
        if (path.isEmpty()) {
            ZeigeMeldung(QStringLiteral("Es fand kein Export statt"), Style::Exclamation);
            return out;
        }
        if (const QString refusal = outputRefusal(path); !refusal.isEmpty()) {
            ZeigeMeldung(refusal, Style::Exclamation);
            continue;
        }
        if (QFileInfo::exists(path)) {
            ZeigeMeldung(QStringLiteral("Es muß eine noch nicht existierende Datei angegeben werden"),
                         Style::Exclamation);
            continue;
        }
        break;
    }
    try {
        if (spec.sheet) {
            const bool heads = ZeigeMeldung(QStringLiteral("2 Kopfzeilen mit Feldbezeichnungen einfügen?"), Style::YesNo)
                == Answer::Yes;
            out.count = writeExportSheet(db, keys, path, spec.withInstructions, heads);
        } else {
            // The file may have appeared after the dialog.
            if (!confirmTableReplace(path, spec.table))
                return out;
            out.count = writeExportTable(db, keys, path, spec.withInstructions);
        }
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Fehler Nummer: %1 -  Beschreibung: %2").arg(f.number()).arg(f.description()),
                     Style::Critical);
        return out;
    }
    out.written = true;
    out.path = path;
    ZeigeMeldung(spec.doneText, Style::Information);
    if (spec.sheet)
        out.openWorkbook = ZeigeMeldung(QStringLiteral("Excel-Tabelle jetzt aufrufen?"), Style::YesNo) == Answer::Yes;
    return out;
}

// ---------------------------------------------------------------------------

QString wrongFormText()
{
    return QStringLiteral("Diese Tabelle hat nicht die geforderte Form!") + QLatin1Char(' ')
        + QStringLiteral("Um eine Tabelle der richtigen From zu erhalten, exportieren Sie") + QLatin1Char(' ')
        + QStringLiteral("eine beliebige Komponente und benutzen Sie diese Tabelle.");
}

SheetLayout importSheetLayout(bool withInstructions) { return {exportSheetColumns(withInstructions)}; }

namespace {

// Adds lines to one component through the rules of its protocol grid.
class LineWriter {
public:
    explicit LineWriter(const QSqlDatabase &db)
        : m_insert(db, QStringLiteral("INSERT INTO ProtokollPositionen (%1) VALUES (%2)")
                           .arg(InstructionRow::fieldNames().join(QLatin1Char(',')),
                                QStringList(Col::Count, QStringLiteral("?")).join(QLatin1Char(','))))
    {
    }
    // Empty when written, else why not. Faults other than an existing key propagate.
    QString add(ProtocolGrid &grid, InstructionRow row, ReasonCollector &reasons)
    {
        grid.setNumbering({integerPart(row.Objekt).value_or(0), integerPart(row.Anweisung).value_or(0)});
        if (!grid.rowRule(row) || !grid.checkFields(row))
            return reasons.take();
        QVariantList values;
        for (int c = 0; c < Col::Count; ++c)
            values << row.value(c);
        try {
            m_insert.run(values);
        } catch (const Fault &f) {
            if (f.number() != FaultNo::KeyExists)
                throw;
            return QStringLiteral("Objekt/Anweisung %1/%2 gibt es schon").arg(row.Objekt, row.Anweisung);
        }
        return {};
    }

private:
    Statement m_insert;
};

// The numbers of a line as the import takes them: a numeric text padded to
// its mask, anything else the zero number.
QString importNumber(const QString &text, const QString &mask)
{
    return isNumeric(text) ? formatMask(text, mask) : mask;
}

struct FormCheck {
    QList<int> index;   // per expected column: its field in the source, -1 if the sheet has none
    QString problem;
};

FormCheck checkForm(const QList<SourceField> &fields, const QList<ExchangeColumn> &expected, bool sheet)
{
    FormCheck fc;
    for (const ExchangeColumn &c : expected) {
        const QString name = sheet ? c.sheetName : c.tableName;
        if (name.isEmpty()) {
            fc.index << -1;
            continue;
        }
        int found = -1;
        for (int i = 0; i < fields.size() && found < 0; ++i)
            if (fields.at(i).name.compare(name, Qt::CaseInsensitive) == 0)
                found = i;
        if (found < 0) {
            fc.problem = QStringLiteral("Das Feld %1 fehlt.").arg(name);
            return fc;
        }
        const QString table = c.target.isEmpty() ? QString() : c.position ? TabPositionen : TabKopf;
        const int want = table.isEmpty() ? 1 : Schema::Size(table, c.target);
        if (!sheet && fields.at(found).size != want) {
            fc.problem = QStringLiteral("Das Feld %1 hat die Größe %2, erwartet ist %3.")
                             .arg(name)
                             .arg(fields.at(found).size)
                             .arg(want);
            return fc;
        }
        fc.index << found;
    }
    return fc;
}

QString importTableOf(const TableSource &source, bool withInstructions)
{
    const QString wanted = withInstructions && source.knowsSizes() ? TabExportAuftraege : TabExportObjekte;
    // A workbook names its one sheet ExportObjekte in both forms; a renamed
    // sheet is taken when it is the only one.
    const QStringList tables = source.tables();
    if (!source.knowsSizes() && !tables.contains(wanted, Qt::CaseInsensitive) && tables.size() == 1)
        return tables.first();
    return wanted;
}

QString editRefusalText(const QSqlDatabase &db, const QString &key)
{
    return isStandardKey(db, key) ? QStringLiteral("Sie sind nicht berechtigt, Standards zu editieren")
                                  : QStringLiteral("Sie sind nicht berechtigt, Stammdaten zu editieren");
}

void showRowRefusals(const ImportResult &r, const QString &file, const QString &table)
{
    if (r.rowRefusals.isEmpty())
        return;
    const int shown = 10;
    QString text = QStringLiteral("Nicht übernommen aus %1, Tabelle %2:\n").arg(file, table)
        + r.rowRefusals.mid(0, shown).join(QLatin1Char('\n'));
    if (r.rowRefusals.size() > shown)
        text += QStringLiteral("\n... und %1 weitere").arg(r.rowRefusals.size() - shown);
    ZeigeMeldung(text, Style::Exclamation);
}

}

ImportResult importComponents(const QSqlDatabase &db, const Login &login, TableSource &source,
                              const QString &parentKey, bool withInstructions)
{
    ImportResult result;
    auto refuse = [&](const QString &text, int style = Style::Exclamation) {
        result.refused = true;
        result.failed = 0;
        result.newKeys.clear();
        result.rowRefusals.clear();
        ZeigeMeldung(text, style);
        return result;
    };
    if (parentKey.isEmpty())
        return refuse(QStringLiteral("Bitte erst einen Ordner auswählen"));
    if (standardCheckRefuses(login, db, parentKey))
        return refuse(editRefusalText(db, parentKey));

    const bool sheet = !source.knowsSizes();
    const QString table = importTableOf(source, withInstructions);
    const QString file = QFileInfo(source.path()).fileName();
    const QList<ExchangeColumn> expected = exchangeColumns(withInstructions);
    try {
        std::unique_ptr<TableReader> reader = source.open(table);
        const FormCheck form = checkForm(reader->fields(), expected, sheet);
        if (!form.problem.isEmpty()) {
            result.detail = QStringLiteral("%1, Tabelle %2: %3").arg(file, table, form.problem);
            return refuse(wrongFormText());
        }

        QStringList values;
        if (!reader->next(values)) {
            ZeigeMeldung(QStringLiteral("Keine zu importierenden Objekte in der Tabelle vorhanden"), Style::Exclamation);
            return result;
        }
        const QString katalog = katalogForPath(FullPath(db, parentKey));
        QSet<QString> taken = shownNamesInFolder(db, parentKey);
        const int nameSize = Schema::Size(TabKopf, QStringLiteral("Text"));
        auto valueOf = [&](int col) {
            const int i = form.index.at(col);
            return i < 0 ? QString() : values.value(i);
        };

        Transaction tx(db);
        ReasonCollector reasons;
        LineWriter lines(db);
        std::unique_ptr<ProtocolGrid> rules;
        ProtocolGrid *grid = nullptr;   // the rules of the component the lines go to, if any
        Statement insertNode(db, QStringLiteral("INSERT INTO ProtokollKopf (%1) VALUES (%2)")
                                     .arg(Node::fieldNames().join(QLatin1Char(',')),
                                          QStringList(Node::fieldNames().size(), QStringLiteral("?"))
                                              .join(QLatin1Char(','))));
        do {
            ++result.total;
            auto failRow = [&](const QString &why) {
                ++result.failed;
                result.rowRefusals << QStringLiteral("Zeile %1: %2").arg(reader->rowNumber()).arg(why);
            };
            const bool componentRow = !withInstructions || valueOf(0).trimmed() == QLatin1String("1");
            if (componentRow) {
                grid = nullptr;
                Node node;
                node.FileAbove = parentKey;
                node.Katalog = katalog;
                QString tooLong;
                for (int col = 0; col < expected.size(); ++col) {
                    const ExchangeColumn &c = expected.at(col);
                    if (c.position || c.target.isEmpty())
                        continue;
                    QString v = valueOf(col);
                    if (c.target == QLatin1String("BezugsJahr"))
                        v = isNumeric(v) ? formatMask(v, QStringLiteral("0000")) : v;
                    else if (c.target == QLatin1String("BezugsWoche"))
                        v = importNumber(v, QStringLiteral("00"));
                    const int size = Schema::Size(TabKopf, c.target);
                    if (tooLong.isEmpty() && size >= 0 && v.size() > size)
                        tooLong = QStringLiteral("Feld %1: %2").arg(sheet ? c.sheetName : c.tableName,
                                                                    InstructionText::hoechstens(size));
                    node.setValue(c.target, v);
                }
                if (!tooLong.isEmpty()) {
                    failRow(tooLong);
                    continue;
                }
                node.FileTyp = node.FileTyp == FileTypOrdner ? FileTypOrdner : FileTypFile;
                const QString base = !node.Text.isEmpty() ? node.Text
                    : node.isInstallation()                 ? QStringLiteral("Ordner")
                                                            : QStringLiteral("File");
                const std::optional<QString> name = uniqueNameAmong(taken, base, nameSize);
                if (!name) {
                    failRow(QStringLiteral("Feld Name: kein freier Name für \"%1\"").arg(base));
                    continue;
                }
                node.Text = *name;
                node.FileIndex = NeuerFileIndex(db, TabKopf);
                QVariantList nodeValues;
                for (const QString &f : Node::fieldNames())
                    nodeValues << node.value(f);
                insertNode.run(nodeValues);
                taken.insert(foldedName(node.Text));
                result.newKeys << node.FileIndex;
                if (withInstructions) {
                    // The interval table is read with the first component only.
                    if (!rules) {
                        rules = std::make_unique<ProtocolGrid>(db, node.FileIndex, login.Level);
                        rules->open();
                    } else {
                        rules->useNewComponent(node.FileIndex, node.WIVerantwortlicher, node.Katalog != QLatin1String("0"));
                    }
                    grid = rules.get();
                }
                continue;
            }
            if (!grid) {
                failRow(QStringLiteral("Auftragsposition ohne Komponente (keine gültige Zeile mit Satzart 1 davor)"));
                continue;
            }
            InstructionRow row;
            for (int col = 0; col < expected.size(); ++col) {
                const ExchangeColumn &c = expected.at(col);
                if (c.position)
                    row.setValue(InstructionRow::fieldNames().indexOf(c.target), valueOf(col));
            }
            row.Objekt = importNumber(row.Objekt, QStringLiteral("000000"));
            row.Anweisung = importNumber(row.Anweisung, QStringLiteral("0000"));
            if (const QString why = lines.add(*grid, row, reasons); !why.isEmpty())
                failRow(why);
        } while (reader->next(values));
        tx.commit();
    } catch (const Fault &f) {
        return refuse(errorText(f));
    }

    showRowRefusals(result, file, table);
    if (withInstructions)
        ZeigeMeldung(result.failed == 0
                         ? QStringLiteral("Alle %1 Objekte und Auftragspositionen wurden übernommen").arg(result.total)
                         : QStringLiteral("%1 von %2 Objekten bzw. Auftragspositionen konnten nicht übernommen werden")
                               .arg(result.failed)
                               .arg(result.total),
                     Style::Exclamation);
    else
        ZeigeMeldung(result.failed == 0 ? QStringLiteral("Alle %1 Objekte wurden importiert").arg(result.total)
                                        : QStringLiteral("%1 von %2 Objekten konnten nicht importiert werden")
                                              .arg(result.failed)
                                              .arg(result.total),
                     Style::Exclamation);
    return result;
}

ImportResult ImportKomponenten(const QSqlDatabase &db, const Login &login, const QString &parentKey,
                               bool withInstructions, const FileChooser &choose)
{
    ImportResult result;
    const QString path = choose(QString(), ImportFilter);
    if (path.isEmpty())
        return result;
    const std::unique_ptr<TableSource> source = openImportFile(path, importSheetLayout(withInstructions));
    if (!source) {
        result.refused = true;
        return result;
    }
    return importComponents(db, login, *source, parentKey, withInstructions);
}

std::unique_ptr<TableSource> openImportFile(const QString &path, const SheetLayout &layout)
{
    try {
        return openTableSource(path, layout);
    } catch (const Fault &f) {
        ZeigeMeldung(errorText(f), Style::Exclamation);
        return nullptr;
    }
}

// ---------------------------------------------------------------------------

QStringList instructionFieldNames() { return InstructionRow::fieldNames().mid(1); }

bool ExportAnweisungen(const QSqlDatabase &db, const QString &teNummer, const FileChooser &choose)
{
    try {
        RowsByKey query(db, TabPositionen, instructionFieldNames(), QStringLiteral("TeNummer"),
                        QStringLiteral("Objekt, Anweisung"));
        const QList<QStringList> rows = query.rows(teNummer);
        if (rows.isEmpty()) {
            ZeigeMeldung(QStringLiteral("Es gibt keine Aufträge zu exportieren"), Style::Exclamation);
            return false;
        }
        const QString path = choose(DefaultInstructionFile, QStringLiteral("Datenbank (*.db)"));
        if (path.isEmpty())
            return false;
        if (const QString refusal = outputRefusal(path); !refusal.isEmpty()) {
            ZeigeMeldung(refusal, Style::Exclamation);
            return false;
        }
        const std::optional<Node> node = loadNode(db, teNummer);
        // The table bears the component's name, so one file can hold the lines of many.
        const QString table = node && !node->Text.trimmed().isEmpty() ? node->Text.trimmed() : teNummer;
        if (!confirmTableReplace(path, table))
            return false;
        const QList<FieldDef> fields = DbTableWriter::cloneFields(TabPositionen, {QStringLiteral("TeNummer")});
        DbTableWriter writer(path, table, fields);
        for (const QStringList &r : rows)
            writer.addRow(QVariantList(r.cbegin(), r.cend()));
        writer.finish();
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Fehler Nummer: %1 -  Beschreibung: %2").arg(f.number()).arg(f.description()),
                     Style::Critical);
        return false;
    }
    ZeigeMeldung(QStringLiteral("Die Aufträge für diese Komponente wurden exportiert"), Style::Information);
    return true;
}

QStringList importTables(const TableSource &source)
{
    QStringList out;
    for (const QString &t : source.tables())
        if (!t.startsWith(QLatin1String("MSys"), Qt::CaseInsensitive))
            out << t;
    return out;
}

InstructionImport importInstructions(ProtocolGrid &grid, TableSource &source, const QString &table)
{
    InstructionImport result;
    if (grid.rights().readOnly)
        return result;
    const QStringList wanted = instructionFieldNames();
    const QSqlDatabase db = grid.db();
    const Numbering before = grid.numbering();
    try {
        std::unique_ptr<TableReader> reader = source.open(table);
        const QList<SourceField> fields = reader->fields();
        QList<int> index;
        for (const QString &w : wanted) {
            int found = -1;
            for (int i = 0; i < fields.size() && found < 0; ++i)
                if (fields.at(i).name.compare(w, Qt::CaseInsensitive) == 0)
                    found = i;
            if (found < 0) {
                result.refused = true;
                ZeigeMeldung(QStringLiteral("Diese Tabelle hat nicht die geforderte Form!"), Style::Exclamation);
                return result;
            }
            index << found;
        }
        Transaction tx(db);
        ReasonCollector reasons;
        LineWriter lines(db);
        QStringList values;
        while (reader->next(values)) {
            ++result.total;
            InstructionRow row;
            for (int k = 0; k < wanted.size(); ++k)
                row.setValue(k + 1, values.value(index.at(k)));
            if (!lines.add(grid, row, reasons).isEmpty())
                ++result.refusedRows;
        }
        tx.commit();
    } catch (const Fault &f) {
        grid.setNumbering(before);
        result = InstructionImport{true, result.total, 0};
        ZeigeMeldung(errorText(f), Style::Exclamation);
        return result;
    }
    grid.reload();
    if (result.refusedRows == 0)
        ZeigeMeldung(QStringLiteral("Alle %1 Positionen wurden übernommen").arg(result.total), Style::Information);
    else
        ZeigeMeldung(QStringLiteral("%1 von %2 Positionen wurden aufgrund falscher oder doppelter Objekt/Anweisungs "
                                    "Nummern nicht übernommen")
                         .arg(result.refusedRows)
                         .arg(result.total),
                     Style::Information);
    return result;
}

}
