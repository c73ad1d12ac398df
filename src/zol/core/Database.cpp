#include "Database.h"
#include "Fault.h"
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
    if (!fileExists())
        throw Fault(FaultNo::FileNotFound,
                    QStringLiteral("Die Datei '%1' konnte nicht gefunden werden.").arg(filePath()));
    const QByteArray path = QFile::encodeName(filePath());
    const int fd = ::open(path.constData(), O_RDWR | O_CLOEXEC);
    if (fd < 0)
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' kann nicht zum Schreiben geöffnet werden: %2")
                                              .arg(filePath(), QString::fromLocal8Bit(std::strerror(errno))));
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        throw Fault(FaultNo::FileInUse, QStringLiteral("Die Datei '%1' wird bereits benutzt.").arg(filePath()));
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
}

void Database::open()
{
    if (isOpen())
        return;
    lock();
    connect(FaultNo::NotADatabase, QStringLiteral("Die Datei '%1' kann nicht geöffnet werden: %2"));
    try {
        // A file that isn't SQLite, or not one of ours, is refused here.
        const int version = Schema::storedVersion(connection());
        if (version == 0)
            throw Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat '%1'.").arg(filePath()));
        if (version > Schema::Version)
            throw Fault(FaultNo::NotADatabase,
                        QStringLiteral("Die Datei '%1' stammt von einer neueren Version des Programms.").arg(filePath()));
        applyPragmas();
    } catch (const Fault &f) {
        dropConnection(m_connectionName);
        if (f.number() == FaultNo::NotADatabase)
            throw;
        throw Fault(FaultNo::NotADatabase, QStringLiteral("Nicht erkanntes Datenbankformat '%1'.").arg(filePath()));
    }
}

void Database::create(const QString &adminName, const QString &adminPassword)
{
    if (fileExists())
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' existiert bereits.").arg(filePath()));
    if (!QDir().mkpath(m_dir))
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Der Ordner '%1' kann nicht angelegt werden.").arg(m_dir));
    connect(FaultNo::CannotWrite, QStringLiteral("Die Datei '%1' kann nicht angelegt werden: %2"));
    try {
        applyPragmas();
        Transaction tx(connection());
        Schema::create(connection());
        Schema::seed(connection(), adminName, adminPassword);
        tx.commit();
    } catch (...) {
        dropConnection(m_connectionName);
        for (const char *suffix : {"", "-wal", "-shm"})
            QFile::remove(filePath() + QLatin1String(suffix));
        throw;
    }
    lock();
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
    // VACUUM INTO reads the file in one transaction, so the copy is consistent,
    // and it refuses to write over an existing file.
    exec(connection(), QStringLiteral("VACUUM INTO ?"), {target});
    return true;
}

}
