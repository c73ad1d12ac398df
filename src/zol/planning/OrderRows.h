#pragma once
#include "zol/core/Sql.h"
#include "zol/print/PageLayouts.h"
#include <QHash>
#include <QSqlRecord>
#include <optional>
#include <vector>

namespace zol {

// The columns of Auftrag.* in the order of AuftragZeile, found once per statement.
struct AuftragSpalten {
    explicit AuftragSpalten(const QSqlRecord &r);
    std::vector<int> index;
};

// The order row at the query's current position.
AuftragZeile auftragZeileAus(const QSqlQuery &q, const AuftragSpalten &c);

// Every row of a SELECT over Auftrag.*, in the statement's order.
std::vector<AuftragZeile> ladeAuftragZeilen(const QSqlDatabase &db, const QString &sql, const QVariantList &values = {});

// Components, their paths and their object heads, each read once per print.
class Komponenten {
public:
    explicit Komponenten(const QSqlDatabase &db);
    const std::optional<Node> &node(const QString &fileIndex);
    // The names from the top down to the component, joined by '\'.
    QString pfad(const QString &fileIndex);
    // The head text of an object (its row with Anweisung 0000), empty if it has none.
    QString objektKopf(const QString &teIndex, const QString &objekt);

private:
    Statement m_node;
    Statement m_oben;
    Statement m_objekt;
    QHash<QString, std::optional<Node>> m_nodes;
    QHash<QString, std::pair<QString, QString>> m_kette;
    QHash<QString, QHash<QString, QString>> m_objekte;
};

}
