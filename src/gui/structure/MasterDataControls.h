#pragma once
#include "zol/structure/MasterData.h"

// Reads the shared master-data controls of a dialog's form; the master-data
// dialog and the mass change name their controls alike.
template <class Form>
void leseStammdatenFelder(const Form &ui, zol::MasterDataFields &in)
{
    in.BezugsJahr = ui.txtBezugsJahr->text();
    in.BezugsWoche = ui.txtBezugsWoche->text();
    in.Kostenstelle = ui.dbcKostenstelle->currentText();
    in.Klassifizierung = ui.dbcKlassifizierung->currentText();
    in.Standort = ui.dbcStandort->currentText();
    in.Lokalisierung = ui.dbcLokalisierung->currentText();
    in.Hersteller = ui.dbcHersteller->currentText();
    in.Typ = ui.dbcTyp->currentText();
    in.WIVerantwortlicher = ui.dbcWIVerantwortlicher->currentText();
    in.AnlagenVerantwortlicher = ui.dbcAnlagenVerantwortlicher->currentText();
    in.Option1 = ui.dbcOption1->currentText();
    in.Option2 = ui.dbcOption2->currentText();
    in.KeineWartung = ui.chkKeineWartung->isChecked();
    in.WocheVon1 = ui.txtWocheVon1->text();
    in.WocheBis1 = ui.txtWocheBis1->text();
    in.WocheVon2 = ui.txtWocheVon2->text();
    in.WocheBis2 = ui.txtWocheBis2->text();
}
