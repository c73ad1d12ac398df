#include "FeedbackBench.h"
#include "Figures.h"
#include "PlantGenerator.h"
#include "gui/feedback/frmRueckmeldung.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/feedback/Posting.h"
#include "zol/planning/PlanningRun.h"
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

}   // namespace

int runFeedbackBench(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    PlantSpec spec;
    QString dataDir;
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
        else {
            std::fprintf(stderr, "Aufruf: zolbench --feedback [--components N] [--lines M] [--data DIR]\n");
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
        database.open();
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
    figure("feedback_open_view0_s", seconds([&] { w.zeig(); }), "s");
    auto *cmbView = w.findChild<QComboBox *>(QStringLiteral("cmbView"));
    double slowest = 0;
    for (int v = 1; v < 8; ++v) {
        const double s = seconds([&] { cmbView->setCurrentIndex(v); });
        figure(qPrintable(QStringLiteral("feedback_view%1_s").arg(v)), s, "s");
        slowest = qMax(slowest, s);
    }
    figure("feedback_view_slowest_s", slowest, "s");

    // A week node of view 1 (the largest lists), and one component of view 0.
    cmbView->setCurrentIndex(1);
    auto *tree = w.findChild<QAbstractItemView *>(QStringLiteral("tvTreeView"));
    figure("feedback_week_node_list_ms", 1000 * seconds([&] { tree->setCurrentIndex(tree->model()->index(2, 0)); }), "ms");
    cmbView->setCurrentIndex(0);
    figure("feedback_node_list_ms", 1000 * seconds([&] { tree->setCurrentIndex(tree->model()->index(5, 0)); }), "ms");

    auto *save = w.findChild<QPushButton *>(QStringLiteral("cmdRückmeldung"));
    w.findChild<QLineEdit *>(QStringLiteral("txtZeit"))->setText(QStringLiteral("2,5"));
    figure("feedback_save_ms", 1000 * seconds([&] { save->click(); }), "ms");

    answers.next = {zol::Answer::Yes, zol::Answer::No};
    figure("feedback_post_week_s", seconds([&] { zol::AuftragswocheVerbuchen(session, jahr, QStringLiteral("10")); }), "s");
    answers.next = {zol::Answer::Yes, zol::Answer::No};
    figure("feedback_post_week_again_s",
           seconds([&] { zol::AuftragswocheVerbuchen(session, jahr, QStringLiteral("10")); }), "s");
    answers.next = {zol::Answer::Yes};
    figure("feedback_delete_week_s", seconds([&] { zol::AuftragswocheLoeschen(session, jahr, QStringLiteral("11")); }), "s");
    figure("peak_rss_mb", peakRssMb(), "MB", 0);
    zol::installPresenter(nullptr);
    return 0;
}

}
