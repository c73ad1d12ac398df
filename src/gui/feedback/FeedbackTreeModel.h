#pragma once
#include "zol/feedback/FeedbackViews.h"
#include <QAbstractItemModel>
#include <memory>
#include <vector>

// The tree of a feedback view. The top level is read page by page as the view
// scrolls (a view of every component would otherwise build them all at once);
// a node's children are read when the view asks for them (on expanding).
class FeedbackTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    // `seite`: top-level nodes read at a time.
    explicit FeedbackTreeModel(zol::Session &session, QObject *parent = nullptr, int seite = 1000);
    ~FeedbackTreeModel() override;

    void setAnsicht(int ansicht);
    int ansicht() const { return m_ansicht; }
    // The key (filter) of a node; empty for an invalid index.
    zol::KnotenFilter filter(const QModelIndex &index) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

private:
    struct Item {
        zol::AnsichtKnoten knoten;
        Item *parent = nullptr;
        int row = 0;
        bool fetched = false;
        std::vector<std::unique_ptr<Item>> children;
    };
    // The next page of the top level, after the nodes read so far.
    QList<zol::AnsichtKnoten> oberstePage();
    Item *itemOf(const QModelIndex &index) const;
    void fill(Item *item, const QList<zol::AnsichtKnoten> &nodes);

    zol::Session &m_session;
    int m_ansicht = 0;
    int m_seite;
    Item m_root;
    bool m_rootMore = false;
    bool m_fetching = false;
};
