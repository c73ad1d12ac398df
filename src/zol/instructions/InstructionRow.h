#pragma once
#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>

namespace zol {

// Column numbers of an instruction row, as the grid shows them and as the
// table ProtokollPositionen holds its fields.
namespace Col {
constexpr int TeNummer = 0;
constexpr int Objekt = 1;
constexpr int Anweisung = 2;
constexpr int Text = 3;
constexpr int Ausfuehrender = 4;
constexpr int Betriebszustand = 5;
constexpr int AnzahlPersonen = 6;
constexpr int Sicherheitshinweis = 7;
constexpr int Intervall = 8;
constexpr int Planzeit = 9;
constexpr int Materialcode = 10;
constexpr int Materialmenge = 11;
constexpr int Intervalltyp = 12;
constexpr int Count = 13;
}

inline const QString TabPositionen = QStringLiteral("ProtokollPositionen");
inline const QString TabPositionenBuffer = QStringLiteral("ProtokollPositionenBuffer");

// One line of a component's protocol: a row of ProtokollPositionen, every
// field as text. rowId is the store's own row number (0 for a row not yet
// written), so a row whose key fields were changed can still be found.
struct InstructionRow {
    QString TeNummer, Objekt, Anweisung, Text, Ausfuehrender, Betriebszustand, AnzahlPersonen,
        Sicherheitshinweis, Intervall, Planzeit, Materialcode, Materialmenge, Intervalltyp;
    qint64 rowId = 0;

    // The thirteen field names in the order of the table.
    static const QStringList &fieldNames();
    const QString &value(int col) const;
    QString &field(int col);
    void setValue(int col, const QString &v) { field(col) = v; }
};

// A new instruction row of a component before the user types anything.
InstructionRow newInstructionRow(const QString &teNummer, const QString &wiVerantwortlicher);

// Numeric as the number columns take it: optional sign, digits, at most one
// decimal comma (a point is taken as well). Blank is not numeric.
bool isNumeric(const QString &text);
// The number of a numeric text; 0 for any other.
double numericValue(const QString &text);
// The integer part (truncated toward zero) of a numeric text, nothing otherwise.
std::optional<qint64> integerPart(const QString &text);
// The value rounded to a whole number, halves to the even one.
qint64 roundHalfEven(double value);
// A numeric text as a whole number padded to the mask's width ("000000",
// "0000", "00"); any other text comes back as it is.
QString formatMask(const QString &text, const QString &mask);

// A row whose Anweisung is "0000", empty, or numerically 0 heads its object.
bool isHeadRowNumber(const QString &anweisung);
// Brings a head row to its fixed values: Anweisung "0000", no trade, state,
// interval, material or safety note, persons "0", times "0,0".
void applyHeadRowValues(InstructionRow &row);

// The interval codes of Intervalle with their Typ, read once; codes are
// looked up in upper case.
class IntervalTable {
public:
    IntervalTable() = default;
    explicit IntervalTable(const QSqlDatabase &db);
    void load(const QSqlDatabase &db);
    // The Typ of the code, or nothing when Intervalle doesn't hold it.
    std::optional<QString> typ(const QString &code) const;
    bool contains(const QString &code) const { return typ(code).has_value(); }
    QStringList codes() const;

private:
    QHash<QString, QString> m_typ;
    QStringList m_codes;
};

// The messages of the instruction rules, word for word.
namespace InstructionText {
QString nurNumerisch();            // "Nur numerische Zeichen erlaubt"
QString hoechstens(int size);      // "Höchstens <Size> Zeichen erlaubt"
QString betriebszustand();         // the refusal of an operating state
QString intervallUndefiniert();    // "Dieses Intervall ist nicht definiert"
QString zulaessigeWerte();         // the hint of the operating-state column button
}

// Upper-cases an operating state and tells whether it is R, L or X.
bool checkBetriebszustand(QString &value);

// All rows of a component in the grid's order: sorted by Objekt alone.
QList<InstructionRow> loadProtocolRows(const QSqlDatabase &db, const QString &teNummer);
// The numbers a protocol window starts with: those of the last row of its
// list, 0 and 0 for an empty list.
struct Numbering {
    qint64 lastObjekt = 0;
    qint64 lastAnweisung = 0;
};
Numbering numberingOf(const QList<InstructionRow> &rows);

// Writes one row: an insert for rowId 0 (the new rowId is set), else an
// update of the row with that rowId. A key that exists already throws
// fault 3022; nothing else is checked here.
void storeInstructionRow(const QSqlDatabase &db, InstructionRow &row);

}
