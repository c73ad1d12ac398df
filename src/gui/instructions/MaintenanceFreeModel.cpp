#include "MaintenanceFreeModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"

using zol::WartungsfreieZeitRow;

namespace {
QString &cell(WartungsfreieZeitRow &r, int col)
{
    return col == zol::WartungsfreiCol::WocheVon ? r.WocheVon : col == zol::WartungsfreiCol::WocheBis ? r.WocheBis : r.Kommentar;
}
}

MaintenanceFreeModel::MaintenanceFreeModel(const QSqlDatabase &db, const QString &level, QObject *parent)
    : RuledTableModel(parent), m_db(db), m_level(level), m_readOnly(zol::maintenanceFreeTimesReadOnly(level))
{
    reload();
}

void MaintenanceFreeModel::reload()
{
    beginResetModel();
    m_rows = zol::loadMaintenanceFreeTimes(m_db);
    m_newRow = {};
    m_dirtyRow = -1;
    endResetModel();
}

WartungsfreieZeitRow MaintenanceFreeModel::rowAt(int row) const
{
    return row == m_rows.size() ? m_newRow : m_rows.at(row);
}

WartungsfreieZeitRow &MaintenanceFreeModel::rowRef(int row)
{
    return row == m_rows.size() ? m_newRow : m_rows[row];
}

int MaintenanceFreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size()) + (m_readOnly ? 0 : 1);
}

int MaintenanceFreeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant MaintenanceFreeModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    WartungsfreieZeitRow r = rowAt(index.row());
    return cell(r, index.column());
}

QVariant MaintenanceFreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal) {
        static const QStringList titles{tr("von Woche"), tr("bis Woche"), tr("Kommentar")};
        return titles.value(section);
    }
    return rowMarker(section);
}

Qt::ItemFlags MaintenanceFreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | (m_readOnly ? Qt::NoItemFlags : Qt::ItemIsEditable);
}

bool MaintenanceFreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid) || m_readOnly)
        return false;
    return leaveCell(index.row(), index.column(), value.toString()).accepted;
}

zol::CellCheck MaintenanceFreeModel::leaveCell(int row, int col, const QString &typed)
{
    if (m_readOnly || row < 0 || row >= rowCount())
        return {false, typed};
    WartungsfreieZeitRow candidate = rowAt(row);
    const bool ok = zol::leaveMaintenanceFreeCell(candidate, col, typed);
    const QString shown = cell(candidate, col);
    if (!ok)
        return {false, shown};
    if (m_dirtyRow != row) {
        m_original = rowAt(row);
        m_dirtyRow = row;
    }
    rowRef(row) = candidate;
    Q_EMIT dataChanged(index(row, 0), index(row, 2), {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
    return {true, shown};
}

bool MaintenanceFreeModel::writeRow(int row)
{
    if (!isDirty(row))
        return true;
    WartungsfreieZeitRow candidate = rowAt(row);
    try {
        m_lastWrite = zol::writeMaintenanceFreeTime(m_db, m_level, candidate);
    } catch (const zol::Fault &f) {
        m_lastWrite = zol::MaintenanceFreeWrite::DuplicateKey;
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
        return false;
    }
    if (m_lastWrite != zol::MaintenanceFreeWrite::Written)
        return false;
    m_dirtyRow = -1;
    if (row == m_rows.size()) {
        // The new row empties, and the written range is inserted before it.
        m_newRow = {};
        Q_EMIT dataChanged(index(row, 0), index(row, 2), {Qt::DisplayRole, Qt::EditRole});
        beginInsertRows({}, row, row);
        m_rows.append(candidate);
        endInsertRows();
        Q_EMIT headerDataChanged(Qt::Vertical, row, row + 1);
        return true;
    }
    m_rows[row] = candidate;
    Q_EMIT dataChanged(index(row, 0), index(row, 2), {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
    return true;
}

void MaintenanceFreeModel::revertRow(int row)
{
    if (!isDirty(row))
        return;
    rowRef(row) = m_original;
    m_dirtyRow = -1;
    Q_EMIT dataChanged(index(row, 0), index(row, 2), {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

bool MaintenanceFreeModel::deleteRow(int row)
{
    if (row < 0 || row >= m_rows.size() || !zol::deleteMaintenanceFreeTime(m_db, m_level, m_rows.at(row).rowId))
        return false;
    beginRemoveRows({}, row, row);
    m_rows.removeAt(row);
    if (m_dirtyRow == row)
        m_dirtyRow = -1;
    else if (m_dirtyRow > row)
        --m_dirtyRow;
    endRemoveRows();
    return true;
}
