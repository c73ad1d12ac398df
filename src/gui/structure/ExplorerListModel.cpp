#include "ExplorerListModel.h"
#include "ExplorerIcons.h"
#include "zol/core/Options.h"
#include <QBrush>
#include <QColor>

namespace {
constexpr int Block = 200;
}

ExplorerListModel::ExplorerListModel(zol::Session &session, QObject *parent)
    : QAbstractItemModel(parent), m_session(session), m_folder(explorerIcon(ExplorerIcon::Folder)),
      m_plant(explorerIcon(ExplorerIcon::PlantComponent)), m_standard(explorerIcon(ExplorerIcon::StandardComponent))
{
    setColumns(session.options());
}

void ExplorerListModel::setColumns(const zol::OptionState &options)
{
    beginResetModel();
    m_headers = {tr("Name")};
    for (int index : options.gSpaltenIndex)
        if (const zol::SpaltenFeld *f = zol::spaltenFeld(index))
            m_headers << f->listCaption;
    m_keys.clear();
    m_rows.clear();
    m_rowOfKey.clear();
    endResetModel();
}

void ExplorerListModel::setRows(const QList<zol::ListRow> &rows)
{
    beginResetModel();
    m_keys.clear();
    m_rows.clear();
    m_rowOfKey.clear();
    m_ghosted.clear();
    for (const zol::ListRow &r : rows) {
        m_keys << r.FileIndex;
        m_rows.insert(r.FileIndex, r);
    }
    endResetModel();
}

void ExplorerListModel::setKeys(const QStringList &keys)
{
    beginResetModel();
    m_keys = keys;
    m_rows.clear();
    m_rowOfKey.clear();
    m_ghosted.clear();
    endResetModel();
}

int ExplorerListModel::rowOfKey(const QString &key) const
{
    if (m_rowOfKey.isEmpty() && !m_keys.isEmpty())
        for (int i = 0; i < m_keys.size(); ++i)
            m_rowOfKey.insert(m_keys.at(i), i);
    return m_rowOfKey.value(key, -1);
}

void ExplorerListModel::loadBlock(int row) const
{
    const int from = row - row % Block;
    QStringList missing;
    for (int i = from; i < qMin(int(m_keys.size()), from + Block); ++i)
        if (!m_rows.contains(m_keys.at(i)))
            missing << m_keys.at(i);
    const QList<zol::ListRow> rows = zol::listRows(m_session.db(), missing, m_session.options());
    for (const zol::ListRow &r : rows)
        m_rows.insert(r.FileIndex, r);
    // A row deleted meanwhile shows empty rather than being read again and again.
    for (const QString &k : missing)
        if (!m_rows.contains(k))
            m_rows.insert(k, zol::ListRow{k, {}, {}, zol::ListImage::PlantComponent, {}});
}

const zol::ListRow *ExplorerListModel::rowAt(int row) const
{
    if (row < 0 || row >= m_keys.size())
        return nullptr;
    auto it = m_rows.constFind(m_keys.at(row));
    if (it == m_rows.cend()) {
        loadBlock(row);
        it = m_rows.constFind(m_keys.at(row));
    }
    return &*it;
}

void ExplorerListModel::reloadRow(const QString &key)
{
    const int row = rowOfKey(key);
    if (row < 0)
        return;
    const QList<zol::ListRow> rows = zol::listRows(m_session.db(), {key}, m_session.options());
    if (rows.isEmpty())
        return;
    m_rows.insert(key, rows.first());
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void ExplorerListModel::setGhosted(const QSet<QString> &keys)
{
    m_ghosted = keys;
    if (!m_keys.isEmpty())
        emit dataChanged(index(0, 0), index(int(m_keys.size()) - 1, columnCount() - 1), {Qt::ForegroundRole});
}

QModelIndex ExplorerListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (parent.isValid() || row < 0 || row >= m_keys.size() || column < 0 || column >= m_headers.size())
        return {};
    return createIndex(row, column);
}

QModelIndex ExplorerListModel::parent(const QModelIndex &) const { return {}; }

int ExplorerListModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_keys.size()); }

int ExplorerListModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_headers.size()); }

QVariant ExplorerListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.model() != this)
        return {};
    if (role == Qt::UserRole)
        return m_keys.at(index.row());
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::DecorationRole && role != Qt::ForegroundRole
        && role != Qt::ToolTipRole)
        return {};
    const zol::ListRow *r = rowAt(index.row());
    const int c = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return c == 0 ? r->Text : r->subItems.value(c - 1);
    case Qt::ToolTipRole:
        return c == 0 ? r->Text : QVariant();
    case Qt::DecorationRole:
        if (c != 0)
            return {};
        return r->image == zol::ListImage::Installation  ? m_folder
               : r->image == zol::ListImage::StandardComponent ? m_standard
                                                                : m_plant;
    case Qt::ForegroundRole:
        return m_ghosted.contains(r->FileIndex) ? QVariant(QBrush(QColor(0xa0, 0xa0, 0xa0))) : QVariant();
    }
    return {};
}

bool ExplorerListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != 0 || role != Qt::EditRole)
        return false;
    const zol::ListRow *r = rowAt(index.row());
    QString name = value.toString();
    if (name == r->Text)
        return false;
    if (!onRename || onRename(r->FileIndex, name))
        return false;
    m_rows[r->FileIndex].Text = name;
    emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
    return true;
}

Qt::ItemFlags ExplorerListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (m_editable && index.column() == 0)
        f |= Qt::ItemIsEditable;
    return f;
}

QVariant ExplorerListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_headers.value(section);
    return {};
}
