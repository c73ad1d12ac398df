#include "FeedbackBench.h"
#include "Figures.h"
#include "PlantGenerator.h"
#include "PlanningBench.h"
#include "gui/feedback/FeedbackTreeModel.h"
#include "gui/feedback/frmRueckmeldung.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/core/Schema.h"
#include "zol/feedback/Feedback.h"
#include "zol/feedback/FeedbackViews.h"
#include "zol/feedback/Posting.h"
#include "zol/planning/JobSheets.h"
#include "zol/planning/OrderRows.h"
#include "zol/planning/PlanningRun.h"
#include "zol/print/PrinterF.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <cstdio>

namespace zolbench {

namespace {

// Answers questions from a list (Yes when it runs out) and keeps messages off the figures.
class Answers : public zol::MessagePresenter {
public:
    QList<int> next;
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || style == zol::Style::Exclamation)
            std::fprintf(stderr, "%s\n", qPrintable(text));
        if (style != zol::Style::YesNo)
            return zol::Answer::Ok;
        return next.isEmpty() ? zol::Answer::Yes : next.takeFirst();
    }
};

double seconds(const std::function<void()> &f)
{
    QElapsedTimer t;
    t.start();
    f();
    QApplication::processEvents();
    return t.nsecsElapsed() / 1e9;
}

// A plain statement, every row stepped through: the floor of what a window reads.
double sqlSeconds(const QSqlDatabase &db, const QString &sql, const QVariantList &values = {})
{
    QElapsedTimer t;
    t.start();
    QSqlQuery q = zol::exec(db, sql, values);
    while (q.next())
        q.value(0);
    return t.nsecsElapsed() / 1e9;
}

// The floor of a view: its top level's first page and the orders of its first
// node, each as the plain statement that selects the same rows.
double viewFloor(zol::Session &session, int view, const zol::KnotenFilter &first)
{
    QStringList felder;
    switch (zol::rueckmeldungsAnsichten().at(view).ebenen.first()) {
    case zol::Ebene::Komponente: felder = {QStringLiteral("KompBezeichnung"), QStringLiteral("TeIndex")}; break;
    case zol::Ebene::Woche: felder = {QStringLiteral("Jahr"), QStringLiteral("Woche")}; break;
    case zol::Ebene::Gewerk: felder = {QStringLiteral("Ausfuehrender")}; break;
    }
    const QString list = felder.join(QStringLiteral(", "));
    const zol::AuftragsAbfrage orders = zol::auftragsAbfrage(session, first, zol::AuftragsAuswahl::Beide);
    return sqlSeconds(session.db(), QStringLiteral("SELECT DISTINCT %1 FROM Auftrag ORDER BY %1 LIMIT 1000").arg(list))
        + sqlSeconds(session.db(), orders.sql + QStringLiteral(" LIMIT 500"), orders.values);
}

// The floor of posting: the week's rows and the year's short-term rows copied
// by plain statements in one transaction, an earlier copy replaced; with
// `loeschen` the week deleted after.
double postBySql(const QSqlDatabase &db, const QString &jahr, const QString &woche, bool loeschen)
{
    const QString ziel = zol::ident(zol::Schema::yearTableName(jahr));
    zol::Schema::ensureYearTable(db, jahr);
    QStringList cols, kurz;
    for (const QString &f : zol::Schema::fieldNames(QStringLiteral("Auftrag"))) {
        cols << zol::ident(f);
        kurz << (f == QLatin1String("Woche") ? QStringLiteral("?") : zol::ident(f));
    }
    const QString list = cols.join(QStringLiteral(", "));
    QElapsedTimer t;
    t.start();
    zol::Transaction tx(db);
    zol::exec(db, QStringLiteral("DELETE FROM %1 WHERE Jahr = ? AND Woche = ?").arg(ziel), {jahr, woche});
    zol::exec(db, QStringLiteral("INSERT INTO %1 (%2) SELECT %2 FROM Auftrag WHERE Jahr = ? AND Woche = ? AND KeineWartung = 'N'")
                      .arg(ziel, list), {jahr, woche});
    if (loeschen)
        zol::exec(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
    zol::exec(db, QStringLiteral("INSERT INTO %1 (%2) SELECT %3 FROM Auftrag WHERE Jahr = ? AND Woche = '00'")
                      .arg(ziel, list, kurz.join(QStringLiteral(", "))), {woche, jahr});
    tx.commit();
    return t.nsecsElapsed() / 1e9;
}

double deleteBySql(const QSqlDatabase &db, const QString &jahr, const QString &woche)
{
    QElapsedTimer t;
    t.start();
    zol::Transaction tx(db);
    zol::exec(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
    tx.commit();
    return t.nsecsElapsed() / 1e9;
}

void ratio(const char *name, double ours, double floor) { figure(name, floor > 0 ? ours / floor : 0, "x", 2); }

// One week on its road: planned, the job sheets of one trade written to a
// PDF, every order of that trade reported as done through the library, the
// week posted with deletion. Each step against its floor where there is one.
bool weekRoad(zol::Session &session, Answers &answers, const QString &jahr, const QString &woche, const QString &gewerk)
{
    const QSqlDatabase db = session.db();
    const double cpu0 = cpuSeconds();
    int rows = 0;
    const double plan = planByRun(session, jahr, woche, &rows);
    if (plan < 0)
        return false;
    figure("week_road_plan_s", plan, "s");
    figure("week_road_plan_rows", rows, "rows", 0);

    QTemporaryDir dir;
    zol::PdfPreviewPresenter pdf(dir.filePath(QStringLiteral("auftraege.pdf")));
    zol::PreviewPresenter *before = zol::installedPreviewPresenter();
    zol::installPreviewPresenter(&pdf);
    zol::JobSheetFilter filter;
    filter.gewerk = gewerk;
    zol::JobSheetResult sheets;
    const double print = seconds([&] { sheets = zol::AuftragsDruckAnweisungen(session, jahr, woche, filter, true); });
    zol::installPreviewPresenter(before);
    if (sheets.status != zol::JobSheetStatus::Done || !pdf.written())
        return false;
    figure("week_road_jobsheets_s", print, "s");
    figure("week_road_jobsheets_pages", pdf.pages(), "pages", 0);

    // Every order of the trade as the window lists it, saved as shown: the plan reported as done.
    const zol::KnotenFilter node{{{QStringLiteral("Jahr"), jahr}, {QStringLiteral("Woche"), woche},
                                  {QStringLiteral("Ausfuehrender"), gewerk}}, 3};
    int reported = 0;
    const double report = seconds([&] {
        const zol::AuftragsAbfrage q = zol::auftragsAbfrage(session, node, zol::AuftragsAuswahl::Beide);
        // One unit of work for the whole batch, as a batch of feedback would be written.
        zol::Transaction tx(db);
        for (const zol::AuftragZeile &z : zol::ladeAuftragZeilen(db, q.sql, q.values)) {
            const auto eingabe = zol::RueckmeldungEingabe::aus(zol::zeigeAuftrag(db, z));
            reported += zol::Zurueckmelden(db, zol::AuftragSchluessel::von(z), eingabe).status
                == zol::SpeicherErgebnis::Status::Gespeichert;
        }
        tx.commit();
    });
    figure("week_road_report_s", report, "s");
    figure("week_road_report_rows", reported, "rows", 0);

    answers.next = {zol::Answer::Yes, zol::Answer::Yes};
    zol::VerbuchenErgebnis posted;
    const double post = seconds([&] { posted = zol::AuftragswocheVerbuchen(session, jahr, woche); });
    if (posted.status != zol::VerbuchenErgebnis::Status::Verbucht || !posted.geloescht)
        return false;
    figure("week_road_post_s", post, "s");
    const double total = plan + print + report + post;
    figure("week_road_s", total, "s");
    // The machine is shared: what the road itself used of the processor.
    figure("week_road_cpu_s", cpuSeconds() - cpu0, "s");

    // The floors, on the same week planned again: the database alone plans it,
    // reports the trade's rows in one statement, posts it with deletion.
    const double planFloor = planBySql(db, jahr, woche, &rows);
    const double reportFloor = seconds([&] {
        zol::Transaction tx(db);
        zol::exec(db,
                  QStringLiteral("UPDATE Auftrag SET \"Rückmeldung\" = 'J', Befund = '' WHERE Jahr = ? AND Woche = ? "
                                 "AND Ausfuehrender = ? AND KeineWartung = 'N'"),
                  {jahr, woche, gewerk});
        tx.commit();
    });
    const double postFloor = postBySql(db, jahr, woche, true);
    ratio("week_road_plan_ratio_to_sql", plan, planFloor);
    ratio("week_road_report_ratio_to_sql", report, reportFloor);
    ratio("week_road_post_ratio_to_sql", post, postFloor);
    figure("week_road_sql_s", planFloor + reportFloor + postFloor, "s");
    ratio("week_road_ratio_to_sql_without_jobsheets", plan + report + post, planFloor + reportFloor + postFloor);
    return true;
}

}   // namespace

int runFeedbackBench(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    PlantSpec spec;
    QString dataDir;
    QString gewerk = QStringLiteral("Elektro");   // the trade of the week's road
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--feedback"))
            continue;
        if (a == QLatin1String("--components") && hasValue)
            spec.components = args.at(++i).toInt();
        else if (a == QLatin1String("--lines") && hasValue)
            spec.lines = args.at(++i).toInt();
        else if (a == QLatin1String("--data") && hasValue)
            dataDir = args.at(++i);
        else if (a == QLatin1String("--gewerk") && hasValue)
            gewerk = args.at(++i);
        else {
            std::fprintf(stderr, "Aufruf: zolbench --feedback [--components N] [--lines M] [--data DIR] [--gewerk T]\n");
            return 2;
        }
    }
    QTemporaryDir tempDir;
    zol::Database database(dataDir.isEmpty() ? tempDir.path() : dataDir);
    const QString jahr = QStringLiteral("2025");
    const QStringList wochen = {QStringLiteral("10"), QStringLiteral("11"), QStringLiteral("12"), QStringLiteral("13"),
                                QStringLiteral("14"), QStringLiteral("00")};
    Answers answers;
    zol::installPresenter(&answers);
    zol::Session session(database);
    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;
    if (database.fileExists()) {
        // A file of an earlier build gets its missing indexes here.
        figure("feedback_open_file_s", seconds([&] { database.open(); }), "s");
    } else {
        database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        database.open();
        generatePlant(database.connection(), spec);
        for (const QString &w : wochen)
            zol::PlanningRun(session).run(jahr, w);
    }
    const QSqlDatabase db = database.connection();
    figure("feedback_order_rows", zol::scalar(db, QStringLiteral("SELECT count(*) FROM Auftrag")).toDouble(), "rows", 0);

    frmRueckmeldung w(session);
    auto *tree = w.findChild<QAbstractItemView *>(QStringLiteral("tvTreeView"));
    auto *model = static_cast<FeedbackTreeModel *>(tree->model());
    const auto firstNode = [&] { return model->filter(model->index(0, 0)); };
    const double open = seconds([&] { w.zeig(); });
    figure("feedback_open_view0_s", open, "s");
    ratio("feedback_open_view0_ratio_to_sql", open, viewFloor(session, 0, firstNode()));
    auto *cmbView = w.findChild<QComboBox *>(QStringLiteral("cmbView"));
    double slowest = 0;
    for (int v = 1; v < 8; ++v) {
        const double s = seconds([&] { cmbView->setCurrentIndex(v); });
        figure(QStringLiteral("feedback_view%1_s").arg(v).toUtf8(), s, "s");
        ratio(QStringLiteral("feedback_view%1_ratio_to_sql").arg(v).toUtf8().constData(), s,
              viewFloor(session, v, firstNode()));
        slowest = qMax(slowest, s);
    }
    figure("feedback_view_slowest_s", slowest, "s");

    // A week node of view 1 (the largest lists), and one component of view 0.
    const auto listFloor = [&] {
        const zol::AuftragsAbfrage q =
            zol::auftragsAbfrage(session, model->filter(tree->currentIndex()), zol::AuftragsAuswahl::Beide);
        return sqlSeconds(db, q.sql + QStringLiteral(" LIMIT 500"), q.values);
    };
    cmbView->setCurrentIndex(1);
    const double weekList = seconds([&] { tree->setCurrentIndex(tree->model()->index(2, 0)); });
    figure("feedback_week_node_list_ms", 1000 * weekList, "ms");
    ratio("feedback_week_node_list_ratio_to_sql", weekList, listFloor());
    cmbView->setCurrentIndex(0);
    const double nodeList = seconds([&] { tree->setCurrentIndex(tree->model()->index(5, 0)); });
    figure("feedback_node_list_ms", 1000 * nodeList, "ms");
    ratio("feedback_node_list_ratio_to_sql", nodeList, listFloor());

    auto *save = w.findChild<QPushButton *>(QStringLiteral("cmdRückmeldung"));
    w.findChild<QLineEdit *>(QStringLiteral("txtZeit"))->setText(QStringLiteral("2,5"));
    figure("feedback_save_ms", 1000 * seconds([&] { save->click(); }), "ms");

    // Posting a week against the plain statements posting another of the same size.
    answers.next = {zol::Answer::Yes, zol::Answer::No};
    const double post = seconds([&] { zol::AuftragswocheVerbuchen(session, jahr, QStringLiteral("10")); });
    figure("feedback_post_week_s", post, "s");
    ratio("feedback_post_week_ratio_to_sql", post, postBySql(db, jahr, QStringLiteral("12"), false));
    answers.next = {zol::Answer::Yes, zol::Answer::No};
    const double again = seconds([&] { zol::AuftragswocheVerbuchen(session, jahr, QStringLiteral("10")); });
    figure("feedback_post_week_again_s", again, "s");
    ratio("feedback_post_week_again_ratio_to_sql", again, postBySql(db, jahr, QStringLiteral("12"), false));
    answers.next = {zol::Answer::Yes};
    const double del = seconds([&] { zol::AuftragswocheLoeschen(session, jahr, QStringLiteral("11")); });
    figure("feedback_delete_week_s", del, "s");
    ratio("feedback_delete_week_ratio_to_sql", del, deleteBySql(db, jahr, QStringLiteral("14")));

    if (!weekRoad(session, answers, jahr, QStringLiteral("15"), gewerk)) {
        std::fprintf(stderr, "the week's road of %s/15 did not complete\n", qPrintable(jahr));
        return 3;
    }
    figure("peak_rss_mb", peakRssMb(), "MB", 0);
    zol::installPresenter(nullptr);
    return 0;
}

}
