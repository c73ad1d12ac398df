#pragma once
#include "zol/structure/Explorer.h"
#include <QAbstractItemModel>
#include <QIcon>
#include <QVector>
#include <functional>

// The installations of the plant as a tree model over zol::ExplorerTree: the
// two top nodes with everything below them. Keys are FileIndex values or the
// root keys; the name column can be edited in place, and the rename rule
// decides whether the new name stays.
class ExplorerTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    explicit ExplorerTreeModel(QObject *parent = nullptr);

    void setTree(const zol::ExplorerTree &tree);
    const zol::ExplorerTree &tree() const { return m_tree; }
    QModelIndex indexOfKey(const QString &key) const;
    QString keyOf(const QModelIndex &index) const;
    // Changes the shown name of a node (after a rename or a master-data edit).
    void setText(const QString &key, const QString &text);

    // Label editing: off for the two top nodes, and off when the command rule says so.
    void setEditable(bool editable) { m_editable = editable; }
    // Called when an edit ends: key and the new name (which the rule may cut);
    // true cancels the edit.
    std::function<bool(const QString &key, QString &name)> onRename;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Item {
        QString key;
        QString text;
        int parent = -1;
        int row = 0;
        QVector<int> children;
    };
    void addChildren(int item);
    const Item *itemOf(const QModelIndex &index) const;

    zol::ExplorerTree m_tree;
    QVector<Item> m_items;
    QVector<int> m_top;
    QHash<QString, int> m_byKey;
    bool m_editable = true;
    QIcon m_rootIcon, m_standardsIcon, m_folderIcon;
};
