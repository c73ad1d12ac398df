#include "ISAuftraegeModel.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/repair/RepairOrders.h"
#include <QComboBox>
#include <QLineEdit>

namespace {
constexpr int kSeite = 256;

QString felder()
{
    QStringList f{QStringLiteral("rowid")};
    for (const zol::ISSpalte &s : zol::ISAuftraegeSpalten())
        f << zol::ident(s.feld);
    return f.join(QStringLiteral(", "));
}
}

ISAuftraegeModel::ISAuftraegeModel(zol::Session &session, QObject *parent)
    : QAbstractTableModel(parent), m_session(session)
{
}

std::vector<ISAuftraegeModel::Zeile> ISAuftraegeModel::lese(const QString &sql, const QVariantList &werte) const
{
    std::vector<Zeile> rows;
    QSqlQuery q = zol::exec(m_session.db(), sql, werte);
    const int n = int(zol::ISAuftraegeSpalten().size());
    while (q.next()) {
        Zeile z;
        z.rowId = q.value(0).toLongLong();
        z.werte.reserve(n);
        for (int i = 0; i < n; ++i)
            z.werte << q.value(i + 1);
        rows.push_back(std::move(z));
    }
    return rows;
}

void ISAuftraegeModel::load(const zol::ISAuftraegeAbfrage &abfrage)
{
    beginResetModel();
    m_abfrage = abfrage;
    m_rows = lese(abfrage.sql(felder()) + QStringLiteral(" LIMIT %1").arg(kSeite), abfrage.werte);
    m_more = m_rows.size() == size_t(kSeite);
    endResetModel();
}

bool ISAuftraegeModel::canFetchMore(const QModelIndex &parent) const { return !parent.isValid() && m_more; }

void ISAuftraegeModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    std::vector<Zeile> more = lese(m_abfrage.sql(felder()) + QStringLiteral(" LIMIT %1 OFFSET %2").arg(kSeite).arg(m_rows.size()),
                                   m_abfrage.werte);
    m_more = more.size() == size_t(kSeite);
    if (more.empty())
        return;
    beginInsertRows({}, int(m_rows.size()), int(m_rows.size() + more.size() - 1));
    for (Zeile &z : more)
        m_rows.push_back(std::move(z));
    endInsertRows();
}

qint64 ISAuftraegeModel::rowId(int row) const { return row >= 0 && row < int(m_rows.size()) ? m_rows[row].rowId : 0; }

QVariant ISAuftraegeModel::wert(int row, int position) const
{
    if (row < 0 || row >= int(m_rows.size()))
        return {};
    return m_rows[row].werte.value(position);
}

void ISAuftraegeModel::aktualisiere(int row)
{
    if (row < 0 || row >= int(m_rows.size()))
        return;
    std::vector<Zeile> z = lese(QStringLiteral("SELECT %1 FROM Erfassung WHERE rowid = ?").arg(felder()), {m_rows[row].rowId});
    if (z.empty())
        return;
    m_rows[row] = std::move(z.front());
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int ISAuftraegeModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }
int ISAuftraegeModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(zol::ISAuftraegeSpalten().size());
}

QVariant ISAuftraegeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const QVariant v = wert(index.row(), index.column());
    const int c = index.column();
    if (zol::istCodeSpalte(c))
        return zol::kurzText(zol::codeListeDerSpalte(c), v.toInt());
    if (c == 19)
        return v.toBool() ? tr("Wahr") : tr("Falsch");
    if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int)
        return zol::zahlAngezeigt(v.toDouble());
    return v.toString();
}

bool ISAuftraegeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole || m_nurLesen)
        return false;
    const QString text = value.toString();
    if (text == data(index, Qt::EditRole).toString())
        return false;
    if (!zol::PruefeZelle(index.column(), text))
        return false;
    try {
        zol::schreibeZelle(m_session.db(), rowId(index.row()), index.column(), text);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
        return false;
    }
    aktualisiere(index.row());
    return true;
}

Qt::ItemFlags ISAuftraegeModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    // Every cell may try to enter edit: the editor tells why a column refuses.
    if (index.isValid() && !m_nurLesen)
        f |= Qt::ItemIsEditable;
    return f;
}

QVariant ISAuftraegeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section < zol::ISAuftraegeSpalten().size())
        return zol::ISAuftraegeSpalten().at(section).titel;
    return QAbstractTableModel::headerData(section, orientation, role);
}

QWidget *ISAuftraegeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                           const QModelIndex &index) const
{
    if (!zol::ZelleEditierbar(index.column()))
        return nullptr;
    if (zol::istCodeSpalte(index.column())) {
        auto *c = new QComboBox(parent);
        c->addItems(zol::kurzTexte(zol::codeListeDerSpalte(index.column())));
        return c;
    }
    return QStyledItemDelegate::createEditor(parent, option, index);
}

void ISAuftraegeDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *c = qobject_cast<QComboBox *>(editor)) {
        c->setCurrentText(index.data(Qt::EditRole).toString());
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void ISAuftraegeDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (auto *c = qobject_cast<QComboBox *>(editor)) {
        model->setData(index, c->currentText());
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}
