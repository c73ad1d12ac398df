#pragma once
#include "zol/feedback/FeedbackViews.h"
#include <QAbstractTableModel>
#include <QHash>
#include <vector>

// The orders of a tree node (lvListView), read page by page as the view
// scrolls: a long list costs only what is shown. No statement stays open
// between two reads, so posting and saving can write at any time.
class OrderListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit OrderListModel(zol::Session &session, QObject *parent = nullptr);

    void load(const zol::AuftragsAbfrage &abfrage);
    void clear();
    const zol::AuftragZeile *zeile(int row) const;
    // The row after a save: the list shows its new cost centre and feedback mark.
    void setZeile(int row, const zol::AuftragZeile &z);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

private:
    QString name(const QString &teIndex) const;

    zol::Session &m_session;
    zol::AuftragsAbfrage m_abfrage;
    std::vector<zol::AuftragZeile> m_rows;
    bool m_more = false;
    mutable QHash<QString, QString> m_names;
};
