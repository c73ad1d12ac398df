#include "frmDBGridSuchen.h"
#include "ui_frmDBGridSuchen.h"
#include "gui/core/SelectOnFocus.h"
#include <QKeyEvent>

frmDBGridSuchen::frmDBGridSuchen(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::frmDBGridSuchen>())
{
    ui->setupUi(this);
    setModal(false);
    ui->chkGrossKlein->setObjectName(QStringLiteral("chkGroßKlein"));
    ui->cmbRichtung->setCurrentIndex(0);
    zolgui::SelectOnFocus::install(ui->txtSuchen);
    zolgui::SelectOnFocus::install(ui->txtErsetzen);
    ui->txtSuchen->installEventFilter(this);
    ui->txtErsetzen->installEventFilter(this);
    connect(ui->cmdSuchen, &QPushButton::clicked, this, &frmDBGridSuchen::Suchen);
    connect(ui->cmdErsetzen, &QPushButton::clicked, this, &frmDBGridSuchen::ErsetzenSchritt);
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QDialog::hide);
    connect(ui->txtSuchen, &QLineEdit::textChanged, this, &frmDBGridSuchen::updateReplaceState);
    connect(ui->txtErsetzen, &QLineEdit::textChanged, this, &frmDBGridSuchen::updateReplaceState);
    updateReplaceState();
}

frmDBGridSuchen::~frmDBGridSuchen() = default;

void frmDBGridSuchen::updateReplaceState()
{
    ui->cmdErsetzen->setEnabled(zol::replaceEnabled(ui->txtSuchen->text(), ui->txtErsetzen->text()));
}

zol::SearchDirection frmDBGridSuchen::direction() const
{
    return ui->cmbRichtung->currentIndex() == 1 ? zol::SearchDirection::Up : zol::SearchDirection::Down;
}

void frmDBGridSuchen::showEvent(QShowEvent *event)
{
    // Roles that may not change lines don't get the replace controls.
    const bool replace = m_grid && m_grid->mayReplace();
    ui->lblErsetzen->setVisible(replace);
    ui->txtErsetzen->setVisible(replace);
    ui->cmdErsetzen->setVisible(replace);
    QDialog::showEvent(event);
}

void frmDBGridSuchen::zeig(SearchableGrid *grid)
{
    m_grid = grid;
    show();
    raise();
    activateWindow();
    ui->txtSuchen->setFocus();
}

void frmDBGridSuchen::Weitersuchen(SearchableGrid *grid, const QString &caption)
{
    setWindowTitle(caption);
    if (ui->txtSuchen->text().trimmed().isEmpty()) {
        zeig(grid);
        return;
    }
    m_grid = grid;
    Suchen();
}

void frmDBGridSuchen::Ersetzen(SearchableGrid *grid)
{
    if (ui->txtErsetzen->text().trimmed().isEmpty()) {
        zeig(grid);
        return;
    }
    m_grid = grid;
    ErsetzenSchritt();
}

void frmDBGridSuchen::Suchen()
{
    const QString text = ui->txtSuchen->text();
    if (!m_grid || text.trimmed().isEmpty() || !m_grid->prepareSearch())
        return;
    const auto hit = zol::findInRows(m_grid->searchRows(), m_grid->searchRow(), m_grid->searchCol(), text, direction());
    if (hit)
        m_grid->showHit(*hit);
    else
        ui->txtSuchen->setFocus();
}

void frmDBGridSuchen::ErsetzenSchritt()
{
    const QString text = ui->txtSuchen->text();
    if (!m_grid || text.trimmed().isEmpty() || !m_grid->mayReplace())
        return;
    const zol::CellSelection sel = m_grid->cellSelection();
    const QString cellText = m_grid->currentCellText();
    QList<zol::InstructionRow> rows = m_grid->searchRows();
    if (sel.row >= 0 && sel.row < rows.size() && sel.col >= 0)
        rows[sel.row].field(sel.col) = cellText;
    const zol::ReplaceStep step = zol::replaceInRows(rows, sel, text, ui->txtErsetzen->text(), direction());
    if (step.changedRow && !m_grid->replaceCell(sel.row, sel.col, rows.at(sel.row).value(sel.col)))
        return;
    if (step.next)
        m_grid->showHit(*step.next);
    else
        ui->txtSuchen->setFocus();
}

bool frmDBGridSuchen::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Suchen();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
