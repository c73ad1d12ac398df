#pragma once
#include "zol/core/Session.h"
#include <QMainWindow>
#include <QPointer>
#include <memory>

namespace Ui { class frmMain; }
class QAction;
class QActionGroup;
class QLabel;
class QMenu;

// The one window that stays open through a session: menus, tool bar, the
// structure tree and the list, the status bar.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(zol::Session &session, QWidget *parent = nullptr);
    ~frmMain() override;

    // Shows the window in the state the user left it in.
    void zeig();
    // Panel 1 of the status bar.
    void setStatusText(const QString &text);
    int viewMode() const { return m_viewMode; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    enum class Run {
        NotYet, Nothing, Quit, About, Contents, ToggleToolbar, ToggleStatusBar, ViewMode, Refresh,
        Planning, Options, Users, Password
    };
    struct Entry {
        const char *name;    // objectName; empty for a separator
        const char *caption;
        Run run;
        int arg = 0;
    };
    void buildMenus();
    void buildToolbar();
    void buildPopups();
    QAction *makeAction(const Entry &e, QObject *owner);
    void perform(Run run, int arg);
    void setViewMode(int mode);
    void restoreWindowState();
    void saveWindowState();
    void applyUserMenus(bool userMenu, bool passwordMenu);
    void openPlanning();
    void openOptions();

    std::unique_ptr<Ui::frmMain> ui;
    zol::Session &m_session;
    QLabel *m_panel1 = nullptr;
    QActionGroup *m_viewActions = nullptr;
    QActionGroup *m_viewButtons = nullptr;
    int m_viewMode = 0;
    int m_savedState = 2;
    QPointer<QWidget> m_planning;
};
