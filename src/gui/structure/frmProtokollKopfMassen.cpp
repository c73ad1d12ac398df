#include "frmProtokollKopfMassen.h"
#include "MasterDataControls.h"
#include "ui_frmProtokollKopfMassen.h"
#include "gui/core/SelectOnFocus.h"
#include "zol/core/Schema.h"
#include "zol/planning/WeekCalendar.h"
#include "zol/structure/MasterData.h"
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>

namespace {
const QString kKopf = QStringLiteral("ProtokollKopf");
}

frmProtokollKopfMassen::frmProtokollKopfMassen(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmProtokollKopfMassen>()), m_session(session)
{
    ui->setupUi(this);
    setModal(true);
    richteWochenFelderEin(*ui, this);
    // No message here limits a text, so a combo takes no more than its field.
    for (const zol::ComboFeld &c : zol::stammdatenCombos())
        if (auto *combo = findChild<QComboBox *>(c.control))
            combo->lineEdit()->setMaxLength(zol::Schema::Size(kKopf, c.field));
    for (QLineEdit *w : findChildren<QLineEdit *>())
        zolgui::SelectOnFocus::install(w);
    // The lists propose; typing completes nothing on its own, so what is typed is written.
    for (QComboBox *combo : findChildren<QComboBox *>())
        combo->setCompleter(nullptr);

    connect(ui->cmdOK, &QPushButton::clicked, this, &frmProtokollKopfMassen::cmdOK_Click);
    connect(ui->cmdCancle, &QPushButton::clicked, this, &frmProtokollKopfMassen::reject);
    verbindeKatalogKnoepfe(*ui, this, [this](const QString &table, QComboBox *combo) { katalog(table, combo); });
    setCatalogPicker({});
}

frmProtokollKopfMassen::~frmProtokollKopfMassen() = default;

void frmProtokollKopfMassen::setCatalogPicker(CatalogPicker picker)
{
    m_picker = std::move(picker);
    for (QPushButton *b : katalogKnoepfe(*ui))
        b->setEnabled(bool(m_picker));
}

void frmProtokollKopfMassen::katalog(const QString &table, QComboBox *target)
{
    if (!m_picker)
        return;
    const QString chosen = m_picker(table);
    if (target && !chosen.isEmpty())
        target->setEditText(chosen);
}

QString frmProtokollKopfMassen::zeig(const QStringList &selected)
{
    lade(selected);
    exec();
    return m_tag;
}

void frmProtokollKopfMassen::lade(const QStringList &selected)
{
    m_selected = selected;
    m_changed.clear();
    m_tag = QStringLiteral("Cancel");
    const QSqlDatabase db = m_session.db();
    for (const zol::ComboFeld &c : zol::stammdatenCombos())
        if (auto *combo = findChild<QComboBox *>(c.control)) {
            combo->clear();
            combo->addItems(zol::stammdatenAuswahl(db, c.field));
            combo->setEditText(QString());
        }
    for (QLineEdit *w : {ui->txtBezugsJahr, ui->txtBezugsWoche, ui->txtWocheVon1, ui->txtWocheBis1, ui->txtWocheVon2,
                         ui->txtWocheBis2})
        w->clear();
    ui->chkKeineWartung->setChecked(false);
    ui->txtBezugsJahr->setFocus();
}

void frmProtokollKopfMassen::cmdOK_Click()
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
    zol::MassChangeInput in;
    leseStammdatenFelder(*ui, in);

    const zol::MassChangeResult r = zol::MassenAenderung(m_session, m_selected, in);
    ui->txtBezugsJahr->setText(in.BezugsJahr);
    ui->txtBezugsWoche->setText(in.BezugsWoche);
    ui->txtWocheVon1->setText(in.WocheVon1);
    ui->txtWocheBis1->setText(in.WocheBis1);
    ui->txtWocheVon2->setText(in.WocheVon2);
    ui->txtWocheBis2->setText(in.WocheBis2);
    if (r.done) {
        m_changed = r.changed;
        m_tag = QStringLiteral("OK");
        accept();
        return;
    }
    if (auto *w = findChild<QLineEdit *>(r.focus)) {
        w->setFocus();
        w->selectAll();
    }
}

bool frmProtokollKopfMassen::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->txtBezugsJahr && event->type() == QEvent::KeyPress) {
        const QString text = static_cast<QKeyEvent *>(event)->text();
        if (!text.isEmpty()) {
            const int c = text.at(0).unicode();
            if (((c >= 32 && c != 127) || c == 8) && !zol::BezugsJahrNimmtTaste(c)) {
                QApplication::beep();
                return true;
            }
        }
    }
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        auto *edit = qobject_cast<QLineEdit *>(watched);
        if (!edit || reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
            return QDialog::eventFilter(watched, event);
        if (edit == ui->txtBezugsJahr) {
            edit->setText(zol::formatJahr(edit->text()));
        } else if (edit == ui->txtBezugsWoche) {
            edit->setText(zol::formatWoche(edit->text()));
        } else if (const std::optional<QString> woche = zol::WocheVerlassen(edit->text())) {
            edit->setText(*woche);
        } else {
            QTimer::singleShot(0, edit, [edit] {
                edit->setFocus();
                edit->selectAll();
            });
        }
    }
    return QDialog::eventFilter(watched, event);
}
