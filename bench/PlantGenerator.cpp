#include "PlantGenerator.h"
#include "zol/core/Sql.h"
#include <QSqlQuery>
#include <QStringList>
#include <random>

namespace zolbench {

namespace {

QString key(int n) { return QStringLiteral("%1").arg(n, 10, 10, QLatin1Char('0')); }
QString two(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

struct Weighted {
    const char *code;
    int weight;
};

// Long-term codes by how often plants use them.
const Weighted longTermMix[] = {{"1W", 10}, {"2W", 8}, {"4W", 10}, {"6W", 5}, {"8W", 5}, {"3M", 12}, {"4M", 8},
                                {"6M", 12}, {"1J", 15}, {"2J", 5}, {"3J", 3}, {"4J", 3}, {"5J", 2}, {"10J", 2}};
const Weighted shortTermMix[] = {{"1T", 30}, {"WT", 30}, {"2T", 10}, {"3T", 10}, {"5T", 10}, {"7T", 10}};

template <std::size_t N>
QStringList expand(const Weighted (&mix)[N])
{
    QStringList out;
    for (const Weighted &w : mix)
        for (int i = 0; i < w.weight; ++i)
            out << QString::fromLatin1(w.code);
    return out;
}

const char *const trades[] = {"Elektro", "Mechanik", "Schlosserei", "MSR", "Schmierdienst", "Bau"};
const char *const costCentres[] = {"4711", "4712", "4720", "5100", "5200"};
const char *const locations[] = {"Halle 1", "Halle 2", "Kesselhaus", "Außenanlage", "Keller"};
const char *const texts[] = {"Sichtprüfung auf Leckage", "Lager abschmieren", "Keilriemen prüfen, ggf. spannen",
                             "Klemmen nachziehen", "Filter wechseln", "Funktionsprüfung Not-Aus",
                             "Schwingungen messen", "Ölstand prüfen"};

}   // namespace

PlantStats generatePlant(const QSqlDatabase &db, const PlantSpec &spec)
{
    PlantStats stats;
    std::mt19937 rng(spec.seed);
    auto pick = [&rng](int n) { return int(std::uniform_int_distribution<int>(0, n - 1)(rng)); };
    const QStringList longCodes = expand(longTermMix);
    const QStringList shortCodes = expand(shortTermMix);

    zol::Transaction tx(db);
    zol::Statement kopf(db, QStringLiteral(
        "INSERT INTO ProtokollKopf (FileIndex, FileAbove, FileTyp, Katalog, Text, BezugsJahr, BezugsWoche,"
        " Kostenstelle, IdentNr, Lokalisierung, WIVerantwortlicher, Option1, KeineWartung,"
        " KeineWartungWocheVon1, KeineWartungWocheBis1, KeineWartungWocheVon2, KeineWartungWocheBis2)"
        " VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    zol::Statement pos(db, QStringLiteral(
        "INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender, Betriebszustand,"
        " AnzahlPersonen, Sicherheitshinweis, Intervall, Planzeit, Materialcode, Materialmenge, Intervalltyp)"
        " VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"));

    // One installation per 100 components, under the plant root.
    const int perInstallation = 100;
    const int installations = (spec.components + perInstallation - 1) / perInstallation;
    int next = 1;
    for (int i = 0; i < installations; ++i, ++next)
        kopf.run({key(next), QStringLiteral("ROOTProtok"), QStringLiteral("O"), QStringLiteral("0"),
                  QStringLiteral("Anlage %1").arg(i + 1), QString(), QString(), QString(), QString(), QString(),
                  QString(), QString(), QStringLiteral("N"), QString(), QString(), QString(), QString()});

    const int years = spec.lastBezugsjahr - spec.firstBezugsjahr + 1;
    const int base = spec.components > 0 ? spec.lines / spec.components : 0;
    int extra = spec.components > 0 ? spec.lines % spec.components : 0;
    const QString x = QStringLiteral("X"), r = QStringLiteral("R"), l = QStringLiteral("L");
    for (int c = 0; c < spec.components; ++c, ++next) {
        const QString fileIndex = key(next);
        const bool standard = c % 500 == 499;
        const QString trade = QString::fromUtf8(trades[pick(6)]);
        QString kw = QStringLiteral("N"), von1, bis1, von2, bis2;
        const int kwKind = pick(100);
        if (kwKind < 3) {   // plant shutdown around the turn of the year
            kw = QStringLiteral("J");
            von1 = QStringLiteral("50");
            bis1 = QStringLiteral("02");
        } else if (kwKind < 6) {   // summer shutdown and a second range
            kw = QStringLiteral("J");
            const int from = 20 + pick(15);
            von1 = two(from);
            bis1 = two(from + 3);
            von2 = QStringLiteral("40");
            bis2 = QStringLiteral("41");
        }
        kopf.run({fileIndex, key(1 + c / perInstallation), QStringLiteral("F"),
                  standard ? QStringLiteral("1") : QStringLiteral("0"), QStringLiteral("Pumpe %1 'Süd'").arg(c + 1),
                  QString::number(spec.firstBezugsjahr + pick(years)), two(1 + pick(52)),
                  QString::fromLatin1(costCentres[pick(5)]), QStringLiteral("ID-%1").arg(c + 1),
                  QString::fromUtf8(locations[pick(5)]), trade, QStringLiteral("Laufweg %1").arg(1 + pick(20)), kw,
                  von1, bis1, von2, bis2});
        ++stats.components;
        stats.standards += standard;

        int rows = base + (extra > 0 ? 1 : 0);
        if (extra > 0)
            --extra;
        int objekt = 0, anweisung = 0;
        for (int i = 0; i < rows; ++i) {
            // Objects of five rows: a head row and four instructions.
            if (i % 5 == 0) {
                objekt += 10;
                anweisung = 0;
                pos.run({fileIndex, QStringLiteral("%1").arg(objekt, 6, 10, QLatin1Char('0')), QStringLiteral("0000"),
                         QStringLiteral("Baugruppe %1").arg(objekt), QString(), QString(), QStringLiteral("0"),
                         QString(), QString(), QStringLiteral("0,0"), QString(), QStringLiteral("0,0"),
                         QStringLiteral("L")});
            } else {
                anweisung += 10;
                const bool isShort = pick(100) < 20;
                const QString code = isShort ? shortCodes.at(pick(int(shortCodes.size())))
                                             : longCodes.at(pick(int(longCodes.size())));
                const int state = pick(3);
                pos.run({fileIndex, QStringLiteral("%1").arg(objekt, 6, 10, QLatin1Char('0')),
                         QStringLiteral("%1").arg(anweisung, 4, 10, QLatin1Char('0')),
                         QString::fromUtf8(texts[pick(8)]), trade, state == 0 ? r : state == 1 ? l : x,
                         QString::number(1 + pick(3)), pick(10) == 0 ? QStringLiteral("Freischalten") : QString(), code,
                         QStringLiteral("%1,%2").arg(pick(4)).arg(pick(10)),
                         pick(4) == 0 ? QStringLiteral("Fett K2") : QString(), QStringLiteral("%1,5").arg(pick(3)),
                         isShort ? QStringLiteral("K") : QStringLiteral("L")});
                isShort ? ++stats.shortTerm : ++stats.longTerm;
            }
            ++stats.lines;
        }
    }
    tx.commit();
    return stats;
}

}
