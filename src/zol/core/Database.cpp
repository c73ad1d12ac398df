#include "Database.h"
#include "Fault.h"
#include "NameOrder.h"
#include "OutputFile.h"
#include "Schema.h"
#include "Sql.h"
#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zol {

static QAtomicInt g_connectionCounter;

QString Database::resolveDataDir(const QString &fromCommandLine)
{
    if (!fromCommandLine.isEmpty())
        return QDir(fromCommandLine).absolutePath();
    const QString env = qEnvironmentVariable("ZOL_DATA");
    if (!env.isEmpty())
        return QDir(env).absolutePath();
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

Database::Database(const QString &dataDir)
    : m_dir(QDir(dataDir).absolutePath()),
      m_connectionName(QStringLiteral("zol-%1").arg(g_connectionCounter.fetchAndAddRelaxed(1)))
{
}

Database::~Database() { close(); }

QString Database::filePath() const { return QDir(m_dir).filePath(fileName()); }

bool Database::fileExists() const { return QFileInfo::exists(filePath()); }

void Database::lock()
{
    if (m_lockFd >= 0)
        return;
    const QString shownPath = QDir::toNativeSeparators(filePath());
    if (!QFileInfo(m_dir).isDir())
        throw Fault(FaultNo::InvalidPath,
                    QStringLiteral("'%1' ist kein zulässiger Pfad.").arg(QDir::toNativeSeparators(m_dir)));
    if (!fileExists())
        throw Fault(FaultNo::FileNotFound, QStringLiteral("Die Datei '%1' wurde nicht gefunden.").arg(shownPath));
    const QByteArray path = QFile::encodeName(filePath());
    const int fd = ::open(path.constData(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        const int err = errno;
        if (err == EACCES || err == EPERM || err == EROFS)
            throw Fault(FaultNo::CannotWrite,
                        QStringLiteral("Sie haben keine Berechtigung, die Datei '%1' zu ändern. ZOL braucht "
                                       "Schreibrechte auf die Datendatei.")
                            .arg(shownPath));
        if (err == EISDIR)
            throw Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat '%1'.").arg(shownPath));
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' kann nicht geöffnet werden: %2")
                                              .arg(shownPath, QString::fromLocal8Bit(std::strerror(err))));
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        throw Fault(FaultNo::FileInUse, QStringLiteral("Die Datei '%1' wird bereits benutzt.").arg(shownPath));
    }
    // The journal of the data file lives beside it: a folder without write
    // permission makes every change fail, so it is refused at once.
    if (::access(QFile::encodeName(m_dir).constData(), W_OK | X_OK) != 0) {
        ::flock(fd, LOCK_UN);
        ::close(fd);
        throw Fault(FaultNo::CannotWrite,
                    QStringLiteral("Sie haben keine Berechtigung, im Ordner '%1' zu schreiben. ZOL legt dort "
                                   "das Protokoll der Datendatei und die Monatskopie an.")
                        .arg(QDir::toNativeSeparators(m_dir)));
    }
    m_lockFd = fd;
}

void Database::applyPragmas()
{
    QSqlDatabase db = connection();
    exec(db, QStringLiteral("PRAGMA journal_mode=WAL"));
    exec(db, QStringLiteral("PRAGMA synchronous=NORMAL"));
    exec(db, QStringLiteral("PRAGMA temp_store=MEMORY"));
    exec(db, QStringLiteral("PRAGMA cache_size=-32000"));
}

static void dropConnection(const QString &name)
{
    {
        QSqlDatabase db = QSqlDatabase::database(name, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

void Database::connect(int faultNumber, const QString &message)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    db.setDatabaseName(filePath());
    if (!db.open()) {
        const QString why = db.lastError().text();
        db = QSqlDatabase();
        dropConnection(m_connectionName);
        throw Fault(faultNumber, message.arg(filePath(), why));
    }
    registerNameCollation(db);
}

void Database::open()
{
    if (isOpen())
        return;
    lock();
    const QString shownPath = QDir::toNativeSeparators(filePath());
    connect(FaultNo::NotADatabase, QStringLiteral("Die Datei '%1' kann nicht geöffnet werden: %2"));
    try {
        // A file that isn't SQLite, or not one of ours, is refused here.
        const int version = Schema::storedVersion(connection());
        if (version == 0)
            throw Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat '%1'.").arg(shownPath));
        if (version > Schema::Version)
            throw Fault(FaultNo::NotADatabase,
                        QStringLiteral("Die Datei '%1' stammt von einer neueren Version des Programms.").arg(shownPath));
        // Without its users no session can begin.
        if (!Schema::tableExists(connection(), QStringLiteral("User")))
            throw Fault(FaultNo::TableMissing,
                        QStringLiteral("Die Tabelle 'User' fehlt in der Datendatei '%1'.").arg(shownPath));
        // A file of an earlier build gets the indexes added since.
        Schema::ensureIndexes(connection());
        applyPragmas();
    } catch (const Fault &f) {
        dropConnection(m_connectionName);
        close();
        switch (f.number()) {
        case FaultNo::NotADatabase:
        case FaultNo::TableMissing:
            throw;
        case FaultNo::FileInUse:
            // Another program holds SQLite's own lock on the file.
            throw Fault(FaultNo::FileInUse, QStringLiteral("Die Datei '%1' wird bereits benutzt.").arg(shownPath));
        case FaultNo::CannotWrite:
            throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' kann nicht beschrieben werden: %2")
                                                  .arg(shownPath, f.description()));
        default:
            throw Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat '%1'.").arg(shownPath));
        }
    }
}

void Database::create(const QString &adminName, const QString &adminPassword,
                      const std::function<void(const QSqlDatabase &)> &fill)
{
    if (fileExists())
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' existiert bereits.").arg(filePath()));
    if (!QDir().mkpath(m_dir))
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Der Ordner '%1' kann nicht angelegt werden.").arg(m_dir));
    {
        // The file is made whole under a temporary name and takes its own name
        // only when complete: an interrupted start leaves no ZOL.db behind.
        OutputFile out(filePath(), OutputFile::KeepExisting, OutputFile::DataFile);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
            db.setDatabaseName(out.temporaryPath());
            if (!db.open()) {
                const QString why = db.lastError().text();
                db = QSqlDatabase();
                dropConnection(m_connectionName);
                throw Fault(FaultNo::CannotWrite,
                            QStringLiteral("Die Datei '%1' kann nicht angelegt werden: %2").arg(filePath(), why));
            }
            registerNameCollation(db);
        }
        try {
            // No journal file beside the temporary; a failure discards the whole file anyway.
            exec(connection(), QStringLiteral("PRAGMA journal_mode=MEMORY"));
            Transaction tx(connection());
            Schema::create(connection());
            Schema::seed(connection(), adminName, adminPassword);
            if (fill)
                fill(connection());
            tx.commit();
        } catch (...) {
            dropConnection(m_connectionName);
            throw;
        }
        dropConnection(m_connectionName);
        out.commit();
    }
    open();
}

void Database::close()
{
    if (QSqlDatabase::contains(m_connectionName))
        dropConnection(m_connectionName);
    if (m_lockFd >= 0) {
        ::flock(m_lockFd, LOCK_UN);
        ::close(m_lockFd);
        m_lockFd = -1;
    }
}

bool Database::isOpen() const
{
    return QSqlDatabase::contains(m_connectionName) && QSqlDatabase::database(m_connectionName, false).isOpen();
}

QSqlDatabase Database::connection() const { return QSqlDatabase::database(m_connectionName, false); }

QString Database::monthlyCopyPath(const QDate &today) const
{
    return QDir(m_dir).filePath(QStringLiteral("ZOL_") + today.toString(QStringLiteral("yyyyMM")) + QStringLiteral(".db"));
}

bool Database::makeMonthlyCopy(const QDate &today)
{
    const QString target = monthlyCopyPath(today);
    if (QFileInfo::exists(target))
        return false;
    // VACUUM INTO reads the file in one transaction, so the copy is consistent;
    // it is written beside the copy's name and renamed when complete, so a
    // crash midway leaves no copy that would stand for the whole month.
    OutputFile out(target, OutputFile::KeepExisting, OutputFile::DataFile);
    exec(connection(), QStringLiteral("VACUUM INTO ?"), {out.temporaryPath()});
    out.commit();
    return true;
}

void Database::removeLeftovers()
{
    OutputFile::removeLeftovers(filePath());
    OutputFile::removeLeftovers(QDir(m_dir).filePath(QStringLiteral("ZOL_??????.db")));
}

}
