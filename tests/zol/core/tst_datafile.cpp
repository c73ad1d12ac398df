#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Passwords.h"
#include "zol/core/Sql.h"
#include "zol/core/Startup.h"
#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QtTest>
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// The data file through faults and interruptions: each fault at open gets its
// own number and message; the monthly copy and a new data file exist whole or
// not at all, whenever the process is killed.

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {

const QDate Nov2026(2026, 11, 21);

// Runs fn in a child process, as the unprivileged user "nobody" when asked and
// the test runs as root (root writes where permissions forbid it). Answers
// what fn returned, or minus the signal that ended the child.
int inChild(const std::function<int()> &fn, bool unprivileged = false)
{
    int pipeFds[2];
    if (::pipe(pipeFds) != 0)
        return -1000;
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(pipeFds[0]);
        if (unprivileged && ::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0))
            ::_exit(1);
        int result = -2000;
        try {
            result = fn();
        } catch (const Fault &f) {
            result = f.number();
        } catch (...) {
        }
        const ssize_t written = ::write(pipeFds[1], &result, sizeof result);
        ::_exit(written == sizeof result ? 0 : 1);
    }
    ::close(pipeFds[1]);
    int result = -3000;
    const ssize_t got = ::read(pipeFds[0], &result, sizeof result);
    ::close(pipeFds[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    if (WIFSIGNALED(status))
        return -WTERMSIG(status);
    return got == sizeof result ? result : -4000;
}

// Kills the process when an output to a file whose name contains `part` reaches `stage`.
void killAt(OutputFile::Stage stage, const QString &part)
{
    OutputFile::testHook() = [stage, part](OutputFile::Stage s, const QString &target) {
        if (s == stage && QFileInfo(target).fileName().contains(part))
            ::raise(SIGKILL);
    };
}

// Opens a file of its own and answers the integrity check and a row count.
struct Checked {
    QString integrity;
    int rows = -1;
};
Checked checkFile(const QString &path, const QString &table, const QString &where = {})
{
    Checked c;
    const QString name = QStringLiteral("check-") + path;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            try {
                c.integrity = scalar(db, QStringLiteral("PRAGMA integrity_check")).toString();
                c.rows = countRows(db, table, where);
            } catch (const Fault &) {
            }
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return c;
}

StartHooks cancelledLogin()
{
    StartHooks h;
    h.showLogin = [](Session &) { return false; };
    return h;
}

}

class TestDataFile : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every way the data file can fail to open, with the number users know.
    void openFaults_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("saying");
        QTest::newRow("missing folder") << "missing folder" << FaultNo::InvalidPath << "kein zulässiger Pfad";
        QTest::newRow("missing file") << "missing file" << FaultNo::FileNotFound << "nicht gefunden";
        QTest::newRow("other session") << "other session" << FaultNo::FileInUse << "benutzt";
        QTest::newRow("locked by another program") << "sqlite lock" << FaultNo::FileInUse << "benutzt";
        QTest::newRow("read-only file") << "read-only file" << FaultNo::CannotWrite << "Berechtigung";
        QTest::newRow("read-only folder") << "read-only folder" << FaultNo::CannotWrite << "Berechtigung";
        QTest::newRow("not a database") << "junk" << FaultNo::NotADatabase << "Nicht erkanntes Datenbankformat";
        QTest::newRow("another program's database") << "foreign" << FaultNo::NotADatabase
                                                    << "Nicht erkanntes Datenbankformat";
        QTest::newRow("without users") << "no users" << FaultNo::TableMissing << "'User'";
        QTest::newRow("sound") << "sound" << 0 << "";
    }
    void openFaults()
    {
        QFETCH(QString, setup);
        QFETCH(int, fault);
        QFETCH(QString, saying);
        TempData d;
        const QString file = d.db().filePath();
        if (setup == QLatin1String("no users"))
            exec(d.sql(), QStringLiteral("DROP TABLE \"User\""));
        d.closeDatabase();
        QString dir = d.dir();
        bool unprivileged = false;
        std::unique_ptr<Database> other;
        const QString holder = QStringLiteral("holder");
        if (setup == QLatin1String("missing folder"))
            dir += QStringLiteral("/fehlt");
        else if (setup == QLatin1String("missing file"))
            QVERIFY(QFile::remove(file));
        else if (setup == QLatin1String("other session")) {
            other = std::make_unique<Database>(dir);
            other->open();
        } else if (setup == QLatin1String("sqlite lock")) {
            QSqlDatabase h = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), holder);
            h.setDatabaseName(file);
            QVERIFY(h.open());
            exec(h, QStringLiteral("PRAGMA locking_mode=EXCLUSIVE"));
            exec(h, QStringLiteral("BEGIN EXCLUSIVE"));
        } else if (setup.startsWith(QLatin1String("read-only"))) {
            unprivileged = true;
            const bool folder = setup.endsWith(QLatin1String("folder"));
            QVERIFY(QFile::setPermissions(file, folder ? QFile::Permissions(0x6666) : QFile::Permissions(0x4444)));
            QCOMPARE(::chmod(QFile::encodeName(dir).constData(), folder ? 0555 : 0777), 0);
        } else if (setup == QLatin1String("junk")) {
            QFile f(file);
            QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
            f.write(QByteArray(8192, 'x'));
        } else if (setup == QLatin1String("foreign")) {
            QVERIFY(QFile::remove(file));
            QSqlDatabase f = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), holder);
            f.setDatabaseName(file);
            QVERIFY(f.open());
            exec(f, QStringLiteral("CREATE TABLE Kunden (Name TEXT)"));
        }

        const int got = inChild(
            [dir] {
                Database db(dir);
                db.open();
                return 0;
            },
            unprivileged);
        QCOMPARE(got, fault);
        // The description says what is wrong (as root only the child was refused).
        if (fault != 0 && !(unprivileged && ::geteuid() == 0)) {
            Database db(dir);
            try {
                db.open();
                QFAIL("the open must fault");
            } catch (const Fault &f) {
                QCOMPARE(f.number(), fault);
                QVERIFY2(f.description().contains(saying), qPrintable(f.description()));
                QVERIFY(!db.isLocked());
            }
        }
        ::chmod(QFile::encodeName(d.dir()).constData(), 0700);
        if (QSqlDatabase::contains(holder)) {
            QSqlDatabase::database(holder).close();
            QSqlDatabase::removeDatabase(holder);
        }
    }

    // A start whose monthly copy was killed midway makes the copy anew and
    // removes what the killed one left; a copy that got its name is whole.
    void monthlyCopyKilled_data()
    {
        QTest::addColumn<int>("stage");
        QTest::newRow("temporary file made") << int(OutputFile::Stage::TemporaryCreated);
        QTest::newRow("copied, before its name") << int(OutputFile::Stage::Synced);
        QTest::newRow("after its name") << int(OutputFile::Stage::Renamed);
    }
    void monthlyCopyKilled()
    {
        QFETCH(int, stage);
        TempData d;
        exec(d.sql(), QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('05','06','vor der Kopie')"));
        d.closeDatabase();
        const QString copy = d.dir() + QStringLiteral("/ZOL_202611.db");

        const int got = inChild([&d, stage] {
            killAt(OutputFile::Stage(stage), QStringLiteral("ZOL_"));
            Startup start(d.dir());
            start.run(Nov2026, cancelledLogin());
            return 0;
        });
        QCOMPARE(got, -SIGKILL);
        const bool named = stage == int(OutputFile::Stage::Renamed);
        QCOMPARE(QFile::exists(copy), named);
        QCOMPARE(OutputFile::leftovers(copy).size(), named ? 0 : 1);

        ScriptedPresenter messages;
        Startup next(d.dir());
        QCOMPARE(next.run(Nov2026, cancelledLogin()), Startup::Result::LoginCancelled);
        QCOMPARE(next.madeMonthlyCopy(), !named);
        QVERIFY(messages.shown().isEmpty());
        QVERIFY(OutputFile::leftovers(copy).isEmpty());
        const Checked c = checkFile(copy, QStringLiteral("WartungsfreieZeit"));
        QCOMPARE(c.integrity, QStringLiteral("ok"));
        QCOMPARE(c.rows, 1);
    }

    // A new data file killed while it is made leaves no ZOL.db, so the next
    // try makes it; a file that got its name is whole.
    void newFileKilled_data()
    {
        QTest::addColumn<QString>("when");
        QTest::newRow("filling") << "filling";
        QTest::newRow("filled, before its name") << "synced";
        QTest::newRow("after its name") << "renamed";
    }
    void newFileKilled()
    {
        QFETCH(QString, when);
        TempData d(false);
        const QString dir = d.dir();
        const int got = inChild([dir, when] {
            if (when == QLatin1String("synced"))
                killAt(OutputFile::Stage::Synced, QStringLiteral("ZOL.db"));
            else if (when == QLatin1String("renamed"))
                killAt(OutputFile::Stage::Renamed, QStringLiteral("ZOL.db"));
            Database db(dir);
            db.create(QStringLiteral("Admin"), QStringLiteral("admin"), [when](const QSqlDatabase &sql) {
                exec(sql, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('05','06','erste')"));
                if (when == QLatin1String("filling"))
                    ::raise(SIGKILL);
                exec(sql, QStringLiteral("INSERT INTO WartungsfreieZeit VALUES ('07','08','zweite')"));
            });
            return 0;
        });
        QCOMPARE(got, -SIGKILL);
        const QString file = QDir(dir).filePath(QStringLiteral("ZOL.db"));
        if (when == QLatin1String("renamed")) {
            const Checked c = checkFile(file, QStringLiteral("WartungsfreieZeit"));
            QCOMPARE(c.integrity, QStringLiteral("ok"));
            QCOMPARE(c.rows, 2);
            return;
        }
        QVERIFY(!QFile::exists(file));
        QCOMPARE(OutputFile::leftovers(file).size(), 1);
        Database again(dir);
        again.create(QStringLiteral("Admin"), QStringLiteral("admin"));
        QVERIFY(again.isOpen());
        again.close();
        ScriptedPresenter messages;
        Startup start(dir);
        QCOMPARE(start.run(Nov2026, cancelledLogin()), Startup::Result::LoginCancelled);
        QVERIFY(OutputFile::leftovers(file).isEmpty());
    }

    // A plain password of an older data file never reaches the monthly copy,
    // and still logs in afterwards.
    void plainPasswordsHashedBeforeTheCopy()
    {
        TempData d;
        exec(d.sql(), QStringLiteral("UPDATE \"User\" SET \"Paßwort\" = 'Geheim-17' WHERE Name = 'Admin'"));
        exec(d.sql(), QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES ('Meier', '', 'Master')"));
        d.closeDatabase();
        ScriptedPresenter messages;
        {
            Startup start(d.dir());
            QCOMPARE(start.run(Nov2026, cancelledLogin()), Startup::Result::LoginCancelled);
        }
        const QString copy = d.dir() + QStringLiteral("/ZOL_202611.db");
        QFile raw(copy);
        QVERIFY(raw.open(QIODevice::ReadOnly));
        QVERIFY(!raw.readAll().contains("Geheim-17"));
        QCOMPARE(checkFile(copy, QStringLiteral("User"), QStringLiteral("\"Paßwort\" NOT LIKE '$argon2id$%'")).rows, 0);
        d.reopen();
        QSqlQuery q = exec(d.sql(), QStringLiteral("SELECT Name, \"Paßwort\" FROM \"User\" ORDER BY Name"));
        QStringList checked;
        while (q.next()) {
            const QString typed = q.value(0).toString() == QLatin1String("Admin") ? QStringLiteral("Geheim-17")
                                                                                  : QString();
            QVERIFY(checkPassword(q.value(1).toString(), typed).matches);
            QVERIFY(!checkPassword(q.value(1).toString(), QStringLiteral("geheim-17")).matches);
            checked << q.value(0).toString();
        }
        QCOMPARE(checked, (QStringList{"Admin", "Meier"}));
    }

    // A data file without users ends the start with its fault, before any copy.
    void missingUserTableEndsTheStart()
    {
        TempData d;
        exec(d.sql(), QStringLiteral("DROP TABLE \"User\""));
        d.closeDatabase();
        ScriptedPresenter messages;
        Startup start(d.dir());
        QCOMPARE(start.run(Nov2026, cancelledLogin()), Startup::Result::Failed);
        QCOMPARE(messages.shown().size(), 1);
        QVERIFY2(messages.lastText().startsWith(QStringLiteral("Fehler Nummer: 3078.")), qPrintable(messages.lastText()));
        QCOMPARE(messages.lastStyle(), Style::Critical);
        QVERIFY(!QFile::exists(d.dir() + QStringLiteral("/ZOL_202611.db")));
    }
};

QTEST_GUILESS_MAIN(TestDataFile)
#include "tst_datafile.moc"
