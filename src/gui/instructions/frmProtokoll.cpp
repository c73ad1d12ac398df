#include "frmProtokoll.h"
#include "ui_frmProtokoll.h"
#include "ProtocolModel.h"
#include "frmProtokollTabelle.h"
#include "gui/core/FileDialogs.h"
#include "gui/core/WindowState.h"
#include "zol/exchange/InstructionExchange.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Users.h"
#include "zol/instructions/Positions.h"
#include "zol/instructions/RowBuffer.h"
#include "zol/structure/Node.h"
#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMouseEvent>

using zol::InstructionRow;

namespace {
// Stored sizes are pixels; the first defaults come from the old twip layout.
constexpr int TwipsPerPixel = 15;
// Default widths of the columns 1 to 12.
constexpr int DefaultWidth[zol::Col::Count] = {0, 660, 930, 4300, 1095, 1215, 1395, 1440, 795, 780, 1095, 1170, 945};
constexpr int DefaultRowHeight = 420;

QString columnSection(const zol::Session &s, int col)
{
    return s.section(QStringLiteral("\\env\\Protokoll\\Spalte") + QString::number(col).rightJustified(2, QLatin1Char('0')));
}
}

frmProtokoll::frmProtokoll(zol::Session &session, QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::frmProtokoll>()), m_session(session),
      m_suchen(new frmDBGridSuchen(this))
{
    ui->setupUi(this);
    ui->mnuPopUpEinfuegen->setObjectName(QStringLiteral("mnuPopUpEinfügen"));
    ui->dbGrid->viewport()->installEventFilter(this);
    ui->dbGrid->installEventFilter(this);
    ui->dbGrid->setContextMenuPolicy(Qt::NoContextMenu);

    // An Auswerter or Werker may never change lines.
    const QString &level = m_session.login().Level;
    if (level == zol::Role::Werker || level == zol::Role::Auswerter)
        ui->dbGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);

    connect(ui->mnuAnweisungenImport, &QAction::triggered, this, &frmProtokoll::importLines);
    connect(ui->mnuAnweisungenExport, &QAction::triggered, this, &frmProtokoll::exportLines);
    connect(ui->mnuAnweisungenSuchen, &QAction::triggered, this, [this] {
        m_suchen->setWindowTitle(tr("Suchen in ") + windowTitle());
        m_suchen->zeig(this);
    });
    connect(ui->mnuAnweisungenWeitersuchen, &QAction::triggered, this,
            [this] { m_suchen->Weitersuchen(this, tr("Suchen in ") + windowTitle()); });
    connect(ui->mnuAnweisungenErsetzen, &QAction::triggered, this, [this] { m_suchen->Ersetzen(this); });
    connect(ui->mnuAnweisungenBeenden, &QAction::triggered, this, [this] {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
            sub->close();
        else
            close();
    });
    connect(ui->mnuPopUpEdit, &QAction::triggered, this, [this] { Q_EMIT positionRequested(0); });
    connect(ui->mnuPopUpInsertBefore, &QAction::triggered, this, [this] { Q_EMIT positionRequested(1); });
    connect(ui->mnuPopUpInsertAfter, &QAction::triggered, this, [this] { Q_EMIT positionRequested(2); });
    connect(ui->mnuPopUpMarkieren, &QAction::triggered, this, &frmProtokoll::selectAllRows);
    connect(ui->mnuPopUpKopieren, &QAction::triggered, this, &frmProtokoll::copyRows);
    connect(ui->mnuPopUpEinfuegen, &QAction::triggered, this, &frmProtokoll::pasteRows);
    connect(ui->mnuPopUpDelete, &QAction::triggered, this, &frmProtokoll::deleteRows);
    connect(ui->mnuViewRefresh, &QAction::triggered, this, &frmProtokoll::refresh);
    connect(ui->mnuCascade, &QAction::triggered, this, [this] { Q_EMIT arrangeRequested(0); });
    connect(ui->mnuTile1, &QAction::triggered, this, [this] { Q_EMIT arrangeRequested(1); });
    connect(ui->mnuTile2, &QAction::triggered, this, [this] { Q_EMIT arrangeRequested(2); });
    connect(ui->dbGrid->ruledDelegate(), &RuledDelegate::cellButtonPressed, this, &frmProtokoll::columnButton);
    // Each protocol window has its own search keys, active where its focus is.
    for (QAction *a : {ui->mnuAnweisungenSuchen, ui->mnuAnweisungenWeitersuchen}) {
        a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        addAction(a);
    }
}

int frmProtokoll::DeleteTePositionen(const QString &teNummer)
{
    const int n = zol::DeleteTePositionen(m_session.db(), teNummer);
    if (m_model && teNummer == m_tag)
        m_model->reload();
    return n;
}

int frmProtokoll::CopyTePositionen(const QString &sourceTeNummer, const QString &targetTeNummer)
{
    const int n = zol::CopyTePositionen(m_session.db(), sourceTeNummer, targetTeNummer);
    if (m_model && targetTeNummer == m_tag)
        m_model->reload();
    return n;
}

frmProtokoll::~frmProtokoll()
{
    // The view must let go of the model before the model goes.
    ui->dbGrid->setModel(nullptr);
}

RuledTableView *frmProtokoll::grid() const
{
    return ui->dbGrid;
}

bool frmProtokoll::zeig(const QString &key, const QString &text)
{
    m_tag = key.startsWith(QLatin1Char('"')) ? key.mid(1, 10) : key.left(10);
    ui->dbGrid->setModel(nullptr);
    m_model.reset();
    m_grid = std::make_unique<zol::ProtocolGrid>(m_session.db(), m_tag, m_session.login().Level);
    const bool found = m_grid->open();
    setWindowTitle(tr("Komponente '") + text + QLatin1Char('\''));
    m_suchen->setWindowTitle(tr("Suchen in ") + windowTitle());
    if (found) {
        m_model = std::make_unique<ProtocolModel>(*m_grid);
        ui->dbGrid->setModel(m_model.get());
        connect(ui->dbGrid->selectionModel(), &QItemSelectionModel::currentChanged, this,
                [this] { m_lastHit.reset(); });
        connect(m_model.get(), &QAbstractItemModel::dataChanged, this, [this] { m_lastHit.reset(); });
        loadLayout();
        if (m_model->rowCount() > 0)
            ui->dbGrid->selectionModel()->setCurrentIndex(m_model->index(0, zol::Col::Objekt), QItemSelectionModel::NoUpdate);
    }
    applyRights();
    return found;
}

void frmProtokoll::applyRights()
{
    const zol::ProtocolRights r = m_grid ? m_grid->rights() : zol::ProtocolRights{};
    if (r.readOnly) {
        ui->mnuPopUp->menuAction()->setEnabled(false);
        for (QAction *a : {ui->mnuPopUpDelete, ui->mnuPopUpEdit, ui->mnuPopUpInsertAfter, ui->mnuPopUpInsertBefore})
            a->setEnabled(false);
        ui->dbGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    }
    const QString &level = m_session.login().Level;
    if (level == zol::Role::Werker || level == zol::Role::Auswerter)
        for (QAction *a : {ui->mnuAnweisungenImport, ui->mnuAnweisungenExport, ui->mnuAnweisungenErsetzen,
                           ui->mnuPopUpEdit, ui->mnuPopUpInsertBefore, ui->mnuPopUpInsertAfter, ui->mnuPopUpKopieren,
                           ui->mnuPopUpEinfuegen, ui->mnuPopUpDelete})
            a->setEnabled(false);
}

void frmProtokoll::loadLayout()
{
    QHeaderView *h = ui->dbGrid->horizontalHeader();
    ui->dbGrid->setColumnHidden(zol::Col::TeNummer, true);
    for (int col = 1; col < zol::Col::Count; ++col)
        h->resizeSection(col, zol::GetSettingInt(columnSection(m_session, col), QStringLiteral("Width"),
                                                 ui->dbGrid->defaultColumnWidth(col, DefaultWidth[col] / TwipsPerPixel,
                                                                                col == zol::Col::Objekt ? QStringLiteral("000000") : QString())));
    ui->dbGrid->verticalHeader()->setDefaultSectionSize(zol::GetSettingInt(
        m_session.section(QStringLiteral("\\env\\Protokoll\\Zeile")), QStringLiteral("Height"), DefaultRowHeight / TwipsPerPixel));
}

void frmProtokoll::saveLayout()
{
    QWidget *frame = qobject_cast<QMdiSubWindow *>(parentWidget()) ? parentWidget() : this;
    saveWindowState(frame, m_session.section(QStringLiteral("\\env\\Protokoll")));
    if (!frame->isMinimized() && !frame->isMaximized() && m_model)
        for (int col = 1; col < zol::Col::Count; ++col)
            zol::SaveSetting(columnSection(m_session, col), QStringLiteral("Width"), ui->dbGrid->columnWidth(col));
    zol::SaveSetting(m_session.section(QStringLiteral("\\env\\Protokoll\\Zeile")), QStringLiteral("Height"),
                     ui->dbGrid->verticalHeader()->defaultSectionSize());
}

int frmProtokoll::currentLine() const
{
    const QModelIndex cur = ui->dbGrid->currentIndex();
    if (!m_model || !cur.isValid() || cur.row() >= m_model->rows().size())
        return -1;
    return cur.row();
}

bool frmProtokoll::leaveRow()
{
    return !m_model || ui->dbGrid->leaveRow();
}

void frmProtokoll::reloadAt(const QString &objekt, const QString &anweisung)
{
    if (!m_model)
        return;
    const int col = qMax(ui->dbGrid->currentIndex().column(), int(zol::Col::Objekt));
    m_model->reload();
    const auto &rows = m_model->rows();
    int target = rows.isEmpty() ? -1 : 0;
    for (int i = 0; i < rows.size(); ++i)
        if (rows.at(i).Objekt == objekt && rows.at(i).Anweisung == anweisung)
            target = i;
    if (target >= 0) {
        ui->dbGrid->selectionModel()->setCurrentIndex(m_model->index(target, col), QItemSelectionModel::NoUpdate);
        ui->dbGrid->scrollTo(ui->dbGrid->currentIndex());
    }
}

void frmProtokoll::columnButton(int col)
{
    if (!m_model)
        return;
    const QString table = zol::catalogTableForColumn(col);
    if (table.isEmpty()) {
        zol::showColumnHint(col);
        return;
    }
    const zol::ProtocolRights &r = m_grid->rights();
    const QModelIndex cur = ui->dbGrid->currentIndex();
    if (!r.mayUseCatalogs || r.readOnly || !m_picker || !cur.isValid())
        return;
    if (!ui->dbGrid->finishEditing())
        return;
    const auto [text, interval] = m_picker(table);
    if (text.isEmpty())
        return;
    InstructionRow row = m_model->rowAt(cur.row());
    zol::applyCatalogChoice(row, col, text, interval);
    m_model->setRowValues(cur.row(), row);
}

void frmProtokoll::selectLines(const QList<int> &lines)
{
    QItemSelection sel;
    for (int line : lines)
        sel.select(m_model->index(line, 0), m_model->index(line, zol::Col::Count - 1));
    ui->dbGrid->selectionModel()->select(sel, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void frmProtokoll::selectAllRows()
{
    if (!m_model || m_model->rows().isEmpty())
        return;
    QList<int> lines;
    for (int i = 0; i < m_model->rows().size(); ++i)
        lines << i;
    selectLines(lines);
}

QList<int> frmProtokoll::selectedLines() const
{
    QList<int> lines;
    if (!m_model)
        return lines;
    QSet<int> seen;
    for (const QModelIndex &i : ui->dbGrid->selectionModel()->selectedIndexes())
        if (i.row() < m_model->rows().size() && !seen.contains(i.row())) {
            seen.insert(i.row());
            lines << i.row();
        }
    std::sort(lines.begin(), lines.end());
    return lines;
}

void frmProtokoll::copyRows()
{
    if (!m_model || !m_grid->rights().mayCopy || !leaveRow())
        return;
    QList<InstructionRow> rows;
    for (int line : selectedLines())
        rows << m_model->rows().at(line);
    zol::copyToRowBuffer(m_session.db(), rows);
}

void frmProtokoll::pasteRows()
{
    if (!m_model || !leaveRow())
        return;
    zol::pasteRowBuffer(*m_grid);
    m_model->reload();
}

void frmProtokoll::exportLines()
{
    if (!m_model || !m_grid->rights().mayCopy || !leaveRow())
        return;
    zol::ExportAnweisungen(m_session.db(), m_tag, [this](const QString &proposed, const QString &filter) {
        return zolgui::chooseSaveFile(this, tr("Export"), proposed, filter);
    });
}

void frmProtokoll::importLines()
{
    if (!m_model || m_grid->rights().readOnly || !leaveRow())
        return;
    const QString path = zolgui::chooseOpenFile(this, tr("Import"), zol::ImportFilter);
    if (path.isEmpty())
        return;
    const std::unique_ptr<zol::TableSource> source = zol::openImportFile(path, {zol::instructionFieldNames()});
    if (!source)
        return;
    frmProtokollTabelle chooser(this);
    const QString table = chooser.zeig(zol::importTables(*source));
    if (table.isEmpty())
        return;
    zol::importInstructions(*m_grid, *source, table);
    m_model->reload();
}

void frmProtokoll::deleteRows()
{
    if (!m_model || !leaveRow())
        return;
    QList<qint64> ids;
    for (int line : selectedLines())
        ids << m_model->rows().at(line).rowId;
    const int line = currentLine();
    const qint64 current = line >= 0 ? m_model->rows().at(line).rowId : 0;
    const int col = qMax(ui->dbGrid->currentIndex().column(), int(zol::Col::Objekt));
    if (m_grid->deleteRows(ids, current) == 0)
        return;
    m_model->reload();
    // After one row the one above it becomes current, as after MovePrevious.
    const int next = qMin(qMax(line - 1, 0), int(m_model->rows().size()) - 1);
    if (next >= 0)
        ui->dbGrid->selectionModel()->setCurrentIndex(m_model->index(next, col), QItemSelectionModel::NoUpdate);
}

void frmProtokoll::refresh()
{
    // A row typed into an empty list is written first and then counts.
    if (!m_model || !leaveRow() || m_model->rows().isEmpty())
        return;
    const int line = currentLine();
    const QString o = line >= 0 ? m_model->rows().at(line).Objekt : QString();
    const QString a = line >= 0 ? m_model->rows().at(line).Anweisung : QString();
    reloadAt(o, a);
}

void frmProtokoll::showPopup(const QPoint &globalPos)
{
    if (ui->mnuPopUp->menuAction()->isEnabled())
        ui->mnuPopUp->popup(globalPos);
}

bool frmProtokoll::eventFilter(QObject *watched, QEvent *event)
{
    RuledTableView *view = ui->dbGrid;
    if (m_model && watched == view->viewport() && event->type() == QEvent::MouseButtonPress) {
        auto *me = static_cast<QMouseEvent *>(event);
        const QPoint pos = me->position().toPoint();
        const int row = view->rowAt(pos.y());
        if (me->button() == Qt::LeftButton && !(me->modifiers() & Qt::ShiftModifier)) {
            m_anchor = qMax(row, 0);
        } else if (me->button() == Qt::LeftButton) {
            if (const auto lines = zol::shiftSelection(m_anchor, row, int(m_model->rows().size()), view->visibleRows()))
                selectLines(*lines);
            return true;
        } else if (me->button() == Qt::MiddleButton) {
            if (row >= 0 && row < m_model->rows().size()) {
                QApplication::setOverrideCursor(Qt::WaitCursor);
                selectLines({row});
                QApplication::restoreOverrideCursor();
            }
            return true;
        } else if (me->button() == Qt::RightButton) {
            // Only a click outside the current cell opens the pop-up, and the
            // cell under the pointer becomes current first, so the pop-up acts
            // on the row pointed at; a row the rules keep current opens nothing.
            const QModelIndex at = view->indexAt(pos);
            if (at == view->currentIndex())
                return true;
            if (at.isValid()) {
                // A selection that holds the row stays; otherwise the row alone is selected.
                const bool selected = view->selectionModel()->isRowSelected(at.row(), {});
                view->selectionModel()->setCurrentIndex(at, QItemSelectionModel::NoUpdate);
                if (view->currentIndex() != at)
                    return true;
                if (!selected)
                    view->selectionModel()->select(at, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            }
            showPopup(me->globalPosition().toPoint());
            return true;
        }
    }
    if (watched == view && event->type() == QEvent::KeyPress) {
        auto *ke = static_cast<QKeyEvent *>(event);
        if (ke->key() == Qt::Key_K && ke->modifiers() == Qt::ControlModifier) {
            columnButton(view->currentIndex().column());
            return true;
        }
        if (ke->key() == Qt::Key_Menu && ke->modifiers() == Qt::ControlModifier) {
            showPopup(view->viewport()->mapToGlobal(view->visualRect(view->currentIndex()).center()));
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmProtokoll::closeEvent(QCloseEvent *event)
{
    if (m_model) {
        if (!ui->dbGrid->commitOpenEditor()) {
            event->ignore();
            return;
        }
        const QModelIndex cur = ui->dbGrid->currentIndex();
        if (cur.isValid() && m_model->isDirty(cur.row()) && !m_model->writeRow(cur.row())
            && m_model->lastWrite() != zol::ProtocolGrid::WriteResult::Refused) {
            // The row couldn't be written (its numbers exist): the window stays.
            event->ignore();
            return;
        }
    }
    saveLayout();
    m_suchen->hide();
    event->accept();
}

bool frmProtokoll::prepareSearch()
{
    return !m_model || ui->dbGrid->commitOpenEditor();
}

QList<InstructionRow> frmProtokoll::searchRows() const
{
    return m_model ? m_model->rows() : QList<InstructionRow>{};
}

int frmProtokoll::searchRow() const
{
    return qMax(ui->dbGrid->currentIndex().row(), 0);
}

int frmProtokoll::searchCol() const
{
    return qMax(ui->dbGrid->currentIndex().column(), 0);
}

zol::CellSelection frmProtokoll::cellSelection() const
{
    const QModelIndex cur = ui->dbGrid->currentIndex();
    zol::CellSelection s{cur.row(), cur.column(), 0, 0};
    if (QLineEdit *e = ui->dbGrid->openEditor(); e && e->hasSelectedText()) {
        s.start = e->selectionStart();
        s.length = int(e->selectedText().size());
    } else if (m_lastHit && m_lastHit->row == cur.row() && m_lastHit->col == cur.column()) {
        s.start = m_lastHit->start;
        s.length = m_lastHit->length;
    }
    return s;
}

QString frmProtokoll::currentCellText() const
{
    if (QLineEdit *e = ui->dbGrid->openEditor())
        return e->text();
    return ui->dbGrid->currentIndex().data(Qt::EditRole).toString();
}

bool frmProtokoll::showHit(const zol::SearchHit &hit)
{
    if (!m_model)
        return false;
    const QModelIndex idx = m_model->index(hit.row, hit.col);
    ui->dbGrid->setCurrentIndex(idx);
    if (ui->dbGrid->currentIndex() != idx)
        return false;
    ui->dbGrid->scrollTo(idx);
    m_lastHit = hit;
    if (!ui->dbGrid->openEditor() && (m_model->flags(idx) & Qt::ItemIsEditable)
        && ui->dbGrid->editTriggers() != QAbstractItemView::NoEditTriggers)
        ui->dbGrid->edit(idx);
    if (QLineEdit *e = ui->dbGrid->openEditor()) {
        e->setSelection(hit.start, hit.length);
        e->setFocus();
    } else {
        ui->dbGrid->setFocus();
    }
    return true;
}

bool frmProtokoll::replaceCell(int row, int col, const QString &text)
{
    if (!m_model || !mayReplace())
        return false;
    QLineEdit *e = ui->dbGrid->openEditor();
    const QModelIndex cur = ui->dbGrid->currentIndex();
    if (e && cur.row() == row && cur.column() == col) {
        e->setText(text);
        return ui->dbGrid->commitOpenEditor();
    }
    return m_model->leaveCell(row, col, text).accepted;
}

bool frmProtokoll::mayReplace() const
{
    return m_grid && m_grid->rights().mayReplace && !m_grid->rights().readOnly;
}
