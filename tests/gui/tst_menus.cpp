#include "gui/core/frmFirstTime.h"
#include "gui/structure/frmMain.h"
#include "support/GuiSession.h"
#include "zol/structure/DemoPlant.h"
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QTreeView>
#include <QTreeWidget>
#include <QSqlQuery>
#include <QtTest>

using zoltest::GuiSession;

namespace {
// Entries that act in the main window itself and need not open anything.
const QStringList inPlace = {
    "mnuEditCut",     "mnuEditCopy",      "mnuEditPaste", "mnuEditDSelectAll", "mnuEditInvertSelection",
    "mnuViewToolbar", "mnuViewStatusBar", "mnuViewMode0", "mnuViewMode1",      "mnuViewMode2",
    "mnuViewMode3",   "mnuViewOffeneAufträge", "mnuViewRefresh", "mnuFileEdit",
};

}

class TestMenus : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyEntryOfEveryMenu_data()
    {
        QTest::addColumn<QString>("user");
        for (const zol::DemoUser &u : zol::demoUsers())
            QTest::newRow(qPrintable(u.level)) << u.name;
    }

    // Each entry a user can reach opens a window that is visible or shows a
    // message; whatever it opened closes again, and the main window stays usable.
    void everyEntryOfEveryMenu()
    {
        QFETCH(QString, user);
        GuiSession s;
        QVERIFY(s.login(user));
        frmMain &w = s.main();
        QVERIFY(w.isVisible());
        if (s.firstTime())
            s.firstTime()->close();

        int reached = 0;
        for (QAction *menuAction : w.menuBar()->actions()) {
            QMenu *menu = menuAction->menu();
            QVERIFY(menu);
            for (QAction *a : menu->actions()) {
                if (a->isSeparator() || !a->isVisible() || !a->isEnabled())
                    continue;
                const QString name = a->objectName();
                const QByteArray where = (user + QLatin1Char(' ') + name).toUtf8();
                ++reached;
                QVERIFY(!s.pointAtComponent().isEmpty());
                const bool wasChecked = a->isChecked();
                const GuiSession::Opened opened = s.trigger(name);
                QVERIFY2(!opened.forced, where);
                if (inPlace.contains(name)) {
                    // A toggled entry is put back, so the walk sees the same window throughout.
                    if (a->isCheckable() && !a->actionGroup() && a->isChecked() != wasChecked)
                        a->trigger();
                } else {
                    QVERIFY2(!opened.modals.isEmpty() || opened.window(), where);
                }
                for (const QPointer<QWidget> &opened : opened.windows) {
                    if (!opened)
                        continue;
                    QVERIFY2(opened->isVisible(), where);
                    QVERIFY2(opened->close(), where);
                    QApplication::processEvents();
                    QVERIFY2(!opened || !opened->isVisible(), where);
                }
                QVERIFY2(w.isVisible() && w.isEnabled(), where);
                QVERIFY2(!QApplication::activeModalWidget(), where);
            }
        }
        QVERIFY(reached >= 10);
        // Still usable: the next entry still answers.
        QCOMPARE(s.trigger("mnuHelpAbout").modals, QStringList{"frmAbout"});
        s.logout();
        QVERIFY(!s.loggedIn());
    }

    // Ansicht > User: the administrator's window to manage the users stays up
    // until he closes it, and lists the users.
    void userWindowStaysOpen()
    {
        GuiSession s;
        QVERIFY(s.login("Admin"));
        QStringList users;
        const auto opened = s.trigger("mnuViewUser", [&](QWidget *dialog) {
            auto *list = dialog->findChild<QTreeWidget *>("lvListView");
            for (int i = 0; list && i < list->topLevelItemCount(); ++i)
                users << list->topLevelItem(i)->text(0);
            QVERIFY(dialog->isVisible());
        });
        QCOMPARE(opened.modals, QStringList{"frmUser"});
        QCOMPARE(users.size(), zol::demoUsers().size());
        QVERIFY(users.contains("Meister"));
    }
};

QTEST_MAIN(TestMenus)
#include "tst_menus.moc"
