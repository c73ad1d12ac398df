#include "Commands.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Passwords.h"
#include "zol/core/Sql.h"
#include "zol/structure/DemoPlant.h"
#include "zol/core/BatchPresenter.h"
#include "zol/core/Options.h"
#include "zol/core/Users.h"
#include "zol/exchange/ExchangeCommands.h"
#include "zol/exchange/Migration.h"
#include "zol/feedback/FeedbackCommands.h"
#include "zol/planning/JobSheetCommand.h"
#include "zol/planning/PlanCommand.h"
#include "zol/repair/RepairPrints.h"
#include "zol/statistics/ExportCommand.h"
#include <memory>
#include <QCommandLineParser>
#include <QDate>
#include <QFile>
#include <QTextStream>
#include <cstdio>
#include <iostream>
#include <termios.h>
#include <unistd.h>

namespace zolapp {

const QList<Command> &commandTable()
{
    static const QList<Command> table = {
        {QStringLiteral("init"), QStringLiteral("init [--demo] [--admin NAME]   neue Datendatei anlegen"), &cmdInit},
        {QStringLiteral("plan"), QStringLiteral("plan JAHR WOCHE [--yes]        Woche planen (00: kurzfristige Aufträge)"), &cmdPlan},
        {QStringLiteral("print"),
         QStringLiteral("print jobsheets JAHR WOCHE --pdf DATEI [--gewerk T] [--kostenstelle K] [--lokalisierung L]"
                        "   Auftragsblätter einer Woche als PDF"),
         &cmdPrint},
        {QStringLiteral("post"),
         QStringLiteral("post JAHR WOCHE [--delete] [--yes]   Auftragswoche verbuchen (--delete: danach löschen)"),
         &cmdPost},
        {QStringLiteral("print"),
         QStringLiteral("print findings JAHR WOCHE --pdf DATEI   Befunde einer Woche als PDF"), &cmdPrint},
        {QStringLiteral("print"),
         QStringLiteral("print repairs --pdf DATEI [--offen|--erledigt]   IS-Aufträge mit Befundhäufigkeit als PDF"),
         &cmdPrint},
        {QStringLiteral("export"),
         QStringLiteral("export components PFAD --file DATEI [--with-instructions]   Komponenten in .db oder .xlsx"),
         &cmdExport},
        {QStringLiteral("import"),
         QStringLiteral("import components DATEI --under PFAD [--with-instructions]   Komponenten aus .db, .mdb, "
                        ".accdb, .xlsx, .ods"),
         &cmdImport},
        {QStringLiteral("migrate"),
         QStringLiteral("migrate ALT.mdb   eine alte Datendatei ganz übernehmen (nur ohne ZOL.db)"), &cmdMigrate},
        {QStringLiteral("export"),
         QStringLiteral("export rohdaten|geplant|rueckgemeldet ... --xlsx DATEI   Statistik als Arbeitsmappe"
                        " (zol export ohne weitere Angaben nennt die Formen)"),
         &cmdExport},
    };
    return table;
}

QString usageText()
{
    QString t = QStringLiteral("Aufruf: zol [--data DIR] [--user NAME] [--settings FILE] [COMMAND [ARGS]]\n"
                               "Ohne COMMAND startet ZOL mit seinen Fenstern.\n\nCommands:\n");
    for (const Command &c : commandTable())
        t += QStringLiteral("  ") + c.usage + QLatin1Char('\n');
    return t;
}

int runCommand(const QString &name, CommandContext &ctx)
{
    for (const Command &c : commandTable())
        if (c.name == name)
            return c.run(ctx);
    std::cerr << qPrintable(QStringLiteral("Unbekannter Befehl: %1\n").arg(name)) << qPrintable(usageText());
    return Exit::Usage;
}

QString batchPassword(const QString &prompt)
{
    if (qEnvironmentVariableIsSet("ZOL_PASSWORD"))
        return qEnvironmentVariable("ZOL_PASSWORD");
    if (!::isatty(STDIN_FILENO))
        return {};
    std::cerr << qPrintable(prompt) << std::flush;
    termios old{};
    const bool haveTerm = ::tcgetattr(STDIN_FILENO, &old) == 0;
    if (haveTerm) {
        termios quiet = old;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    }
    std::string line;
    std::getline(std::cin, line);
    if (haveTerm)
        ::tcsetattr(STDIN_FILENO, TCSANOW, &old);
    std::cerr << '\n';
    return QString::fromStdString(line);
}

bool batchLogin(zol::Session &session, const QString &user, const QString &password)
{
    zol::beginLogin(session.login());
    const zol::LoginStep step = zol::loginOK(session, user, password);
    if (step.result != zol::LoginResult::Succeeded)
        return false;
    zol::InitUserLevel(session.login());
    return true;
}

int openBatchSession(zol::Startup &startup, const CommandContext &ctx)
{
    zol::StartHooks hooks;
    hooks.loadOptions = [](zol::Session &s) { zol::LadeOptionen(s); };
    hooks.showLogin = [&ctx](zol::Session &s) {
        return batchLogin(s, ctx.user, batchPassword(QStringLiteral("Passwort für %1: ").arg(ctx.user)));
    };
    switch (startup.run(QDate::currentDate(), hooks)) {
    case zol::Startup::Result::Started: return Exit::Done;
    case zol::Startup::Result::LoginCancelled: return Exit::Refused;
    case zol::Startup::Result::Failed: break;
    }
    return Exit::Fault;
}

void installBatchPresenter(bool yes)
{
    static std::unique_ptr<zol::BatchPresenter> presenter;
    presenter = std::make_unique<zol::BatchPresenter>(yes);
}

int cmdInit(CommandContext &ctx)
{
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("zol init: neue Datendatei anlegen"));
    const QCommandLineOption demo(QStringLiteral("demo"), QStringLiteral("Demo-Anlage und ein Benutzer je Rolle"));
    const QCommandLineOption admin(QStringLiteral("admin"), QStringLiteral("Name des Administrators"),
                                   QStringLiteral("NAME"), QStringLiteral("Admin"));
    p.addOption(demo);
    p.addOption(admin);
    if (!p.parse(QStringList{QStringLiteral("zol init")} + ctx.args) || !p.positionalArguments().isEmpty()) {
        std::cerr << qPrintable(p.errorText()) << '\n' << qPrintable(usageText());
        return Exit::Usage;
    }
    const QString adminName = p.value(admin).trimmed();
    if (adminName.isEmpty()) {
        std::cerr << "Der Name des Administrators darf nicht leer sein.\n";
        return Exit::Usage;
    }
    zol::Database db(zol::Database::resolveDataDir(ctx.dataDir));
    if (db.fileExists()) {
        zol::ZeigeMeldung(QStringLiteral("Die Datendatei '%1' existiert bereits; sie wird nicht verändert.")
                              .arg(db.filePath()),
                          zol::Style::Exclamation);
        return Exit::Refused;
    }
    // The demo administrator has the password the README names, unless one is given.
    QString password;
    if (p.isSet(demo) && adminName == QLatin1String("Admin") && !qEnvironmentVariableIsSet("ZOL_PASSWORD"))
        password = QStringLiteral("admin");
    else
        password = batchPassword(QStringLiteral("Passwort für %1: ").arg(adminName));
    try {
        // The demo plant is part of the one transaction that makes the file.
        std::function<void(const QSqlDatabase &)> fill;
        if (p.isSet(demo))
            fill = [](const QSqlDatabase &sql) { zol::addDemoPlant(sql, QDate::currentDate().year()); };
        db.create(adminName, password, fill);
    } catch (const zol::Fault &f) {
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
        return Exit::Fault;
    }
    QTextStream(stdout) << QStringLiteral("Datendatei angelegt: %1").arg(db.filePath()) << Qt::endl;
    return Exit::Done;
}

int cmdPlan(CommandContext &ctx)
{
    // A wrong call ends here, before the lock and the monthly copy.
    if (!zol::parsePlanArgs(ctx.args))
        return Exit::Usage;
    zol::Startup startup(ctx.dataDir);
    const int opened = openBatchSession(startup, ctx);
    if (opened != Exit::Done)
        return opened;
    return zol::planCommand(startup.session(), ctx.args, ctx.yes);
}

int cmdPost(CommandContext &ctx)
{
    // A wrong call ends here, before the lock and the monthly copy.
    if (!zol::parsePostArgs(ctx.args))
        return Exit::Usage;
    zol::Startup startup(ctx.dataDir);
    const int opened = openBatchSession(startup, ctx);
    if (opened != Exit::Done)
        return opened;
    return zol::postCommand(startup.session(), ctx.args, ctx.yes);
}

int cmdPrint(CommandContext &ctx)
{
    if (!ctx.args.isEmpty() && ctx.args.first() == QLatin1String("findings")) {
        if (!zol::parseFindingsArgs(ctx.args.mid(1)))
            return Exit::Usage;
        zol::Startup startup(ctx.dataDir);
        const int opened = openBatchSession(startup, ctx);
        if (opened != Exit::Done)
            return opened;
        return zol::printFindingsCommand(startup.session(), ctx.args.mid(1));
    }
    if (!ctx.args.isEmpty() && ctx.args.first() == QLatin1String("repairs")) {
        if (!zol::parseRepairsArgs(ctx.args.mid(1)))
            return Exit::Usage;
        zol::Startup startup(ctx.dataDir);
        const int opened = openBatchSession(startup, ctx);
        if (opened != Exit::Done)
            return opened;
        return zol::printRepairsCommand(startup.session(), ctx.args.mid(1));
    }
    if (ctx.args.isEmpty() || ctx.args.first() != QLatin1String("jobsheets")) {
        std::cerr << qPrintable(usageText());
        return Exit::Usage;
    }
    if (!zol::parseJobSheetsArgs(ctx.args.mid(1)))
        return Exit::Usage;
    zol::Startup startup(ctx.dataDir);
    const int opened = openBatchSession(startup, ctx);
    if (opened != Exit::Done)
        return opened;
    return zol::printJobSheetsCommand(startup.session(), ctx.args.mid(1));
}

// export components ... / import components ...: the word after the command
// names what is exchanged; components are all there is so far.
static int exchangeCommand(CommandContext &ctx, bool (*parse)(const QStringList &),
                           int (*run)(zol::Session &, const QStringList &))
{
    if (ctx.args.isEmpty() || ctx.args.first() != QLatin1String("components")) {
        std::cerr << qPrintable(usageText());
        return Exit::Usage;
    }
    const QStringList rest = ctx.args.mid(1);
    if (!parse(rest))
        return Exit::Usage;
    zol::Startup startup(ctx.dataDir);
    const int opened = openBatchSession(startup, ctx);
    if (opened != Exit::Done)
        return opened;
    return run(startup.session(), rest);
}

// export components ... is the exchange of the tree; every other form of
// export writes statistics.
int cmdExport(CommandContext &ctx)
{
    if (!ctx.args.isEmpty() && ctx.args.first() == QLatin1String("components"))
        return exchangeCommand(ctx, [](const QStringList &a) { return zol::parseExportArgs(a).has_value(); },
                               &zol::exportComponentsCommand);
    if (!zol::exportStatisticsArgsValid(ctx.args))
        return Exit::Usage;
    zol::Startup startup(ctx.dataDir);
    const int opened = openBatchSession(startup, ctx);
    if (opened != Exit::Done)
        return opened;
    return zol::exportStatisticsCommand(startup.session(), ctx.args, ctx.yes);
}

int cmdImport(CommandContext &ctx)
{
    return exchangeCommand(ctx, [](const QStringList &a) { return zol::parseImportArgs(a).has_value(); },
                           &zol::importComponentsCommand);
}

int cmdMigrate(CommandContext &ctx)
{
    return zol::migrateCommand(ctx.dataDir, ctx.args);
}

}
