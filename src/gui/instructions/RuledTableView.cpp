#include "RuledTableView.h"
#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

namespace {
const char *IndexProp = "ruledIndex";
}

RuledSelectionModel::RuledSelectionModel(QAbstractItemModel *model, RuledTableView *view)
    : QItemSelectionModel(model, view), m_view(view)
{
}

void RuledSelectionModel::setCurrentIndex(const QModelIndex &index, QItemSelectionModel::SelectionFlags command)
{
    if (index != currentIndex() && !m_view->mayMoveTo(index)) {
        // The click or key that tried to move must not select either.
        m_blocked = true;
        QTimer::singleShot(0, this, [this] { m_blocked = false; });
        return;
    }
    QItemSelectionModel::setCurrentIndex(index, command);
}

void RuledSelectionModel::select(const QItemSelection &selection, QItemSelectionModel::SelectionFlags command)
{
    if (m_blocked)
        return;
    QItemSelectionModel::select(selection, command);
}

void RuledTableModel::setCurrentRow(int row)
{
    if (row == m_currentRow)
        return;
    const int old = m_currentRow;
    m_currentRow = row;
    if (old >= 0 && old < rowCount())
        Q_EMIT headerDataChanged(Qt::Vertical, old, old);
    if (row >= 0 && row < rowCount())
        Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

QVariant RuledTableModel::rowMarker(int row) const
{
    if (isDirty(row))
        return QStringLiteral("✎");
    if (row == m_currentRow)
        return QStringLiteral("▶");
    if (isNewRow(row))
        return QStringLiteral("*");
    return QString();
}

QWidget *RuledDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    auto *edit = new QLineEdit(parent);
    edit->setFrame(false);
    edit->setProperty(IndexProp, QVariant::fromValue(QPersistentModelIndex(index)));
    const auto *model = qobject_cast<const RuledTableModel *>(index.model());
    if (model && model->hasCellButton(index.column())) {
        QAction *button = edit->addAction(edit->style()->standardIcon(QStyle::SP_ArrowDown), QLineEdit::TrailingPosition);
        button->setObjectName(QStringLiteral("cellButton"));
        const int col = index.column();
        connect(button, &QAction::triggered, this, [this, col] { Q_EMIT cellButtonPressed(col); });
    }
    return edit;
}

void RuledDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *edit = qobject_cast<QLineEdit *>(editor))
        edit->setText(index.data(Qt::EditRole).toString());
}

bool RuledDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        auto *ke = static_cast<QKeyEvent *>(event);
        if (ke->key() == Qt::Key_K && ke->modifiers() == Qt::ControlModifier) {
            const QPersistentModelIndex at = watched->property(IndexProp).value<QPersistentModelIndex>();
            if (at.isValid())
                Q_EMIT cellButtonPressed(at.column());
            return true;
        }
        // Enter ends the cell and goes on to the next one, as Tab does.
        if ((ke->key() == Qt::Key_Return || ke->key() == Qt::Key_Enter) && ke->modifiers() == Qt::NoModifier) {
            if (auto *editor = qobject_cast<QWidget *>(watched)) {
                Q_EMIT commitData(editor);
                Q_EMIT closeEditor(editor, QAbstractItemDelegate::EditNextItem);
            }
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

void RuledDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const
{
    // The view runs the column rule itself (commitData), so a refusal can keep the editor.
}

RuledTableView::RuledTableView(QWidget *parent) : QTableView(parent), m_delegate(new RuledDelegate(this))
{
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                    | QAbstractItemView::AnyKeyPressed | QAbstractItemView::SelectedClicked);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(8);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    setWordWrap(false);
}

void RuledTableView::setModel(QAbstractItemModel *model)
{
    QItemSelectionModel *before = selectionModel();
    QTableView::setModel(model);
    QItemSelectionModel *created = selectionModel();
    if (model) {
        setSelectionModel(new RuledSelectionModel(model, this));
        connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex &current) {
            if (RuledTableModel *m = ruledModel())
                m->setCurrentRow(current.row());
        });
        // Rows written, deleted or read anew move the current row without a signal of its own.
        const auto follow = [this] {
            if (RuledTableModel *m = ruledModel())
                m->setCurrentRow(currentIndex().row());
        };
        connect(model, &QAbstractItemModel::rowsInserted, this, follow);
        connect(model, &QAbstractItemModel::rowsRemoved, this, follow);
        connect(model, &QAbstractItemModel::modelReset, this, follow);
    }
    if (created && created != selectionModel())
        created->deleteLater();
    if (before && before != created)
        before->deleteLater();
}

RuledTableModel *RuledTableView::ruledModel() const
{
    return qobject_cast<RuledTableModel *>(model());
}

QLineEdit *RuledTableView::openEditor() const
{
    const QModelIndex cur = currentIndex();
    return cur.isValid() ? qobject_cast<QLineEdit *>(indexWidget(cur)) : nullptr;
}

int RuledTableView::defaultColumnWidth(int col, int pixels, const QString &sample) const
{
    constexpr int Padding = 14;
    int w = pixels;
    if (model())
        w = qMax(w, horizontalHeader()->fontMetrics().horizontalAdvance(model()->headerData(col, Qt::Horizontal).toString()) + Padding);
    if (!sample.isEmpty())
        w = qMax(w, fontMetrics().horizontalAdvance(sample) + Padding);
    return w;
}

int RuledTableView::visibleRows() const
{
    const int h = verticalHeader()->defaultSectionSize();
    return h > 0 ? viewport()->height() / h : 0;
}

void RuledTableView::keepEditor(QWidget *editor)
{
    QPointer<QWidget> e(editor);
    QTimer::singleShot(0, this, [e] {
        if (e)
            e->setFocus(Qt::OtherFocusReason);
    });
}

void RuledTableView::commitData(QWidget *editor)
{
    if (m_checking)
        return;
    auto *edit = qobject_cast<QLineEdit *>(editor);
    RuledTableModel *m = ruledModel();
    if (!edit || !m)
        return;
    m_editor = editor;
    // An editor left behind by a move was committed by the rules before the move.
    const QPersistentModelIndex at = edit->property(IndexProp).value<QPersistentModelIndex>();
    if (!at.isValid() || at != currentIndex())
        return;
    const int row = at.row();
    const int col = at.column();
    if (edit->text() == m->index(row, col).data(Qt::EditRole).toString()) {
        m_refused = nullptr;
        return;
    }
    m_checking = true;
    const zol::CellCheck check = m->leaveCell(row, col, edit->text());
    m_checking = false;
    edit->setText(check.cellText);
    if (check.accepted) {
        m_refused = nullptr;
    } else {
        m_refused = editor;
        keepEditor(editor);
    }
}

void RuledTableView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    if (m_checking)
        return;   // focus lost to the message window while the rule runs
    if (editor == m_refused) {
        if (hint != QAbstractItemDelegate::RevertModelCache) {
            keepEditor(editor);
            return;
        }
        m_refused = nullptr;
    }
    if (editor == m_editor)
        m_editor = nullptr;
    QTableView::closeEditor(editor, hint);
}

bool RuledTableView::commitOpenEditor()
{
    // The editor of the current cell, found through the index widget machinery.
    QWidget *editor = openEditor();
    if (!editor)
        editor = m_refused;
    if (!editor)
        return !m_refused;
    commitData(editor);
    return m_refused != editor;
}

bool RuledTableView::finishEditing()
{
    QWidget *editor = openEditor();
    if (!commitOpenEditor())
        return false;
    if (editor)
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    return true;
}

bool RuledTableView::leaveRow()
{
    if (!commitOpenEditor())
        return false;
    const QModelIndex cur = currentIndex();
    RuledTableModel *m = ruledModel();
    if (!cur.isValid() || !m || !m->isDirty(cur.row()))
        return true;
    return m->writeRow(cur.row());
}

bool RuledTableView::mayMoveTo(const QModelIndex &index)
{
    if (m_refused) {
        keepEditor(m_refused);
        return false;
    }
    if (state() == QAbstractItemView::EditingState && !commitOpenEditor())
        return false;
    const QModelIndex cur = currentIndex();
    RuledTableModel *m = ruledModel();
    if (m && cur.isValid() && (!index.isValid() || index.row() != cur.row()) && m->isDirty(cur.row()))
        return m->writeRow(cur.row());
    return true;
}

void RuledTableView::keyPressEvent(QKeyEvent *event)
{
    // Escape outside a cell drops the changes of the row, as a data grid does.
    if (event->key() == Qt::Key_Escape && state() != QAbstractItemView::EditingState) {
        const QModelIndex cur = currentIndex();
        if (RuledTableModel *m = ruledModel(); m && cur.isValid() && m->isDirty(cur.row())) {
            m->revertRow(cur.row());
            event->accept();
            return;
        }
    }
    // Enter outside a cell goes on to the next cell, as in a cell.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier
        && state() != QAbstractItemView::EditingState) {
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QTableView::keyPressEvent(&tab);
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

QModelIndex RuledTableView::moveCursor(QAbstractItemView::CursorAction action, Qt::KeyboardModifiers modifiers)
{
    RuledTableModel *m = ruledModel();
    const QModelIndex cur = currentIndex();
    if (!m || !cur.isValid() || cur.row() != m->rowCount() - 1)
        return QTableView::moveCursor(action, modifiers);
    int first = -1;
    int last = -1;
    for (int col = 0; col < m->columnCount(); ++col)
        if (!isColumnHidden(col)) {
            if (first < 0)
                first = col;
            last = col;
        }
    const bool onward = action == MoveNext && cur.column() == last;
    if (action != MoveDown && !onward)
        return QTableView::moveCursor(action, modifiers);
    // The row is left: its open cell is ended and the row written, as moving to
    // another row would. A refusal keeps the row current.
    if (!finishEditing())
        return cur;
    if (m->isDirty(cur.row()) && !m->writeRow(cur.row()))
        return currentIndex();
    // A written new row stands above a fresh new row, which is now the current one.
    const QModelIndex now = currentIndex();
    return onward && m->isNewRow(now.row()) ? m->index(now.row(), first) : now;
}

bool RuledTableView::edit(const QModelIndex &index, QAbstractItemView::EditTrigger trigger, QEvent *event)
{
    if (index.isValid() && currentIndex().isValid() && index != currentIndex())
        return false;
    return QTableView::edit(index, trigger, event);
}
