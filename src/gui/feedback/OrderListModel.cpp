#include "OrderListModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/planning/OrderRows.h"

namespace {
constexpr int Seite = 500;
}

OrderListModel::OrderListModel(zol::Session &session, QObject *parent) : QAbstractTableModel(parent), m_session(session) {}

void OrderListModel::load(const zol::AuftragsAbfrage &abfrage)
{
    beginResetModel();
    m_abfrage = abfrage;
    m_rows.clear();
    m_names.clear();
    m_more = true;
    endResetModel();
    fetchMore({});
}

void OrderListModel::clear()
{
    beginResetModel();
    m_rows.clear();
    m_more = false;
    endResetModel();
}

const zol::AuftragZeile *OrderListModel::zeile(int row) const
{
    return row >= 0 && row < int(m_rows.size()) ? &m_rows[size_t(row)] : nullptr;
}

void OrderListModel::setZeile(int row, const zol::AuftragZeile &z)
{
    if (row < 0 || row >= int(m_rows.size()))
        return;
    m_rows[size_t(row)] = z;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int OrderListModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }

int OrderListModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : 6; }

QString OrderListModel::name(const QString &teIndex) const
{
    auto it = m_names.find(teIndex);
    if (it == m_names.end())
        it = m_names.insert(teIndex, zol::komponentenName(m_session.db(), teIndex));
    return *it;
}

QVariant OrderListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    const zol::AuftragZeile &z = m_rows[size_t(index.row())];
    switch (index.column()) {
    case 0: return name(z.TeIndex);
    case 1: return z.Jahr + QStringLiteral("--") + z.Woche;
    case 2: return z.Objekt;
    case 3: return z.Anweisung;
    case 4: return z.Kostenstelle;
    case 5: return z.Rueckmeldung;
    }
    return {};
}

QVariant OrderListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList heads = {tr("Name"), tr("Jahr-Woche"), tr("Objekt"), tr("Anweisung"), tr("Kostenstelle"),
                                      tr("Zurückgemeldet")};
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < heads.size())
        return heads.at(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

bool OrderListModel::canFetchMore(const QModelIndex &parent) const { return !parent.isValid() && m_more; }

void OrderListModel::fetchMore(const QModelIndex &parent)
{
    if (parent.isValid() || !m_more)
        return;
    std::vector<zol::AuftragZeile> rows;
    try {
        QVariantList values = m_abfrage.values;
        values << Seite << qlonglong(m_rows.size());
        rows = zol::ladeAuftragZeilen(m_session.db(), m_abfrage.sql + QStringLiteral(" LIMIT ? OFFSET ?"), values);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
    }
    m_more = rows.size() == size_t(Seite);
    if (rows.empty())
        return;
    beginInsertRows({}, int(m_rows.size()), int(m_rows.size() + rows.size()) - 1);
    for (auto &z : rows)
        m_rows.push_back(std::move(z));
    endInsertRows();
}
