#pragma once
#include "zol/structure/Search.h"
#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <QSet>
#include <functional>

// The list of the main window: the content of a folder, or the components a
// search found. A folder's rows come whole; a search hands over only the keys,
// and the rows are read from the table in blocks when the view first shows
// them, so a search over the whole plant stays quick. Columns: "Name", then
// one per displayed column of the options.
class ExplorerListModel : public QAbstractItemModel {
    Q_OBJECT
public:
    explicit ExplorerListModel(zol::Session &session, QObject *parent = nullptr);

    // The column captions from the options (after a change of the options).
    void setColumns(const zol::OptionState &options);
    void setRows(const QList<zol::ListRow> &rows);
    void setKeys(const QStringList &keys);
    void clear() { setRows({}); }

    QString keyAt(int row) const { return m_keys.value(row); }
    int rowOfKey(const QString &key) const;
    const QStringList &keys() const { return m_keys; }
    // The row of a key as shown (read if not yet); nullptr outside.
    const zol::ListRow *rowAt(int row) const;
    // Reads a row again from the table (after a master-data edit).
    void reloadRow(const QString &key);
    // Cut entries are drawn grey until the next cut, copy or reload.
    void setGhosted(const QSet<QString> &keys);
    void setEditable(bool editable) { m_editable = editable; }
    std::function<bool(const QString &key, QString &name)> onRename;
    // How many rows have been read from the table so far (for the bench).
    int loadedRows() const { return int(m_rows.size()); }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void loadBlock(int row) const;
    zol::Session &m_session;
    QStringList m_headers;
    QStringList m_keys;
    mutable QHash<QString, zol::ListRow> m_rows;
    mutable QHash<QString, int> m_rowOfKey;
    QSet<QString> m_ghosted;
    bool m_editable = true;
    QIcon m_folder, m_plant, m_standard;
};
