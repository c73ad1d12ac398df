#include "Commands.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Passwords.h"
#include "zol/core/Sql.h"
#include "zol/structure/DemoPlant.h"
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

bool plainLogin(zol::Session &session, const QString &user, const QString &password)
{
    using namespace zol;
    QSqlQuery q = exec(session.db(), QStringLiteral("SELECT \"Paßwort\", Level FROM \"User\" WHERE Name = ?"), {user});
    if (user.isEmpty() || !q.next()) {
        ZeigeMeldung(QStringLiteral("Dieser Benutzer ist nicht registriert"), Style::Exclamation);
        return false;
    }
    if (!checkPassword(q.value(0).toString(), password).matches) {
        ZeigeMeldung(QStringLiteral("Falsches Passwort"), Style::Exclamation);
        return false;
    }
    Login &login = session.login();
    login.UserName = user;
    login.Level = q.value(1).toString();
    return true;
}

int openBatchSession(zol::Startup &startup, const CommandContext &ctx)
{
    zol::StartHooks hooks;
    hooks.showLogin = [&ctx](zol::Session &s) {
        return plainLogin(s, ctx.user, batchPassword(QStringLiteral("Passwort für %1: ").arg(ctx.user)));
    };
    switch (startup.run(QDate::currentDate(), hooks)) {
    case zol::Startup::Result::Started: return Exit::Done;
    case zol::Startup::Result::LoginCancelled: return Exit::Refused;
    case zol::Startup::Result::Failed: break;
    }
    return Exit::Fault;
}

namespace {
class TerminalPresenter : public zol::MessagePresenter {
public:
    explicit TerminalPresenter(bool yes) : m_yes(yes) {}
    int present(const QString &text, int style) override
    {
        QTextStream(style == zol::Style::Information ? stdout : stderr) << text << Qt::endl;
        if (style == zol::Style::YesNo)
            return m_yes ? zol::Answer::Yes : zol::Answer::No;
        if (style == zol::Style::OkCancel)
            return m_yes ? zol::Answer::Ok : zol::Answer::Cancel;
        return zol::Answer::Ok;
    }

private:
    bool m_yes;
};
}

void installBatchPresenter(bool yes)
{
    static TerminalPresenter presenter(yes);
    zol::installPresenter(&presenter);
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
        db.create(adminName, password);
        if (p.isSet(demo))
            zol::addDemoPlant(db.connection(), QDate::currentDate().year());
    } catch (const zol::Fault &f) {
        // A file without its demo plant would be refused by the next init: take it away again.
        const bool made = db.isLocked();
        db.close();
        if (made)
            for (const char *suffix : {"", "-wal", "-shm"})
                QFile::remove(db.filePath() + QLatin1String(suffix));
        zol::ZeigeMeldung(zol::faultText(f), zol::Style::Critical);
        return Exit::Fault;
    }
    QTextStream(stdout) << QStringLiteral("Datendatei angelegt: %1").arg(db.filePath()) << Qt::endl;
    return Exit::Done;
}

}
