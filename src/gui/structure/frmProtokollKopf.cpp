#include "frmProtokollKopf.h"
#include "MasterDataControls.h"
#include "ui_frmProtokollKopf.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Schema.h"
#include "zol/planning/WeekCalendar.h"
#include "zol/structure/Node.h"
#include <QApplication>
#include <QDate>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>

namespace {
const QString kKopf = QStringLiteral("ProtokollKopf");

void setCombo(QComboBox *combo, const QString &text)
{
    combo->setEditText(text);
}
}

frmProtokollKopf::frmProtokollKopf(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmProtokollKopf>()), m_session(session)
{
    ui->setupUi(this);
    setModal(true);

    richteWochenFelderEin(*ui, this);
    ui->txtIdentNr->setMaxLength(zol::Schema::Size(kKopf, QStringLiteral("IdentNr")));
    for (QLineEdit *w : findChildren<QLineEdit *>())
        zolgui::SelectOnFocus::install(w);
    // The lists propose; typing completes nothing on its own, so what is typed is written.
    for (QComboBox *combo : findChildren<QComboBox *>())
        combo->setCompleter(nullptr);

    connect(ui->cmdOK, &QPushButton::clicked, this, &frmProtokollKopf::cmdOK_Click);
    connect(ui->cmdCancle, &QPushButton::clicked, this, &frmProtokollKopf::reject);
    connect(ui->cmdBenennung, &QPushButton::clicked, this, [this] { katalog(QStringLiteral("Benennungen"), ui->dbcBenennung); });
    verbindeKatalogKnoepfe(*ui, this, [this](const QString &table, QComboBox *combo) { katalog(table, combo); });
    setCatalogPicker({});
}

frmProtokollKopf::~frmProtokollKopf() = default;

void frmProtokollKopf::setCatalogPicker(CatalogPicker picker)
{
    m_picker = std::move(picker);
    ui->cmdBenennung->setEnabled(bool(m_picker));
    for (QPushButton *b : katalogKnoepfe(*ui))
        b->setEnabled(bool(m_picker));
}

void frmProtokollKopf::katalog(const QString &table, QComboBox *target)
{
    if (!m_picker)
        return;
    const QString chosen = m_picker(table);
    if (target && !chosen.isEmpty())
        setCombo(target, chosen);
}

QString frmProtokollKopf::zeig(const QString &fileIndex, bool existing)
{
    std::optional<QString> name;
    if (!existing)
        if (const auto node = zol::loadNode(m_session.db(), fileIndex))
            name = node->Text;
    return zeig(fileIndex, existing, name);
}

QString frmProtokollKopf::zeig(const QString &fileIndex, bool existing, const std::optional<QString> &selectedListText)
{
    lade(fileIndex, existing, selectedListText);
    exec();
    return m_tag;
}

void frmProtokollKopf::lade(const QString &fileIndex, bool existing, const std::optional<QString> &selectedListText)
{
    m_fileIndex = fileIndex;
    m_existing = existing;
    m_tag.clear();
    fuelleListen();
    zeigeWerte(zol::stammdatenFuerDialog(m_session.db(), fileIndex, existing, selectedListText,
                                         QDate::currentDate().year()));
    ui->dbcBenennung->setFocus();
}

void frmProtokollKopf::fuelleListen()
{
    const QSqlDatabase db = m_session.db();
    for (const zol::ComboFeld &c : zol::stammdatenCombos()) {
        auto *combo = findChild<QComboBox *>(c.control);
        combo->clear();
        combo->addItems(c.field == QLatin1String("Text") ? zol::benennungAuswahl(db) : zol::stammdatenAuswahl(db, c.field));
    }
}

void frmProtokollKopf::zeigeWerte(const zol::MasterDataInput &in)
{
    setCombo(ui->dbcBenennung, in.Benennung);
    ui->txtBezugsJahr->setText(in.BezugsJahr);
    ui->txtBezugsWoche->setText(in.BezugsWoche);
    setCombo(ui->dbcKostenstelle, in.Kostenstelle);
    ui->txtIdentNr->setText(in.IdentNr);
    setCombo(ui->dbcKlassifizierung, in.Klassifizierung);
    setCombo(ui->dbcStandort, in.Standort);
    setCombo(ui->dbcLokalisierung, in.Lokalisierung);
    setCombo(ui->dbcHersteller, in.Hersteller);
    setCombo(ui->dbcTyp, in.Typ);
    setCombo(ui->dbcWIVerantwortlicher, in.WIVerantwortlicher);
    setCombo(ui->dbcAnlagenVerantwortlicher, in.AnlagenVerantwortlicher);
    setCombo(ui->dbcOption1, in.Option1);
    setCombo(ui->dbcOption2, in.Option2);
    ui->chkKeineWartung->setChecked(in.KeineWartung);
    ui->txtWocheVon1->setText(in.WocheVon1);
    ui->txtWocheBis1->setText(in.WocheBis1);
    ui->txtWocheVon2->setText(in.WocheVon2);
    ui->txtWocheBis2->setText(in.WocheBis2);
}

zol::MasterDataInput frmProtokollKopf::werte() const
{
    zol::MasterDataInput in;
    leseStammdatenFelder(*ui, in);
    in.Benennung = ui->dbcBenennung->currentText();
    in.IdentNr = ui->txtIdentNr->text();
    return in;
}

void frmProtokollKopf::cmdOK_Click()
{
    // Enter on a week box presses OK without leaving the box: check it as on leaving.
    if (auto *edit = qobject_cast<QLineEdit *>(focusWidget());
        edit && (edit == ui->txtWocheVon1 || edit == ui->txtWocheBis1 || edit == ui->txtWocheVon2 || edit == ui->txtWocheBis2)) {
        const std::optional<QString> woche = zol::WocheVerlassen(edit->text());
        if (!woche) {
            edit->selectAll();
            return;
        }
        edit->setText(*woche);
    }
    zol::MasterDataInput in = werte();
    const zol::StammdatenErgebnis r = zol::StammdatenSpeichern(m_session, m_fileIndex, in);
    zeigeWerte(in);
    if (r.ok) {
        m_tag = QStringLiteral("OK");
        accept();
        return;
    }
    if (QWidget *w = findChild<QWidget *>(r.focus)) {
        w->setFocus();
        if (auto *edit = qobject_cast<QLineEdit *>(w))
            edit->selectAll();
        else if (auto *combo = qobject_cast<QComboBox *>(w); combo && combo->lineEdit())
            combo->lineEdit()->selectAll();
    }
}

void frmProtokollKopf::reject()
{
    zol::StammdatenAbbrechen(m_session, m_fileIndex, m_existing);
    m_existing = true;   // removed once; a second close has nothing left to remove
    m_tag = QStringLiteral("Cancel");
    QDialog::reject();
}

bool frmProtokollKopf::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->txtBezugsJahr && event->type() == QEvent::KeyPress) {
        const QString text = static_cast<QKeyEvent *>(event)->text();
        if (!text.isEmpty()) {
            const int c = text.at(0).unicode();
            if ((c >= 32 && c != 127) || c == 8) {
                if (!zol::BezugsJahrNimmtTaste(c)) {
                    QApplication::beep();
                    return true;
                }
            }
        }
    }
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
            return QDialog::eventFilter(watched, event);
        auto *edit = qobject_cast<QLineEdit *>(watched);
        if (edit == ui->txtBezugsJahr) {
            edit->setText(zol::formatJahr(edit->text()));
        } else if (edit == ui->txtBezugsWoche) {
            edit->setText(zol::formatWoche(edit->text()));
        } else if (edit) {
            const std::optional<QString> woche = zol::WocheVerlassen(edit->text());
            if (woche) {
                edit->setText(*woche);
            } else {
                QTimer::singleShot(0, edit, [edit] {
                    edit->setFocus();
                    edit->selectAll();
                });
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}
