#include "ProtocolGridRules.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Rights.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include "zol/structure/Node.h"
#include "IntervalCodes.h"

namespace zol {

namespace {

int sizeOf(int col)
{
    return Schema::Size(TabPositionen, InstructionRow::fieldNames().at(col));
}

bool tooLong(const QString &text, int col)
{
    const int size = sizeOf(col);
    return size >= 0 && text.size() > size;
}

// Column refusals carry the information icon.
bool refuse(const QString &text)
{
    ZeigeMeldung(text, Style::Information);
    return false;
}

bool blank(const QString &s)
{
    return s.trimmed().isEmpty();
}

}

ProtocolRights protocolRights(const QString &level, bool componentIsStandard)
{
    ProtocolRights r;
    const bool evaluatorOrWorker = level == Role::Auswerter || level == Role::Werker;
    r.readOnly = standardCheckRefuses(level, componentIsStandard);
    r.mayReplace = !evaluatorOrWorker;
    r.mayUseCatalogs = !evaluatorOrWorker;
    r.mayCopy = !evaluatorOrWorker;
    return r;
}

QString catalogTableForColumn(int col)
{
    switch (col) {
    case Col::Text: return QStringLiteral("Texte");
    case Col::Ausfuehrender: return QStringLiteral("Gewerke");
    case Col::Sicherheitshinweis: return QStringLiteral("SHinweise");
    case Col::Materialcode: return QStringLiteral("Material");
    default: return {};
    }
}

bool showColumnHint(int col)
{
    if (col == Col::Betriebszustand)
        ZeigeMeldung(InstructionText::zulaessigeWerte(), Style::Information);
    else if (col == Col::Intervall)
        ZeigeMeldung(intervalLegend(), Style::Information);
    else
        return false;
    return true;
}

void applyCatalogChoice(InstructionRow &row, int col, const QString &text, const QString &standardInterval)
{
    if (text.isEmpty() || catalogTableForColumn(col).isEmpty())
        return;
    row.field(col) = text;
    if (col == Col::Text && !standardInterval.isEmpty())
        row.Intervall = standardInterval;
}

std::optional<QList<int>> shiftSelection(int anchorRow, int endRow, int rowCount, int visibleRows)
{
    if (rowCount > visibleRows) {
        ZeigeMeldung(QStringLiteral("Leider ist ein Markieren mit der Shift-Taste nicht möglich, wenn die Anzahl der "
                                    "Positionen größer ist als die Anzahl der sichtbaren Zeilen. Bitte benutzen Sie "
                                    "die Strg-Taste, um die gewünschten Positionen einzeln zu markieren."),
                     Style::Information);
        return std::nullopt;
    }
    QList<int> rows;
    for (int r = qMax(anchorRow, 0); r <= endRow && r < rowCount; ++r)
        rows << r;
    return rows;
}

ProtocolGrid::ProtocolGrid(const QSqlDatabase &db, const QString &teNummer, const QString &level)
    : m_db(db), m_teNummer(teNummer), m_level(level)
{
    m_rights = protocolRights(level, true);
}

bool ProtocolGrid::open()
{
    m_rights = protocolRights(m_level, IsStandard(m_db, m_teNummer));
    m_intervals.load(m_db);
    const auto node = loadNode(m_db, m_teNummer);
    if (!node) {
        m_rows.clear();
        m_numbering = {};
        return false;
    }
    m_wiVerantwortlicher = node->WIVerantwortlicher;
    reload();
    m_numbering = numberingOf(m_rows);
    return true;
}

void ProtocolGrid::useNewComponent(const QString &teNummer, const QString &wiVerantwortlicher, bool isStandard)
{
    m_teNummer = teNummer;
    m_wiVerantwortlicher = wiVerantwortlicher;
    m_rights = protocolRights(m_level, isStandard);
    m_rows.clear();
    m_numbering = {};
}

QList<InstructionRow> ProtocolGrid::reload()
{
    m_rows = loadProtocolRows(m_db, m_teNummer);
    return m_rows;
}

InstructionRow ProtocolGrid::newRow() const
{
    // The row rule puts "1W" into an instruction row; a head row has no
    // interval, and its type stays as it was.
    InstructionRow r = newInstructionRow(m_teNummer, m_wiVerantwortlicher);
    r.Intervall.clear();
    return r;
}

CellCheck ProtocolGrid::leaveCell(InstructionRow &row, int col, const QString &typed) const
{
    QString &cell = row.field(col);
    cell = typed;
    CellCheck result;
    auto fail = [&](const QString &text) {
        refuse(text);
        result.accepted = false;
    };
    switch (col) {
    case Col::Objekt:
    case Col::Anweisung:
        cell = formatMask(cell, col == Col::Objekt ? QStringLiteral("000000") : QStringLiteral("0000"));
        if (tooLong(cell, col))
            fail(InstructionText::hoechstens(sizeOf(col)));
        else if (!isNumeric(cell))
            fail(InstructionText::nurNumerisch());
        else if (col == Col::Anweisung) {
            // Kept as the grid always did it; the row rule puts a head row right on saving.
            if (integerPart(row.Anweisung) == 0)
                row.Intervall = QStringLiteral("1W");
            if (integerPart(row.Objekt) == 0)
                row.Intervall.clear();
        }
        break;
    case Col::Text:
    case Col::Ausfuehrender:
    case Col::Sicherheitshinweis:
    case Col::Materialcode:
        if (tooLong(cell, col))
            fail(InstructionText::hoechstens(sizeOf(col)));
        break;
    case Col::Betriebszustand:
        if (!checkBetriebszustand(cell))
            fail(InstructionText::betriebszustand());
        else if (tooLong(cell, col))
            fail(InstructionText::hoechstens(sizeOf(col)));
        break;
    case Col::Planzeit:
    case Col::Materialmenge:
        // Decimals are kept with a comma, as every reader of these fields expects.
        cell.replace(QLatin1Char('.'), QLatin1Char(','));
        [[fallthrough]];
    case Col::AnzahlPersonen:
        if (!isNumeric(cell))
            fail(InstructionText::nurNumerisch());
        else if (tooLong(cell, col))
            fail(InstructionText::hoechstens(sizeOf(col)));
        break;
    case Col::Intervall:
        cell = cell.toUpper();
        if (tooLong(cell, col))
            fail(InstructionText::hoechstens(sizeOf(col)));
        else if (const auto typ = m_intervals.typ(cell))
            row.Intervalltyp = *typ;
        else
            fail(InstructionText::intervallUndefiniert());
        break;
    default:
        break;
    }
    result.cellText = cell;
    return result;
}

bool ProtocolGrid::rowRule(InstructionRow &row)
{
    row.TeNummer = m_teNummer;

    if (blank(row.Objekt))
        row.Objekt = QString::number(m_numbering.lastObjekt);
    else if (const auto o = integerPart(row.Objekt); o && *o != m_numbering.lastObjekt && blank(row.Anweisung))
        row.Anweisung = QStringLiteral("0");
    row.Objekt = formatMask(row.Objekt, QStringLiteral("000000"));

    if (blank(row.Anweisung)) {
        const qint64 next = m_numbering.lastAnweisung + 10;
        row.Anweisung = next > 9999 ? QStringLiteral("0") : QString::number(next);
    }
    row.Anweisung = formatMask(row.Anweisung, QStringLiteral("0000"));

    if (!blank(row.Betriebszustand)) {
        if (!checkBetriebszustand(row.Betriebszustand))
            return refuse(InstructionText::betriebszustand());
    } else
        row.Betriebszustand = QStringLiteral("X");

    if (blank(row.AnzahlPersonen))
        row.AnzahlPersonen = QStringLiteral("1");
    if (blank(row.Ausfuehrender))
        row.Ausfuehrender = m_wiVerantwortlicher;

    if (!blank(row.Intervall)) {
        row.Intervall = row.Intervall.toUpper();
        if (!m_intervals.contains(row.Intervall))
            return refuse(InstructionText::intervallUndefiniert());
    } else if (formatMask(row.Anweisung, QStringLiteral("0000")) != QLatin1String("0000"))
        row.Intervall = QStringLiteral("1W");
    if (const auto typ = m_intervals.typ(row.Intervall))
        row.Intervalltyp = *typ;

    if (blank(row.Planzeit))
        row.Planzeit = QStringLiteral("0,0");
    if (blank(row.Materialmenge))
        row.Materialmenge = QStringLiteral("0,0");

    if (isHeadRowNumber(row.Anweisung))
        applyHeadRowValues(row);

    m_numbering.lastAnweisung = integerPart(row.Anweisung).value_or(0);
    m_numbering.lastObjekt = integerPart(row.Objekt).value_or(0);
    return true;
}

bool ProtocolGrid::checkFields(const InstructionRow &row) const
{
    for (int col = Col::Objekt; col < Col::Count; ++col) {
        const QString &v = row.value(col);
        const bool numeric = col == Col::Objekt || col == Col::Anweisung || col == Col::AnzahlPersonen
            || col == Col::Planzeit || col == Col::Materialmenge;
        if (tooLong(v, col))
            return refuse(InstructionText::hoechstens(sizeOf(col)));
        if (numeric && !isNumeric(v))
            return refuse(InstructionText::nurNumerisch());
    }
    return true;
}

QString ProtocolGrid::duplicateRowText()
{
    return QStringLiteral("Die gerade bearbeitete Zeile konnte nicht aktualisiert werden. Bitte überprüfen Sie, "
                          "ob das Objekt/Anweisungs-Nummernpaar doppelt vorhanden ist und ändern Sie dieses "
                          "gegebenenfalls");
}

bool ProtocolGrid::refuseWrite() const
{
    return m_rights.readOnly;
}

ProtocolGrid::WriteResult ProtocolGrid::writeRow(InstructionRow &row, bool reportDuplicate)
{
    if (refuseWrite())
        return WriteResult::Refused;
    const Numbering before = m_numbering;
    InstructionRow candidate = row;
    if (!rowRule(candidate) || !checkFields(candidate)) {
        m_numbering = before;
        return WriteResult::Refused;
    }
    try {
        storeInstructionRow(m_db, candidate);
    } catch (const Fault &f) {
        m_numbering = before;
        if (f.number() != FaultNo::KeyExists)
            throw;
        if (reportDuplicate)
            ZeigeMeldung(duplicateRowText(), Style::Exclamation);
        return WriteResult::DuplicateKey;
    }
    row = candidate;
    return WriteResult::Written;
}

bool askDeleteRows(int count)
{
    const QString question = count < 2 ? QStringLiteral("Wollen Sie die Position wirklich löschen?")
                                       : QStringLiteral("Wollen Sie die Position(en) wirklich löschen?");
    return ZeigeMeldung(question, Style::YesNo) == Answer::Yes;
}

int ProtocolGrid::deleteRows(const QList<qint64> &selectedRowIds, qint64 currentRowId)
{
    if (refuseWrite())
        return 0;
    QList<qint64> doomed;
    if (selectedRowIds.size() < 2) {
        if (currentRowId <= 0 || !askDeleteRows(1))
            return 0;
        doomed << currentRowId;
    } else {
        if (!askDeleteRows(int(selectedRowIds.size())))
            return 0;
        doomed = selectedRowIds;
    }
    Transaction tx(m_db);
    Statement del(m_db, QStringLiteral("DELETE FROM ProtokollPositionen WHERE rowid = ? AND TeNummer = ?"));
    int n = 0;
    for (qint64 id : doomed)
        n += del.run({id, m_teNummer}).numRowsAffected();
    tx.commit();
    return n;
}

}
