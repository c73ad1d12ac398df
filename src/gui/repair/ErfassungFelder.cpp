#include "ErfassungFelder.h"
#include "ui_ErfassungFelder.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

namespace {

QStringList katalogListe(const QSqlDatabase &db, const QString &table)
{
    QStringList out;
    QSqlQuery q = zol::exec(db, QStringLiteral("SELECT DISTINCT Text FROM %1 WHERE FileTyp = 'F' ORDER BY Text").arg(zol::ident(table)));
    while (q.next())
        out << q.value(0).toString();
    return out;
}

int feldGroesse(const char *feld) { return zol::Schema::Size(QStringLiteral("Erfassung"), QLatin1String(feld)); }

}

ErfassungFelder::ErfassungFelder(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::ErfassungFelder>()), m_session(session),
      m_werker(session.login().Level == QLatin1String("Werker"))
{
    ui->setupUi(this);
    ui->cmbAuftragsherkunft->addItems(zol::langTexte(zol::AuftragsHerkunftListe()));
    ui->cmbAuftragsart->addItems(zol::langTexte(zol::AuftragsartListe()));
    ui->cmbSchadenart->addItems(zol::langTexte(zol::SchadensartListe()));
    ui->cmbSchadensursache->addItems(zol::langTexte(zol::SchadensUrsacheListe()));
    ui->cmbPrioritaet->addItems({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
    ui->cmbPrioritaet->lineEdit()->setMaxLength(feldGroesse("Prioritaet"));
    ui->dbcKostenstelle->addItems(katalogListe(session.db(), QStringLiteral("Kostenstellen")));
    ui->dbcGewerk->addItems(katalogListe(session.db(), QStringLiteral("Gewerke")));
    ui->dbcKostenstelle->lineEdit()->setMaxLength(feldGroesse("Kostenstelle"));
    ui->dbcGewerk->lineEdit()->setMaxLength(feldGroesse("Gewerk"));
    ui->txtMeldeDatum->setMaxLength(feldGroesse("Datum"));
    ui->txtZuErledigenBis->setMaxLength(feldGroesse("ZuErledigenBis"));
    // The done date takes its width from Kostenstelle, as it always did.
    ui->txtErledigtAm->setMaxLength(feldGroesse("Kostenstelle"));
    ui->cmdKostenstelle->setToolTip(tr(" Kostenstellen-Katalog "));
    ui->cmdGewerk->setToolTip(tr(" Gewerke-Katalog "));
    for (QLineEdit *e : {ui->txtMeldeDatum, ui->txtStunden, ui->txtMinuten, ui->txtLohnkosten, ui->txtMaterialkosten,
                         ui->txtFrendaufwand, ui->txtZuErledigenBis, ui->txtErledigtAm, ui->cmbPrioritaet->lineEdit()}) {
        zolgui::SelectOnFocus::install(e);
        e->installEventFilter(this);
    }
    if (m_werker) {
        // A Werker writes only his own trade.
        ui->dbcGewerk->setEditText(session.login().WerkerGewerk);
        ui->dbcGewerk->setEnabled(false);
        ui->cmdGewerk->setEnabled(false);
    }
    connect(ui->cmbPrioritaet, &QComboBox::textActivated, this, [this] {
        zol::ISAuftragMaske m = maske();
        if (!zol::PrioritaetGewaehlt(m)) {
            ui->cmbPrioritaet->setFocus();
            return;
        }
        ui->txtZuErledigenBis->setText(m.ZuErledigenBis);
    });
    connect(ui->chkErledigtJN, &QCheckBox::clicked, this, [this](bool on) {
        zol::ISAuftragMaske m;
        zol::ErledigtGeklickt(m, on);
        ui->txtErledigtAm->setText(m.ErledigtAm);
    });
    connect(ui->cmdKostenstelle, &QPushButton::clicked, this,
            [this] { katalog(QStringLiteral("Kostenstellen"), ui->dbcKostenstelle); });
    connect(ui->cmdGewerk, &QPushButton::clicked, this, [this] { katalog(QStringLiteral("Gewerke"), ui->dbcGewerk); });
}

ErfassungFelder::~ErfassungFelder() = default;

void ErfassungFelder::katalog(const QString &table, QComboBox *box)
{
    box->setFocus();
    if (!m_picker)
        return;
    const QString answer = m_picker(table);
    if (!answer.isEmpty())
        box->setEditText(answer);
    const QString text = box->currentText();
    box->clear();
    box->addItems(katalogListe(m_session.db(), table));
    box->setEditText(text);
}

void ErfassungFelder::zeige(const zol::ISAuftragMaske &m)
{
    m_key = m.schluessel();
    m_druck = m.Druck;
    ui->txtMeldeDatum->setText(m.MeldeDatum);
    ui->txtStunden->setText(m.Stunden);
    ui->txtMinuten->setText(m.Minuten);
    ui->txtLohnkosten->setText(m.Lohnkosten);
    ui->txtMaterialkosten->setText(m.Materialkosten);
    ui->txtFrendaufwand->setText(m.Fremdaufwand);
    ui->dbcKostenstelle->setEditText(m.Kostenstelle);
    ui->dbcGewerk->setEditText(m_werker && m.Gewerk.isEmpty() ? m_session.login().WerkerGewerk : m.Gewerk);
    ui->cmbAuftragsherkunft->setCurrentIndex(std::max(0, m.AuftragsHerkunft));
    ui->cmbAuftragsart->setCurrentIndex(std::max(0, m.Auftragsart));
    ui->cmbSchadenart->setCurrentIndex(std::max(0, m.Schadensart));
    ui->cmbSchadensursache->setCurrentIndex(std::max(0, m.SchadensUrsache));
    ui->txtBeschreibung->setPlainText(m.Beschreibung);
    ui->cmbPrioritaet->setEditText(m.Prioritaet);
    ui->txtZuErledigenBis->setText(m.ZuErledigenBis);
    ui->chkErledigtJN->setChecked(m.Erledigt);
    ui->txtErledigtAm->setText(m.ErledigtAm);
    sperre(m.Erledigt);
}

zol::ISAuftragMaske ErfassungFelder::maske() const
{
    zol::ISAuftragMaske m;
    m.Name = m_key.Name;
    m.IdentNr = m_key.IdentNr;
    m.LaufendeNummer = m_key.LaufendeNummer;
    m.Druck = m_druck;
    m.MeldeDatum = ui->txtMeldeDatum->text();
    m.Stunden = ui->txtStunden->text();
    m.Minuten = ui->txtMinuten->text();
    m.Lohnkosten = ui->txtLohnkosten->text();
    m.Materialkosten = ui->txtMaterialkosten->text();
    m.Fremdaufwand = ui->txtFrendaufwand->text();
    m.Kostenstelle = ui->dbcKostenstelle->currentText();
    m.Gewerk = ui->dbcGewerk->currentText();
    m.AuftragsHerkunft = ui->cmbAuftragsherkunft->currentIndex();
    m.Auftragsart = ui->cmbAuftragsart->currentIndex();
    m.Schadensart = ui->cmbSchadenart->currentIndex();
    m.SchadensUrsache = ui->cmbSchadensursache->currentIndex();
    // The description keeps to the width of its field.
    m.Beschreibung = ui->txtBeschreibung->toPlainText().left(feldGroesse("Bemerkung"));
    m.Prioritaet = ui->cmbPrioritaet->currentText();
    m.ZuErledigenBis = ui->txtZuErledigenBis->text();
    m.Erledigt = ui->chkErledigtJN->isChecked();
    m.ErledigtAm = ui->txtErledigtAm->text();
    return m;
}

void ErfassungFelder::uebernimmZahlen(const zol::ISAuftragMaske &m)
{
    ui->txtStunden->setText(m.Stunden);
    ui->txtMinuten->setText(m.Minuten);
    ui->txtLohnkosten->setText(m.Lohnkosten);
    ui->txtMaterialkosten->setText(m.Materialkosten);
    ui->txtFrendaufwand->setText(m.Fremdaufwand);
    ui->txtErledigtAm->setText(m.ErledigtAm);
}

void ErfassungFelder::sperre(bool erledigt)
{
    for (QWidget *w : std::initializer_list<QWidget *>{ui->txtErledigtAm, ui->chkErledigtJN, ui->txtZuErledigenBis,
                                                       ui->cmbPrioritaet})
        w->setEnabled(!erledigt);
}

void ErfassungFelder::fokus(zol::ISFeld feld)
{
    QWidget *w = nullptr;
    switch (feld) {
    case zol::ISFeld::Keins: return;
    case zol::ISFeld::MeldeDatum: w = ui->txtMeldeDatum; break;
    case zol::ISFeld::Stunden: w = ui->txtStunden; break;
    case zol::ISFeld::Minuten: w = ui->txtMinuten; break;
    case zol::ISFeld::Lohnkosten: w = ui->txtLohnkosten; break;
    case zol::ISFeld::Materialkosten: w = ui->txtMaterialkosten; break;
    case zol::ISFeld::Fremdaufwand: w = ui->txtFrendaufwand; break;
    case zol::ISFeld::Prioritaet: w = ui->cmbPrioritaet; break;
    case zol::ISFeld::ZuErledigenBis: w = ui->txtZuErledigenBis; break;
    case zol::ISFeld::ErledigtAm: w = ui->txtErledigtAm; break;
    }
    w->setFocus();
    if (auto *e = qobject_cast<QLineEdit *>(w))
        e->selectAll();
    else if (auto *c = qobject_cast<QComboBox *>(w); c && c->lineEdit())
        c->lineEdit()->selectAll();
}

bool ErfassungFelder::eventFilter(QObject *watched, QEvent *event)
{
    auto *edit = qobject_cast<QLineEdit *>(watched);
    if (edit && event->type() == QEvent::KeyPress) {
        auto *k = static_cast<QKeyEvent *>(event);
        const QString t = k->text();
        const bool zeichen = t.size() == 1 && t.at(0).isPrint();
        const bool zeit = edit == ui->txtStunden || edit == ui->txtMinuten;
        const bool betrag = edit == ui->txtLohnkosten || edit == ui->txtMaterialkosten || edit == ui->txtFrendaufwand
                            || edit == ui->cmbPrioritaet->lineEdit();
        if (zeichen && ((zeit && !zol::zeitTaste(t.at(0))) || (betrag && !zol::betragTaste(t.at(0))))) {
            QApplication::beep();
            return true;
        }
    }
    if (edit && event->type() == QEvent::FocusOut) {
        // A box that keeps the focus after its message: the check runs when leaving it.
        bool ok = true;
        if (edit == ui->txtMinuten)
            ok = zol::MinutenVerlassen(edit->text());
        else if (edit == ui->txtZuErledigenBis || edit == ui->txtErledigtAm) {
            QString text = edit->text();
            ok = zol::DatumVerlassen(text, edit == ui->txtZuErledigenBis ? zol::DatumsBox::ZuErledigenBis
                                                                        : zol::DatumsBox::ErledigtAm);
            if (ok)
                edit->setText(text);
        }
        if (!ok)
            QTimer::singleShot(0, edit, [edit] {
                edit->setFocus();
                edit->selectAll();
            });
    }
    return QWidget::eventFilter(watched, event);
}
