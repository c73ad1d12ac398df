#pragma once
#include "RuledTableView.h"
#include "zol/instructions/MaintenanceFreeTimes.h"
#include <QSqlDatabase>

// The week ranges without maintenance for the grid DBGrid1; with the right
// to change them a last empty row takes a new range.
class MaintenanceFreeModel : public RuledTableModel {
    Q_OBJECT
public:
    MaintenanceFreeModel(const QSqlDatabase &db, const QString &level, QObject *parent = nullptr);
    void reload();
    const QList<zol::WartungsfreieZeitRow> &rows() const { return m_rows; }
    bool readOnly() const { return m_readOnly; }
    zol::MaintenanceFreeWrite lastWrite() const { return m_lastWrite; }
    // Deletes a stored range; false when there is none or the role may not.
    bool deleteRow(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    zol::CellCheck leaveCell(int row, int col, const QString &typed) override;
    bool isDirty(int row) const override { return row >= 0 && row == m_dirtyRow; }
    bool writeRow(int row) override;
    void revertRow(int row) override;
    bool isNewRow(int row) const override { return !m_readOnly && row == m_rows.size(); }

private:
    zol::WartungsfreieZeitRow rowAt(int row) const;
    zol::WartungsfreieZeitRow &rowRef(int row);

    QSqlDatabase m_db;
    QString m_level;
    bool m_readOnly;
    QList<zol::WartungsfreieZeitRow> m_rows;
    zol::WartungsfreieZeitRow m_newRow;
    int m_dirtyRow = -1;
    zol::WartungsfreieZeitRow m_original;
    zol::MaintenanceFreeWrite m_lastWrite = zol::MaintenanceFreeWrite::Written;
};
