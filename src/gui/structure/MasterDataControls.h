#pragma once
#include "zol/structure/MasterData.h"
#include "zol/core/Schema.h"
#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QPushButton>

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

// The catalog buttons both dialogs share, each with the catalog table it asks
// and the combo that takes the choice (the trade has no combo of its own).
template <class Form, class Pick>
void verbindeKatalogKnoepfe(const Form &ui, QObject *context, Pick katalog)
{
    const QList<std::pair<QPushButton *, std::pair<QString, QComboBox *>>> knoepfe = {
        {ui.cmdKostenstelle, {QStringLiteral("Kostenstellen"), ui.dbcKostenstelle}},
        {ui.cmdKlassifizierung, {QStringLiteral("Klassifizierungen"), ui.dbcKlassifizierung}},
        {ui.cmdLokalisierung, {QStringLiteral("Lokalisierungen"), ui.dbcLokalisierung}},
        {ui.cmdHersteller, {QStringLiteral("Hersteller"), ui.dbcHersteller}},
        {ui.cmdOption1, {QStringLiteral("Option1"), ui.dbcOption1}},
        {ui.cmdOption2, {QStringLiteral("Option2"), ui.dbcOption2}},
        {ui.cmdGewerk, {QStringLiteral("Gewerke"), nullptr}},
    };
    for (const auto &k : knoepfe)
        QObject::connect(k.first, &QPushButton::clicked, context,
                         [katalog, table = k.second.first, combo = k.second.second] { katalog(table, combo); });
}

template <class Form>
QList<QPushButton *> katalogKnoepfe(const Form &ui)
{
    return {ui.cmdKostenstelle, ui.cmdKlassifizierung, ui.cmdLokalisierung, ui.cmdHersteller,
            ui.cmdOption1, ui.cmdOption2, ui.cmdGewerk};
}

// The year and week boxes both dialogs share: limited to their fields' sizes,
// and watched by the dialog, which checks them on leaving.
template <class Form>
void richteWochenFelderEin(const Form &ui, QObject *watcher)
{
    const QString kopf = QStringLiteral("ProtokollKopf");
    ui.txtBezugsJahr->setMaxLength(zol::Schema::Size(kopf, QStringLiteral("BezugsJahr")));
    ui.txtBezugsWoche->setMaxLength(zol::Schema::Size(kopf, QStringLiteral("BezugsWoche")));
    for (QLineEdit *w : {ui.txtWocheVon1, ui.txtWocheBis1, ui.txtWocheVon2, ui.txtWocheBis2})
        w->setMaxLength(zol::Schema::Size(kopf, QStringLiteral("KeineWartungWocheVon1")));
    for (QLineEdit *w : {ui.txtBezugsJahr, ui.txtBezugsWoche, ui.txtWocheVon1, ui.txtWocheBis1, ui.txtWocheVon2,
                         ui.txtWocheBis2})
        w->installEventFilter(watcher);
}
