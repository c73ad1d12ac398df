// The explorer figures: a plant of installations in levels, the main window
// opened on it, a folder's list, the search views and copying a large installation.
#include "Figures.h"
#include "ExplorerBench.h"
#include "gui/structure/ExplorerListModel.h"
#include "gui/structure/ExplorerTreeModel.h"
#include "gui/structure/frmMain.h"
#include "zol/core/Database.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/Session.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include "zol/structure/Explorer.h"
#include "zol/structure/Search.h"
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

namespace {

class QuietPresenter : public zol::MessagePresenter {
public:
    int present(const QString &text, int style) override
    {
        if (style == zol::Style::Critical || style == zol::Style::Exclamation)
            std::fprintf(stderr, "message: %s\n", qPrintable(text));
        return style == zol::Style::YesNo ? zol::Answer::Yes : zol::Answer::Ok;
    }
};

QString key(int n) { return QStringLiteral("%1").arg(n, 10, 10, QLatin1Char('0')); }

double seconds(const QElapsedTimer &t) { return t.nsecsElapsed() / 1e9; }

const char *const makers[] = {"KSB", "Grundfos", "Wilo", "Siemens", "ABB", "Kaeser", "Bosch", "Danfoss"};

}   // namespace

namespace zolbench {

ExplorerPlant generateExplorerPlant(const QSqlDatabase &db, const ExplorerSpec &spec)
{
    ExplorerPlant plant;
    zol::Transaction tx(db);
    zol::Statement kopf(db, QStringLiteral("INSERT INTO ProtokollKopf (FileIndex, FileAbove, FileTyp, Katalog, Text,"
                                           " IdentNr, Hersteller, Typ, Kostenstelle) VALUES (?,?,?,?,?,?,?,?,?)"));
    zol::Statement pos(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text,"
                                          " Intervall, Intervalltyp) VALUES (?,?,?,?,?,?)"));
    // Installations in levels of ten: installation i (from 10 on) hangs below
    // installation (i - 10) / 10. The first of the ten top ones is in Standards.
    const int fanOut = 10;
    QVector<QString> katalog(spec.installations);
    int next = 1;
    for (int i = 0; i < spec.installations; ++i, ++next) {
        const QString parent = i < fanOut ? (i == 0 ? zol::RootKatalo : zol::RootProtok) : key(1 + (i - fanOut) / fanOut);
        katalog[i] = i < fanOut ? (i == 0 ? QStringLiteral("1") : QStringLiteral("0")) : katalog[(i - fanOut) / fanOut];
        kopf.run({key(next), parent, zol::FileTypOrdner, katalog[i], QStringLiteral("Anlage %1").arg(i + 1), QString(),
                  QString(), QString(), QString()});
    }
    // The installation to be copied: one of the second level, with its own
    // components and their lines.
    plant.copySource = key(1 + fanOut + 5);
    plant.copyTarget = key(1 + fanOut + 6);
    const int sourceIndex = fanOut + 5;
    int lines = 0;
    for (int c = 0; c < spec.components; ++c, ++next) {
        const bool inSource = c < spec.copyComponents;
        const int inst = inSource ? sourceIndex : c % spec.installations;
        const QString fileIndex = key(next);
        kopf.run({fileIndex, key(1 + inst), zol::FileTypFile, katalog[inst],
                  QStringLiteral("Komponente %1").arg((c * 7919) % spec.components + 1), QStringLiteral("ID-%1").arg(c + 1),
                  QString::fromLatin1(makers[c % 8]), QStringLiteral("Typ %1").arg(c % 50),
                  QStringLiteral("%1").arg(4000 + c % 30)});
        if (inSource)
            for (int l = 0; l < spec.copyLinesPerComponent; ++l, ++lines)
                pos.run({fileIndex, QStringLiteral("%1").arg(10 * (1 + l / 5), 6, 10, QLatin1Char('0')),
                         QStringLiteral("%1").arg(l % 5 * 10, 4, 10, QLatin1Char('0')), QStringLiteral("Prüfen %1").arg(l),
                         l % 5 ? QStringLiteral("1M") : QString(), QStringLiteral("L")});
    }
    tx.commit();
    plant.components = spec.components;
    plant.installations = spec.installations;
    plant.sourceLines = lines;
    return plant;
}

int runExplorerBench(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ExplorerSpec spec;
    QString dataDir;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--installations"))
            spec.installations = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--components"))
            spec.components = args.at(++i).toInt();
        else if (args.at(i) == QLatin1String("--data"))
            dataDir = args.at(++i);
    }
    QuietPresenter presenter;
    zol::installPresenter(&presenter);
    QTemporaryDir tempDir;
    zol::setSettingsFile(tempDir.filePath(QStringLiteral("settings.ini")));
    zol::Database database(dataDir.isEmpty() ? tempDir.path() : dataDir);
    database.create(QStringLiteral("Admin"), QStringLiteral("admin"));
    database.open();
    QElapsedTimer t;
    t.start();
    const ExplorerPlant plant = generateExplorerPlant(database.connection(), spec);
    figure("explorer_generate_s", seconds(t), "s");
    figure("explorer_installations", plant.installations, "rows", 0);
    figure("explorer_components", plant.components, "rows", 0);

    zol::Session session(database);
    session.login().UserName = QStringLiteral("Admin");
    session.login().Level = QStringLiteral("Administrator");
    session.login().LoginSucceeded = true;
    zol::LadeOptionen(session);
    zol::setzeSpalten(session.options(), {4, 8, 9, 3});
    const QString section = session.section(QStringLiteral("\\env\\MainSettings"));
    // The window opens on the installation with the most content.
    zol::SaveSetting(section, QStringLiteral("Pfad"), plant.copySource);

    t.restart();
    auto window = std::make_unique<frmMain>(session);
    figure("main_window_open_s", seconds(t), "s");
    figure("main_window_list_rows", window->listModel()->rowCount(), "rows", 0);

    // A folder of the lowest level (about ten components).
    const QString smallFolder = key(plant.installations);
    t.restart();
    window->selectTreeKey(smallFolder);
    figure("folder_list_s", seconds(t), "s");
    t.restart();
    window->selectTreeKey(plant.copySource);
    figure("folder_list_1000_s", seconds(t), "s");

    t.restart();
    window->findChild<QAction *>(QStringLiteral("mnuViewMode1"))->trigger();
    window->listModel()->rowAt(0);
    figure("search_all_s", seconds(t), "s");
    figure("search_all_rows", window->listModel()->rowCount(), "rows", 0);
    t.restart();
    const zol::OptionState &options = session.options();
    zol::SearchFilters filters(zol::SearchFilterCount);
    filters[0] = QStringLiteral("komponente 1*");
    filters[8] = QStringLiteral("KSB");
    const QStringList found = zol::SucheKomponenten(database.connection(), 2, filters, options);
    window->listModel()->setKeys(found);
    window->listModel()->rowAt(0);
    figure("search_filter_s", seconds(t), "s");
    figure("search_filter_rows", found.size(), "rows", 0);
    figure("list_rows_read", window->listModel()->loadedRows(), "rows", 0);
    window->findChild<QAction *>(QStringLiteral("mnuViewMode0"))->trigger();

    // Copy of the large installation into its neighbour, as the commands do it.
    zol::Explorer explorer(session);
    zol::ExplorerBuffer buffer;
    zol::ExplorerSelection sel;
    sel.listHasFocus = false;
    sel.treeKey = plant.copySource;
    explorer.CopyToBuffer(sel, buffer);
    sel.treeKey = plant.copyTarget;
    sel.listFolder = plant.copyTarget;
    auto lineCount = [&] {
        return zol::scalar(database.connection(), QStringLiteral("SELECT count(*) FROM ProtokollPositionen")).toInt();
    };
    const int linesBefore = lineCount();
    t.restart();
    const zol::PasteResult r = explorer.PasteEntries(sel, buffer);
    figure("copy_installation_s", seconds(t), "s");
    figure("copy_components", zol::scalar(database.connection(),
                                          QStringLiteral("SELECT count(*) FROM ProtokollKopf WHERE FileAbove = ?"),
                                          {r.newKeys.value(0)})
                                  .toDouble(),
           "rows", 0);
    figure("copy_source_lines", plant.sourceLines, "rows", 0);
    figure("copy_lines_written", lineCount() - linesBefore, "rows", 0);
    // The window reads tree and list again, as after a paste.
    window->selectTreeKey(plant.copyTarget);
    t.restart();
    window->findChild<QAction *>(QStringLiteral("mnuViewRefresh"))->trigger();
    figure("refresh_all_s", seconds(t), "s");
    window.reset();
    figure("explorer_peak_rss_mb", peakRssMb(), "MB", 0);
    zol::installPresenter(nullptr);
    return 0;
}

}
