#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include "zol/core/Startup.h"
#include "zol/structure/Node.h"
#include <QCryptographicHash>
#include <QFile>
#include <QtTest>
#include <unistd.h>

using namespace zol;
using zoltest::TempData;

namespace {
QByteArray fileHash(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
}

// Hooks that record what the start routine called, in order.
struct Recorder {
    QStringList calls;
    bool loginAnswer = true;
    std::function<void()> atLogin;
    StartHooks hooks()
    {
        StartHooks h;
        h.showLogin = [this](Session &s) {
            calls << QStringLiteral("login");
            if (atLogin)
                atLogin();
            s.login().UserName = QStringLiteral("Admin");
            return loginAnswer;
        };
        h.loadOptions = [this](Session &) { calls << QStringLiteral("options"); };
        h.showMain = [this](Session &) { calls << QStringLiteral("main"); };
        h.showFirstTime = [this](Session &) { calls << QStringLiteral("firsttime"); };
        return h;
    }
};
const QDate Nov2026(2026, 11, 21);
}

class TestStartup : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startRunsStepsInOrder()
    {
        TempData d;
        d.closeDatabase();
        ScriptedPresenter messages;
        Recorder r;
        Startup start(d.dir());
        QCOMPARE(start.run(Nov2026, r.hooks()), Startup::Result::Started);
        QCOMPARE(r.calls, (QStringList{"login", "options", "main", "firsttime"}));
        QVERIFY(messages.shown().isEmpty());
        QVERIFY(start.madeMonthlyCopy());
        QVERIFY(QFile::exists(d.dir() + "/ZOL_202611.db"));
        // The session holds the file: a second start is refused.
        QVERIFY(start.database().isLocked());
        QVERIFY(start.session().db().isOpen());
    }

    void missingFileEndsWithFaultText()
    {
        TempData d(false);
        ScriptedPresenter messages;
        Recorder r;
        Startup start(d.dir());
        QCOMPARE(start.run(Nov2026, r.hooks()), Startup::Result::Failed);
        QVERIFY(r.calls.isEmpty());
        QCOMPARE(messages.shown().size(), 1);
        QCOMPARE(messages.lastStyle(), int(Style::Critical));
        QVERIFY2(messages.lastText().startsWith("Fehler Nummer: 3024.  Beschreibung: "), qPrintable(messages.lastText()));
        QVERIFY(!QFile::exists(d.dir() + "/ZOL_202611.db"));
    }

    void fileInUseGivesExclusiveMessageAndNoCopy()
    {
        TempData d;   // this first session keeps the file locked
        ScriptedPresenter messages;
        Recorder r;
        Startup second(d.dir());
        QCOMPARE(second.run(Nov2026, r.hooks()), Startup::Result::Failed);
        QVERIFY(r.calls.isEmpty());
        QCOMPARE(messages.texts(), QStringList{"Datenbank konnte nicht exklusiv geöffnet werden. "
                                               "Datenbank wird wahrscheinlich gerade benutzt"});
        QCOMPARE(messages.lastStyle(), int(Style::Critical));
        QVERIFY(!QFile::exists(d.dir() + "/ZOL_202611.db"));
        QVERIFY(d.db().isOpen());
    }

    void copyIsMadeBeforeLoginAlsoWhenCancelled()
    {
        TempData d;
        d.closeDatabase();
        ScriptedPresenter messages;
        Recorder r;
        r.loginAnswer = false;
        bool copyAtLogin = false;
        r.atLogin = [&] { copyAtLogin = QFile::exists(d.dir() + "/ZOL_202611.db"); };
        {
            Startup start(d.dir());
            QCOMPARE(start.run(Nov2026, r.hooks()), Startup::Result::LoginCancelled);
            QVERIFY(!start.database().isLocked());
        }
        QVERIFY(copyAtLogin);
        QCOMPARE(r.calls, QStringList{"login"});
        QVERIFY(messages.shown().isEmpty());
        // The cancelled start let go of the file.
        Database again(d.dir());
        again.lock();
    }

    void copyIsNeverOverwritten()
    {
        TempData d;
        d.closeDatabase();
        ScriptedPresenter messages;
        Recorder r;
        const QString copy = d.dir() + "/ZOL_202611.db";
        {
            Startup first(d.dir());
            QCOMPARE(first.run(Nov2026, r.hooks()), Startup::Result::Started);
            Node n;
            n.FileIndex = "0000000077";
            n.FileAbove = RootProtok;
            n.FileTyp = FileTypFile;
            n.Katalog = "0";
            n.Text = "Neu nach der Kopie";
            saveNode(first.session().db(), n);
        }
        const QByteArray before = fileHash(copy);
        QVERIFY(!before.isEmpty());
        {
            Startup second(d.dir());
            QCOMPARE(second.run(Nov2026.addDays(5), r.hooks()), Startup::Result::Started);
            QVERIFY(!second.madeMonthlyCopy());
        }
        QCOMPARE(fileHash(copy), before);
        // The next month gets its own copy, holding the later data.
        {
            Startup december(d.dir());
            QCOMPARE(december.run(QDate(2026, 12, 1), r.hooks()), Startup::Result::Started);
            QVERIFY(december.madeMonthlyCopy());
        }
        QVERIFY(QFile::exists(d.dir() + "/ZOL_202612.db"));
        QVERIFY(messages.shown().isEmpty());
    }

    void unwritableCopyEndsTheStart_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("copy path leads nowhere") << "symlink";
        QTest::newRow("read-only folder") << "chmod";
    }
    void unwritableCopyEndsTheStart()
    {
        QFETCH(QString, how);
        TempData d;
        d.closeDatabase();
        if (how == "symlink") {
            // The copy's name points into a folder that doesn't exist, so it can't be written (also for root).
            QVERIFY(QFile::link(d.dir() + "/nowhere/x.db", d.dir() + "/ZOL_202611.db"));
        } else {
            if (::geteuid() == 0)
                QSKIP("root writes into read-only folders");
            QVERIFY(QFile::setPermissions(d.dir(), QFile::ReadOwner | QFile::ExeOwner));
        }
        ScriptedPresenter messages;
        Recorder r;
        Startup::Result result;
        {
            Startup start(d.dir());
            result = start.run(Nov2026, r.hooks());
            QVERIFY(!start.database().isLocked());
        }
        QFile::setPermissions(d.dir(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(result, Startup::Result::Failed);
        QVERIFY(r.calls.isEmpty());
        QCOMPARE(messages.shown().size(), 1);
        QCOMPARE(messages.lastStyle(), int(Style::Critical));
        QVERIFY2(messages.lastText().startsWith("Fehler Nummer: "), qPrintable(messages.lastText()));
        QVERIFY(messages.lastText().contains(".  Beschreibung: "));
    }

    void faultInOptionsEndsTheStart()
    {
        TempData d;
        d.closeDatabase();
        ScriptedPresenter messages;
        Recorder r;
        StartHooks h = r.hooks();
        h.loadOptions = [](Session &) { throw Fault(FaultNo::TableMissing, "Tabelle fehlt"); };
        Startup start(d.dir());
        QCOMPARE(start.run(Nov2026, h), Startup::Result::Failed);
        QCOMPARE(r.calls, QStringList{"login"});
        QCOMPARE(messages.texts(), QStringList{"Fehler Nummer: 3078.  Beschreibung: Tabelle fehlt"});
        QVERIFY(!start.database().isLocked());
    }

    void firstTimeIsPerUser()
    {
        TempData d;
        d.closeDatabase();
        Recorder r;
        SaveFirstTime("Admin", false);
        {
            Startup start(d.dir());
            QCOMPARE(start.run(Nov2026, r.hooks()), Startup::Result::Started);
        }
        QCOMPARE(r.calls, (QStringList{"login", "options", "main"}));
        QVERIFY(!FirstTime("Admin"));
        QVERIFY(FirstTime("Meister"));
        QCOMPARE(GetSetting("Admin\\env\\", "FirstTime"), QStringLiteral("False"));
    }

    void closingQuestionAndWindowState()
    {
        TempData d;
        ScriptedPresenter messages;
        messages.answer(Answer::No).answer(Answer::Yes);
        QVERIFY(!askQuit());
        QVERIFY(askQuit());
        QCOMPARE(messages.texts(), (QStringList{"Wollen Sie ZOL wirklich verlassen?", "Wollen Sie ZOL wirklich verlassen?"}));
        QCOMPARE(messages.lastStyle(), int(Style::YesNo));

        MainWindowSettings s;
        s.windowState = 2;
        s.left = 999;
        s.toolBar = false;
        saveMainWindowSettings("Admin", s);
        MainWindowSettings back = loadMainWindowSettings("Admin");
        QCOMPARE(back.windowState, 2);
        QCOMPARE(back.left, 0);   // a maximised window keeps the last normal position
        QVERIFY(!back.toolBar);
        s.windowState = 0;
        saveMainWindowSettings("Admin", s);
        QCOMPARE(loadMainWindowSettings("Admin").left, 999);
        s.windowState = 1;
        saveMainWindowSettings("Admin", s);
        QCOMPARE(loadMainWindowSettings("Admin").windowState, 0);   // minimised writes no state
        QCOMPARE(loadMainWindowSettings("Meister").windowState, 2);
    }

    void documentationMissing()
    {
        TempData d;
        ScriptedPresenter messages;
        int opened = 0;
        QVERIFY(!openDocumentation(d.dir(), d.dir() + "/none", [&](const QString &) { return ++opened > 0; }));
        QCOMPARE(opened, 0);
        QCOMPARE(messages.texts(), QStringList{"Die Dokumentationsdatei ZOL.PDF existiert nicht oder konnte nicht geöffnet werden"});
        QCOMPARE(messages.lastStyle(), int(Style::Exclamation));
        QFile pdf(d.dir() + "/ZOL.PDF");
        QVERIFY(pdf.open(QIODevice::WriteOnly));
        pdf.close();
        QString path;
        QVERIFY(openDocumentation(d.dir(), {}, [&](const QString &p) { path = p; return true; }));
        QCOMPARE(path, d.dir() + "/ZOL.PDF");
        QVERIFY(!openDocumentation(d.dir(), {}, [](const QString &) { return false; }));
        QCOMPARE(messages.shown().size(), 2);
    }

    // The manual is looked for beside the program, then in an installed program's
    // doc folder, then in the data folder.
    void documentationSearchOrder()
    {
        QTemporaryDir root;
        const QString bin = root.path() + "/usr/bin", doc = root.path() + "/usr/share/doc/zol", data = root.path() + "/data";
        for (const QString &dir : {bin, doc, data})
            QVERIFY(QDir().mkpath(dir));
        const auto touch = [](const QString &path) { QFile f(path); return f.open(QIODevice::WriteOnly); };
        QVERIFY(touch(data + "/ZOL.PDF"));
        QCOMPARE(documentationPath(data, bin), data + "/ZOL.PDF");
        QVERIFY(touch(doc + "/ZOL.PDF"));
        QCOMPARE(QFileInfo(documentationPath(data, bin)).canonicalFilePath(), QFileInfo(doc + "/ZOL.PDF").canonicalFilePath());
        QVERIFY(touch(bin + "/ZOL.PDF"));
        QCOMPARE(documentationPath(data, bin), bin + "/ZOL.PDF");
        QCOMPARE(documentationPath(data, {}), data + "/ZOL.PDF");
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
