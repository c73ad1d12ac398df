#include "RepairBench.h"
#include "Figures.h"
#include "PlantGenerator.h"
#include "gui/repair/ISAuftraegeModel.h"
#include "gui/repair/frmErfassungAllgemein.h"
#include "gui/repair/frmISAuftraege.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/print/PrinterF.h"
#include "zol/repair/RepairOrders.h"
#include "zol/repair/RepairPrints.h"
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTableView>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

namespace zolbench {

namespace {

double ms(const std::function<void()> &f)
{
    QElapsedTimer t;
    t.start();
    f();
    QApplication::processEvents();
    return t.nsecsElapsed() / 1e6;
}

// The orders: component i gets orders in turn, the first component 1,000.
void generateOrders(const QSqlDatabase &db, int count)
{
    QList<std::tuple<QString, QString, QString>> komp;
    QSqlQuery q = zol::exec(db, QStringLiteral("SELECT Text, IdentNr, Kostenstelle FROM ProtokollKopf WHERE FileTyp = 'F' "
                                               "AND Katalog = '0' AND IdentNr <> '' ORDER BY FileIndex"));
    while (q.next())
        komp.append({q.value(0).toString(), q.value(1).toString(), q.value(2).toString()});
    if (komp.isEmpty())
        return;
    QRandomGenerator rnd(20260101);
    zol::Transaction t(db);
    zol::Statement ins(db, QStringLiteral(
        "INSERT INTO Erfassung (Name, IdentNr, LaufendeNummer, Datum, Stunden, Minuten, Lohnkosten, materialkosten, "
        "Fremdkosten, Kostenstelle, Gewerk, AuftragsHerkunft, Auftragsart, Schadensart, SchadensUrsache, Bemerkung, "
        "Prioritaet, ZuErledigenBis, ErledigtJN, erledigtam) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    const QStringList gewerke = {QStringLiteral("Elektro"), QStringLiteral("Mechanik"), QStringLiteral("Schlosserei")};
    QHash<int, int> lfd;
    for (int i = 0; i < count; ++i) {
        const int k = i < 1000 ? 0 : 1 + (i - 1000) % std::max<qsizetype>(1, komp.size() - 1);
        const auto &[name, ident, kst] = komp.at(std::min<qsizetype>(k, komp.size() - 1));
        const QDate d = QDate(2020, 1, 1).addDays(rnd.bounded(2000));
        const bool done = rnd.bounded(3) == 0;
        ins.run({name, ident, QStringLiteral("%1").arg(++lfd[k], 5, 10, QLatin1Char('0')), d.toString(QStringLiteral("yyyy.MM.dd")),
                 rnd.bounded(8), rnd.bounded(60), rnd.bounded(500), rnd.bounded(300), rnd.bounded(100), kst,
                 gewerke.at(rnd.bounded(3)), rnd.bounded(5), rnd.bounded(7), rnd.bounded(23), rnd.bounded(6),
                 QStringLiteral("Befund %1").arg(i), QString::number(rnd.bounded(4)),
                 d.addDays(30).toString(QStringLiteral("yyyy.MM.dd")), done ? 1 : 0,
                 done ? d.addDays(10).toString(QStringLiteral("yyyy.MM.dd")) : QString()});
    }
    t.commit();
}

class Quiet : public zol::MessagePresenter {
public:
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || style == zol::Style::Exclamation)
            std::fprintf(stderr, "%s\n", qPrintable(text));
        return style == zol::Style::YesNo ? zol::Answer::Yes : zol::Answer::Ok;
    }
};

}   // namespace

int runRepairBench(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    PlantSpec spec;
    spec.lines = 200000;   // the instructions play no part here
    int count = 100000;
    QString dataDir;
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        const QString a = args.at(i);
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--repairs"))
            continue;
        if (a == QLatin1String("--components") && hasValue)
            spec.components = args.at(++i).toInt();
        else if (a == QLatin1String("--lines") && hasValue)
            spec.lines = args.at(++i).toInt();
        else if (a == QLatin1String("--orders") && hasValue)
            count = args.at(++i).toInt();
        else if (a == QLatin1String("--data") && hasValue)
            dataDir = args.at(++i);
        else {
            std::fprintf(stderr, "Aufruf: zolbench --repairs [--components N] [--lines M] [--orders K] [--data DIR]\n");
            return 2;
        }
    }
    QTemporaryDir tempDir;
    zol::Database database(dataDir.isEmpty() ? tempDir.path() : dataDir);
    Quiet quiet;
    zol::installPresenter(&quiet);
    if (database.fileExists()) {
        database.open();
    } else {
        database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        database.open();
        generatePlant(database.connection(), spec);
        generateOrders(database.connection(), count);
    }
    const QSqlDatabase db = database.connection();
    zol::Session session(database);
    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;
    figure("repair_orders", zol::scalar(db, QStringLiteral("SELECT count(*) FROM Erfassung")).toDouble(), "rows", 0);

    {
        frmISAuftraege w(session);
        figure("repair_overview_open_ms", ms([&] { w.zeig(false); }), "ms");
        auto *name = w.findChild<QLineEdit *>(QStringLiteral("txtName"));
        name->setText(QStringLiteral("K*"));
        figure("repair_overview_filter_ms", ms([&] { w.Aktualisieren(); }), "ms");
        name->clear();
        w.Aktualisieren();
        QHeaderView *head = w.findChild<QTableView *>(QStringLiteral("DBGridAufträge"))->horizontalHeader();
        double slowest = 0;
        for (int col : {0, 3, 5, 6, 8, 17, 20})
            slowest = std::max(slowest, ms([&] { emit head->sectionClicked(col); }));
        figure("repair_overview_sort_slowest_ms", slowest, "ms");
    }
    {
        frmErfassungAllgemein w(session);
        figure("repair_capture_open_ms", ms([&] {
                   w.SetzeFilter();
                   w.ZeigeDatensatz();
                   w.show();
               }),
               "ms");
        auto *next = w.findChild<QPushButton *>(QStringLiteral("cmdMoveNext"));
        double slowest = 0, sum = 0;
        for (int i = 0; i < 100; ++i) {
            const double t = ms([&] { next->click(); });
            slowest = std::max(slowest, t);
            sum += t;
        }
        figure("repair_capture_step_ms", sum / 100, "ms");
        figure("repair_capture_step_slowest_ms", slowest, "ms");
        auto *nameBox = w.findChild<QComboBox *>(QStringLiteral("dbcName"));
        nameBox->setEditText(QStringLiteral("Gibt es nicht"));
        figure("repair_capture_timer_fallback_ms", ms([&] { w.Timer1_Timer(); }), "ms");
        figure("repair_capture_timer_idle_ms", ms([&] { w.Timer1_Timer(); }), "ms");
        w.hide();
    }
    {
        QSqlQuery q = zol::exec(db, QStringLiteral("SELECT Name, IdentNr FROM Erfassung GROUP BY IdentNr ORDER BY count(*) DESC LIMIT 1"));
        q.next();
        const QString name = q.value(0).toString(), ident = q.value(1).toString();
        QElapsedTimer t;
        t.start();
        for (int i = 0; i < 100; ++i)
            zol::NaechsteLaufendeNummer(db, name, ident);
        figure("repair_next_number_ms", t.nsecsElapsed() / 1e6 / 100, "ms");
    }
    {
        // The listing of 10,000 orders: those of the first components in name order.
        const QString grenze = zol::scalar(db, QStringLiteral("SELECT Name FROM Erfassung ORDER BY Name LIMIT 1 OFFSET 9999")).toString();
        const QString pdf = tempDir.filePath(QStringLiteral("repairs.pdf"));
        zol::PdfPreviewPresenter presenter(pdf);
        zol::installPreviewPresenter(&presenter);
        zol::PrinterF printer;
        const double cpu0 = cpuSeconds();
        const double t = ms([&] {
            zol::ErfassungStatistikDrucken(session, printer, {QStringLiteral(" WHERE Name < ?"), {grenze}, {}}, true);
        });
        zol::installPreviewPresenter(nullptr);
        figure("repair_listing_orders",
               zol::scalar(db, QStringLiteral("SELECT count(*) FROM Erfassung WHERE Name < ?"), {grenze}).toDouble(), "rows", 0);
        figure("repair_listing_pages", presenter.pages(), "pages", 0);
        figure("repair_listing_pages_per_s", presenter.pages() / (t / 1000), "pages/s", 1);
        const double cpu = cpuSeconds() - cpu0;
        figure("repair_listing_cpu_s", cpu, "s");
        figure("repair_listing_pages_per_cpu_s", presenter.pages() / cpu, "pages/s", 1);
    }
    figure("peak_rss_mb", peakRssMb(), "MB", 0);
    zol::installPresenter(nullptr);
    return 0;
}

}
