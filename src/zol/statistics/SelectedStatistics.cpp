#include "SelectedStatistics.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/structure/Explorer.h"
#include <QSqlQuery>

namespace zol {

const QStringList &statistikSpalten()
{
    static const QStringList c = {
        QStringLiteral("Benennung"), QStringLiteral("Pfad"), QStringLiteral("Anz. gepl. WI (A)"),
        QStringLiteral("Anz. rückg. WI (B)"), QStringLiteral("Rückg. Zeit in Std. (C)"),
        QStringLiteral("Anz. Fehler (D)"), QStringLiteral("Anz. Rep. (E)"), QStringLiteral("Anz. Stornos (F)"),
        QStringLiteral("D/A"), QStringLiteral("E/A"), QStringLiteral("(D+E)/A"), QStringLiteral("F/A"),
        QStringLiteral("D/B"), QStringLiteral("E/B"), QStringLiteral("(D+E)/B"), QStringLiteral("F/B"),
        QStringLiteral("D/C"), QStringLiteral("E/C"), QStringLiteral("(D+E)/C"), QStringLiteral("F/C")};
    return c;
}

QStringList statistikFeldnamen()
{
    QStringList names = {QStringLiteral("Benennung"), QStringLiteral("Pfad"), QStringLiteral("Anz_gepl_WI_(A)"),
                         QStringLiteral("Anz_rückg_WI_(B)"), QStringLiteral("Rückg_Zeit_in_Std_(C)"),
                         QStringLiteral("Anz_Fehler_(D)"), QStringLiteral("Anz_Rep_(E)"),
                         QStringLiteral("Anz_Stornos_(F)")};
    names += statistikSpalten().mid(8);
    return names;
}

// The four ratios D, E, D+E and F to a denominator, "-" for a zero one.
static QStringList ratios(double d, double e, double f, double denominator)
{
    if (denominator == 0)
        return {QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("-")};
    return {mask000(d / denominator), mask000(e / denominator), mask000((d + e) / denominator),
            mask000(f / denominator)};
}

QStringList StatistikZeile::cells() const
{
    QStringList c = {benennung, pfad, QString::number(a), QString::number(b), mask000(minuten / 60),
                     QString::number(d), QString::number(e), QString::number(f)};
    c += ratios(double(d), double(e), double(f), double(a));
    c += ratios(double(d), double(e), double(f), double(b));
    c += ratios(double(d), double(e), double(f), minuten);
    return c;
}

QStringList summenZeile(const QList<QStringList> &rows)
{
    double s[6] = {0, 0, 0, 0, 0, 0};
    for (const QStringList &r : rows)
        for (int i = 0; i < 6 && 2 + i < r.size(); ++i)
            s[i] += r.at(2 + i).toDouble();
    QStringList c = {SummenText, QString()};
    for (int i = 0; i < 6; ++i)
        c << (i == 2 ? plainNumber(s[i]) : QString::number(qint64(s[i])));
    c += ratios(s[3], s[4], s[5], s[0]);
    c += ratios(s[3], s[4], s[5], s[1]);
    c += ratios(s[3], s[4], s[5], s[2]);   // per hour, unlike the rows
    return c;
}

namespace {
struct Gemeldet {
    qint64 b = 0, d = 0, e = 0, f = 0;
    double minuten = 0;
};
}

StatistikErgebnis statistikAuswerten(const QSqlDatabase &db, const QString &jahr, const QString &wocheVon,
                                     const QString &wocheBis, const QStringList &entries, const Progress &progress)
{
    StatistikErgebnis out;
    const ComponentTree tree = ComponentTree::load(db);
    const QStringList components = tree.components(entries);
    if (components.isEmpty())
        return out;

    // The orders and the reported rows are counted once for every component
    // of the range, so a whole plant costs one pass over each table.
    QHash<QString, qint64> geplant;
    {
        QSqlQuery q = exec(db, QStringLiteral("SELECT TeIndex, COUNT(*) FROM Auftrag WHERE Jahr = ? AND Woche >= ?"
                                              " AND Woche <= ? GROUP BY TeIndex"),
                           {jahr, wocheVon, wocheBis});
        while (q.next())
            geplant.insert(q.value(0).toString(), q.value(1).toLongLong());
    }
    QHash<QString, Gemeldet> gemeldet;
    const QString table = Schema::yearTableName(jahr);
    out.jahrestabelle = Schema::tableExists(db, table);
    if (out.jahrestabelle) {
        QSqlQuery q = exec(db, QStringLiteral("SELECT TeIndex, COUNT(*), TOTAL(PlanZeit),"
                                              " SUM(Befund = 'F'), SUM(Befund = 'R'), SUM(Befund = 'S')"
                                              " FROM %1 WHERE Woche >= ? AND Woche <= ? GROUP BY TeIndex")
                                   .arg(ident(table)),
                           {wocheVon, wocheBis});
        while (q.next())
            gemeldet.insert(q.value(0).toString(), {q.value(1).toLongLong(), q.value(3).toLongLong(),
                                                    q.value(4).toLongLong(), q.value(5).toLongLong(),
                                                    q.value(2).toDouble()});
    }

    const ExplorerTree paths = LoadTree(db);
    QHash<QString, QString> pathOf;
    qint64 done = 0;
    for (const QString &key : components) {
        const ComponentTree::Row *r = tree.row(key);
        StatistikZeile z;
        z.benennung = r->Text;
        auto p = pathOf.constFind(r->FileAbove);
        if (p == pathOf.constEnd())
            p = pathOf.insert(r->FileAbove, paths.fullPath(r->FileAbove));
        z.pfad = *p;
        z.a = geplant.value(key);
        const Gemeldet g = gemeldet.value(key);
        z.b = g.b;
        z.minuten = g.minuten;
        z.d = g.d;
        z.e = g.e;
        z.f = g.f;
        out.zeilen << z;
        if (progress && ++done % 1000 == 0)
            progress(done, components.size());
    }
    return out;
}

}
