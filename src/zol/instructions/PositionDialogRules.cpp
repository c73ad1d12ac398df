#include "PositionDialogRules.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Rights.h"
#include "zol/structure/Node.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"

namespace zol {

namespace {

const QString MaskObjekt = QStringLiteral("000000");
const QString MaskAnweisung = QStringLiteral("0000");

bool refuse(const QString &text)
{
    ZeigeMeldung(text, Style::Exclamation);
    return false;
}

QString formatNumber(qint64 n, const QString &mask)
{
    return formatMask(QString::number(n), mask);
}

}

const QStringList &positionStates()
{
    static const QStringList states{QStringLiteral("X"), QStringLiteral("R"), QStringLiteral("L")};
    return states;
}

PositionProposal fillPositionForm(const QList<InstructionRow> &rows, int currentRow, int mode)
{
    PositionProposal p;
    PositionForm &f = p.form;
    const int count = int(rows.size());
    const bool onRow = currentRow >= 0 && currentRow < count;
    p.currentRow = onRow ? currentRow : -1;
    if (onRow) {
        f.Anweisung = rows.at(currentRow).Anweisung;
        f.Objekt = formatMask(rows.at(currentRow).Objekt, MaskObjekt);
    }
    f.AnzahlPersonen = QStringLiteral("1");
    f.Planzeit = QStringLiteral("0,0");
    f.MaterialMenge = QStringLiteral("0,0");
    f.Betriebszustand = positionStates().first();
    f.Intervall = QStringLiteral("1W");

    if (mode == PositionMode::Edit) {
        if (onRow) {
            const InstructionRow &r = rows.at(currentRow);
            auto take = [](QString &control, const QString &value) {
                if (!value.isEmpty())
                    control = value;
            };
            take(f.Text, r.Text);
            take(f.Gewerk, r.Ausfuehrender);
            take(f.Betriebszustand, r.Betriebszustand);
            take(f.AnzahlPersonen, r.AnzahlPersonen);
            take(f.Sicherheitshinweis, r.Sicherheitshinweis);
            take(f.Intervall, r.Intervall);
            take(f.Planzeit, r.Planzeit);
            take(f.MaterialCode, r.Materialcode);
            take(f.MaterialMenge, r.Materialmenge);
        }
        return p;
    }

    if (!onRow) {
        // An empty list (or none current): the first row of the first object.
        f.Objekt = MaskObjekt;
        f.Anweisung = MaskAnweisung;
        return p;
    }

    const InstructionRow &cur = rows.at(currentRow);
    qint64 a = isNumeric(cur.Anweisung) ? integerPart(cur.Anweisung).value_or(0) : 0;
    if (mode == PositionMode::InsertBefore) {
        f.Objekt = MaskObjekt;
        const QString o = formatMask(cur.Objekt, MaskObjekt);
        // The first row has no row before it and stays where it is.
        const int prev = currentRow >= 1 ? currentRow - 1 : currentRow;
        const InstructionRow &before = rows.at(prev);
        f.Objekt = formatMask(before.Objekt, MaskObjekt);
        if (const auto pv = integerPart(before.Anweisung)) {
            if (*pv >= a)
                f.Objekt = o;
            a = roundHalfEven((double(*pv) + double(a)) / 2.0);
        }
        p.currentRow = prev + 1 < count ? prev + 1 : -1;
    } else {
        f.Objekt = formatMask(cur.Objekt, MaskObjekt);
        const int next = currentRow + 1;
        if (next >= count) {
            a += 10;
            p.currentRow = 0;
        } else {
            const InstructionRow &after = rows.at(next);
            if (formatMask(after.Objekt, MaskObjekt) == f.Objekt) {
                if (const auto n = integerPart(after.Anweisung))
                    a = roundHalfEven((double(*n) + double(a)) / 2.0);
            } else
                a += 10;
            p.currentRow = currentRow;
        }
    }
    f.Anweisung = formatNumber(a, MaskAnweisung);
    return p;
}

PositionDialogRules::PositionDialogRules(const QSqlDatabase &db, const QString &teNummer, const QString &level)
    : m_db(db), m_teNummer(teNummer), m_intervals(db),
      m_readOnly(standardCheckRefuses(level, IsStandard(db, teNummer)))
{
}

QString PositionDialogRules::duplicatePairText()
{
    return QStringLiteral("Ein Eintrag mit diesem Objekt/Anweisungs-Paar existiert schon");
}

bool PositionDialogRules::pairExists(const QString &objekt, const QString &anweisung) const
{
    return scalar(m_db,
                  QStringLiteral("SELECT COUNT(*) FROM ProtokollPositionen WHERE TeNummer = ? AND Objekt = ? "
                                 "AND Anweisung = ?"),
                  {m_teNummer, objekt, anweisung})
               .toInt()
        > 0;
}

bool PositionDialogRules::ok(PositionForm &form, int mode, const QList<InstructionRow> &rows,
                             const InstructionRow *current, InstructionRow *written)
{
    m_refusedField.clear();
    if (m_readOnly)
        return false;
    // Each refusal names the field it is about, so the window can put the focus there.
    const auto refuseAt = [this](const QString &field, const QString &text) {
        m_refusedField = field;
        return refuse(text);
    };
    if (form.Anweisung.trimmed().isEmpty())
        return refuseAt(QStringLiteral("Anweisung"), QStringLiteral("Es wird eine Anweisungs-Nummer erwartet"));
    if (form.Objekt.trimmed().isEmpty())
        return refuseAt(QStringLiteral("Objekt"), QStringLiteral("Es wird eine Objekt-Nummer erwartet"));
    if (form.AnzahlPersonen.trimmed().isEmpty())
        return refuseAt(QStringLiteral("AnzahlPersonen"), QStringLiteral("Es wird eine Personen-Anzahl erwartet"));
    if (form.MaterialMenge.isEmpty() || !isNumeric(form.MaterialMenge))
        form.MaterialMenge = QStringLiteral("0,0");
    if (form.Planzeit.isEmpty() || !isNumeric(form.Planzeit))
        form.Planzeit = QStringLiteral("0,0");

    // The controls take digits only and stop at the field's size; these
    // guards hold the same for text that reaches the rules by other roads.
    const QString objekt = formatMask(form.Objekt, MaskObjekt);
    const QString anweisung = formatMask(form.Anweisung, MaskAnweisung);
    const QList<QPair<QString, QString>> numbers{{QStringLiteral("Objekt"), objekt},
                                                  {QStringLiteral("Anweisung"), anweisung},
                                                  {QStringLiteral("AnzahlPersonen"), form.AnzahlPersonen}};
    for (const auto &[field, n] : numbers)
        if (!isNumeric(n))
            return refuseAt(field, InstructionText::nurNumerisch());
    form.Intervall = form.Intervall.toUpper();
    if (!form.Intervall.isEmpty() && !m_intervals.contains(form.Intervall))
        return refuseAt(QStringLiteral("Intervall"), InstructionText::intervallUndefiniert());
    const QList<QPair<QString, QString>> sized{
        {QStringLiteral("Objekt"), objekt},
        {QStringLiteral("Anweisung"), anweisung},
        {QStringLiteral("Text"), form.Text},
        {QStringLiteral("Ausfuehrender"), form.Gewerk},
        {QStringLiteral("Betriebszustand"), form.Betriebszustand},
        {QStringLiteral("AnzahlPersonen"), form.AnzahlPersonen},
        {QStringLiteral("Sicherheitshinweis"), form.Sicherheitshinweis},
        {QStringLiteral("Planzeit"), form.Planzeit},
        {QStringLiteral("Materialcode"), form.MaterialCode},
        {QStringLiteral("Materialmenge"), form.MaterialMenge}};
    for (const auto &[field, value] : sized) {
        const int size = Schema::Size(TabPositionen, field);
        if (size >= 0 && value.size() > size)
            return refuseAt(field, InstructionText::hoechstens(size));
    }

    const bool insertion = mode != PositionMode::Edit;
    if (!insertion && !current) {
        ZeigeMeldung(QStringLiteral("FehlerNr %1 wurde ausgelöst von ZOL\nKein aktueller Datensatz.")
                         .arg(FaultNo::NoCurrentRecord),
                     Style::Critical);
        return false;
    }
    const bool keyChanged = current
        && (formatMask(current->Objekt, MaskObjekt) != objekt || formatMask(current->Anweisung, MaskAnweisung) != anweisung);
    if (!rows.isEmpty() && (insertion || keyChanged) && pairExists(objekt, anweisung))
        return refuseAt(QStringLiteral("Anweisung"), duplicatePairText());

    InstructionRow row;
    if (insertion)
        row.TeNummer = m_teNummer;
    else
        row = *current;
    auto put = [](QString &field, const QString &control) {
        if (!control.isEmpty())
            field = control;
    };
    put(row.Anweisung, anweisung);
    put(row.Objekt, objekt);
    put(row.Text, form.Text);
    put(row.Ausfuehrender, form.Gewerk);
    put(row.Betriebszustand, form.Betriebszustand);
    put(row.AnzahlPersonen, form.AnzahlPersonen);
    put(row.Sicherheitshinweis, form.Sicherheitshinweis);
    put(row.Intervall, form.Intervall);
    put(row.Planzeit, form.Planzeit);
    put(row.Materialcode, form.MaterialCode);
    put(row.Materialmenge, form.MaterialMenge);
    if (const auto typ = m_intervals.typ(form.Intervall))
        row.Intervalltyp = *typ;

    try {
        storeInstructionRow(m_db, row);
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("FehlerNr %1 wurde ausgelöst von ZOL\n%2").arg(f.number()).arg(f.description()),
                     Style::Critical);
        return false;
    }
    if (written)
        *written = row;
    return true;
}

}
