#include "Effort.h"
#include "zol/core/Fault.h"
#include "zol/core/NameOrder.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/instructions/InstructionRow.h"
#include <QSqlQuery>
#include <unordered_map>

namespace zol {

const QList<AufwandSchluessel> &geplantSchluessel()
{
    static const QList<AufwandSchluessel> k = {
        {QStringLiteral("Komponente"), QStringLiteral("TeNummer")},
        {QStringLiteral("Gewerk"), QStringLiteral("Ausfuehrender")},
        {QStringLiteral("Intervalltyp"), QStringLiteral("IntervallTyp")},
        {QStringLiteral("Materialcode"), QStringLiteral("MaterialCode")},
        {QStringLiteral("Betriebszustand"), QStringLiteral("Betriebszustand")}};
    return k;
}

const QList<AufwandSchluessel> &rueckgemeldetSchluessel()
{
    static const QList<AufwandSchluessel> k = {
        {QStringLiteral("Komponente"), QStringLiteral("TeIndex")},
        {QStringLiteral("Gewerk"), QStringLiteral("Ausfuehrender")},
        {QStringLiteral("IntervallTyp"), QStringLiteral("IntervallTyp")},
        {QStringLiteral("Materialcode"), QStringLiteral("MaterialCode")},
        {QStringLiteral("Kostenstelle"), QStringLiteral("Kostenstelle")},
        {QStringLiteral("Betriebszustand"), QStringLiteral("Betriebszustand")}};
    return k;
}

QStringList geplantAuswertungen()
{
    return {QStringLiteral("Geplanter Zeitaufwand"), QStringLiteral("Geplanter Materialverbrauch")};
}

QStringList rueckgemeldetAuswertungen()
{
    return {QStringLiteral("Rückgem. Zeitaufwand"), QStringLiteral("Rückgem. Materialaufwand")};
}

QString wertSpalte(Auswertung a)
{
    return a == Auswertung::Zeit ? QStringLiteral("Zeitaufwand") : QStringLiteral("Materialverbrauch");
}

int faelligeWochen(const IntervalLookup &lookup, const QString &intervall, const IntervalLookup::Interval &iv,
                   int bezugsJahr, int bezugsWoche, const QString &bezugsWocheText, const WochenBereich &r)
{
    const long long bezug = wochenIndex(bezugsJahr, bezugsWoche);
    int n = 0;
    int y = r.jahrVon, w = r.wocheVon;
    // The week bound holds in every year, not only in the last one.
    while (r.jahrBis >= y && r.wocheBis >= w) {
        if (dueByInterval(lookup, intervall, iv, w, wochenIndex(y, w) - bezug, bezugsWocheText) == Due::Yes)
            ++n;
        if (++w == 53) {
            w = 1;
            ++y;
        }
    }
    return n;
}

double GeplanterWert(const IntervalLookup &lookup, const QString &intervall, const QString &bezugsJahr,
                     const QString &bezugsWoche, const QString &wert, const WochenBereich &r)
{
    const IntervalLookup::Interval *iv = lookup.interval(intervall);
    if (!iv)
        return 0;
    if (bezugsWoche.isEmpty() || bezugsJahr.isEmpty() || iv->typ.isEmpty() || intervall.isEmpty())
        return 0;
    const auto jahr = wholeNumber(bezugsJahr);
    const auto woche = wholeNumber(bezugsWoche);
    if (!jahr || !woche)
        return 0;
    const long long bezug = wochenIndex(*jahr, *woche);
    const long long von = wochenIndex(r.jahrVon, r.wocheVon);
    const long long bis = wochenIndex(r.jahrBis, r.wocheBis);
    if (bis < bezug)
        return 0;
    if (wert.trimmed().isEmpty())
        return 0;
    const double v = numericValue(wert);
    if (iv->typ == QLatin1String("K")) {
        const long long weeks = bezug <= von ? bis - von + 1 : bis - bezug + 1;
        return iv->haeufigkeit / 52 * (v * double(weeks));
    }
    return v * faelligeWochen(lookup, intervall, *iv, *jahr, *woche, formatWoche(bezugsWoche), r);
}

double RueckgemeldeterWert(const IntervalLookup &lookup, const QString &intervall, double wert)
{
    const IntervalLookup::Interval *iv = lookup.interval(intervall);
    if (!iv)
        return 0;
    if (iv->typ == QLatin1String("K"))
        return iv->haeufigkeit / 52 * wert;
    return wert;
}

namespace {

// The control break over rows ordered by the keys: a row whose key values
// differ from the group's (case ignored) opens a new group; a group whose
// value stays 0 is not shown.
class GroupWalk {
public:
    GroupWalk(int keys, int componentKey, const ComponentTree &tree, AufwandErgebnis &out)
        : m_keys(keys), m_componentKey(componentKey), m_tree(tree), m_out(out), m_stored(keys)
    {
    }

    void begin() { m_change = true; }

    // values: the row's key values in the chosen order.
    void row(const QString *values, double wert)
    {
        for (int i = 0; i < m_keys; ++i) {
            if (values[i].compare(m_stored[i], Qt::CaseInsensitive) != 0) {
                m_stored[i] = values[i];
                m_change = true;
            }
        }
        if (m_change) {
            finishLast();
            dropEmptyLast();
            QStringList cells;
            for (int i = 0; i < m_keys; ++i)
                cells << cellOf(i, values[i]);
            cells << QString();
            m_out.zeilen << cells;
            m_values << 0.0;
            m_change = false;
        }
        m_values.last() += wert;
    }

    void end()
    {
        finishLast();
        dropEmptyLast();
    }

private:
    void finishLast()
    {
        if (!m_values.isEmpty())
            m_out.zeilen.last().last() = plainNumber(m_values.last());
    }
    void dropEmptyLast()
    {
        if (!m_values.isEmpty() && m_values.last() == 0) {
            m_values.removeLast();
            m_out.zeilen.removeLast();
        }
    }
    QString cellOf(int i, const QString &value) const
    {
        if (i == m_componentKey) {
            const ComponentTree::Row *r = m_tree.row(value);
            return r && !r->Text.isEmpty() ? r->Text : value;
        }
        return value.isEmpty() ? QStringLiteral(" ") : value;
    }

    int m_keys;
    int m_componentKey;
    const ComponentTree &m_tree;
    AufwandErgebnis &m_out;
    QList<QString> m_stored;
    QList<double> m_values;
    bool m_change = true;
};

QString orderBy(const QStringList &keys, const QString &componentKey, const QString &prefix)
{
    QStringList terms;
    for (const QString &k : keys)
        terms << (k == componentKey ? prefix + ident(k) : caselessOrder(prefix + ident(k)));
    return terms.isEmpty() ? QString() : QStringLiteral(" ORDER BY ") + terms.join(QLatin1Char(','));
}

QStringList captions(const QList<AufwandSchluessel> &offered, const AufwandParameter &p)
{
    QStringList c;
    for (const QString &k : p.schluessel)
        for (const AufwandSchluessel &s : offered)
            if (s.key == k)
                c << s.text;
    c << wertSpalte(p.auswertung);
    return c;
}

void checkKeys(const QList<AufwandSchluessel> &offered, const QStringList &keys)
{
    for (const QString &k : keys) {
        bool known = false;
        for (const AufwandSchluessel &s : offered)
            known = known || s.key == k;
        if (!known)
            throw Fault(FaultNo::General, QStringLiteral("Unbekanntes Ordnungsmerkmal: %1").arg(k));
    }
}

}   // namespace

AufwandErgebnis geplanterAufwand(const QSqlDatabase &db, const AufwandParameter &p, const WochenBereich &bereich,
                                 const Progress &progress)
{
    checkKeys(geplantSchluessel(), p.schluessel);
    AufwandErgebnis out;
    out.spalten = captions(geplantSchluessel(), p);
    const IntervalLookup lookup = IntervalLookup::load(db);
    const ComponentTree tree = ComponentTree::load(db);
    const QString componentKey = QStringLiteral("TeNummer");
    const int keys = int(p.schluessel.size());
    GroupWalk walk(keys, int(p.schluessel.indexOf(componentKey)), tree, out);
    const QString wertFeld = p.auswertung == Auswertung::Zeit ? QStringLiteral("Planzeit") : QStringLiteral("Materialmenge");

    QString select = QStringLiteral("SELECT B.Intervall, B.%1, B.TeNummer").arg(wertFeld);
    for (const QString &k : p.schluessel)
        select += QStringLiteral(", B.") + ident(k);

    // The long-term rhythm is the same for every instruction of a code and a
    // reference week: its count of due weeks is worked out once.
    std::unordered_map<std::string, int> dueCount;
    auto wert = [&](const QString &intervall, const QString &bezugsJahr, const QString &bezugsWoche,
                    const QString &v) -> double {
        const IntervalLookup::Interval *iv = lookup.interval(intervall);
        if (!iv || iv->typ == QLatin1String("K") || bezugsJahr.isEmpty() || bezugsWoche.isEmpty()
            || intervall.isEmpty())
            return GeplanterWert(lookup, intervall, bezugsJahr, bezugsWoche, v, bereich);
        const auto jahr = wholeNumber(bezugsJahr), woche = wholeNumber(bezugsWoche);
        if (!jahr || !woche || wochenIndex(bereich.jahrBis, bereich.wocheBis) < wochenIndex(*jahr, *woche)
            || v.trimmed().isEmpty())
            return 0;
        const std::string cacheKey = (intervall.toUpper() + QLatin1Char('|') + bezugsJahr + QLatin1Char('|')
                                      + bezugsWoche).toStdString();
        auto it = dueCount.find(cacheKey);
        if (it == dueCount.end())
            it = dueCount.emplace(cacheKey, faelligeWochen(lookup, intervall, *iv, *jahr, *woche,
                                                           formatWoche(bezugsWoche), bereich)).first;
        return numericValue(v) * it->second;
    };

    QList<QString> values(keys);
    qint64 done = 0;
    const auto walkQuery = [&](QSqlQuery &q, const ComponentTree::Row *fixed, qint64 total) {
        walk.begin();
        while (q.next()) {
            for (int i = 0; i < keys; ++i)
                values[i] = q.value(3 + i).toString();
            const ComponentTree::Row *r = fixed ? fixed : tree.row(q.value(2).toString());
            walk.row(values.data(), r ? wert(q.value(0).toString(), r->BezugsJahr, r->BezugsWoche,
                                             q.value(1).toString())
                                      : 0.0);
            if (progress && ++done % 4096 == 0)
                progress(done, total);
        }
        walk.end();
    };

    if (p.alle) {
        const qint64 total = scalar(db, QStringLiteral("SELECT COUNT(*) FROM ProtokollPositionen")).toLongLong();
        QSqlQuery q = exec(db, select + QStringLiteral(" FROM ProtokollPositionen AS B, ProtokollKopf AS A"
                                                       " WHERE B.TeNummer = A.FileIndex AND B.Anweisung <> '0000'"
                                                       " AND A.Katalog = '0'")
                                   + orderBy(p.schluessel, componentKey, QStringLiteral("B.")));
        walkQuery(q, nullptr, total);
    } else {
        const QStringList components = tree.components(p.entries);
        Statement st(db, select + QStringLiteral(" FROM ProtokollPositionen AS B WHERE B.Anweisung <> '0000'"
                                                 " AND B.TeNummer = ?")
                             + orderBy(p.schluessel, componentKey, QStringLiteral("B.")));
        for (const QString &c : components)
            walkQuery(st.run({c}), tree.row(c), 0);
    }
    if (progress)
        progress(done, done);
    return out;
}

std::optional<AufwandErgebnis> rueckgemeldeterAufwand(const QSqlDatabase &db, const AufwandParameter &p,
                                                      const QString &jahr, const QString &wocheVon,
                                                      const QString &wocheBis, const Progress &progress)
{
    checkKeys(rueckgemeldetSchluessel(), p.schluessel);
    const QString table = Schema::yearTableName(jahr);
    if (!Schema::tableExists(db, table))
        return std::nullopt;
    AufwandErgebnis out;
    out.spalten = captions(rueckgemeldetSchluessel(), p);
    const IntervalLookup lookup = IntervalLookup::load(db);
    const ComponentTree tree = ComponentTree::load(db);
    const QString componentKey = QStringLiteral("TeIndex");
    const int keys = int(p.schluessel.size());
    GroupWalk walk(keys, int(p.schluessel.indexOf(componentKey)), tree, out);
    const QString wertFeld = p.auswertung == Auswertung::Zeit ? QStringLiteral("PlanZeit") : QStringLiteral("Materialmenge");

    QString select = QStringLiteral("SELECT Intervall, %1, TeIndex").arg(wertFeld);
    for (const QString &k : p.schluessel)
        select += QStringLiteral(", ") + ident(k);
    select += QStringLiteral(" FROM %1 WHERE Woche >= ? AND Woche <= ? AND Befund <> 'S'").arg(ident(table));
    const QString order = orderBy(p.schluessel, componentKey, QString());

    QList<QString> values(keys);
    qint64 done = 0;
    const auto walkQuery = [&](QSqlQuery &q, qint64 total) {
        walk.begin();
        while (q.next()) {
            for (int i = 0; i < keys; ++i)
                values[i] = q.value(3 + i).toString();
            // A row of a component that is gone adds nothing.
            const double v = tree.row(q.value(2).toString())
                ? RueckgemeldeterWert(lookup, q.value(0).toString(), q.value(1).toDouble())
                : 0.0;
            walk.row(values.data(), v);
            if (progress && ++done % 4096 == 0)
                progress(done, total);
        }
        walk.end();
    };
    if (p.alle) {
        const qint64 total = scalar(db, QStringLiteral("SELECT COUNT(*) FROM %1").arg(ident(table))).toLongLong();
        QSqlQuery q = exec(db, select + order, {wocheVon, wocheBis});
        walkQuery(q, total);
    } else {
        Statement st(db, select + QStringLiteral(" AND TeIndex = ?") + order);
        for (const QString &c : tree.components(p.entries))
            walkQuery(st.run({wocheVon, wocheBis, c}), 0);
    }
    if (progress)
        progress(done, done);
    return out;
}

}
