#include "ExplorerTreeModel.h"
#include "ExplorerIcons.h"

ExplorerTreeModel::ExplorerTreeModel(QObject *parent)
    : QAbstractItemModel(parent), m_rootIcon(explorerIcon(ExplorerIcon::Root)), m_standardsIcon(explorerIcon(ExplorerIcon::StandardsRoot)), m_folderIcon(explorerIcon(ExplorerIcon::Folder))
{
}

void ExplorerTreeModel::setTree(const zol::ExplorerTree &tree)
{
    beginResetModel();
    m_tree = tree;
    m_items.clear();
    m_top.clear();
    m_byKey.clear();
    m_items.reserve(tree.size() + 2);
    const QStringList top = tree.topKeys();
    for (int i = 0; i < top.size(); ++i) {
        m_items.push_back({top.at(i), tree.text(top.at(i)), -1, i, {}});
        m_top << int(m_items.size()) - 1;
    }
    // Breadth by breadth; a chain that runs in a circle was cut by the tree already.
    for (int i = 0; i < m_items.size(); ++i)
        addChildren(i);
    for (int i = 0; i < m_items.size(); ++i)
        m_byKey.insert(m_items.at(i).key, i);
    endResetModel();
}

void ExplorerTreeModel::addChildren(int item)
{
    const QList<zol::TreeNode> kids = m_tree.children(m_items.at(item).key);
    for (const zol::TreeNode &n : kids) {
        m_items.push_back({n.FileIndex, n.Text, item, int(m_items[item].children.size()), {}});
        m_items[item].children << int(m_items.size()) - 1;
    }
}

QModelIndex ExplorerTreeModel::indexOfKey(const QString &key) const
{
    const auto it = m_byKey.constFind(key);
    if (it == m_byKey.cend())
        return {};
    return createIndex(m_items.at(*it).row, 0, quintptr(*it));
}

QString ExplorerTreeModel::keyOf(const QModelIndex &index) const
{
    const Item *i = itemOf(index);
    return i ? i->key : QString();
}

void ExplorerTreeModel::setText(const QString &key, const QString &text)
{
    const QModelIndex idx = indexOfKey(key);
    if (!idx.isValid())
        return;
    m_items[int(idx.internalId())].text = text;
    emit dataChanged(idx, idx, {Qt::DisplayRole, Qt::EditRole});
}

const ExplorerTreeModel::Item *ExplorerTreeModel::itemOf(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return &m_items.at(int(index.internalId()));
}

QModelIndex ExplorerTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0)
        return {};
    const QVector<int> &kids = parent.isValid() ? m_items.at(int(parent.internalId())).children : m_top;
    if (row >= kids.size())
        return {};
    return createIndex(row, 0, quintptr(kids.at(row)));
}

QModelIndex ExplorerTreeModel::parent(const QModelIndex &child) const
{
    const Item *i = itemOf(child);
    if (!i || i->parent < 0)
        return {};
    return createIndex(m_items.at(i->parent).row, 0, quintptr(i->parent));
}

int ExplorerTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_top.size());
    if (parent.column() != 0)
        return 0;
    return int(m_items.at(int(parent.internalId())).children.size());
}

int ExplorerTreeModel::columnCount(const QModelIndex &) const { return 1; }

QVariant ExplorerTreeModel::data(const QModelIndex &index, int role) const
{
    const Item *i = itemOf(index);
    if (!i)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return i->text;
    case Qt::DecorationRole:
        return i->key == zol::RootKatalo ? m_standardsIcon : i->parent < 0 ? m_rootIcon : m_folderIcon;
    case Qt::UserRole:
        return i->key;
    default:
        return {};
    }
}

bool ExplorerTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const Item *i = itemOf(index);
    if (!i || role != Qt::EditRole)
        return false;
    QString name = value.toString();
    if (name == i->text)
        return false;
    if (!onRename || onRename(i->key, name))
        return false;
    setText(i->key, name);
    return true;
}

Qt::ItemFlags ExplorerTreeModel::flags(const QModelIndex &index) const
{
    const Item *i = itemOf(index);
    if (!i)
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    // The two top nodes are never renamed.
    if (m_editable && !zol::ExplorerTree::isRootKey(i->key))
        f |= Qt::ItemIsEditable;
    return f;
}
