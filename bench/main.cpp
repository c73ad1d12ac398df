// zolbench: prints figures as lines "name value unit".
#include "Figures.h"
#include "ExchangeBench.h"
#include "ExplorerBench.h"
#include "FeedbackBench.h"
#include "InstructionsBench.h"
#include "JobSheetBench.h"
#include "PlanningBench.h"
#include "PlantGenerator.h"
#include "RepairBench.h"
#include "StatisticsBench.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/planning/WeekCalendar.h"
#include <QGuiApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

using zolbench::figure;
using zolbench::peakRssMb;

int main(int argc, char **argv)
{
    // The explorer figures need the windows; they and the subsystem benches
    // run on their own, chosen by their flag.
    const struct {
        const char *flag;
        int (*run)(int, char **);
    } ownBenches[] = {
        {"--explorer", zolbench::runExplorerBench},   {"--feedback", zolbench::runFeedbackBench},
        {"--exchange", zolbench::runExchangeBench},   {"--repairs", zolbench::runRepairBench},
        {"--statistics", zolbench::runStatisticsBench},
    };
    for (const auto &bench : ownBenches)
        for (int i = 1; i < argc; ++i)
            if (qstrcmp(argv[i], bench.flag) == 0)
                return bench.run(argc, argv);
    // The job sheets lay out text with fonts: a GUI application, on no screen unless there is one.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    zolbench::PlantSpec spec;
    QString jahr = QStringLiteral("2025"), woche = QStringLiteral("10");
    QString dataDir;   // keep the plant in this folder and use it again next time
    QString gewerk = QStringLiteral("Elektro");   // the trade of the job-sheet figures
    int repeat = 3;   // runs of the planning and its floor, the best of each counts
    bool scale = false;
    bool planOnly = false;   // the planning figures alone
    bool generateOnly = false;   // make the plant (--data) and stop
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--components") && hasValue)
            spec.components = args.at(++i).toInt();
        else if (a == QLatin1String("--lines") && hasValue)
            spec.lines = args.at(++i).toInt();
        else if (a == QLatin1String("--year") && hasValue)
            jahr = zol::formatJahr(args.at(++i));
        else if (a == QLatin1String("--data") && hasValue)
            dataDir = args.at(++i);
        else if (a == QLatin1String("--week") && hasValue)
            woche = zol::formatWoche(args.at(++i));
        else if (a == QLatin1String("--gewerk") && hasValue)
            gewerk = args.at(++i);
        else if (a == QLatin1String("--repeat") && hasValue)
            repeat = std::max(1, args.at(++i).toInt());
        else if (a == QLatin1String("--scale"))
            scale = true;
        else if (a == QLatin1String("--plan-only"))
            planOnly = true;
        else if (a == QLatin1String("--generate-only"))
            generateOnly = true;
        else {
            std::fprintf(stderr, "Aufruf: zolbench [--components N] [--lines M] [--year JJJJ] [--week WW] [--gewerk T]"
                                 " [--data DIR] [--repeat N] [--scale] [--plan-only] [--generate-only]\n");
            return 2;
        }
    }
    if (woche == QLatin1String("00") || !zol::wocheImBereich(woche) || !zol::wholeNumber(woche)
        || !zol::wholeNumber(jahr)) {
        std::fprintf(stderr, "--week: eine Woche von 01 bis 52, --year: eine Jahreszahl\n");
        return 2;
    }
    if (scale)
        return zolbench::runScaleBench(jahr, woche, {10000, 30000, 100000, 300000});

    QTemporaryDir tempDir;
    zol::Database database(dataDir.isEmpty() ? tempDir.path() : dataDir);
    if (database.fileExists()) {
        database.open();
    } else {
        database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        database.open();
        QElapsedTimer t;
        t.start();
        const zolbench::PlantStats stats = zolbench::generatePlant(database.connection(), spec);
        figure("plant_generate_s", t.nsecsElapsed() / 1e9, "s");
        figure("plant_components", stats.components, "rows", 0);
        figure("plant_lines", stats.lines, "rows", 0);
    }
    const QSqlDatabase db = database.connection();
    if (generateOnly)
        return 0;

    zol::Session session(database);
    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;

    int rows = 0;
    const QString week00 = QStringLiteral("00");
    figure("plan_week_first_s", zolbench::planByRun(session, jahr, woche, &rows), "s");
    // Replacing the plan of the week, against the database doing the same alone.
    if (!zolbench::compareWithSql(session, jahr, woche, repeat, "plan_week", "plan_ratio_to_sql"))
        return 3;
    figure("plan_week00_first_s", zolbench::planByRun(session, jahr, week00, &rows), "s");
    if (!zolbench::compareWithSql(session, jahr, week00, repeat, "plan_week00", "plan_week00_ratio_to_sql"))
        return 3;
    figure("peak_rss_mb", peakRssMb(), "MB", 0);
    zolbench::sqlBreakdown(db, jahr, woche, "plan_sql");
    if (planOnly)
        return 0;

    // The job sheets of the long-term week, planned by the run.
    zolbench::planByRun(session, jahr, woche, &rows);
    const bool sheets = zolbench::jobSheetBench(session, jahr, woche, gewerk);
    figure("jobsheets_peak_rss_mb", peakRssMb(), "MB", 0);
    zolbench::instructionsBench(db);
    return sheets ? 0 : 3;
}
