#pragma once
#include "InstructionRow.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>

namespace zol {

// The fields of the position dialog, as its controls hold them.
struct PositionForm {
    QString Objekt, Anweisung, Text, Gewerk, Betriebszustand, AnzahlPersonen, Sicherheitshinweis, Intervall,
        Planzeit, MaterialCode, MaterialMenge;
};

namespace PositionMode {
constexpr int Edit = 0;
constexpr int InsertBefore = 1;
constexpr int InsertAfter = 2;
}

// The operating states of the dialog's list, in this order.
const QStringList &positionStates();

struct PositionProposal {
    PositionForm form;
    // The row the list stands on after the proposal (the legacy moves count):
    // inserting after the last row leaves it on the first; -1 for none.
    int currentRow = -1;
};

// Fills the dialog for the mode: edit shows the current row; insert before
// proposes the midpoint between the previous row and the current one, insert
// after the midpoint to the next row of the same object or the number + 10.
PositionProposal fillPositionForm(const QList<InstructionRow> &rows, int currentRow, int mode);

// The OK of the dialog: its own checks and messages, then one write. The grid's
// row rule stands aside here: a field left empty keeps the old value in an
// edit, and a head row is not corrected.
class PositionDialogRules {
public:
    // level: the role of the session; a role that may not write the component
    // (see protocolRights) gets every OK refused without a word, as the window
    // doesn't offer the dialog to it.
    PositionDialogRules(const QSqlDatabase &db, const QString &teNummer, const QString &level);

    // rows: the window's list (its emptiness decides whether the pair is
    // checked); current: the row edited in mode 0. Returns true when the row
    // is written (row then holds it); false leaves the dialog open.
    bool ok(PositionForm &form, int mode, const QList<InstructionRow> &rows, const InstructionRow *current,
            InstructionRow *written = nullptr);

    static QString duplicatePairText();
    // The field (of ProtokollPositionen) the last refusal of ok was about; empty
    // when it wasn't about one.
    const QString &refusedField() const { return m_refusedField; }

private:
    bool pairExists(const QString &objekt, const QString &anweisung) const;

    QSqlDatabase m_db;
    QString m_teNummer;
    IntervalTable m_intervals;
    bool m_readOnly = true;
    QString m_refusedField;
};

}
