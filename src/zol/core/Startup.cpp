#include "Startup.h"
#include "Fault.h"
#include "Messages.h"
#include "Settings.h"
#include "Users.h"

namespace zol {

QString exclusiveMessage()
{
    return QStringLiteral("Datenbank konnte nicht exklusiv geöffnet werden") + QStringLiteral(". ")
        + QStringLiteral("Datenbank wird wahrscheinlich gerade benutzt");
}

static QString envSection(const QString &userName) { return userName + QStringLiteral("\\env\\"); }

bool FirstTime(const QString &userName)
{
    return GetSettingBool(envSection(userName), QStringLiteral("FirstTime"), true);
}

void SaveFirstTime(const QString &userName, bool value)
{
    SaveSettingBool(envSection(userName), QStringLiteral("FirstTime"), value);
    syncSettings();
}

Startup::Startup(const QString &dataDirFromCommandLine)
    : m_database(std::make_unique<Database>(Database::resolveDataDir(dataDirFromCommandLine))),
      m_session(std::make_unique<Session>(*m_database))
{
}

Startup::~Startup() = default;

Startup::Result Startup::run(const QDate &today, const StartHooks &hooks)
{
    m_madeCopy = false;
    try {
        // The lock is held for the whole session; a second session stops here,
        // before it could make a copy.
        m_database->lock();
        m_database->open();
        m_database->removeLeftovers();
        // Before the copy, which is never deleted: no plain password may live on in it.
        hashPlainPasswords(m_database->connection());
        // Made before the login, so it holds the data as the last session left them.
        m_madeCopy = m_database->makeMonthlyCopy(today);
    } catch (const Fault &f) {
        m_database->close();
        ZeigeMeldung(f.number() == FaultNo::FileInUse ? exclusiveMessage() : faultText(f), Style::Critical);
        return Result::Failed;
    }

    Login &login = m_session->login();
    try {
        login.LoginSucceeded = hooks.showLogin ? hooks.showLogin(*m_session) : false;
        if (!login.LoginSucceeded) {
            m_database->close();
            return Result::LoginCancelled;
        }
        if (hooks.loadOptions)
            hooks.loadOptions(*m_session);
        if (hooks.showMain)
            hooks.showMain(*m_session);
        if (hooks.showFirstTime && FirstTime(login.UserName))
            hooks.showFirstTime(*m_session);
    } catch (const Fault &f) {
        // A fault while reading the users or the options ends the start with its message.
        m_database->close();
        ZeigeMeldung(faultText(f), Style::Critical);
        return Result::Failed;
    }
    return Result::Started;
}

}

namespace zol {

bool askQuit()
{
    return ZeigeMeldung(QStringLiteral("Wollen Sie ZOL wirklich verlassen?"), Style::YesNo) == Answer::Yes;
}

static QString mainSection(const QString &userName) { return userName + QStringLiteral("\\env\\MainSettings"); }

MainWindowSettings loadMainWindowSettings(const QString &userName)
{
    const QString s = mainSection(userName);
    MainWindowSettings m;
    m.left = GetSettingInt(s, QStringLiteral("MainLeft"), 0);
    m.top = GetSettingInt(s, QStringLiteral("MainTop"), 0);
    m.width = GetSettingInt(s, QStringLiteral("MainWidth"), 14000);
    m.height = GetSettingInt(s, QStringLiteral("MainHeight"), 12000);
    m.windowState = GetSettingInt(s, QStringLiteral("MainWindowState"), 2);
    m.statusBar = GetSettingBool(s, QStringLiteral("StatusBar"), true);
    m.toolBar = GetSettingBool(s, QStringLiteral("ToolBar"), true);
    return m;
}

void saveMainWindowSettings(const QString &userName, const MainWindowSettings &m)
{
    const QString s = mainSection(userName);
    if (m.windowState == 0) {
        SaveSetting(s, QStringLiteral("MainLeft"), m.left);
        SaveSetting(s, QStringLiteral("MainTop"), m.top);
        SaveSetting(s, QStringLiteral("MainWidth"), m.width);
        SaveSetting(s, QStringLiteral("MainHeight"), m.height);
    }
    if (m.windowState != 1)
        SaveSetting(s, QStringLiteral("MainWindowState"), m.windowState);
    SaveSettingBool(s, QStringLiteral("StatusBar"), m.statusBar);
    SaveSettingBool(s, QStringLiteral("ToolBar"), m.toolBar);
    syncSettings();
}

}

#include <QDir>
#include <QFileInfo>

namespace zol {

QString documentationPath(const QString &dataDir, const QString &programDir)
{
    // An installed program keeps its manual in the doc folder of its prefix.
    const QString installed = programDir.isEmpty() ? QString() : QDir(programDir).filePath(QStringLiteral("../share/doc/zol"));
    for (const QString &dir : {programDir, installed, dataDir}) {
        const QString path = QDir(dir).filePath(QStringLiteral("ZOL.PDF"));
        if (!dir.isEmpty() && QFileInfo::exists(path))
            return path;
    }
    return {};
}

bool openDocumentation(const QString &dataDir, const QString &programDir,
                       const std::function<bool(const QString &path)> &opener)
{
    const QString path = documentationPath(dataDir, programDir);
    if (!path.isEmpty() && opener && opener(path))
        return true;
    ZeigeMeldung(QStringLiteral("Die Dokumentationsdatei ZOL.PDF existiert nicht oder konnte nicht geöffnet werden"),
                 Style::Exclamation);
    return false;
}

}
