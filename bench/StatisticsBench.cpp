#include "StatisticsBench.h"
#include "Figures.h"
#include "PlantGenerator.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/statistics/Effort.h"
#include "zol/statistics/EffortDistribution.h"
#include "zol/statistics/RawData.h"
#include "zol/statistics/SelectedStatistics.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

namespace zolbench {

namespace {

double seconds(const std::function<void()> &f)
{
    QElapsedTimer t;
    t.start();
    f();
    return t.nsecsElapsed() / 1e9;
}

// Posts a year without the planning: about a tenth of the plant's
// instructions in each week, every ninth row a defect, repair or cancellation.
qint64 postYear(const QSqlDatabase &db, const QString &jahr)
{
    zol::Schema::ensureYearTable(db, jahr);
    zol::Transaction tx(db);
    zol::Statement insert(
        db, QStringLiteral(
                "INSERT INTO %1 (TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender,"
                " Kostenstelle, Lokalisierung, KompBezeichnung, Betriebszustand, PlanZeit, Materialcode,"
                " Materialmenge, Bemerkung, Text, \"Rückmeldung\", Befund, Verbal, Intervall, Datum, AnzahlPersonen,"
                " IntervallTyp, KeineWartung)"
                " SELECT B.TeNummer, ?, ?, B.Objekt, B.Anweisung, A.WIVerantwortlicher, B.Ausfuehrender,"
                " A.Kostenstelle, A.Lokalisierung, A.Text, B.Betriebszustand, 30 + B.rowid % 60, B.Materialcode,"
                " B.rowid % 4, '', B.Text, 'J',"
                " CASE B.rowid % 9 WHEN 0 THEN 'F' WHEN 1 THEN 'R' WHEN 2 THEN 'S' ELSE '' END, '', B.Intervall,"
                " '01.01.' || ?, 1, B.Intervalltyp, 'N'"
                " FROM ProtokollPositionen AS B, ProtokollKopf AS A"
                " WHERE A.FileIndex = B.TeNummer AND B.Anweisung <> '0000' AND A.Katalog = '0'"
                " AND B.rowid % 10 = ?")
                .arg(zol::ident(zol::Schema::yearTableName(jahr))));
    for (int w = 1; w <= 52; ++w)
        insert.run({jahr, QStringLiteral("%1").arg(w, 2, 10, QLatin1Char('0')), jahr, w % 10});
    tx.commit();
    return zol::scalar(db, QStringLiteral("SELECT COUNT(*) FROM %1").arg(zol::ident(zol::Schema::yearTableName(jahr))))
        .toLongLong();
}

// Forgets the peak memory so far, so that the next figure is its own.
void resetPeakRss()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

}   // namespace

int runStatisticsBench(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    PlantSpec spec;
    QString dataDir;
    QString jahr = QStringLiteral("2025");
    QString gewerk = QStringLiteral("Elektro");
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--statistics"))
            continue;
        if (a == QLatin1String("--components") && hasValue)
            spec.components = args.at(++i).toInt();
        else if (a == QLatin1String("--lines") && hasValue)
            spec.lines = args.at(++i).toInt();
        else if (a == QLatin1String("--data") && hasValue)
            dataDir = args.at(++i);
        else if (a == QLatin1String("--year") && hasValue)
            jahr = args.at(++i);
        else if (a == QLatin1String("--gewerk") && hasValue)
            gewerk = args.at(++i);
        else {
            std::fprintf(stderr, "Aufruf: zolbench --statistics [--components N] [--lines M] [--data DIR] [--year JJJJ]"
                                 " [--gewerk T]\n");
            return 2;
        }
    }
    QTemporaryDir tempDir;
    zol::Database database(dataDir.isEmpty() ? tempDir.path() : dataDir);
    if (database.fileExists()) {
        database.open();
    } else {
        database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        database.open();
        figure("plant_generate_s", seconds([&] { generatePlant(database.connection(), spec); }), "s");
    }
    const QSqlDatabase db = database.connection();
    if (!zol::Schema::tableExists(db, zol::Schema::yearTableName(jahr))) {
        qint64 rows = 0;
        figure("stat_post_year_generate_s", seconds([&] { rows = postYear(db, jahr); }), "s");
        figure("stat_year_rows", double(rows), "rows", 0);
    }
    const int j = jahr.toInt();

    // The raw rows first, so that its peak memory is its own.
    QTemporaryDir out(dataDir.isEmpty() ? tempDir.path() + QStringLiteral("/out-XXXXXX") : dataDir + QStringLiteral("/out-XXXXXX"));
    resetPeakRss();
    const double rssBefore = peakRssMb();
    zol::RohdatenErgebnis raw;
    const double cpu0 = cpuSeconds();
    const double rawS = seconds([&] {
        raw = zol::rohdatenSchreiben(db, jahr, QStringLiteral("01"), QStringLiteral("52"),
                                     out.filePath(QStringLiteral("ZOL_Rohdaten.xlsx")), true);
    });
    figure("stat_raw_export_s", rawS, "s");
    figure("stat_raw_export_rows", double(raw.zeilen), "rows", 0);
    figure("stat_raw_export_sheets", raw.blaetter, "sheets", 0);
    const double rawCpu = cpuSeconds() - cpu0;
    figure("stat_raw_export_rows_per_s", raw.zeilen / rawS, "rows/s", 0);
    figure("stat_raw_export_cpu_s", rawCpu, "s");
    figure("stat_raw_export_rows_per_cpu_s", raw.zeilen / rawCpu, "rows/s", 0);
    figure("stat_raw_export_peak_rss_mb", peakRssMb(), "MB", 0);
    figure("stat_raw_export_rss_before_mb", rssBefore, "MB", 0);
    QFile::remove(out.filePath(QStringLiteral("ZOL_Rohdaten.xlsx")));

    zol::AufwandParameter p;
    p.schluessel = {QStringLiteral("Ausfuehrender"), QStringLiteral("IntervallTyp")};
    zol::AufwandErgebnis planned;
    figure("stat_planned_all_s", seconds([&] { planned = zol::geplanterAufwand(db, p, {j, 1, j, 52}); }), "s");
    figure("stat_planned_groups", double(planned.zeilen.size()), "rows", 0);

    zol::StatistikErgebnis measures;
    figure("stat_selected_root_s", seconds([&] {
               measures = zol::statistikAuswerten(db, jahr, QStringLiteral("01"), QStringLiteral("52"),
                                                  zol::selectedEntries(db, false, {}, QStringLiteral("ROOTProtok")));
           }),
           "s");
    figure("stat_selected_root_rows", double(measures.zeilen.size()), "rows", 0);

    QString year = jahr;
    zol::Aufwandsverteilung v;
    figure("stat_distribution_trade_s", seconds([&] { v = zol::aufwandsverteilung(db, gewerk, year); }), "s");
    figure("stat_distribution_trade_h", v.summe / 60, "h", 0);

    std::optional<zol::AufwandErgebnis> reported;
    figure("stat_reported_all_s", seconds([&] {
               reported = zol::rueckgemeldeterAufwand(db, p, jahr, QStringLiteral("01"), QStringLiteral("52"));
           }),
           "s");
    figure("peak_rss_mb", peakRssMb(), "MB", 0);
    return 0;
}

}
