#include "EffortDistribution.h"
#include "StatisticsInput.h"
#include "zol/core/Sql.h"
#include "zol/instructions/InstructionRow.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PrinterF.h"
#include <QDate>
#include <QSqlQuery>
#include <algorithm>

namespace zol {

void VerteileAufwand(const IntervalLookup &lookup, const QString &jahr, const QString &intervall,
                     const QString &intervallTyp, const QString &planZeit, const QString &bezugsJahr,
                     const QString &bezugsWoche, std::array<double, 52> &wochenZeit)
{
    const IntervalLookup::Interval *iv = lookup.interval(intervall);
    if (!iv)
        return;
    const auto j = wholeNumber(jahr);
    const auto bj = wholeNumber(bezugsJahr);
    const auto bw = wholeNumber(bezugsWoche);
    if (!j || !bj || !bw)
        return;
    if ((*j + 1) * 52LL < wochenIndex(*bj, *bw))
        return;   // the component starts after the year
    long long w0 = *bw;
    // In another year the rhythm is taken as if every year began in step with the reference year.
    if (jahr != bezugsJahr && iv->abstand > 0)
        while (w0 - iv->abstand >= 1)
            w0 -= iv->abstand;
    if (planZeit.trimmed().isEmpty())
        return;
    const double v = numericValue(planZeit);
    if (intervallTyp != QLatin1String("K")) {
        if (const IntervalLookup::Weeks *weeks = lookup.iva(intervall, formatWoche(bezugsWoche))) {
            for (long long w = std::max(1LL, w0); w <= 52; ++w)
                if ((*weeks)[w - 1])
                    wochenZeit[w - 1] += v;
        } else if (!intervall.endsWith(QLatin1Char('J'), Qt::CaseInsensitive)) {
            if (iv->abstand <= 0)
                return;   // no rhythm without a distance
            for (long long w = std::max(1LL, w0); w <= 52; w += iv->abstand)
                wochenZeit[w - 1] += v;
        } else {
            if (iv->abstand <= 0)
                return;
            for (int w = 1; w <= 52; ++w)
                if (wochenIndex(*j, w) % iv->abstand == w0)
                    wochenZeit[w - 1] += v;
        }
        return;
    }
    const long long start = jahr != bezugsJahr ? 1 : std::max(1LL, w0);
    for (long long w = start; w <= 52; ++w)
        wochenZeit[w - 1] += iv->haeufigkeit / 52 * v;
}

Aufwandsverteilung aufwandsverteilung(const QSqlDatabase &db, const QString &gewerk, QString &jahr)
{
    Aufwandsverteilung out;
    if (gewerk.trimmed().isEmpty()) {
        out.message = MsgGewerkAuswaehlen;
        out.field = Aufwandsverteilung::Field::Gewerk;
        return out;
    }
    const PeriodCheck check = checkJahr(jahr);
    if (!check.ok()) {
        out.message = check.message;
        out.field = Aufwandsverteilung::Field::Jahr;
        return out;
    }
    const IntervalLookup lookup = IntervalLookup::load(db);
    QSqlQuery q = exec(db,
                       QStringLiteral("SELECT B.Intervall, B.Intervalltyp, B.Planzeit, A.BezugsJahr, A.BezugsWoche"
                                      " FROM ProtokollPositionen AS B, ProtokollKopf AS A"
                                      " WHERE B.TeNummer = A.FileIndex AND B.Anweisung <> '0000' AND A.Katalog = '0'"
                                      " AND B.Ausfuehrender LIKE ? ESCAPE '\\' AND A.BezugsWoche <> ''"
                                      " AND A.BezugsJahr <> '' AND B.Intervall <> '' AND B.Intervalltyp <> ''"),
                       {likePattern(gewerk)});
    bool any = false;
    while (q.next()) {
        any = true;
        VerteileAufwand(lookup, jahr, q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                        q.value(3).toString(), q.value(4).toString(), out.WochenZeit);
    }
    if (!any) {
        out.message = MsgKeineAuftraegeGewerk;
        return out;
    }
    double m = 0;
    for (double w : out.WochenZeit) {
        out.summe += w;
        m = std::max(m, w);
    }
    if (out.summe == 0) {
        out.message = MsgGesamtzeitNull;
        return out;
    }
    for (int i = 0; i < 52; ++i) {
        out.WochenProzent[i] = out.WochenZeit[i] / out.summe;
        out.WochenBalken[i] = out.WochenZeit[i] / m;
    }
    return out;
}

void Print_Aufwandsverteilung(PrinterF &p, const QString &gewerk, const Aufwandsverteilung &v)
{
    p.InitPrinter();
    const QString datum = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
    const double stunden = v.summe / 60;
    int zeile = Print_Aufwand_Kopf(p, gewerk, stunden, stunden / 52, datum);
    for (int w = 1; w <= 52; ++w) {
        const QString woche = QStringLiteral("%1").arg(w, 2, 10, QLatin1Char('0'));
        if (!Print_Aufwand_Zeile(p, woche, v.WochenZeit[w - 1] / 60, v.WochenProzent[w - 1] * 100, zeile)) {
            p.NewPage();
            zeile = Print_Aufwand_Kopf(p, gewerk, stunden, stunden / 52, datum);
            Print_Aufwand_Zeile(p, woche, v.WochenZeit[w - 1] / 60, v.WochenProzent[w - 1] * 100, zeile);
        }
    }
    const double h = p.TextHeight(QStringLiteral("O"));
    p.Print_UnterenRand(zeile, 100, 0, int(zeile * h), int(p.ScaleHeight() - 2 * h));
    p.zeig();
}

QStringList aufwandsverteilungKopf()
{
    return {QStringLiteral("Woche"), QStringLiteral("Zeit(Prozent)"), QStringLiteral("Zeit(Stunden)")};
}

QList<QStringList> aufwandsverteilungZeilen(const Aufwandsverteilung &v)
{
    QList<QStringList> rows;
    for (int w = 1; w <= 52; ++w)
        rows << QStringList{QString::number(w), mask000(v.WochenProzent[w - 1] * 100), mask000(v.WochenZeit[w - 1] / 60)};
    return rows;
}

}
