#include "Node.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QSqlRecord>

namespace zol {

namespace {
// Member of each field, in the order of Node::fieldNames().
QString Node::*const kMembers[] = {
    &Node::FileIndex, &Node::FileAbove, &Node::FileTyp, &Node::Katalog, &Node::Text, &Node::BezugsJahr,
    &Node::BezugsWoche, &Node::Kostenstelle, &Node::IdentNr, &Node::Klassifizierung, &Node::Standort,
    &Node::Lokalisierung, &Node::Hersteller, &Node::Typ, &Node::WIVerantwortlicher,
    &Node::AnlagenVerantwortlicher, &Node::Option1, &Node::Option2, &Node::KeineWartung,
    &Node::KeineWartungWocheVon1, &Node::KeineWartungWocheBis1, &Node::KeineWartungWocheVon2,
    &Node::KeineWartungWocheBis2};
}

const QStringList &Node::fieldNames()
{
    static const QStringList names = Schema::fieldNames(QStringLiteral("ProtokollKopf"));
    Q_ASSERT(names.size() == int(std::size(kMembers)));
    return names;
}

QString Node::value(const QString &field) const
{
    const int i = fieldNames().indexOf(field, 0);
    if (i >= 0)
        return this->*kMembers[i];
    for (int k = 0; k < fieldNames().size(); ++k)
        if (fieldNames().at(k).compare(field, Qt::CaseInsensitive) == 0)
            return this->*kMembers[k];
    return {};
}

void Node::setValue(const QString &field, const QString &v)
{
    for (int k = 0; k < fieldNames().size(); ++k)
        if (fieldNames().at(k).compare(field, Qt::CaseInsensitive) == 0) {
            this->*kMembers[k] = v;
            return;
        }
}

std::optional<Node> loadNode(const QSqlDatabase &db, const QString &fileIndex)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT * FROM ProtokollKopf WHERE FileIndex = ?"), {fileIndex});
    if (!q.next())
        return std::nullopt;
    Node n;
    const QStringList &names = Node::fieldNames();
    for (int i = 0; i < names.size(); ++i)
        n.*kMembers[i] = q.value(i).toString();
    return n;
}

void saveNode(const QSqlDatabase &db, const Node &node)
{
    const QStringList &names = Node::fieldNames();
    QStringList cols, marks, sets;
    QVariantList values;
    for (int i = 0; i < names.size(); ++i) {
        cols << ident(names.at(i));
        marks << QStringLiteral("?");
        sets << ident(names.at(i)) + QStringLiteral(" = ?");
        values << node.*kMembers[i];
    }
    QVariantList updateValues = values;
    updateValues << node.FileIndex;
    QSqlQuery q = exec(db, QStringLiteral("UPDATE ProtokollKopf SET %1 WHERE FileIndex = ?").arg(sets.join(QLatin1Char(','))),
                       updateValues);
    if (q.numRowsAffected() == 0)
        exec(db, QStringLiteral("INSERT INTO ProtokollKopf (%1) VALUES (%2)")
                     .arg(cols.join(QLatin1Char(',')), marks.join(QLatin1Char(','))),
             values);
}

bool IsStandard(const QSqlDatabase &db, const QString &fileIndex)
{
    const QVariant k = scalar(db, QStringLiteral("SELECT Katalog FROM ProtokollKopf WHERE FileIndex = ?"), {fileIndex});
    return !(k.isValid() && k.toString() == QLatin1String("0"));
}

QString katalogForPath(const QString &fullPath)
{
    return fullPath.left(gStrStandards.size()) == gStrStandards ? QStringLiteral("1") : QStringLiteral("0");
}

}
