#include "ExchangeBench.h"
#include "Figures.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/RecordKeys.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/exchange/ComponentExchange.h"
#include "zol/structure/Node.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

namespace zolbench {

namespace {

// Keeps the messages of the import off the figures, and shows faults.
class Quiet : public zol::MessagePresenter {
public:
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || text.contains(QLatin1String("nicht")))
            std::fprintf(stderr, "%s\n", qPrintable(text));
        return style == zol::Style::YesNo ? zol::Answer::Yes : zol::Answer::Ok;
    }
};

QString addInstallation(const QSqlDatabase &db, const QString &name)
{
    zol::Node n;
    n.FileIndex = zol::NeuerFileIndex(db, QStringLiteral("ProtokollKopf"));
    n.FileAbove = zol::RootProtok;
    n.FileTyp = zol::FileTypOrdner;
    n.Katalog = QStringLiteral("0");
    n.Text = name;
    zol::saveNode(db, n);
    return n.FileIndex;
}

// One installation with its components, each with lines in objects of five.
QStringList fillBranch(const QSqlDatabase &db, const QString &above, int components, int lines)
{
    static const char *codes[] = {"1W", "2W", "4W", "3M", "6M", "1J", "WT", "1T"};
    zol::Transaction tx(db);
    zol::Statement kopf(db, QStringLiteral("INSERT INTO ProtokollKopf (FileIndex, FileAbove, FileTyp, Katalog, Text, "
                                           "BezugsJahr, BezugsWoche, IdentNr, Hersteller, WIVerantwortlicher) "
                                           "VALUES (?,?,'F','0',?,'2024',?,?,'Hersteller GmbH','Mechanik')"));
    zol::Statement line(db, QStringLiteral("INSERT INTO ProtokollPositionen VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    QStringList keys;
    const qint64 first = zol::NeuerFileIndex(db, QStringLiteral("ProtokollKopf")).toLongLong();
    for (int c = 0; c < components; ++c) {
        const QString key = QStringLiteral("%1").arg(first + c, 10, 10, QLatin1Char('0'));
        kopf.run({key, above, QStringLiteral("Pumpe %1").arg(c), QStringLiteral("%1").arg(c % 52 + 1, 2, 10, QLatin1Char('0')),
                  QStringLiteral("P-%1").arg(c)});
        keys << key;
        const int mine = lines / components + (c < lines % components ? 1 : 0);
        for (int i = 0; i < mine; ++i) {
            const bool head = i % 5 == 0;
            const QString code = head ? QString() : QString::fromLatin1(codes[(c + i) % 8]);
            line.run({key, QStringLiteral("%1").arg((i / 5 + 1) * 10, 6, 10, QLatin1Char('0')),
                      QStringLiteral("%1").arg((i % 5) * 10, 4, 10, QLatin1Char('0')),
                      head ? QStringLiteral("Baugruppe %1").arg(i / 5) : QStringLiteral("Sichtprüfung der Dichtung und der Lager"),
                      head ? QString() : QStringLiteral("Mechanik"), head ? QString() : QStringLiteral("R"),
                      head ? QStringLiteral("0") : QStringLiteral("1"), QString(), code, QStringLiteral("0,5"), QString(),
                      QStringLiteral("0,0"), head ? QString() : (code.endsWith(QLatin1Char('T')) ? QStringLiteral("K") : QStringLiteral("L"))});
        }
    }
    // The bookkeeping of keys goes on after the bulk rows.
    zol::exec(db, QStringLiteral("UPDATE ProtokollKopf SET Text = ? WHERE FileIndex = 'LastIndex'"),
              {QString::number(first + components)});
    tx.commit();
    return keys;
}

// Wall seconds, with the CPU seconds of the same run as a second figure:
// on a shared machine the wall time alone misleads.
double seconds(const QByteArray &name, const std::function<void()> &f)
{
    QElapsedTimer t;
    const double cpu = cpuSeconds();
    t.start();
    f();
    const double wall = t.nsecsElapsed() / 1e9;
    figure(name + "_s", wall, "s");
    figure(name + "_cpu_s", cpuSeconds() - cpu, "s");
    return wall;
}

}

int runExchangeBench(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int components = 10000, lines = 100000;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--components"))
            components = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--lines"))
            lines = args.at(++i).toInt();
    }
    Quiet quiet;
    zol::installPresenter(&quiet);
    QTemporaryDir dir;
    zol::Database database(dir.path());
    database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
    const QSqlDatabase db = database.connection();
    zol::Login admin;
    admin.UserName = QStringLiteral("Admin");
    admin.Level = QStringLiteral("Administrator");

    const QString branch = addInstallation(db, QStringLiteral("Bench"));
    const QStringList keys = fillBranch(db, branch, components, lines);
    std::printf("# exchange: %d components, %d lines\n", components, lines);

    const QString dbFile = dir.filePath(QStringLiteral("branch.db"));
    const QString xlsxFile = dir.filePath(QStringLiteral("branch.xlsx"));
    seconds("exchange_export_db", [&] { zol::writeExportTable(db, keys, dbFile, true); });
    seconds("exchange_export_xlsx", [&] { zol::writeExportSheet(db, keys, xlsxFile, true, true); });
    for (const QString &file : {dbFile, xlsxFile}) {
        const QString under = addInstallation(db, QStringLiteral("Import ") + file.section(QLatin1Char('.'), -1));
        zol::ImportResult r;
        seconds(QByteArray("exchange_import_") + file.section(QLatin1Char('.'), -1).toLatin1(), [&] {
            std::unique_ptr<zol::TableSource> src = zol::openTableSource(file, zol::importSheetLayout(true));
            r = zol::importComponents(db, admin, *src, under, true);
        });
        if (r.refused || r.failed != 0 || r.newKeys.size() != components)
            std::fprintf(stderr, "import of %s: %d failed, %lld nodes\n", qPrintable(file), r.failed,
                         qlonglong(r.newKeys.size()));
    }
    figure("exchange_peak_rss_mb", peakRssMb(), "MB", 0);
    zol::installPresenter(nullptr);
    return 0;
}

}
