// zolbench: prints figures as lines "name value unit".
#include "Figures.h"
#include "ExplorerBench.h"
#include "FeedbackBench.h"
#include "InstructionsBench.h"
#include "JobSheetBench.h"
#include "PlantGenerator.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanningRun.h"
#include "zol/planning/WeekCalendar.h"
#include <QGuiApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

using zolbench::cpuSeconds;
using zolbench::figure;
using zolbench::peakRssMb;

// Answers every question with Yes and keeps messages off the figures.
class YesPresenter : public zol::MessagePresenter {
public:
    QStringList faults;
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || style == zol::Style::Exclamation)
            faults << text;
        return style == zol::Style::YesNo ? zol::Answer::Yes : zol::Answer::Ok;
    }
};

// The database work of a planning run and nothing else: the joined statement
// read forward-only with every column fetched, the week deleted and the same
// rows (marked in `due`, in statement order) inserted with bound values, all
// in one transaction.
double bareDatabaseWork(const QSqlDatabase &db, const QString &jahr, const QString &woche, const QString &typ,
                        const std::vector<char> &due)
{
    QElapsedTimer t;
    t.start();
    const double cpu0 = cpuSeconds();
    zol::Transaction tx(db);
    zol::exec(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
    QSqlQuery q(db);
    q.setForwardOnly(true);
    q.prepare(QStringLiteral(
        "SELECT A.FileIndex, A.KeineWartung, A.KeineWartungWocheVon1, A.KeineWartungWocheBis1,"
        " A.KeineWartungWocheVon2, A.KeineWartungWocheBis2, B.TeNummer, B.Objekt, B.Anweisung, B.Text,"
        " B.Ausfuehrender, B.Betriebszustand, B.AnzahlPersonen, B.Sicherheitshinweis, B.Intervall, B.Planzeit,"
        " B.Materialcode, B.Materialmenge, B.Intervalltyp, A.WIVerantwortlicher, A.Kostenstelle,"
        " A.Lokalisierung, A.Option1, A.Text, A.Bezugsjahr, A.BezugsWoche"
        " FROM ProtokollKopf AS A, ProtokollPositionen AS B"
        " WHERE B.IntervallTyp = ? AND B.Anweisung <> '0000' AND A.Bezugsjahr <= ? AND A.Katalog = '0'"
        " AND A.FileIndex = B.TeNummer ORDER BY B.TeNummer"));
    q.addBindValue(typ);
    q.addBindValue(jahr);
    q.exec();
    zol::Statement ins(db, QStringLiteral(
        "INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender,"
        " Kostenstelle, Lokalisierung, Option1, KompBezeichnung, Betriebszustand, BetriebszustandXL, PlanZeit,"
        " Materialcode, Materialmenge, Bemerkung, Text, \"Rückmeldung\", Befund, Verbal, Intervall, Datum,"
        " AnzahlPersonen, SicherheitsHinweis, IntervallTyp, KeineWartung)"
        " VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    QSqlQuery &i = ins.query();
    const QString empty = QStringLiteral("");
    i.bindValue(1, jahr);
    i.bindValue(2, woche);
    i.bindValue(16, empty);
    i.bindValue(18, QStringLiteral("N"));
    i.bindValue(19, empty);
    i.bindValue(20, empty);
    i.bindValue(22, QStringLiteral("01.01.2025"));
    std::size_t n = 0;
    while (q.next()) {
        QVariant v[26];
        for (int c = 0; c < 26; ++c)
            v[c] = q.value(c);
        if (n < due.size() && due[n]) {
            i.bindValue(0, v[6]);
            i.bindValue(3, v[7]);
            i.bindValue(4, v[8]);
            i.bindValue(5, v[19]);
            i.bindValue(6, v[10]);
            i.bindValue(7, v[20]);
            i.bindValue(8, v[21]);
            i.bindValue(9, v[22]);
            i.bindValue(10, v[23]);
            i.bindValue(11, v[11]);
            i.bindValue(12, v[11]);
            i.bindValue(13, 1.5);
            i.bindValue(14, v[16]);
            i.bindValue(15, 0.5);
            i.bindValue(17, v[9]);
            i.bindValue(21, v[14]);
            i.bindValue(23, 1);
            i.bindValue(24, v[13]);
            i.bindValue(25, v[18]);
            i.bindValue(26, QStringLiteral("N"));
            ins.run();
        }
        ++n;
    }
    q.finish();
    tx.commit();
    figure("bare_db_cpu_s", cpuSeconds() - cpu0, "s");
    return t.nsecsElapsed() / 1e9;
}

// Which rows of the joined statement the run writes, in statement order (read
// from the plan just made, so the bare work inserts exactly as many rows).
std::vector<char> dueRows(const QSqlDatabase &db, const QString &jahr, const QString &woche, const QString &typ)
{
    std::vector<char> out;
    QSqlQuery q(db);
    q.setForwardOnly(true);
    q.prepare(QStringLiteral(
        "SELECT EXISTS (SELECT 1 FROM Auftrag AS C WHERE C.Jahr = ? AND C.Woche = ? AND C.TeIndex = B.TeNummer"
        " AND C.Objekt = B.Objekt AND C.Anweisung = B.Anweisung)"
        " FROM ProtokollKopf AS A, ProtokollPositionen AS B"
        " WHERE B.IntervallTyp = ? AND B.Anweisung <> '0000' AND A.Bezugsjahr <= ? AND A.Katalog = '0'"
        " AND A.FileIndex = B.TeNummer ORDER BY B.TeNummer"));
    q.addBindValue(jahr);
    q.addBindValue(woche);
    q.addBindValue(typ);
    q.addBindValue(jahr);
    q.exec();
    while (q.next())
        out.push_back(q.value(0).toInt() ? 1 : 0);
    return out;
}

}   // namespace

int main(int argc, char **argv)
{
    // The explorer figures need the windows; they run on their own.
    for (int i = 1; i < argc; ++i)
        if (qstrcmp(argv[i], "--explorer") == 0)
            return zolbench::runExplorerBench(argc, argv);
    for (int i = 1; i < argc; ++i)
        if (qstrcmp(argv[i], "--feedback") == 0)
            return zolbench::runFeedbackBench(argc, argv);
    // The job sheets lay out text with fonts: a GUI application, on no screen unless there is one.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    zolbench::PlantSpec spec;
    QString jahr = QStringLiteral("2025"), woche = QStringLiteral("10");
    QString dataDir;   // keep the plant in this folder and use it again next time
    QString gewerk = QStringLiteral("Elektro");   // the trade of the job-sheet figures
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
        else {
            std::fprintf(stderr, "Aufruf: zolbench [--components N] [--lines M] [--year JJJJ] [--week WW] [--gewerk T] [--data DIR]\n");
            return 2;
        }
    }
    if (woche == QLatin1String("00")) {
        std::fprintf(stderr, "--week: eine Woche von 01 bis 52\n");
        return 2;
    }

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

    zol::Session session(database);
    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;
    YesPresenter presenter;
    zol::installPresenter(&presenter);
    int progressCalls = 0;
    double lastCpu = 0;
    auto timedRun = [&](const QString &w, int *count) {
        zol::PlanningRun run(session);
        run.onProgress = [&](int, int) { ++progressCalls; };
        QElapsedTimer rt;
        rt.start();
        const double cpu0 = cpuSeconds();
        const zol::PlanResult r = run.run(jahr, w);
        const double s = rt.nsecsElapsed() / 1e9;
        lastCpu = cpuSeconds() - cpu0;
        if (r.outcome != zol::PlanResult::Outcome::Planned) {
            std::fprintf(stderr, "planning %s/%s failed: %s\n", qPrintable(w), qPrintable(jahr),
                         qPrintable(presenter.faults.join(QLatin1Char('\n'))));
            std::exit(3);
        }
        *count = r.count;
        return s;
    };

    int count = 0;
    figure("plan_week_first_s", timedRun(woche, &count), "s");
    const double planWeek = timedRun(woche, &count);
    figure("plan_week_s", planWeek, "s");
    const double planWeekCpu = lastCpu;
    figure("plan_week_cpu_s", planWeekCpu, "s");
    figure("plan_week_rows", count, "rows", 0);

    const std::vector<char> due = dueRows(db, jahr, woche, QStringLiteral("L"));
    const double bare = bareDatabaseWork(db, jahr, woche, QStringLiteral("L"), due);
    figure("bare_db_s", bare, "s");
    figure("plan_ratio_to_db", planWeek / bare, "x", 2);

    int count00 = 0;
    figure("plan_week00_first_s", timedRun(QStringLiteral("00"), &count00), "s");
    figure("plan_week00_s", timedRun(QStringLiteral("00"), &count00), "s");
    figure("plan_week00_cpu_s", lastCpu, "s");
    figure("plan_week00_rows", count00, "rows", 0);

    figure("peak_rss_mb", peakRssMb(), "MB", 0);

    // The job sheets of the long-term week, planned afresh (the bare database work replaced its rows).
    timedRun(woche, &count);
    const bool sheets = zolbench::jobSheetBench(session, jahr, woche, gewerk);
    figure("jobsheets_peak_rss_mb", peakRssMb(), "MB", 0);
    zolbench::instructionsBench(db);
    zol::installPresenter(nullptr);
    return sheets ? 0 : 3;
}
