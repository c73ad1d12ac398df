#pragma once
#include "zol/core/Startup.h"
#include <QDate>
#include <QPointer>
#include <functional>
#include <memory>

class frmMain;
class frmFirstTime;

// The start with windows: data file, monthly copy, login window, options, main
// window behind the splash, first-time window. The program's main() and the
// window tests share it, so a test reaches frmMain exactly as a user does.
class WindowStart {
public:
    explicit WindowStart(const QString &dataDir, const QString &userName = {});
    ~WindowStart();

    // The splash holds for a few seconds; a clock handed in here decides how long.
    void setSplashClock(std::function<QTime()> clock) { m_splashClock = std::move(clock); }

    zol::Startup::Result run(const QDate &today = QDate::currentDate());

    frmMain *mainWindow() const { return m_main.get(); }
    frmFirstTime *firstTimeWindow() const;
    zol::Session &session() { return m_startup.session(); }
    zol::Database &database() { return m_startup.database(); }

private:
    zol::Startup m_startup;
    QString m_userName;
    std::function<QTime()> m_splashClock;
    std::unique_ptr<frmMain> m_main;
    QPointer<frmFirstTime> m_firstTime;
};
