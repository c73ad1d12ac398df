#pragma once
#include "RuledTableView.h"
#include "zol/instructions/ProtocolGridRules.h"

// The lines of one component for the grid, served from memory. With the
// right to add, a last empty row takes a new line (marked "*").
class ProtocolModel : public RuledTableModel {
    Q_OBJECT
public:
    explicit ProtocolModel(zol::ProtocolGrid &grid, QObject *parent = nullptr);

    // Reads the lines anew; changes not yet written are dropped.
    void reload();
    // The stored lines in the grid's order, without the new row.
    const QList<zol::InstructionRow> &rows() const { return m_rows; }
    bool isNewRow(int row) const override { return m_allowAddNew && row == m_rows.size(); }
    // The row with its unwritten changes (the new row included).
    zol::InstructionRow rowAt(int row) const;
    // Takes changed values of a row from outside the cells (a catalog choice);
    // the row is written when it is left.
    void setRowValues(int row, const zol::InstructionRow &values);
    zol::ProtocolGrid &grid() { return m_grid; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    zol::CellCheck leaveCell(int row, int col, const QString &typed) override;
    bool isDirty(int row) const override { return row >= 0 && row == m_dirtyRow; }
    bool writeRow(int row) override;
    // How the last write of a row ended.
    zol::ProtocolGrid::WriteResult lastWrite() const { return m_lastWrite; }
    void revertRow(int row) override;
    bool hasCellButton(int col) const override;

    // The grid's column titles.
    static QString columnTitle(int col);

private:
    zol::InstructionRow &rowRef(int row);
    void markDirty(int row);

    zol::ProtocolGrid &m_grid;
    QList<zol::InstructionRow> m_rows;
    zol::InstructionRow m_newRow;
    bool m_allowAddNew = false;
    bool m_allowUpdate = false;
    int m_dirtyRow = -1;
    zol::ProtocolGrid::WriteResult m_lastWrite = zol::ProtocolGrid::WriteResult::Written;
    zol::InstructionRow m_original;
};
