#pragma once
#include "zol/instructions/ProtocolGridRules.h"
#include <QAbstractTableModel>
#include <QItemSelectionModel>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QTableView>

class QLineEdit;

// A table model whose cells are guarded by a column rule when they are left
// and whose rows are guarded by a row rule before they are written.
class RuledTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;
    // The column rule for a cell left with changed text. On acceptance the
    // row holds the value; a refusal has shown its message and changes nothing.
    virtual zol::CellCheck leaveCell(int row, int col, const QString &typed) = 0;
    // Whether the row holds changes not yet written.
    virtual bool isDirty(int row) const = 0;
    // The row rule and the write of a changed row; false keeps the row current.
    virtual bool writeRow(int row) = 0;
    // Drops the changes of a row not yet written.
    virtual void revertRow(int row) = 0;
    // Columns whose cells have a button (the catalogs and the hints).
    virtual bool hasCellButton(int col) const { return false; }
    // Whether the row is the empty row that takes a new line.
    virtual bool isNewRow(int row) const = 0;

    // The row the grid stands on, shown in the row header.
    void setCurrentRow(int row);
    int currentRow() const { return m_currentRow; }

protected:
    // The row header as a data grid shows it: a pencil on a changed row, an
    // arrow on the current row, a star on the new row.
    QVariant rowMarker(int row) const;

private:
    int m_currentRow = -1;
};

class RuledTableView;

// Lets the current cell move only when the view's rules allow it.
class RuledSelectionModel : public QItemSelectionModel {
    Q_OBJECT
public:
    RuledSelectionModel(QAbstractItemModel *model, RuledTableView *view);
    using QItemSelectionModel::select;
    void setCurrentIndex(const QModelIndex &index, QItemSelectionModel::SelectionFlags command) override;
    void select(const QItemSelection &selection, QItemSelectionModel::SelectionFlags command) override;

private:
    RuledTableView *m_view;
    bool m_blocked = false;
};

// Line-edit cells; the button columns get a button in the editor.
class RuledDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

protected:
    // Ctrl+K in a cell presses its button; the line edit would cut the line instead.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void cellButtonPressed(int col) const;
};

// The grid: a cell left with a refused value keeps its editor, its text and
// the focus; a changed row is written before another row becomes current.
class RuledTableView : public QTableView {
    Q_OBJECT
public:
    explicit RuledTableView(QWidget *parent = nullptr);
    using QTableView::edit;
    // Only the current cell is edited: a move the rules refused opens nothing.
    bool edit(const QModelIndex &index, QAbstractItemView::EditTrigger trigger, QEvent *event) override;
    void setModel(QAbstractItemModel *model) override;
    RuledTableModel *ruledModel() const;
    RuledDelegate *ruledDelegate() const { return m_delegate; }

    // Runs the column rule on an open editor; false when it refused.
    bool commitOpenEditor();
    // Commits the open editor and closes it; false when the rule refused.
    bool finishEditing();
    // Commits the open editor and writes the current row when it changed;
    // false when either refused.
    bool leaveRow();
    // The editor open on the current cell, if any.
    QLineEdit *openEditor() const;
    // A default width in pixels that shows the column's title and, at least,
    // sample (e.g. a number mask) whole.
    int defaultColumnWidth(int col, int pixels, const QString &sample = {}) const;
    // How many whole rows the view shows.
    int visibleRows() const;
    // Whether the current cell may move to index (rules run on the way).
    bool mayMoveTo(const QModelIndex &index);

protected:
    void commitData(QWidget *editor) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void keyPressEvent(QKeyEvent *event) override;
    // Down, or Tab and Enter in the last column, on the last row leave that
    // row: it is written and the fresh new row follows.
    QModelIndex moveCursor(QAbstractItemView::CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void keepEditor(QWidget *editor);

    RuledDelegate *m_delegate;
    QPointer<QWidget> m_refused;
    QPointer<QWidget> m_editor;
    bool m_checking = false;
};
