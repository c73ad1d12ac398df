#include "WindowStart.h"
#include "frmFirstTime.h"
#include "frmLogin.h"
#include "frmSplash.h"
#include "WindowRules.h"
#include "gui/print/PrinterFWindow.h"
#include "gui/structure/frmMain.h"
#include "zol/core/Options.h"
#include "zol/print/PrinterF.h"

WindowStart::WindowStart(const QString &dataDir, const QString &userName)
    : m_startup(dataDir), m_userName(userName), m_splashClock(&QTime::currentTime)
{
}

WindowStart::~WindowStart()
{
    // The main window goes before the session it works on.
    m_main.reset();
}

frmFirstTime *WindowStart::firstTimeWindow() const { return m_firstTime.data(); }

zol::Startup::Result WindowStart::run(const QDate &today)
{
    zolgui::installWindowRules();
    zol::StartHooks hooks;
    hooks.showLogin = [this](zol::Session &s) {
        frmLogin login(s);
        login.setUserName(m_userName);
        return login.zeig();
    };
    hooks.loadOptions = [](zol::Session &s) { zol::LadeOptionen(s); };
    hooks.showMain = [this](zol::Session &s) {
        frmSplash splash;
        splash.show();
        splash.repaint();
        m_main = std::make_unique<frmMain>(s);
        zol::installPrinting(zol::PrinterF::instance(), s.options(), m_main.get());
        splash.hold(m_splashClock);
        m_main->zeig();
    };
    hooks.showFirstTime = [this](zol::Session &s) {
        m_firstTime = new frmFirstTime(s, m_main.get());
        m_firstTime->show();
    };
    return m_startup.run(today, hooks);
}
