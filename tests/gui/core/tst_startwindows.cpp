#include "gui/core/frmAbout.h"
#include "gui/core/frmFirstTime.h"
#include "gui/core/frmSplash.h"
#include "gui/structure/frmMain.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Startup.h"
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>

using namespace zol;
using zoltest::TempData;

class TestStartWindows : public QObject {
    Q_OBJECT

    static void grabIfAsked(QWidget *w, const QString &name)
    {
        // ZOL_GRAB_DIR=/tmp makes the test leave pictures of the windows for a look.
        const QString dir = qEnvironmentVariable("ZOL_GRAB_DIR");
        if (!dir.isEmpty())
            w->grab().save(dir + "/" + name + ".png");
    }

private Q_SLOTS:
    void mainWindowShell()
    {
        TempData d;
        Session s(d.db());
        s.login().UserName = "Admin";
        frmMain w(s);
        w.resize(1000, 650);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        grabIfAsked(&w, "frmMain");

        QStringList menus;
        for (QAction *a : w.menuBar()->actions())
            menus << a->text();
        QCOMPARE(menus, (QStringList{"&Technische Einrichtung", "&Bearbeiten", "A&ufträge", "&Kataloge", "&Statistiken",
                                     "&Ansicht", "&?"}));
        const QList<std::pair<const char *, const char *>> entries = {
            {"mnuFileQuit", "&Beenden"},
            {"mnuAufträgeRückmeldungen", "&Rückmeldungen"},
            {"mnuKatalogAnweisungen", "&Anweisungen && Objekte"},
            {"mnuViewMode2", "Suchansicht o&hne Standards"},
            {"mnuViewPaßwort", "&Passwort ändern"},
            {"mnuViewBild09", "Bild &9"},
            {"mnuHelpAbout", "Inf&o über ZOL..."},
            {"mnuPopUpTvÖffnen", "&Öffnen"},
        };
        for (const auto &[name, caption] : entries) {
            auto *a = w.findChild<QAction *>(QString::fromUtf8(name));
            QVERIFY2(a, name);
            QCOMPARE(a->text(), QString::fromUtf8(caption));
        }
        QStringList buttons;
        for (QAction *a : w.findChild<QToolBar *>("Toolbar")->actions())
            if (!a->isSeparator())
                buttons << a->objectName();
        QCOMPARE(buttons.size(), 21);
        QCOMPARE(buttons.first(), QStringLiteral("Eigenschaften"));
        QCOMPARE(buttons.at(6), QStringLiteral("Rückmeldungen"));
        QCOMPARE(buttons.last(), QStringLiteral("Bild09"));
        QVERIFY(w.findChild<QAction *>("AnsichtSuchNur"));
        QVERIFY(w.findChild<QStatusBar *>("sbStatusBar"));
        QCOMPARE(w.findChild<QTreeView *>("tvTreeView")->model()->rowCount(), 2);
        QVERIFY(w.findChild<QTreeView *>("lvListView"));

        // The view follows menu and tool button alike, without a message.
        ScriptedPresenter messages;
        w.findChild<QAction *>("AnsichtSuch")->trigger();
        QCOMPARE(w.viewMode(), 1);
        QVERIFY(w.findChild<QAction *>("mnuViewMode1")->isChecked());
        w.findChild<QAction *>("mnuViewOffeneAufträge")->trigger();
        QCOMPARE(messages.shown().size(), 0);

        // Planning opens its window once; the command again brings the same window forward.
        w.findChild<QAction *>("mnuAuftragGenerieren")->trigger();
        w.findChild<QAction *>("AufträgeGenerieren")->trigger();
        QCOMPARE(w.findChildren<QWidget *>("frmAuftragsplanung").size(), 1);
        QCOMPARE(messages.shown().size(), 0);

        // The tool bar switched off stays off at the next start.
        w.findChild<QAction *>("mnuViewToolbar")->trigger();
        QVERIFY(w.findChild<QToolBar *>("Toolbar")->isHidden());
        messages.answer(Answer::Yes);
        QVERIFY(w.close());
        QVERIFY(!loadMainWindowSettings("Admin").toolBar);
    }

    void closingAsksOnce()
    {
        TempData d;
        Session s(d.db());
        s.login().UserName = "Meister";
        frmMain w(s);
        w.showNormal();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        auto *first = new frmFirstTime(s, &w);
        first->show();

        ScriptedPresenter messages;
        messages.answer(Answer::No);
        QVERIFY(!w.close());
        QVERIFY(w.isVisible());
        QVERIFY(first->isVisible());
        QCOMPARE(GetSetting("ZOL", "Meister\\env\\MainSettings", "MainWindowState", "absent"), QStringLiteral("absent"));

        messages.answer(Answer::Yes);
        QVERIFY(w.close());
        QVERIFY(!w.isVisible());
        QCOMPARE(messages.texts(), (QStringList{"Wollen Sie ZOL wirklich verlassen?", "Wollen Sie ZOL wirklich verlassen?"}));
        QCOMPARE(GetSetting("Meister\\env\\MainSettings", "MainWindowState"), QStringLiteral("0"));
        QCOMPARE(GetSettingInt("Meister\\env\\MainSettings", "MainWidth", 0), w.width() * 15);
        // The first-time window went with it, and closing it so wrote nothing.
        QCOMPARE(GetSetting("ZOL", "Meister\\env\\", "FirstTime", "absent"), QStringLiteral("absent"));
    }

    void firstTimeHide_data()
    {
        QTest::addColumn<bool>("hide");
        QTest::newRow("hide") << true;
        QTest::newRow("show again") << false;
    }
    void firstTimeHide()
    {
        QFETCH(bool, hide);
        TempData d;
        Session s(d.db());
        s.login().UserName = "Werker";
        auto *w = new frmFirstTime(s);
        w->show();
        QCOMPARE(w->windowTitle(), QStringLiteral("Willkommen in ZOL!"));
        grabIfAsked(w, "frmFirstTime");
        w->findChild<QCheckBox *>("chkHide")->setChecked(hide);
        QTest::mouseClick(w->findChild<QPushButton *>("Command2"), Qt::LeftButton);
        QCOMPARE(FirstTime("Werker"), !hide);
        QVERIFY(FirstTime("Admin"));
    }

    void splashAndAbout()
    {
        frmSplash splash;
        splash.show();
        QCOMPARE(splash.findChild<QLabel *>("lblVersion")->text(),
                 QStringLiteral("Version %1.%2.%3").arg(ZOL_VERSION_MAJOR).arg(ZOL_VERSION_MINOR).arg(ZOL_VERSION_PATCH));
        QCOMPARE(splash.findChild<QLabel *>("lblPlatform")->text(), QStringLiteral("für MS-Windows"));
        grabIfAsked(&splash, "frmSplash");
        // A clock that ticks a second every call: the hold ends after three changes.
        int calls = 0;
        QTime t(10, 0, 0);
        splash.hold([&] { ++calls; return t.addSecs(calls / 2); });
        QVERIFY(calls >= 6 && calls <= 8);
        // A clock that stands still can't keep the window up for ever.
        QElapsedTimer timer;
        timer.start();
        splash.hold([] { return QTime(10, 0, 0); });
        QVERIFY(timer.elapsed() < 8000);

        frmAbout about;
        ScriptedPresenter messages;
        QTest::mouseClick(about.findChild<QPushButton *>("cmdSysInfo"), Qt::LeftButton);
        QCOMPARE(messages.texts(), QStringList{"Die System-Informationen sind augenblicklich nicht verfügbar"});
        QCOMPARE(about.findChild<QLabel *>("lblVersion")->text(), frmSplash::versionText());
        about.show();
        grabIfAsked(&about, "frmAbout");
    }
};

QTEST_MAIN(TestStartWindows)
#include "tst_startwindows.moc"
