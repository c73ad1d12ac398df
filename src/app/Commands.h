#pragma once
#include "zol/core/Session.h"
#include "zol/core/Startup.h"
#include <QList>
#include <QString>
#include <QStringList>

// The batch commands of zol. A new command is one function and one row of commandTable().
namespace zolapp {

namespace Exit {
constexpr int Done = 0;
constexpr int Refused = 1;
constexpr int Usage = 2;
constexpr int Fault = 3;
}

struct CommandContext {
    QString dataDir;    // --data, may be empty
    QString user;       // --user, else $ZOL_USER
    QStringList args;   // what follows the command's name
    bool yes = false;   // --yes before the command: questions are answered Yes
};

struct Command {
    QString name;
    QString usage;   // one line for the usage text
    int (*run)(CommandContext &);
};

const QList<Command> &commandTable();
QString usageText();
// Runs the command named by args.first(); an unknown name gives the usage text and status 2.
int runCommand(const QString &name, CommandContext &ctx);

// The password of a batch command: $ZOL_PASSWORD, else asked on the terminal
// without echo, else empty.
QString batchPassword(const QString &prompt);

// The login of a batch command: one try with the login window's rules, then
// the role takes its session form.
bool batchLogin(zol::Session &session, const QString &user, const QString &password);

// A batch command's session: lock, monthly copy, login, options, as the windows
// start does. Returns Exit::Done when the session is open.
int openBatchSession(zol::Startup &startup, const CommandContext &ctx);

// The presenter of batch commands: prints every message; questions are
// answered No unless --yes was given.
void installBatchPresenter(bool yes);

int cmdInit(CommandContext &ctx);
int cmdPlan(CommandContext &ctx);
int cmdPrint(CommandContext &ctx);
int cmdPost(CommandContext &ctx);
int cmdExport(CommandContext &ctx);

}
