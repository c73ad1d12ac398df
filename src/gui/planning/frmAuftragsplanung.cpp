#include "frmAuftragsplanung.h"
#include "ui_frmAuftragsplanung.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/planning/JobSheets.h"
#include "zol/planning/PlanningRun.h"
#include "zol/planning/WeekCalendar.h"
#include <QApplication>
#include <QDate>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

frmAuftragsplanung::frmAuftragsplanung(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmAuftragsplanung>()), m_session(session)
{
    ui->setupUi(this);
    ui->txtJahr->setMaxLength(zol::Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Jahr")));
    ui->txtJahr->installEventFilter(this);
    ui->lblGewerk->setText(tr("&Gewerk"));
    for (QComboBox *c : {ui->dbcWoche, ui->dbcGewerk, ui->dbcKostenstelle, ui->dbcLokalisierung}) {
        c->installEventFilter(this);
        c->lineEdit()->installEventFilter(this);
    }

    connect(ui->cmdPlanen, &QPushButton::clicked, this, &frmAuftragsplanung::Planen);
    connect(ui->cmdDrucken, &QPushButton::clicked, this, [this] { Drucken(false); });
    connect(ui->cmdDruckVorschau, &QPushButton::clicked, this, [this] { Drucken(true); });
    connect(ui->cmdGewerk, &QPushButton::clicked, this, [this] { pickInto(ui->dbcGewerk, QStringLiteral("Gewerke")); });
    connect(ui->cmdKostenstelle, &QPushButton::clicked, this,
            [this] { pickInto(ui->dbcKostenstelle, QStringLiteral("Kostenstellen")); });
    connect(ui->cmdLokalisierung, &QPushButton::clicked, this,
            [this] { pickInto(ui->dbcLokalisierung, QStringLiteral("Lokalisierungen")); });
    connect(ui->txtJahr, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (text.size() >= 4) {
            ui->dbcWoche->setEditText(QString());
            LadeWochen();
        }
    });

    // Rights: an Auswerter can't plan.
    if (m_session.login().Level == QLatin1String("Auswerter"))
        ui->cmdPlanen->setEnabled(false);
    // A Werker prints his own trade only.
    if (isWerker()) {
        ui->dbcGewerk->setEditText(m_session.login().WerkerGewerk);
        ui->dbcGewerk->setEnabled(false);
    }
    applyKatalogButtons();
}

bool frmAuftragsplanung::isWerker() const
{
    return m_session.login().Level == QLatin1String("Werker");
}

void frmAuftragsplanung::setKatalogPicker(KatalogPicker picker)
{
    m_picker = std::move(picker);
    applyKatalogButtons();
}

void frmAuftragsplanung::applyKatalogButtons()
{
    ui->cmdGewerk->setEnabled(m_picker && !isWerker());
    ui->cmdKostenstelle->setEnabled(bool(m_picker));
    ui->cmdLokalisierung->setEnabled(bool(m_picker));
}

void frmAuftragsplanung::pickInto(QComboBox *combo, const QString &table)
{
    if (!m_picker)
        return;
    const QString picked = m_picker(table);
    if (!picked.isEmpty())
        combo->setEditText(picked);
    combo->setFocus();
}

void frmAuftragsplanung::AuftragsFilterLaden()
{
    const struct {
        QComboBox *combo;
        const char *feld;
    } filters[] = {{ui->dbcGewerk, "Ausfuehrender"},
                   {ui->dbcKostenstelle, "Kostenstelle"},
                   {ui->dbcLokalisierung, "Lokalisierung"}};
    for (const auto &f : filters) {
        f.combo->clear();
        f.combo->setEditText(QString());
    }
    const QString woche = ui->dbcWoche->currentText();
    if (woche.size() >= 2)
        for (const auto &f : filters)
            f.combo->addItems(zol::AuftragsFilterWerte(m_session, ui->txtJahr->text(), woche, QLatin1String(f.feld)));
    for (const auto &f : filters)
        f.combo->setEditText(QString());
    // The locked trade of a Werker stays in its field.
    if (isWerker())
        ui->dbcGewerk->setEditText(m_session.login().WerkerGewerk);
}

void frmAuftragsplanung::Drucken(bool vorschau)
{
    zol::JobSheetFilter filter;
    filter.gewerk = ui->dbcGewerk->currentText();
    filter.kostenstelle = ui->dbcKostenstelle->currentText();
    filter.lokalisierung = ui->dbcLokalisierung->currentText();
    bool busy = false;
    const auto status = [this, &busy](const QString &text) {
        // The hourglass from the first status line (the questions are behind) to the end.
        if (!busy) {
            busy = true;
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
        ui->lblTitel->setText(text);
        ui->lblTitel->repaint();
    };
    const zol::JobSheetResult r = zol::AuftragsDruckAnweisungen(m_session, ui->txtJahr->text(),
                                                                ui->dbcWoche->currentText(), filter, vorschau, status);
    if (busy)
        QApplication::restoreOverrideCursor();
    if (!r.jahr.isEmpty() && ui->txtJahr->text() != r.jahr)
        ui->txtJahr->setText(r.jahr);
    if (!r.woche.isEmpty() && ui->dbcWoche->currentText() != r.woche)
        ui->dbcWoche->setEditText(r.woche);
    if (r.focus == QLatin1String("txtJahr"))
        ui->txtJahr->setFocus();
    else if (r.focus == QLatin1String("dbcWoche"))
        ui->dbcWoche->setFocus();
}

frmAuftragsplanung::~frmAuftragsplanung() = default;

void frmAuftragsplanung::zeig()
{
    ui->txtJahr->setText(QString::number(QDate::currentDate().year()));
    ui->dbcWoche->setEditText(QString());
    LadeWochen();
    show();
    raise();
    activateWindow();
}

void frmAuftragsplanung::LadeWochen()
{
    const QString text = ui->dbcWoche->currentText();
    ui->dbcWoche->clear();
    QSqlQuery q = zol::exec(m_session.db(),
                            QStringLiteral("select distinct [woche] from [Auftrag] where [jahr] = ? order by [woche]"),
                            {ui->txtJahr->text()});
    while (q.next())
        ui->dbcWoche->addItem(q.value(0).toString());
    ui->dbcWoche->setEditText(text);
}

void frmAuftragsplanung::Planen()
{
    zol::PlanningRun run(m_session);
    bool busy = false;
    run.onProgress = [this, &busy](int done, int total) {
        ui->ProgressBar->setMinimum(0);
        ui->ProgressBar->setMaximum(std::max(total, 1));
        ui->ProgressBar->setValue(std::min(done, std::max(total, 1)));
        if (total > 0 && !busy) {
            busy = true;
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
        ui->ProgressBar->repaint();
    };
    run.onStatus = [this](const QString &text) {
        ui->lblTitel->setText(text);
        ui->lblTitel->repaint();
    };
    const zol::PlanResult r = run.run(ui->txtJahr->text(), ui->dbcWoche->currentText());
    if (busy)
        QApplication::restoreOverrideCursor();

    // The fields show what the run made of them; the week list stays as it is
    // until the year changes or the window opens again.
    if (ui->txtJahr->text() != r.jahr)
        ui->txtJahr->setText(r.jahr);
    if (ui->dbcWoche->currentText() != r.woche)
        ui->dbcWoche->setEditText(r.woche);
    if (r.focus == zol::PlanResult::Focus::Jahr)
        ui->txtJahr->setFocus();
    else if (r.focus == zol::PlanResult::Focus::Woche)
        ui->dbcWoche->setFocus();
    // After a finished run the print filters start afresh with the values of the planned week.
    if (r.outcome == zol::PlanResult::Outcome::Planned)
        AuftragsFilterLaden();
}

bool frmAuftragsplanung::eventFilter(QObject *watched, QEvent *event)
{
    // A combo box keeps the focus and hands keys and focus changes to its line
    // edit by direct calls, so the combo is watched for what the user types;
    // the line edit only sees keys sent to it directly.
    const auto is = [watched](QComboBox *c) { return watched == c || watched == c->lineEdit(); };

    // The filter fields take no more characters than their field holds.
    if (event->type() == QEvent::KeyPress) {
        const struct {
            QComboBox *combo;
            const char *feld;
        } limits[] = {{ui->dbcGewerk, "Ausfuehrender"},
                      {ui->dbcKostenstelle, "Kostenstelle"},
                      {ui->dbcLokalisierung, "Lokalisierung"}};
        for (const auto &l : limits) {
            if (!is(l.combo))
                continue;
            auto *key = static_cast<QKeyEvent *>(event);
            const QString text = key->text();
            QLineEdit *edit = l.combo->lineEdit();
            if (!text.isEmpty() && text.at(0).isPrint() && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
                && !edit->hasSelectedText()
                && edit->text().size() >= zol::Schema::Size(QStringLiteral("Auftrag"), QLatin1String(l.feld))) {
                QApplication::beep();
                return true;
            }
            return false;
        }
    }
    const bool isJahr = watched == ui->txtJahr;
    const bool isWoche = is(ui->dbcWoche);
    if (!isJahr && !isWoche)
        return QWidget::eventFilter(watched, event);

    if (event->type() == QEvent::FocusIn && (isJahr || watched == ui->dbcWoche)) {
        // On entering, the whole text is selected.
        QLineEdit *edit = isJahr ? ui->txtJahr : ui->dbcWoche->lineEdit();
        QTimer::singleShot(0, edit, &QLineEdit::selectAll);
    } else if (event->type() == QEvent::FocusOut && watched == ui->dbcWoche
               && static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason) {
        const QString formatted = zol::formatWoche(ui->dbcWoche->currentText());
        if (formatted != ui->dbcWoche->currentText())
            ui->dbcWoche->setEditText(formatted);
        AuftragsFilterLaden();
    } else if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (isJahr)
                ui->dbcWoche->setFocus();
            else
                Planen();
            return true;
        }
        // Only digits are typed; other characters are swallowed with a beep.
        // Keys that type nothing (Backspace, Tab, arrows) and shortcuts pass.
        const QString text = key->text();
        if (text.isEmpty() || (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
            return false;
        for (QChar c : text)
            if (c.isPrint() && (c < QLatin1Char('0') || c > QLatin1Char('9'))) {
                QApplication::beep();
                return true;
            }
        return false;
    }
    return QWidget::eventFilter(watched, event);
}
