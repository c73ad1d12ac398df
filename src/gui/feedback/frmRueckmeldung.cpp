#include "frmRueckmeldung.h"
#include "ui_frmRueckmeldung.h"
#include "FeedbackTreeModel.h"
#include "OrderListModel.h"
#include "gui/repair/frmErfassungAllgemein.h"
#include "zol/core/Clock.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/feedback/FeedbackViews.h"
#include "zol/feedback/FindingsPrint.h"
#include "zol/feedback/Posting.h"
#include <QApplication>
#include <QKeyEvent>
#include <QStandardItemModel>

namespace {

QStringList katalogTexte(const QSqlDatabase &db, const QString &table)
{
    QStringList out;
    try {
        QSqlQuery q = zol::exec(db, QStringLiteral("SELECT Text FROM %1 WHERE FileTyp = 'F' ORDER BY Text").arg(zol::ident(table)));
        while (q.next())
            out << q.value(0).toString();
    } catch (const zol::Fault &) {
        // A catalog that can't be read leaves its list empty; the field still takes typing.
    }
    return out;
}

}   // namespace

frmRueckmeldung::frmRueckmeldung(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmRueckmeldung>()), m_session(session),
      m_rechte(zol::rueckmeldungRechte(session.login())), m_tree(new FeedbackTreeModel(session, this)),
      m_list(new OrderListModel(session, this)), m_summary(new QStandardItemModel(this))
{
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmRückmeldung"));
    for (const zol::RueckmeldungsAnsicht &a : zol::rueckmeldungsAnsichten())
        ui->cmbView->addItem(a.text);
    ui->cmbAufträge->addItems({tr("Aufträge"), tr("Übersicht")});
    ui->cmbMeldungsCode->addItems({tr("Repariert"), tr("Fehler"), tr("Storniert")});
    ui->cmbVerbal->addItems({tr("Instandhaltung"), tr("Produktion"), QStringLiteral(" ")});
    ui->dbcKostenstelle->addItems(katalogTexte(session.db(), QStringLiteral("Kostenstellen")));
    ui->dbcMaterial->addItems(katalogTexte(session.db(), QStringLiteral("Material")));
    ui->dbcKostenstelle->lineEdit()->setMaxLength(zol::eingabeLaenge(QStringLiteral("Kostenstelle")));
    ui->dbcMaterial->lineEdit()->setMaxLength(zol::eingabeLaenge(QStringLiteral("Materialcode")));
    ui->txtZeit->setMaxLength(zol::eingabeLaenge(QStringLiteral("PlanZeit")));
    ui->txtMaterialMenge->setMaxLength(zol::eingabeLaenge(QStringLiteral("Materialmenge")));
    ui->txtZeit->installEventFilter(this);
    ui->txtMaterialMenge->installEventFilter(this);
    ui->lvListView->installEventFilter(this);

    ui->tvTreeView->setModel(m_tree);
    ui->lvListView->setModel(m_list);
    ui->lvListView2->setModel(m_summary);
    m_summary->setHorizontalHeaderLabels(
        {tr("Name"), tr("Anzahl"), tr("Zurückgemeldet"), tr("Befunde"), tr("Arbeitszeit"), tr("Geplant am")});
    ui->lvListView2->hide();
    for (QAbstractItemView *v : {static_cast<QAbstractItemView *>(ui->lvListView), static_cast<QAbstractItemView *>(ui->lvListView2)}) {
        v->setSelectionBehavior(QAbstractItemView::SelectRows);
        v->setSelectionMode(QAbstractItemView::SingleSelection);
        v->setEditTriggers(QAbstractItemView::NoEditTriggers);
    }

    connect(ui->cmbView, &QComboBox::currentIndexChanged, this, &frmRueckmeldung::AnsichtAufbauen);
    connect(ui->tvTreeView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &frmRueckmeldung::AufträgeLaden);
    connect(ui->cmbAufträge, &QComboBox::currentIndexChanged, this, [this](int i) {
        ui->lvListView->setVisible(i == 0);
        ui->lvListView2->setVisible(i == 1);
        AufträgeLaden();
    });
    for (QRadioButton *o : {ui->optOption0, ui->optOption1, ui->optOption2})
        connect(o, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                AufträgeLaden();
        });
    connect(ui->lvListView->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmRueckmeldung::zeileGewaehlt);
    connect(ui->lvListView, &QAbstractItemView::clicked, this, &frmRueckmeldung::schnellStorno);
    connect(ui->lvListView2, &QAbstractItemView::clicked, this, [this](const QModelIndex &i) {
        const QString te = m_summary->item(i.row(), 0)->data(Qt::UserRole).toString();
        ui->lblPfad->setText(te.isEmpty() ? QString() : zol::komponentenPfad(m_session.db(), te));
    });
    connect(ui->txtZeit, &QLineEdit::textEdited, this, &frmRueckmeldung::feldGeaendert);
    connect(ui->txtMaterialMenge, &QLineEdit::textEdited, this, &frmRueckmeldung::feldGeaendert);
    connect(ui->txtAuftragstext, &QPlainTextEdit::textChanged, this, &frmRueckmeldung::feldGeaendert);
    connect(ui->txtBemerkung, &QPlainTextEdit::textChanged, this, &frmRueckmeldung::feldGeaendert);
    connect(ui->cmdRückmeldung, &QPushButton::clicked, this, &frmRueckmeldung::Rückmelden);
    connect(ui->cmdVerbuchen, &QPushButton::clicked, this, &frmRueckmeldung::Verbuchen);
    connect(ui->cmdLöschen, &QPushButton::clicked, this, &frmRueckmeldung::WocheLöschen);
    connect(ui->cmdDrucken, &QPushButton::clicked, this, [this] { BefundeDrucken(false); });
    connect(ui->cmdDruckVorschau, &QPushButton::clicked, this, [this] { BefundeDrucken(true); });
    connect(ui->cmdISAuftrag, &QPushButton::clicked, this, &frmRueckmeldung::ISAuftragGenerieren);

    for (QWidget *w : {static_cast<QWidget *>(ui->LabelStorno), static_cast<QWidget *>(ui->LabelStorno2),
                       static_cast<QWidget *>(ui->CheckStorno)})
        w->setEnabled(m_rechte.storno);
    ui->cmdRückmeldung->setEnabled(m_rechte.rueckmelden);
    ui->cmdISAuftrag->setEnabled(m_rechte.isAuftrag);
    ui->cmdVerbuchen->setEnabled(m_rechte.verbuchen);
    ui->cmdLöschen->setEnabled(m_rechte.loeschen);
}

frmRueckmeldung::~frmRueckmeldung() = default;

void frmRueckmeldung::ISAuftragGenerieren()
{
    // A new repair order of the row's component, with the finding's date and text.
    const zol::AuftragZeile *z = m_list->zeile(m_row);
    if (!z)
        return;
    zol::ISAuftragMaske v = zol::leereMaske(m_session.login());
    v.MeldeDatum = zol::Heute().toString(QStringLiteral("dd.MM.yyyy"));
    v.ZuErledigenBis = v.MeldeDatum;
    v.Beschreibung = z->Text;
    frmErfassungAllgemein capture(m_session, this);
    capture.setKatalogPicker(m_picker);
    capture.zeig(z->TeIndex, &v);
}

void frmRueckmeldung::zeig()
{
    show();
    if (ui->cmbView->currentIndex() != 0)
        ui->cmbView->setCurrentIndex(0);
    else
        AnsichtAufbauen();
    ui->lvListView->setFocus();
}

void frmRueckmeldung::AnsichtAufbauen()
{
    const int view = qMax(0, ui->cmbView->currentIndex());
    ui->lblTreeView->setText(zol::rueckmeldungsAnsichten().at(view).titel);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_quiet = true;
    m_tree->setAnsicht(view);
    m_quiet = false;
    QApplication::restoreOverrideCursor();
    const QModelIndex first = m_tree->index(0, 0);
    if (first.isValid())
        ui->tvTreeView->setCurrentIndex(first);   // loads its orders
    else
        AufträgeLaden();
}

zol::AuftragsAuswahl frmRueckmeldung::auswahl() const
{
    if (ui->optOption1->isChecked())
        return zol::AuftragsAuswahl::Offen;
    if (ui->optOption2->isChecked())
        return zol::AuftragsAuswahl::Zurueckgemeldet;
    return zol::AuftragsAuswahl::Beide;
}

void frmRueckmeldung::AufträgeLaden()
{
    if (m_quiet)
        return;
    const zol::KnotenFilter knoten = m_tree->filter(ui->tvTreeView->currentIndex());
    m_quiet = true;
    try {
        if (ui->cmbAufträge->currentIndex() == 1) {
            m_list->clear();
            uebersichtLaden();
        } else {
            m_list->load(zol::auftragsAbfrage(m_session, knoten, auswahl()));
        }
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    if (m_list->rowCount() > 0)
        ui->lvListView->setCurrentIndex(m_list->index(0, 0));
    m_quiet = false;
    m_changed = false;
    zeigeZeile(m_list->rowCount() > 0 ? 0 : -1);
}

void frmRueckmeldung::uebersichtLaden()
{
    m_summary->removeRows(0, m_summary->rowCount());
    const zol::KnotenFilter knoten = m_tree->filter(ui->tvTreeView->currentIndex());
    for (const zol::UebersichtZeile &z : zol::uebersicht(m_session, knoten, auswahl())) {
        QList<QStandardItem *> items{new QStandardItem(z.Name),
                                     new QStandardItem(QString::number(z.anzahl)),
                                     new QStandardItem(QString::number(z.zurueckgemeldet)),
                                     new QStandardItem(QString::number(z.befunde)),
                                     new QStandardItem(zol::zahlText(z.arbeitszeit)),
                                     new QStandardItem(z.GeplantAm)};
        items.first()->setData(z.TeIndex, Qt::UserRole);
        m_summary->appendRow(items);
    }
}

void frmRueckmeldung::zeigeZeile(int row)
{
    m_row = row;
    const zol::AuftragZeile *z = m_list->zeile(row);
    zeigeAnzeige(zol::zeigeAuftrag(m_session.db(), z ? std::optional<zol::AuftragZeile>(*z) : std::nullopt));
}

void frmRueckmeldung::zeigeAnzeige(const zol::RueckmeldungAnzeige &a)
{
    const bool quiet = m_quiet;
    m_quiet = true;
    m_anzeige = a;
    ui->txtIdentNr->setText(a.IdentNr);
    ui->txtJahr->setText(a.Jahr);
    ui->txtWoche->setText(a.Woche);
    ui->txtObjekt->setText(a.Objekt);
    ui->txtAnweisung->setText(a.Anweisung);
    ui->dbcKostenstelle->setEditText(a.Kostenstelle);
    ui->dbcMaterial->setEditText(a.Materialcode);
    ui->lblIntervall->setText(a.Intervall);
    ui->txtAuftragstext->setPlainText(a.Auftragstext);
    ui->txtBemerkung->setPlainText(a.Bemerkung);
    ui->cmbMeldungsCode->setCurrentIndex(a.MeldungsCode);
    ui->lblStatus->setText(a.Status);
    ui->cmbVerbal->setCurrentIndex(a.Verbal);
    ui->txtZeit->setText(a.Zeit);
    ui->txtMaterialMenge->setText(a.MaterialMenge);
    m_changed = false;
    m_quiet = quiet;
}

zol::RueckmeldungEingabe frmRueckmeldung::eingabe() const
{
    return {ui->txtZeit->text(),
            ui->txtMaterialMenge->text(),
            ui->dbcKostenstelle->currentText(),
            ui->dbcMaterial->currentText(),
            ui->txtAuftragstext->toPlainText(),
            ui->txtBemerkung->toPlainText(),
            ui->cmbMeldungsCode->currentIndex(),
            ui->cmbVerbal->currentIndex()};
}

void frmRueckmeldung::feldGeaendert()
{
    if (m_quiet)
        return;
    // The two texts keep within their fields' sizes.
    for (auto [edit, feld] : {std::pair{ui->txtAuftragstext, "Text"}, std::pair{ui->txtBemerkung, "Bemerkung"}}) {
        const int max = zol::eingabeLaenge(QString::fromUtf8(feld));
        if (edit->toPlainText().size() > max) {
            m_quiet = true;
            edit->setPlainText(edit->toPlainText().left(max));
            edit->moveCursor(QTextCursor::End);
            m_quiet = false;
        }
    }
    m_changed = zol::eingabeGeaendert(m_anzeige, eingabe());
}

void frmRueckmeldung::zeileGewaehlt(const QModelIndex &current, const QModelIndex &previous)
{
    if (m_quiet)
        return;
    const int row = current.isValid() ? current.row() : -1;
    if (!zol::SatzVerlassen(row == m_row, m_changed)) {
        // The selection stays where it was.
        m_quiet = true;
        ui->lvListView->setCurrentIndex(previous.isValid() ? previous : m_list->index(m_row, 0));
        m_quiet = false;
        return;
    }
    if (row != m_row || m_anzeige.leer)
        zeigeZeile(row);
}

void frmRueckmeldung::schnellStorno(const QModelIndex &index)
{
    if (!ui->CheckStorno->isChecked() || !ui->CheckStorno->isEnabled() || !index.isValid() || index.row() != m_row)
        return;
    ui->cmbMeldungsCode->setCurrentIndex(2);
    Rückmelden();
}

std::optional<zol::AuftragSchluessel> frmRueckmeldung::schluessel() const
{
    const zol::AuftragZeile *z = m_list->zeile(m_row);
    if (!z)
        return std::nullopt;
    return zol::AuftragSchluessel::von(*z);
}

void frmRueckmeldung::Rückmelden()
{
    if (!m_rechte.rueckmelden)
        return;
    const zol::SpeicherErgebnis r = zol::Zurueckmelden(m_session.db(), schluessel(), eingabe());
    if (r.status == zol::SpeicherErgebnis::Status::Abgelehnt) {
        if (QWidget *w = findChild<QWidget *>(r.focus))
            w->setFocus();
        return;
    }
    if (r.zeile) {
        m_list->setZeile(m_row, *r.zeile);
        zeigeAnzeige(zol::zeigeAuftrag(m_session.db(), r.zeile));
    }
    ui->lvListView->setFocus();
}

void frmRueckmeldung::Verbuchen()
{
    const zol::AuftragZeile *z = m_list->zeile(m_row);
    if (!z)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const zol::VerbuchenErgebnis r = zol::AuftragswocheVerbuchen(m_session, z->Jahr, z->Woche);
    QApplication::restoreOverrideCursor();
    if (r.geloescht)
        AnsichtAufbauen();
}

void frmRueckmeldung::WocheLöschen()
{
    if (m_list->rowCount() == 0)
        return;
    if (!zol::AuftragswocheLoeschen(m_session, ui->txtJahr->text(), ui->txtWoche->text()))
        return;
    AnsichtAufbauen();
}

void frmRueckmeldung::BefundeDrucken(bool vorschau)
{
    zol::BefundeDrucken(m_session, ui->txtJahr->text(), ui->txtWoche->text(), vorschau);
}

bool frmRueckmeldung::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && (watched == ui->txtZeit || watched == ui->txtMaterialMenge)) {
        auto *key = static_cast<QKeyEvent *>(event);
        const QString text = key->text();
        // Digits and the comma; editing and moving keys pass, other characters are swallowed with a beep.
        if (text.size() == 1 && text.at(0).isPrint() && !zol::zeichenErlaubt(text.at(0))
            && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
            QApplication::beep();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
