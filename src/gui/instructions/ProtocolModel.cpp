#include "ProtocolModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"

using zol::InstructionRow;

ProtocolModel::ProtocolModel(zol::ProtocolGrid &grid, QObject *parent) : RuledTableModel(parent), m_grid(grid)
{
    reload();
}

void ProtocolModel::reload()
{
    beginResetModel();
    m_rows = m_grid.reload();
    m_allowAddNew = !m_grid.rights().readOnly;
    m_allowUpdate = !m_grid.rights().readOnly;
    m_newRow = m_grid.newRow();
    m_dirtyRow = -1;
    endResetModel();
}

QString ProtocolModel::columnTitle(int col)
{
    static const QStringList titles{
        QStringLiteral("TENUMMER"),       QStringLiteral("Objekt"),         QStringLiteral("Anweisung"),
        QStringLiteral("Text"),           QStringLiteral("Gewerk"),         QStringLiteral("Betriebszustand"),
        QStringLiteral("AnzahlPersonen"), QStringLiteral("Sicherheitshinweis"), QStringLiteral("Intervall"),
        QStringLiteral("Planzeit"),       QStringLiteral("Materialcode"),   QStringLiteral("Materialmenge"),
        QStringLiteral("Intervalltyp")};
    return titles.value(col);
}

InstructionRow &ProtocolModel::rowRef(int row)
{
    return row == m_rows.size() ? m_newRow : m_rows[row];
}

InstructionRow ProtocolModel::rowAt(int row) const
{
    return row == m_rows.size() ? m_newRow : m_rows.at(row);
}

int ProtocolModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size()) + (m_allowAddNew ? 1 : 0);
}

int ProtocolModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : zol::Col::Count;
}

QVariant ProtocolModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const int row = index.row();
    if (isNewRow(row) && m_dirtyRow != row)
        return QString();   // the empty new row; its defaults come with the row rule
    return (row == m_rows.size() ? m_newRow : m_rows.at(row)).value(index.column());
}

QVariant ProtocolModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return columnTitle(section);
    return rowMarker(section);
}

Qt::ItemFlags ProtocolModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (m_allowUpdate && index.column() != zol::Col::TeNummer)
        f |= Qt::ItemIsEditable;
    return f;
}

bool ProtocolModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid) || !(flags(index) & Qt::ItemIsEditable))
        return false;
    return leaveCell(index.row(), index.column(), value.toString()).accepted;
}

void ProtocolModel::markDirty(int row)
{
    if (m_dirtyRow == row)
        return;
    if (m_dirtyRow >= 0) {
        // One row is changed at a time; the view writes a row before it leaves it.
        const int old = m_dirtyRow;
        m_dirtyRow = -1;
        Q_EMIT headerDataChanged(Qt::Vertical, old, old);
    }
    m_original = rowAt(row);
    m_dirtyRow = row;
    if (isNewRow(row))
        m_newRow = m_grid.newRow();
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

zol::CellCheck ProtocolModel::leaveCell(int row, int col, const QString &typed)
{
    if (row < 0 || row >= rowCount() || !m_allowUpdate)
        return {false, typed};
    InstructionRow candidate = (isNewRow(row) && m_dirtyRow != row) ? m_grid.newRow() : rowAt(row);
    const zol::CellCheck check = m_grid.leaveCell(candidate, col, typed);
    if (!check.accepted)
        return check;
    markDirty(row);
    rowRef(row) = candidate;
    Q_EMIT dataChanged(index(row, 0), index(row, zol::Col::Count - 1), {Qt::DisplayRole, Qt::EditRole});
    return check;
}

void ProtocolModel::setRowValues(int row, const InstructionRow &values)
{
    if (row < 0 || row >= rowCount() || !m_allowUpdate)
        return;
    markDirty(row);
    rowRef(row) = values;
    Q_EMIT dataChanged(index(row, 0), index(row, zol::Col::Count - 1), {Qt::DisplayRole, Qt::EditRole});
}

bool ProtocolModel::writeRow(int row)
{
    if (!isDirty(row))
        return true;
    InstructionRow candidate = rowAt(row);
    try {
        m_lastWrite = m_grid.writeRow(candidate);
    } catch (const zol::Fault &f) {
        m_lastWrite = zol::ProtocolGrid::WriteResult::DuplicateKey;
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
        return false;
    }
    if (m_lastWrite != zol::ProtocolGrid::WriteResult::Written)
        return false;
    m_dirtyRow = -1;
    if (isNewRow(row)) {
        // The new row empties, and the written line is inserted before it.
        m_newRow = m_grid.newRow();
        Q_EMIT dataChanged(index(row, 0), index(row, zol::Col::Count - 1), {Qt::DisplayRole, Qt::EditRole});
        beginInsertRows({}, row, row);
        m_rows.append(candidate);
        endInsertRows();
        Q_EMIT headerDataChanged(Qt::Vertical, row, row + 1);
        return true;
    }
    m_rows[row] = candidate;
    Q_EMIT dataChanged(index(row, 0), index(row, zol::Col::Count - 1), {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
    return true;
}

void ProtocolModel::revertRow(int row)
{
    if (!isDirty(row))
        return;
    rowRef(row) = m_original;
    m_dirtyRow = -1;
    Q_EMIT dataChanged(index(row, 0), index(row, zol::Col::Count - 1), {Qt::DisplayRole, Qt::EditRole});
    Q_EMIT headerDataChanged(Qt::Vertical, row, row);
}

bool ProtocolModel::hasCellButton(int col) const
{
    return col == zol::Col::Text || col == zol::Col::Ausfuehrender || col == zol::Col::Betriebszustand
        || col == zol::Col::Sicherheitshinweis || col == zol::Col::Intervall || col == zol::Col::Materialcode;
}
