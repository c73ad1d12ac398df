#include "frmErfassungAllgemein.h"
#include "ui_frmErfassungAllgemein.h"
#include "ErfassungFelder.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/repair/RepairPrints.h"
#include <QStringListModel>
#include <QTimer>

frmErfassungAllgemein::frmErfassungAllgemein(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmErfassungAllgemein>()), m_session(session),
      m_felder(new ErfassungFelder(session, this)), m_timer(new QTimer(this))
{
    ui->setupUi(this);
    ui->felderLayout->addWidget(m_felder);
    ui->cmdStatistik0->setObjectName(QStringLiteral("cmdStatistik(0)"));
    ui->cmdStatistik1->setObjectName(QStringLiteral("cmdStatistik(1)"));
    // The lists may hold every component's name: a plain string model, and a
    // width that does not measure them all.
    for (QComboBox *c : {ui->dbcName, ui->dbcIdentNr, ui->dbcLaufendeNummer}) {
        c->setModel(new QStringListModel(c));
        c->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        c->setMinimumContentsLength(10);
    }
    m_timer->setInterval(250);
    connect(m_timer, &QTimer::timeout, this, &frmErfassungAllgemein::Timer1_Timer);

    connect(ui->cmdMoveFirst, &QPushButton::clicked, this, [this] { bewege(m_auswahl->erster()); });
    connect(ui->cmdMoveLast, &QPushButton::clicked, this, [this] { bewege(m_auswahl->letzter()); });
    connect(ui->cmdMoveNext, &QPushButton::clicked, this, [this] {
        if (m_hatZeile)
            bewege(m_auswahl->naechster(m_key).value_or(m_key));
    });
    connect(ui->cmdMovePrevious, &QPushButton::clicked, this, [this] {
        if (m_hatZeile)
            bewege(m_auswahl->voriger(m_key).value_or(m_key));
    });
    connect(ui->optZurückgemeldet, &QRadioButton::clicked, this, [this] { status(1); });
    connect(ui->optNichtZurückgemeldet, &QRadioButton::clicked, this, [this] { status(2); });
    connect(ui->optAlleAufträge, &QRadioButton::clicked, this, [this] { status(3); });
    connect(ui->cmdOk, &QPushButton::clicked, this, [this] {
        // Past the checks, OK closes whatever the save said: a refused save leaves the row as it was.
        if (speichern() == Gespeichert::Geprueft)
            return;
        m_timer->stop();
        accept();
    });
    connect(ui->cmdÜbernehmen, &QPushButton::clicked, this, [this] { speichern(); });
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &frmErfassungAllgemein::abbrechen);
    connect(ui->cmdDelete, &QPushButton::clicked, this, &frmErfassungAllgemein::loeschen);
    connect(ui->cmdDruck, &QPushButton::clicked, this, [this] {
        if (m_hatZeile)
            zol::ISAuftragDrucken(m_session, m_key, false);
    });
    connect(ui->cmdDruckVorschau, &QPushButton::clicked, this, [this] {
        if (m_hatZeile)
            zol::ISAuftragDrucken(m_session, m_key, true);
    });
    const auto statistik = [this](bool vorschau) {
        zol::ErfassungStatistikDrucken(m_session, {m_auswahl->where(), m_auswahl->werte(), {}}, vorschau);
    };
    connect(ui->cmdStatistik0, &QPushButton::clicked, this, [statistik] { statistik(true); });
    connect(ui->cmdStatistik1, &QPushButton::clicked, this, [statistik] { statistik(false); });
    m_auswahl = std::make_unique<zol::ErfassungsAuswahl>(m_session.db(), m_session.login(), m_status);
}

frmErfassungAllgemein::~frmErfassungAllgemein() = default;

void frmErfassungAllgemein::setKatalogPicker(KatalogPicker picker) { m_felder->setKatalogPicker(std::move(picker)); }

void frmErfassungAllgemein::zeig(const QString &fileIndex, const zol::ISAuftragMaske *vorgaben)
{
    try {
        if (!fileIndex.trimmed().isEmpty()) {
            const std::optional<zol::Node> node = zol::PruefeKomponente(m_session.db(), fileIndex.trimmed());
            if (!node)
                return;
            const zol::ISAuftragMaske v = vorgaben ? *vorgaben : zol::leereMaske(m_session.login());
            neuerAuftrag(zol::NeuerISAuftrag(m_session.db(), m_session.login(), *node, v));
        } else {
            SetzeFilter();
            ZeigeDatensatz();
        }
        if (!m_hatZeile) {
            zol::ZeigeMeldung(tr("Es existieren keine Einträge"), zol::Style::Information);
            return;
        }
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(tr("Fehler Nummer:") + QString::number(f.number()) + QStringLiteral(". ")
                              + tr(" Beschreibung: ") + f.description(),
                          zol::Style::Critical);
        return;
    }
    if (!m_neu) {
        ui->optZurückgemeldet->setChecked(m_status == 1);
        ui->optNichtZurückgemeldet->setChecked(m_status == 2);
        ui->optAlleAufträge->setChecked(m_status != 1 && m_status != 2);
    }
    m_timer->start();
    exec();
    m_timer->stop();
}

void frmErfassungAllgemein::neuerAuftrag(const zol::ISAuftragSchluessel &key)
{
    m_key = key;
    m_neu = true;
    SetzeFilter();
    ZeigeDatensatz();
    // Within a new order the user can only fill it, OK it or abandon it.
    for (QWidget *w : std::initializer_list<QWidget *>{
             ui->cmdMoveFirst, ui->cmdMovePrevious, ui->cmdMoveNext, ui->cmdMoveLast, ui->optAlleAufträge,
             ui->optNichtZurückgemeldet, ui->optZurückgemeldet, ui->dbcName, ui->dbcIdentNr, ui->dbcLaufendeNummer,
             ui->cmdÜbernehmen, ui->cmdDelete})
        w->setEnabled(false);
}

void frmErfassungAllgemein::SetzeFilter()
{
    m_auswahl = std::make_unique<zol::ErfassungsAuswahl>(m_session.db(), m_session.login(), m_status);
    std::optional<zol::ISAuftragSchluessel> k;
    if (m_auswahl->enthaelt(m_key))
        k = m_key;
    else
        k = m_auswahl->erster();
    m_hatZeile = k.has_value();
    if (k)
        m_key = *k;
    fuelle(ui->dbcName, m_auswahl->namen(), m_key.Name);
    RefreshCombos();
}

void frmErfassungAllgemein::RefreshCombos()
{
    if (!m_hatZeile) {
        for (QComboBox *c : {ui->dbcName, ui->dbcIdentNr, ui->dbcLaufendeNummer})
            fuelle(c, {}, {});
        return;
    }
    ui->dbcName->setEditText(m_key.Name);
    fuelle(ui->dbcIdentNr, m_auswahl->identNummern(m_key.Name), m_key.IdentNr);
    fuelle(ui->dbcLaufendeNummer, m_auswahl->laufendeNummern(m_key.IdentNr), m_key.LaufendeNummer);
}

void frmErfassungAllgemein::fuelle(QComboBox *box, const QStringList &liste, const QString &text)
{
    box->blockSignals(true);
    static_cast<QStringListModel *>(box->model())->setStringList(liste);
    box->setEditText(text);
    box->blockSignals(false);
}

void frmErfassungAllgemein::ZeigeDatensatz()
{
    const std::optional<zol::ISAuftragMaske> m =
        m_hatZeile ? zol::ladeISAuftrag(m_session.db(), m_key) : std::nullopt;
    if (!m) {
        m_felder->zeige(zol::leereMaske(m_session.login()));
        m_key = {ui->dbcName->currentText(), {}, {}};
        m_hatZeile = false;
        return;
    }
    m_felder->zeige(*m);
}

void frmErfassungAllgemein::bewege(const std::optional<zol::ISAuftragSchluessel> &ziel)
{
    if (!ziel)
        return;
    m_key = *ziel;
    m_hatZeile = true;
    RefreshCombos();
    ZeigeDatensatz();
}

void frmErfassungAllgemein::Timer1_Timer()
{
    // Cheap when nothing changed: three comparisons of texts.
    const QString name = ui->dbcName->currentText().trimmed();
    const QString ident = ui->dbcIdentNr->currentText().trimmed();
    const QString lfd = ui->dbcLaufendeNummer->currentText().trimmed();
    std::optional<zol::ISAuftragSchluessel> ziel;
    if (name != m_key.Name.trimmed()) {
        if (!m_auswahl->leer())
            ziel = m_auswahl->ersterMitName(name);
    } else if (ident != m_key.IdentNr.trimmed()) {
        if (!m_auswahl->leer())
            ziel = m_auswahl->ersterMitIdentNr(ident);
    } else if (lfd != m_key.LaufendeNummer.trimmed()) {
        if (!m_auswahl->leer())
            ziel = m_auswahl->ersterMitNummer(ident, lfd);
    } else {
        return;
    }
    // A wrong entry falls back to the first row.
    if (!ziel)
        ziel = m_auswahl->erster();
    if (!ziel) {
        m_hatZeile = false;
        RefreshCombos();
        ZeigeDatensatz();
        return;
    }
    bewege(ziel);
}

void frmErfassungAllgemein::status(int mode)
{
    m_status = mode;
    SetzeFilter();
    ZeigeDatensatz();
}

bool frmErfassungAllgemein::SpeichereDatensatz()
{
    if (!m_hatZeile)
        return false;
    zol::ISAuftragMaske m = m_felder->maske();
    const zol::ISSpeicherErgebnis e =
        zol::SpeichereDatensatz(m_session.db(), m, zol::SpeicherArt::Allgemein, m_neu);
    m_felder->uebernimmZahlen(m);
    if (!e.ok()) {
        m_felder->fokus(e.fehler);
        return false;
    }
    m_felder->sperre(e.gesperrt);
    m_gespeichert = true;
    return true;
}

frmErfassungAllgemein::Gespeichert frmErfassungAllgemein::speichern()
{
    zol::ISAuftragMaske m = m_felder->maske();
    const zol::ISFeld f = zol::PruefeVorSpeichern(m);
    m_felder->uebernimmZahlen(m);
    if (f != zol::ISFeld::Keins) {
        m_felder->fokus(f);
        return Gespeichert::Geprueft;
    }
    try {
        return SpeichereDatensatz() ? Gespeichert::Ja : Gespeichert::Nein;
    } catch (const zol::Fault &fault) {
        zol::ZeigeMeldung(zol::faultText(fault), zol::Style::Critical);
        return Gespeichert::Nein;
    }
}

void frmErfassungAllgemein::abbrechen()
{
    if (m_neu && m_hatZeile) {
        if (zol::ZeigeMeldung(tr("Diese IS-Auftrags-Neuanlage wirklich abbrechen?"), zol::Style::YesNo) != zol::Answer::Yes)
            return;
        zol::LoescheISAuftrag(m_session.db(), m_key);
    }
    m_timer->stop();
    QDialog::reject();
}

void frmErfassungAllgemein::reject()
{
    // Escape and the frame's close button leave no orphan row: a new order
    // never saved goes without a question; a saved one stays.
    if (m_neu && m_hatZeile && !m_gespeichert)
        zol::LoescheISAuftrag(m_session.db(), m_key);
    m_timer->stop();
    QDialog::reject();
}

void frmErfassungAllgemein::loeschen()
{
    if (!m_hatZeile)
        return;
    if (zol::ZeigeMeldung(tr("Diesen IS-Auftrag wirklich löschen?"), zol::Style::YesNo) == zol::Answer::Yes) {
        const std::optional<zol::ISAuftragSchluessel> vorher = m_auswahl->voriger(m_key);
        zol::LoescheISAuftrag(m_session.db(), m_key);
        if (vorher)
            m_key = *vorher;
    }
    SetzeFilter();
    ZeigeDatensatz();
}
