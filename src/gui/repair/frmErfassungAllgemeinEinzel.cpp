#include "frmErfassungAllgemeinEinzel.h"
#include "ui_frmErfassungAllgemeinEinzel.h"
#include "ErfassungFelder.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/repair/RepairPrints.h"

frmErfassungAllgemeinEinzel::frmErfassungAllgemeinEinzel(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmErfassungAllgemeinEinzel>()), m_session(session),
      m_felder(new ErfassungFelder(session, this))
{
    ui->setupUi(this);
    ui->felderLayout->addWidget(m_felder);
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmErfassungAllgemeinEinzel::ok);
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->cmdDelete, &QPushButton::clicked, this, &frmErfassungAllgemeinEinzel::loeschen);
    connect(ui->cmdDruck, &QPushButton::clicked, this, [this] { zol::ISAuftragDrucken(m_session, m_key, false); });
    connect(ui->cmdDruckVorschau, &QPushButton::clicked, this, [this] { zol::ISAuftragDrucken(m_session, m_key, true); });
}

frmErfassungAllgemeinEinzel::~frmErfassungAllgemeinEinzel() = default;

void frmErfassungAllgemeinEinzel::setKatalogPicker(KatalogPicker picker) { m_felder->setKatalogPicker(std::move(picker)); }

void frmErfassungAllgemeinEinzel::zeig(const zol::ISAuftragSchluessel &key)
{
    m_key = key;
    ui->txtName->setText(key.Name);
    ui->txtIdentNr->setText(key.IdentNr);
    ui->txtLaufendeNummer->setText(key.LaufendeNummer);
    const std::optional<zol::ISAuftragMaske> m = zol::ladeISAuftrag(m_session.db(), key);
    if (!m) {
        zol::ZeigeMeldung(tr("Es existieren keine Einträge"), zol::Style::Information);
        return;
    }
    m_felder->zeige(*m);
    exec();
}

void frmErfassungAllgemeinEinzel::ok()
{
    zol::ISAuftragMaske m = m_felder->maske();
    zol::ISFeld f = zol::PruefeVorSpeichern(m);
    m_felder->uebernimmZahlen(m);
    if (f == zol::ISFeld::Keins) {
        try {
            const zol::ISSpeicherErgebnis e = zol::SpeichereDatensatz(m_session.db(), m, zol::SpeicherArt::Einzel, false);
            f = e.fehler;
        } catch (const zol::Fault &fault) {
            zol::ZeigeMeldung(zol::faultText(fault), zol::Style::Critical);
            return;
        }
    }
    if (f != zol::ISFeld::Keins) {
        m_felder->fokus(f);
        return;
    }
    m_werte = zol::ladeISAuftrag(m_session.db(), m_key).value_or(m);
    m_geaendert = true;
    accept();
}

void frmErfassungAllgemeinEinzel::loeschen()
{
    if (zol::ZeigeMeldung(tr("Diesen Auftrag wirklich löschen?"), zol::Style::YesNo) == zol::Answer::Yes) {
        zol::LoescheISAuftrag(m_session.db(), m_key);
        m_geaendert = true;
        m_geloescht = true;
    }
    reject();
}
