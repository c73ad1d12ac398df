#include "frmAuftragsplanung.h"
#include "ui_frmAuftragsplanung.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanningRun.h"
#include "zol/planning/WeekCalendar.h"
#include <QApplication>
#include <QDate>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

frmAuftragsplanung::frmAuftragsplanung(zol::Session &session, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::frmAuftragsplanung>()), m_session(session)
{
    ui->setupUi(this);
    ui->txtJahr->setMaxLength(zol::Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Jahr")));
    ui->txtJahr->installEventFilter(this);
    ui->dbcWoche->lineEdit()->installEventFilter(this);

    connect(ui->cmdPlanen, &QPushButton::clicked, this, &frmAuftragsplanung::Planen);
    connect(ui->txtJahr, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (text.size() >= 4) {
            ui->dbcWoche->setEditText(QString());
            LadeWochen();
        }
    });

    // Rights: an Auswerter can't plan.
    if (m_session.login().Level == QLatin1String("Auswerter"))
        ui->cmdPlanen->setEnabled(false);
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
}

bool frmAuftragsplanung::eventFilter(QObject *watched, QEvent *event)
{
    const bool isJahr = watched == ui->txtJahr;
    const bool isWoche = watched == ui->dbcWoche->lineEdit();
    if (!isJahr && !isWoche)
        return QWidget::eventFilter(watched, event);

    if (event->type() == QEvent::FocusIn) {
        // On entering, the whole text is selected.
        auto *edit = static_cast<QLineEdit *>(watched);
        QTimer::singleShot(0, edit, &QLineEdit::selectAll);
    } else if (event->type() == QEvent::FocusOut && isWoche) {
        const QString formatted = zol::formatWoche(ui->dbcWoche->currentText());
        if (formatted != ui->dbcWoche->currentText())
            ui->dbcWoche->setEditText(formatted);
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
