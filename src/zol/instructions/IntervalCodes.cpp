#include "IntervalCodes.h"
#include <cmath>

namespace zol {

const QList<IntervalCode> &standardIntervalCodes()
{
    static const QList<IntervalCode> codes = {
        {QStringLiteral("1T"), QStringLiteral("K"), 1, 365},
        {QStringLiteral("WT"), QStringLiteral("K"), 1, 260},
        {QStringLiteral("2T"), QStringLiteral("K"), 1, 156},
        {QStringLiteral("3T"), QStringLiteral("K"), 1, 104},
        {QStringLiteral("5T"), QStringLiteral("K"), 1, 260},
        {QStringLiteral("7T"), QStringLiteral("K"), 1, 52},
        {QStringLiteral("1W"), QStringLiteral("L"), 1, 52},
        {QStringLiteral("2W"), QStringLiteral("L"), 2, 26},
        {QStringLiteral("4W"), QStringLiteral("L"), 4, 13},
        {QStringLiteral("6W"), QStringLiteral("L"), 6, 52.0 / 6},
        {QStringLiteral("8W"), QStringLiteral("L"), 8, 6.5},
        {QStringLiteral("3M"), QStringLiteral("L"), 13, 4},
        {QStringLiteral("4M"), QStringLiteral("L"), 17, 3},
        {QStringLiteral("6M"), QStringLiteral("L"), 26, 2},
        {QStringLiteral("1J"), QStringLiteral("L"), 52, 1},
        {QStringLiteral("2J"), QStringLiteral("L"), 104, 0.5},
        {QStringLiteral("3J"), QStringLiteral("L"), 156, 1.0 / 3},
        {QStringLiteral("4J"), QStringLiteral("L"), 208, 0.25},
        {QStringLiteral("5J"), QStringLiteral("L"), 260, 0.2},
        {QStringLiteral("10J"), QStringLiteral("L"), 520, 0.1},
    };
    return codes;
}

QList<IvaRow> standardIvaRows()
{
    // Four-monthly: three due weeks a year, a third of the year apart, counted
    // from the reference week, so the same weeks come round every year.
    QList<IvaRow> rows;
    for (int ref = 1; ref <= 52; ++ref) {
        IvaRow r;
        r.intervall = QStringLiteral("4M");
        r.bezugsWoche = QStringLiteral("%1").arg(ref, 2, 10, QLatin1Char('0'));
        for (int k = 0; k < 3; ++k) {
            const int offset = int(std::lround(k * 52.0 / 3.0));
            r.due[(ref - 1 + offset) % 52] = true;
        }
        rows << r;
    }
    return rows;
}

QString intervalLegend()
{
    return QStringLiteral(
        "KURZFRISTIGE INTERVALLE: 1T=täglich, WT=Mo-Fr, 2T=MoFr, 3T=MoDo, 5T=MoDiMiFrSa, 7T=Mo  "
        "LANGFRISTIGE INTERVALLE: 1W=wöchentlich, 2W=2-wöchentlich, 4W=4-wöchentlich, 6W=6-wöchentlich, "
        "8W=8-wöchentlich, 3M=3-monatlich, 4M=4-monatlich, 6M=6-monatlich, 1J=1-jährlich, 2J=2-jährlich, "
        "3J=3-jährlich, 4J=4-jährlich, 5J=5-jährlich, 10J=10-jährlich");
}

QString dayStrip(const QString &code)
{
    if (code == QLatin1String("1T")) return QStringLiteral("Mo Di Mi Do Fr Sa So ___________________");
    if (code == QLatin1String("WT")) return QStringLiteral("Mo Di Mi Do Fr _________________________");
    if (code == QLatin1String("2T")) return QStringLiteral("Mo    Mi    Fr  ________________________");
    if (code == QLatin1String("3T")) return QStringLiteral("Mo       Do     ________________________");
    if (code == QLatin1String("5T")) return QStringLiteral("Mo Di Mi    Fr Sa ______________________");
    if (code == QLatin1String("7T")) return QStringLiteral("Mo _____________________________________");
    return {};
}

}
