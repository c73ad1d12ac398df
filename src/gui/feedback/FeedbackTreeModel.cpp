#include "FeedbackTreeModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include <QScopedValueRollback>

FeedbackTreeModel::FeedbackTreeModel(zol::Session &session, QObject *parent, int seite)
    : QAbstractItemModel(parent), m_session(session), m_seite(seite)
{
    m_root.fetched = true;
}

FeedbackTreeModel::~FeedbackTreeModel() = default;

void FeedbackTreeModel::setAnsicht(int ansicht)
{
    beginResetModel();
    m_ansicht = ansicht;
    m_root.children.clear();
    m_rootMore = true;
    fill(&m_root, oberstePage());
    endResetModel();
}

QList<zol::AnsichtKnoten> FeedbackTreeModel::oberstePage()
{
    QList<zol::AnsichtKnoten> nodes;
    try {
        const zol::AnsichtKnoten *last = m_root.children.empty() ? nullptr : &m_root.children.back()->knoten;
        nodes = zol::ansichtKinder(m_session, m_ansicht, {}, last, m_seite);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    m_rootMore = nodes.size() == m_seite;
    return nodes;
}

void FeedbackTreeModel::fill(Item *item, const QList<zol::AnsichtKnoten> &nodes)
{
    item->children.reserve(item->children.size() + size_t(nodes.size()));
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
    if (m_fetching)
        return false;
    return parent.isValid() ? !itemOf(parent)->fetched : m_rootMore;
}

void FeedbackTreeModel::fetchMore(const QModelIndex &parent)
{
    // A view that asks again while the rows are being inserted would read the same page twice.
    if (m_fetching)
        return;
    const QScopedValueRollback<bool> busy(m_fetching, true);
    if (!parent.isValid()) {
        if (!m_rootMore)
            return;
        const QList<zol::AnsichtKnoten> nodes = oberstePage();
        if (nodes.isEmpty())
            return;
        const int first = int(m_root.children.size());
        beginInsertRows({}, first, first + int(nodes.size()) - 1);
        fill(&m_root, nodes);
        endInsertRows();
        return;
    }
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
