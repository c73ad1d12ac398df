#include "OrderRows.h"
#include <QSet>

namespace zol {

AuftragSpalten::AuftragSpalten(const QSqlRecord &r)
{
    for (const char *name : {"TeIndex", "Jahr", "Woche", "Objekt", "Anweisung", "WIVerantwortlicher",
                             "Ausfuehrender", "Kostenstelle", "Lokalisierung", "Option1", "KompBezeichnung",
                             "Betriebszustand", "BetriebszustandXL", "Materialcode", "Bemerkung", "Text",
                             "Rückmeldung", "Befund", "Verbal", "Intervall", "Datum", "SicherheitsHinweis",
                             "IntervallTyp", "KeineWartung", "PlanZeit", "Materialmenge", "AnzahlPersonen"})
        index.push_back(r.indexOf(QString::fromUtf8(name)));
}

AuftragZeile auftragZeileAus(const QSqlQuery &q, const AuftragSpalten &c)
{
    AuftragZeile z;
    int i = 0;
    const auto s = [&]() { return q.value(c.index[size_t(i++)]).toString(); };
    for (QString *f : {&z.TeIndex, &z.Jahr, &z.Woche, &z.Objekt, &z.Anweisung, &z.WIVerantwortlicher,
                       &z.Ausfuehrender, &z.Kostenstelle, &z.Lokalisierung, &z.Option1, &z.KompBezeichnung,
                       &z.Betriebszustand, &z.BetriebszustandXL, &z.Materialcode, &z.Bemerkung, &z.Text,
                       &z.Rueckmeldung, &z.Befund, &z.Verbal, &z.Intervall, &z.Datum, &z.SicherheitsHinweis,
                       &z.IntervallTyp, &z.KeineWartung})
        *f = s();
    z.PlanZeit = q.value(c.index[size_t(i++)]).toDouble();
    z.Materialmenge = q.value(c.index[size_t(i++)]).toDouble();
    z.AnzahlPersonenLeer = q.value(c.index[size_t(i)]).isNull();
    z.AnzahlPersonen = q.value(c.index[size_t(i++)]).toInt();
    return z;
}

std::vector<AuftragZeile> ladeAuftragZeilen(const QSqlDatabase &db, const QString &sql, const QVariantList &values)
{
    std::vector<AuftragZeile> rows;
    QSqlQuery q = exec(db, sql, values);
    const AuftragSpalten spalten(q.record());
    while (q.next())
        rows.push_back(auftragZeileAus(q, spalten));
    return rows;
}

Komponenten::Komponenten(const QSqlDatabase &db)
    : m_node(db, QStringLiteral("SELECT * FROM ProtokollKopf WHERE FileIndex = ?")),
      m_oben(db, QStringLiteral("SELECT Text, FileAbove FROM ProtokollKopf WHERE FileIndex = ?")),
      m_objekt(db, QStringLiteral("SELECT Objekt, Text FROM ProtokollPositionen WHERE TeNummer = ? AND "
                                  "Anweisung = '0000'"))
{
}

const std::optional<Node> &Komponenten::node(const QString &fileIndex)
{
    auto it = m_nodes.find(fileIndex);
    if (it == m_nodes.end()) {
        std::optional<Node> n;
        QSqlQuery &q = m_node.run({fileIndex});
        if (q.next()) {
            n.emplace();
            const QSqlRecord r = q.record();
            for (int i = 0; i < r.count(); ++i)
                n->setValue(r.fieldName(i), q.value(i).toString());
        }
        it = m_nodes.insert(fileIndex, n);
    }
    return *it;
}

QString Komponenten::pfad(const QString &fileIndex)
{
    QStringList names;
    QSet<QString> seen;
    QString key = fileIndex;
    // A node hung below its own descendant must not hold the print.
    while (!key.isEmpty() && !seen.contains(key) && seen.size() < 1000) {
        seen.insert(key);
        auto it = m_kette.find(key);
        if (it == m_kette.end()) {
            QSqlQuery &q = m_oben.run({key});
            std::pair<QString, QString> v;
            if (q.next())
                v = {q.value(0).toString(), q.value(1).toString()};
            else
                v = {QString(), QString()};
            it = m_kette.insert(key, v);
        }
        if (it->first.isNull() && it->second.isNull())
            break;
        names.prepend(it->first);
        key = it->second;
    }
    return names.join(QLatin1Char('\\'));
}

QString Komponenten::objektKopf(const QString &teIndex, const QString &objekt)
{
    auto it = m_objekte.find(teIndex);
    if (it == m_objekte.end()) {
        QHash<QString, QString> heads;
        QSqlQuery &q = m_objekt.run({teIndex});
        while (q.next())
            heads.insert(q.value(0).toString(), q.value(1).toString());
        it = m_objekte.insert(teIndex, heads);
    }
    return it->value(objekt);
}

}
