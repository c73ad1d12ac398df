#pragma once
#include "InstructionRow.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <optional>

namespace zol {

// What the protocol window may offer a role on a component.
struct ProtocolRights {
    bool readOnly = true;       // no add, update, delete, dialog, paste
    bool mayReplace = false;    // replace controls of the search dialog
    bool mayUseCatalogs = false; // column buttons of Text, Gewerk, Sicherheitshinweis, Materialcode
    bool mayCopy = false;       // copy rows into the buffer, import, export
};
// Administrator and Master write everywhere; other roles only outside the
// Standards, Auswerter and Werker never.
ProtocolRights protocolRights(const QString &level, bool componentIsStandard);

// The column buttons (and Ctrl+K): columns 3, 4, 7 and 10 pick from a
// catalog, given by its table; 5 and 8 show a hint. Empty for other columns.
QString catalogTableForColumn(int col);
// Shows the hint of column 5 (the allowed states) or 8 (the interval legend);
// false for a column without a hint.
bool showColumnHint(int col);
// Puts a catalog's choice into the row: a non-empty text into the column and,
// for the instruction texts, a non-empty standard interval into Intervall.
void applyCatalogChoice(InstructionRow &row, int col, const QString &text, const QString &standardInterval = {});

// Selection with Shift from the anchor row to the clicked row. Refused with
// its message (nothing returned) when the list is longer than the grid shows;
// otherwise the rows from anchor to end, none when the end lies above.
std::optional<QList<int>> shiftSelection(int anchorRow, int endRow, int rowCount, int visibleRows);

// The answer of the column rule for a left cell. On a refusal the message has
// been shown; the cell keeps the focus and shows cellText.
struct CellCheck {
    bool accepted = true;
    QString cellText;
};

// The rules of one open protocol: the component, its remembered numbers and
// the row and column rules that guard every write of a row.
class ProtocolGrid {
public:
    ProtocolGrid(const QSqlDatabase &db, const QString &teNummer, const QString &level);

    // Reads the component (its WIVerantwortlicher and whether it is a Standard)
    // and its rows; the remembered numbers become those of the last row.
    // False when the component doesn't exist: the window stays empty.
    bool open();
    const QList<InstructionRow> &rows() const { return m_rows; }
    QList<InstructionRow> reload();
    // Turns the rules to another component, new and without lines, without
    // reading anything: for many new components filled in one unit (an
    // import), whose interval table is read once by open().
    void useNewComponent(const QString &teNummer, const QString &wiVerantwortlicher, bool isStandard);

    const QString &teNummer() const { return m_teNummer; }
    const QString &wiVerantwortlicher() const { return m_wiVerantwortlicher; }
    const ProtocolRights &rights() const { return m_rights; }
    Numbering numbering() const { return m_numbering; }
    void setNumbering(Numbering n) { m_numbering = n; }
    const IntervalTable &intervals() const { return m_intervals; }
    QSqlDatabase db() const { return m_db; }

    // A new row for typing: no numbers yet, the defaults of a new instruction.
    InstructionRow newRow() const;

    // The column rule, run when a cell is left with a changed value: typed
    // goes into the cell (formatted where the column says so), side effects go
    // into the row, and a refusal shows its message.
    CellCheck leaveCell(InstructionRow &row, int col, const QString &typed) const;

    // The row rule before a row is written: completes the row and refuses it
    // with a message when the state or the interval is wrong.
    bool rowRule(InstructionRow &row);
    // Every field numeric where it must be and within its size; the message of
    // the first that isn't.
    bool checkFields(const InstructionRow &row) const;

    enum class WriteResult { Written, Refused, DuplicateKey };
    // Row rule, field checks and the write of one row (insert for rowId 0,
    // update otherwise). A duplicate key shows the grid's message and writes
    // nothing. Other faults propagate as zol::Fault with the data unchanged.
    WriteResult writeRow(InstructionRow &row, bool reportDuplicate = true);

    // Deletes the current row or the selected rows after the question that
    // fits; returns the number of rows deleted.
    int deleteRows(const QList<qint64> &selectedRowIds, qint64 currentRowId);

    // The text for the grid's data error and for a window closed over a row
    // that couldn't be written.
    static QString duplicateRowText();

private:
    bool refuseWrite() const;

    QSqlDatabase m_db;
    QString m_teNummer;
    QString m_level;
    QString m_wiVerantwortlicher;
    ProtocolRights m_rights;
    Numbering m_numbering;
    IntervalTable m_intervals;
    QList<InstructionRow> m_rows;
};

// The question before rows of a grid are deleted, for one row or several;
// true on Yes.
bool askDeleteRows(int count);

}
