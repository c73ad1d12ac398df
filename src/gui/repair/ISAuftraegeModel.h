#pragma once
#include "zol/core/Session.h"
#include "zol/repair/RepairOverview.h"
#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QVariantList>
#include <vector>

// The repair orders of the overview's query, read page by page as the grid
// scrolls, so 100,000 orders cost only what is shown. Cells are written one
// at a time after their check.
class ISAuftraegeModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit ISAuftraegeModel(zol::Session &session, QObject *parent = nullptr);

    void load(const zol::ISAuftraegeAbfrage &abfrage);
    void reload() { load(m_abfrage); }
    void setNurLesen(bool nurLesen) { m_nurLesen = nurLesen; }
    qint64 rowId(int row) const;
    // The value of a field of a row by its grid position, as stored.
    QVariant wert(int row, int position) const;
    // The row after the single capture saved it.
    void aktualisiere(int row);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

private:
    struct Zeile {
        qint64 rowId = 0;
        QVariantList werte;   // by grid position
    };
    std::vector<Zeile> lese(const QString &sql, const QVariantList &werte) const;

    zol::Session &m_session;
    zol::ISAuftraegeAbfrage m_abfrage;
    std::vector<Zeile> m_rows;
    bool m_more = false;
    bool m_nurLesen = false;
};

// The editor of a cell: refuses the columns that are never edited with their
// message, and offers the short texts of a code column as a list.
class ISAuftraegeDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
};
