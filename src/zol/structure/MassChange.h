#pragma once
#include "MasterData.h"
#include "zol/core/Session.h"
#include <QString>
#include <QStringList>

namespace zol {

// What the dialog "Stammdaten - Massenänderung" holds: the master data
// without name and IdentNr.
// The mass change edits every shared master-data field but the name and the IdentNr.
struct MassChangeInput : MasterDataFields {};

struct MassChangeResult {
    bool done = false;       // written (the dialog closes)
    QString focus;           // refused: the control that gets the focus; empty after No or a fault
    QStringList changed;     // the entries written, in the order given
};

// OK of the mass change over the selected entries (FileIndex values): asks
// first, checks the reference week and the week boxes, then writes every
// entry the user may change in one transaction. Entries that are gone or that
// the standard check refuses are skipped in silence. A filled control is
// written, an empty one leaves the field; "Keine Wartung" and the four weeks
// are written on every entry, so a change without "Keine Wartung" clears them.
MassChangeResult MassenAenderung(Session &session, const QStringList &selected, MassChangeInput &input);

}
