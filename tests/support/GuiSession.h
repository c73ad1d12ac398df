#pragma once
#include "support/TestSupport.h"
#include "zol/core/Session.h"
#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>

class frmMain;
class frmFirstTime;
class WindowStart;
class GuiPresenter;

namespace zoltest {

// A window test that starts where a user starts: a data folder with the demo
// plant and one user per role (zol::demoUsers(): Admin/admin, Meister/meister,
// Benutzer/benutzer, Auswerter/auswerter, Werker/werker), the program's real
// start sequence (WindowStart), the login window filled in by keys, and the
// real frmMain. Messages appear in frmMsgBoxHOV, as they do for the user.
//
//     zoltest::GuiSession s;
//     QVERIFY(s.login("Meister"));                       // typed into frmLogin
//     frmMain &w = s.main();
//     auto opened = s.trigger("mnuAuftragGenerieren");   // a menu entry by objectName
//     QVERIFY(opened.window() && opened.window()->isVisible());
//     // A modal window is handed to a callback while it is open; what the
//     // callback leaves open is closed after it, as by the frame's button:
//     s.trigger("mnuViewOptions", [](QWidget *dialog) { ... });
//     s.logout();                 // closes frmMain, answering its question with Yes
//     QVERIFY(s.login("Admin"));  // the next session: same data file, same settings
//
// Settings live in the data folder, so they carry from session to session
// within one GuiSession and never touch the user's.
class GuiSession {
public:
    explicit GuiSession(bool demoPlant = true);
    ~GuiSession();

    QString dir() const { return m_data.dir(); }

    // Runs the start sequence and logs in by keys. The password defaults to
    // the demo user's. True when the main window is up.
    bool login(const QString &userName, const QString &password = {});
    // Ends the session as the user does (Beenden, Yes); the data file is free again.
    void logout();
    bool loggedIn() const;

    frmMain &main();
    frmFirstTime *firstTime();
    zol::Session &session();
    QSqlDatabase sql();

    struct Opened {
        // Windows the entry made visible and that were still open when it returned.
        QList<QPointer<QWidget>> windows;
        // Class names of the modal windows shown while the entry ran, in order.
        QStringList modals;
        // Texts of the message windows among them.
        QStringList messages;
        // A modal window stayed open after its callback and was closed by force.
        bool forced = false;
        QWidget *window() const;
    };
    // Triggers the action of frmMain with that objectName (menu entry, tool
    // button or popup entry) and reports what it opened. whileModal gets every
    // modal window while it is open.
    Opened trigger(const QString &actionName, const std::function<void(QWidget *)> &whileModal = {});

    // The first component of the plant (by name) selected in the list, the
    // list with the focus: the state a user is in before most commands.
    // Gives its FileIndex, empty when the plant has none.
    QString pointAtComponent();

    // Presses keys in the widget that has the focus (the active window's when
    // none has it), as a user types.
    static void type(const QString &text);
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

private:
    TempData m_data;
    std::unique_ptr<GuiPresenter> m_presenter;
    std::unique_ptr<WindowStart> m_start;
};

// Calls f with every modal window that opens while it is installed, once per
// window; what f leaves open is closed as by the frame's close button, so a
// test never hangs on a dialog. Used by GuiSession::trigger; handy around a key press
// that opens a dialog.
class ModalWatcher {
public:
    explicit ModalWatcher(std::function<void(QWidget *)> f = {});
    ~ModalWatcher();
    QStringList modals;
    QStringList messages;
    bool forced = false;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

}
