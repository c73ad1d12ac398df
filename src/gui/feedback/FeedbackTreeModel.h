#pragma once
#include "zol/feedback/FeedbackViews.h"
#include <QAbstractItemModel>
#include <memory>
#include <vector>

// The tree of a feedback view. The top level is read when the view is set; a
// node's children are read when the view asks for them (on expanding).
class FeedbackTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit FeedbackTreeModel(zol::Session &session, QObject *parent = nullptr);
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
    Item *itemOf(const QModelIndex &index) const;
    void fill(Item *item, const QList<zol::AnsichtKnoten> &nodes);

    zol::Session &m_session;
    int m_ansicht = 0;
    Item m_root;
};
