#include "FeedbackTreeModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"

FeedbackTreeModel::FeedbackTreeModel(zol::Session &session, QObject *parent)
    : QAbstractItemModel(parent), m_session(session)
{
    m_root.fetched = true;
}

FeedbackTreeModel::~FeedbackTreeModel() = default;

void FeedbackTreeModel::setAnsicht(int ansicht)
{
    beginResetModel();
    m_ansicht = ansicht;
    m_root.children.clear();
    try {
        fill(&m_root, zol::ansichtKinder(m_session, ansicht));
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    endResetModel();
}

void FeedbackTreeModel::fill(Item *item, const QList<zol::AnsichtKnoten> &nodes)
{
    item->children.reserve(size_t(nodes.size()));
    for (const zol::AnsichtKnoten &k : nodes) {
        auto child = std::make_unique<Item>();
        child->knoten = k;
        child->parent = item;
        child->row = int(item->children.size());
        child->fetched = k.blatt;
        item->children.push_back(std::move(child));
    }
    item->fetched = true;
}

FeedbackTreeModel::Item *FeedbackTreeModel::itemOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Item *>(index.internalPointer()) : const_cast<Item *>(&m_root);
}

zol::KnotenFilter FeedbackTreeModel::filter(const QModelIndex &index) const
{
    return index.isValid() ? itemOf(index)->knoten.filter : zol::KnotenFilter{};
}

QModelIndex FeedbackTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const Item *p = itemOf(parent);
    if (column != 0 || row < 0 || row >= int(p->children.size()))
        return {};
    return createIndex(row, 0, p->children[size_t(row)].get());
}

QModelIndex FeedbackTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return {};
    Item *p = itemOf(child)->parent;
    if (!p || p == &m_root)
        return {};
    return createIndex(p->row, 0, p);
}

int FeedbackTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    return int(itemOf(parent)->children.size());
}

int FeedbackTreeModel::columnCount(const QModelIndex &) const { return 1; }

QVariant FeedbackTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    return itemOf(index)->knoten.text;
}

bool FeedbackTreeModel::hasChildren(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return false;
    const Item *item = itemOf(parent);
    return item->fetched ? !item->children.empty() : true;
}

bool FeedbackTreeModel::canFetchMore(const QModelIndex &parent) const
{
    return parent.isValid() && !itemOf(parent)->fetched;
}

void FeedbackTreeModel::fetchMore(const QModelIndex &parent)
{
    Item *item = itemOf(parent);
    if (item->fetched)
        return;
    QList<zol::AnsichtKnoten> nodes;
    try {
        nodes = zol::ansichtKinder(m_session, m_ansicht, item->knoten.filter);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    if (nodes.isEmpty()) {
        item->fetched = true;
        return;
    }
    beginInsertRows(parent, 0, int(nodes.size()) - 1);
    fill(item, nodes);
    endInsertRows();
}
