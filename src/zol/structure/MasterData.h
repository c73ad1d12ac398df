#pragma once
#include "Node.h"
#include "zol/core/Session.h"
#include <QString>
#include <QStringList>
#include <optional>

namespace zol {

// ---------------------------------------------------------------------------
// The master data of one node as the dialog "Stammdaten" shows them.

// What the controls of the dialog hold.
// The master-data fields that the dialog and the mass change both edit.
struct MasterDataFields {
    QString BezugsJahr, BezugsWoche, Kostenstelle, Klassifizierung, Standort, Lokalisierung, Hersteller, Typ,
        WIVerantwortlicher, AnlagenVerantwortlicher, Option1, Option2;
    bool KeineWartung = false;
    QString WocheVon1, WocheBis1, WocheVon2, WocheBis2;
};

struct MasterDataInput : MasterDataFields {
    QString Benennung, IdentNr;
};

// The state of the dialog when it opens: the present year, week "01", everything else empty.
MasterDataInput leereStammdaten(int currentYear);
// The controls filled from a row: a field that is empty leaves the control
// empty, only the reference year and week then keep what they had.
void fuelleStammdaten(MasterDataInput &input, const Node &node);

// What the dialog shows for a node: an existing one from its row; a new one
// from its row too, but with the name of the selected list item (empty when
// none is selected) and no IdentNr.
MasterDataInput stammdatenFuerDialog(const QSqlDatabase &db, const QString &fileIndex, bool existing,
                                     const std::optional<QString> &selectedListText, int currentYear);

// The combo lists: what the components already use in a field (grouped and
// sorted), and for the name the names of the Standards.
QStringList stammdatenAuswahl(const QSqlDatabase &db, const QString &field);
QStringList benennungAuswahl(const QSqlDatabase &db);

// The entries of a catalog table (FileTyp "F"), sorted by name.
QStringList katalogEintraege(const QSqlDatabase &db, const QString &catalogTable);

// The combos with a length limit, in the order OK checks them: control name and field.
struct ComboFeld {
    QString control;
    QString field;
};
const QList<ComboFeld> &stammdatenCombos();

// Outcome of OK: done, or refused with the control that gets the focus
// (empty when a fault ended the write).
struct StammdatenErgebnis {
    bool ok = false;
    QString focus;
};

// OK of the dialog for the node fileIndex: every check in its order with its
// message and question; the reference year and week are formatted, the week
// boxes emptied when "Keine Wartung" is off, a text too long for its field is
// cut to the field in `input` (the dialog shows it so). Then the row is
// written and the repair orders follow a changed or removed IdentNr, all in
// one transaction. A fault shows its message and leaves the data as before.
StammdatenErgebnis StammdatenSpeichern(Session &session, const QString &fileIndex, MasterDataInput &input);

// Cancel: a new node is removed at once and in silence, with everything that
// hangs on it.
void StammdatenAbbrechen(Session &session, const QString &fileIndex, bool existing);

// A week box on leaving: empty stays empty; text below "01" or above "52"
// (compared as text, as typed) is refused with a message and nothing is
// returned; otherwise the week with the mask "00".
std::optional<QString> WocheVerlassen(const QString &text);

// The key filter of the reference year: digits and backspace (8) only.
bool BezugsJahrNimmtTaste(int character);

// The control names the checks give the focus to.
namespace StammdatenControl {
inline const QString dbcBenennung = QStringLiteral("dbcBenennung");
inline const QString txtBezugsJahr = QStringLiteral("txtBezugsJahr");
inline const QString txtBezugsWoche = QStringLiteral("txtBezugsWoche");
inline const QString txtIdentNr = QStringLiteral("txtIdentNr");
inline const QString chkKeineWartung = QStringLiteral("chkKeineWartung");
inline const QString txtWocheVon1 = QStringLiteral("txtWocheVon1");
inline const QString txtWocheVon2 = QStringLiteral("txtWocheVon2");
}

}
