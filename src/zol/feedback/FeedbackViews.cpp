#include "FeedbackViews.h"
#include "Feedback.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/planning/OrderRows.h"
#include "zol/structure/Node.h"
#include <QSet>
#include <QSqlRecord>

namespace zol {

namespace {

using E = Ebene;

QStringList felderDer(Ebene e)
{
    switch (e) {
    case E::Komponente: return {QStringLiteral("KompBezeichnung"), QStringLiteral("TeIndex")};
    case E::Woche: return {QStringLiteral("Jahr"), QStringLiteral("Woche")};
    case E::Gewerk: return {QStringLiteral("Ausfuehrender")};
    }
    return {};
}

// The WHERE clause of a node, the Werker's trade and what the caller adds.
struct Bedingung {
    QStringList teile;
    QVariantList values;

    Bedingung(Session &session, const KnotenFilter &k)
    {
        for (const auto &[feld, wert] : k.felder) {
            teile << ident(feld) + QStringLiteral(" = ?");
            values << wert;
        }
        const RueckmeldungRechte rechte = rueckmeldungRechte(session.login());
        if (!rechte.werkerGewerk.isEmpty()) {
            teile << QStringLiteral("Ausfuehrender GLOB ?");
            values << caselessGlob(rechte.werkerGewerk);
        }
    }
    QString sql() const
    {
        return teile.isEmpty() ? QString() : QStringLiteral(" WHERE ") + teile.join(QStringLiteral(" AND "));
    }
};

Bedingung listenBedingung(Session &session, const KnotenFilter &knoten, AuftragsAuswahl auswahl)
{
    Bedingung b(session, knoten);
    if (auswahl == AuftragsAuswahl::Offen)
        b.teile << QStringLiteral("\"Rückmeldung\" = 'N'");
    else if (auswahl == AuftragsAuswahl::Zurueckgemeldet)
        b.teile << QStringLiteral("\"Rückmeldung\" <> 'N'");
    b.teile << QStringLiteral("KeineWartung = 'N'");
    return b;
}

}   // namespace

const QList<RueckmeldungsAnsicht> &rueckmeldungsAnsichten()
{
    static const QList<RueckmeldungsAnsicht> views = {
        {QStringLiteral("Komponente - Woche"), QStringLiteral("Komponenten"), {E::Komponente, E::Woche}},
        {QStringLiteral("Woche - Komponente"), QStringLiteral("Wochen"), {E::Woche, E::Komponente}},
        {QStringLiteral("Komponente - Gewerk - Woche"), QStringLiteral("Komponenten/Gewerke"),
         {E::Komponente, E::Gewerk, E::Woche}},
        {QStringLiteral("Komponente - Woche - Gewerk"), QStringLiteral("Komponenten/Wochen"),
         {E::Komponente, E::Woche, E::Gewerk}},
        {QStringLiteral("Woche - Gewerk - Komponente"), QStringLiteral("Wochen/Gewerke"),
         {E::Woche, E::Gewerk, E::Komponente}},
        {QStringLiteral("Woche - Komponente - Gewerk"), QStringLiteral("Wochen/Komponenten"),
         {E::Woche, E::Komponente, E::Gewerk}},
        {QStringLiteral("Gewerk - Komponente - Woche"), QStringLiteral("Gewerke/Komponenten"),
         {E::Gewerk, E::Komponente, E::Woche}},
        {QStringLiteral("Gewerk - Woche - Komponente"), QStringLiteral("Gewerke/Wochen"),
         {E::Gewerk, E::Woche, E::Komponente}},
    };
    return views;
}

QList<AnsichtKnoten> ansichtKinder(Session &session, int ansicht, const KnotenFilter &oben, const AnsichtKnoten *nach,
                                   int anzahl)
{
    QList<AnsichtKnoten> out;
    const auto &views = rueckmeldungsAnsichten();
    if (ansicht < 0 || ansicht >= views.size() || oben.tiefe >= views.at(ansicht).ebenen.size())
        return out;
    const QList<Ebene> &ebenen = views.at(ansicht).ebenen;
    const Ebene ebene = ebenen.at(oben.tiefe);
    const QStringList felder = felderDer(ebene);
    QStringList spalten, marken;
    for (const QString &f : felder) {
        spalten << ident(f);
        marken << QStringLiteral("?");
    }
    const Bedingung b(session, oben);
    // The next page starts after the last node shown: its values are the last of its key.
    QVariantList danach;
    if (nach && nach->filter.felder.size() >= felder.size())
        for (qsizetype i = nach->filter.felder.size() - felder.size(); i < nach->filter.felder.size(); ++i)
            danach << nach->filter.felder.at(i).second;
    const auto ab = [&](const QVariantList &werte) {
        Bedingung n = b;
        if (!werte.isEmpty()) {
            n.teile << QStringLiteral("(%1) > (%2)").arg(spalten.join(QStringLiteral(", ")), marken.join(QStringLiteral(", ")));
            n.values += werte;
        }
        return n;
    };
    const QString liste = spalten.join(QStringLiteral(", "));
    const QString ordnung = QStringLiteral(" ORDER BY ") + liste;
    QList<QVariantList> zeilen;
    const auto lese = [&](QSqlQuery &q) {
        QVariantList z;
        for (int i = 0; i < q.record().count(); ++i)
            z << q.value(i);
        zeilen << z;
        return z;
    };
    if (oben.felder.isEmpty() && ebene != E::Komponente) {
        // The weeks and trades at the top are few among many rows: each is the
        // first after the one before, found in an index that begins with it,
        // rather than every row read for DISTINCT.
        QVariantList letzte = danach;
        while (anzahl <= 0 || zeilen.size() < anzahl) {
            const Bedingung n = ab(letzte);
            QSqlQuery q = exec(session.db(), QStringLiteral("SELECT %1 FROM Auftrag%2%3 LIMIT 1").arg(liste, n.sql(), ordnung),
                               n.values);
            if (!q.next())
                break;
            letzte = lese(q);
        }
    } else {
        Bedingung n = ab(danach);
        QString sql;
        const QString grenze = anzahl > 0 ? QStringLiteral(" LIMIT ?") : QString();
        if (oben.felder.isEmpty()) {
            // The components at the top: no index orders all orders by
            // component (every planning run would have to write it all over),
            // so the components of each week are read in order from the week's
            // index and merged, each week giving at most one page.
            const QList<AnsichtKnoten> wochen = ansichtKinder(session, 1);   // the view that begins with the weeks
            if (wochen.isEmpty())
                return out;
            QStringList teile;
            QVariantList values;
            for (const AnsichtKnoten &w : wochen) {
                Bedingung wb = n;
                wb.teile.prepend(QStringLiteral("Jahr = ? AND Woche = ?"));
                wb.values = QVariantList{w.filter.felder.at(0).second, w.filter.felder.at(1).second} + wb.values;
                teile << QStringLiteral("SELECT * FROM (SELECT %1 FROM Auftrag%2%3%4)").arg(liste, wb.sql(), ordnung, grenze);
                values += wb.values;
                if (anzahl > 0)
                    values << anzahl;
            }
            sql = QStringLiteral("SELECT DISTINCT %1 FROM (%2)%3%4")
                      .arg(liste, teile.join(QStringLiteral(" UNION ALL ")), ordnung, grenze);
            n.values = values;
        } else {
            sql = QStringLiteral("SELECT DISTINCT %1 FROM Auftrag%2%3%4").arg(liste, n.sql(), ordnung, grenze);
        }
        if (anzahl > 0)
            n.values << anzahl;
        // A component's node shows its current name; one that is gone says so.
        if (ebene == E::Komponente)
            sql = QStringLiteral("SELECT t.KompBezeichnung, t.TeIndex, p.FileIndex, p.Text FROM (%1) t "
                                 "LEFT JOIN ProtokollKopf p ON p.FileIndex = t.TeIndex")
                      .arg(sql)
                + QStringLiteral(" ORDER BY t.KompBezeichnung, t.TeIndex");
        QSqlQuery q = exec(session.db(), sql, n.values);
        while (q.next())
            lese(q);
    }
    const bool blatt = oben.tiefe + 1 >= ebenen.size();
    for (const QVariantList &z : zeilen) {
        AnsichtKnoten k;
        k.blatt = blatt;
        k.filter = oben;
        k.filter.tiefe = oben.tiefe + 1;
        for (int i = 0; i < felder.size(); ++i)
            k.filter.felder << qMakePair(felder.at(i), z.at(i).toString());
        switch (ebene) {
        case E::Komponente:
            k.text = z.at(2).isNull() ? KomponenteFehltKnoten : z.at(3).toString();
            break;
        case E::Woche:
            k.text = z.at(0).toString() + QLatin1Char('/') + z.at(1).toString();
            break;
        case E::Gewerk:
            k.text = z.at(0).toString();
            break;
        }
        out << k;
    }
    return out;
}

AuftragsAbfrage auftragsAbfrage(Session &session, const KnotenFilter &knoten, AuftragsAuswahl auswahl)
{
    const Bedingung b = listenBedingung(session, knoten, auswahl);
    return {QStringLiteral("SELECT * FROM Auftrag") + b.sql()
                + QStringLiteral(" ORDER BY KompBezeichnung, Jahr, Woche, Objekt, Anweisung"),
            b.values};
}

QList<UebersichtZeile> uebersicht(Session &session, const KnotenFilter &knoten, AuftragsAuswahl auswahl)
{
    const Bedingung b = listenBedingung(session, knoten, auswahl);
    QSqlQuery q = exec(session.db(),
                       QStringLiteral("SELECT TeIndex, count(*), sum(CASE WHEN \"Rückmeldung\" <> 'N' THEN 1 ELSE 0 END),"
                                      " sum(CASE WHEN upper(Befund) IN ('F','R') THEN 1 ELSE 0 END),"
                                      " sum(PlanZeit), max(Datum) FROM Auftrag")
                           + b.sql() + QStringLiteral(" GROUP BY KompBezeichnung, TeIndex ORDER BY KompBezeichnung, TeIndex"),
                       b.values);
    QList<UebersichtZeile> out;
    UebersichtZeile gesamt;
    gesamt.Name = GesamtText;
    while (q.next()) {
        UebersichtZeile z;
        z.TeIndex = q.value(0).toString();
        z.Name = komponentenName(session.db(), z.TeIndex);
        z.anzahl = q.value(1).toInt();
        z.zurueckgemeldet = q.value(2).toInt();
        z.befunde = q.value(3).toInt();
        z.arbeitszeit = q.value(4).toDouble();
        z.GeplantAm = q.value(5).toString();
        gesamt.anzahl += z.anzahl;
        gesamt.zurueckgemeldet += z.zurueckgemeldet;
        gesamt.befunde += z.befunde;
        gesamt.arbeitszeit += z.arbeitszeit;
        out << z;
    }
    out << gesamt;
    return out;
}

QString komponentenName(const QSqlDatabase &db, const QString &teIndex)
{
    const QVariant text = scalar(db, QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = ?"), {teIndex});
    return text.isValid() ? text.toString() : KomponenteFehltKnoten;
}

QString komponentenPfad(const QSqlDatabase &db, const QString &teIndex)
{
    QStringList names;
    QSet<QString> seen;
    QString key = teIndex;
    Statement oben(db, QStringLiteral("SELECT Text, FileAbove FROM ProtokollKopf WHERE FileIndex = ?"));
    // The walk ends at a top node; a missing parent or a ring means the component hangs nowhere.
    while (key != RootProtok && key != RootKatalo) {
        if (seen.contains(key))
            return NichtImVerzeichnisText;
        seen.insert(key);
        QSqlQuery &q = oben.run({key});
        if (!q.next())
            return NichtImVerzeichnisText;
        names.prepend(q.value(0).toString());
        key = q.value(1).toString();
    }
    return names.join(QLatin1Char('\\'));
}

}
