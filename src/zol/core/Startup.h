#pragma once
#include "Database.h"
#include "Session.h"
#include <QDate>
#include <functional>
#include <memory>

namespace zol {

// What the start routine hands to others: the login window, the loading of the
// options, the main window and the first-time window. A batch command leaves
// the window steps empty.
struct StartHooks {
    // Shows the login (modally) and answers LoginSucceeded; fills session.login().
    std::function<bool(Session &)> showLogin;
    // LadeOptionen: loads the options into session.options() without a window.
    std::function<void(Session &)> loadOptions;
    // Shows the main window (not modally).
    std::function<void(Session &)> showMain;
    // Shows the first-time window (not modally).
    std::function<void(Session &)> showFirstTime;
};

// The start of a session: exclusive test of the data file, monthly copy,
// login, options, main window, first-time window, strictly in this order.
class Startup {
public:
    enum class Result {
        Started,         // logged in; the session is open
        Failed,          // a fault message was shown; nothing is open
        LoginCancelled,  // no message; nothing is open
    };

    // dataDirFromCommandLine: the --data argument, may be empty (see Database::resolveDataDir).
    explicit Startup(const QString &dataDirFromCommandLine = {});
    ~Startup();

    Result run(const QDate &today, const StartHooks &hooks);

    Database &database() { return *m_database; }
    Session &session() { return *m_session; }
    // True when this start made the monthly copy.
    bool madeMonthlyCopy() const { return m_madeCopy; }

private:
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Session> m_session;
    bool m_madeCopy = false;
};

// The message of fault 3045 at start.
QString exclusiveMessage();

// The setting FirstTime of a user (section UserName & "\env\", default True).
bool FirstTime(const QString &userName);
void SaveFirstTime(const QString &userName, bool value);

}

namespace zol {

// The closing question of the main window; true when the user answers Yes.
bool askQuit();

// The window state of the main window, kept per user in U & "\env\MainSettings".
// Lengths are in twips (1/1440 inch), as the settings have always held them.
struct MainWindowSettings {
    int left = 0, top = 0, width = 14000, height = 12000;
    int windowState = 2;   // 0 normal, 1 minimised, 2 maximised
    bool statusBar = true, toolBar = true;
};
MainWindowSettings loadMainWindowSettings(const QString &userName);
// Position and size are written only for a normal window; a minimised window
// writes no state at all.
void saveMainWindowSettings(const QString &userName, const MainWindowSettings &s);

}

namespace zol {

// The documentation ZOL.PDF: beside the program, else in the doc folder of an
// installed program (../share/doc/zol), else beside the data file.
QString documentationPath(const QString &dataDir, const QString &programDir);
// Opens the documentation with the given opener (the desktop's "open"); a
// missing file or a failing opener gives the message in style 48.
bool openDocumentation(const QString &dataDir, const QString &programDir,
                       const std::function<bool(const QString &path)> &opener);

}
