#pragma once
#include <QDate>
#include <QSqlDatabase>
#include <QString>
#include <functional>

namespace zol {

// The one data file ZOL.db in the data folder. A session holds an OS lock on
// the file for as long as it runs; a second session is refused with fault 3045.
class Database {
public:
    static QString fileName() { return QStringLiteral("ZOL.db"); }
    // The data folder: the --data argument, else $ZOL_DATA, else the per-user data location.
    static QString resolveDataDir(const QString &fromCommandLine = {});

    explicit Database(const QString &dataDir);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    QString dataDir() const { return m_dir; }
    QString filePath() const;
    bool fileExists() const;

    // Takes the exclusive lock on an existing data file. Faults: 3044 the
    // folder is missing, 3024 the file is missing, 3045 another session holds
    // it, 3051 no permission to write the file or its folder.
    void lock();
    bool isLocked() const { return m_lockFd >= 0; }

    // Takes the lock, opens the connection and checks that the file is a data
    // file of this program: 3343 when it isn't, 3078 without the table User,
    // 3045 when another program holds SQLite's lock on it. A fault leaves the
    // file closed and unlocked.
    void open();
    // Makes a new data file with schema, seed rows and what `fill` adds, all
    // in one transaction on a temporary file that takes the name ZOL.db only
    // when complete; refuses a file that exists. Leaves the file locked and open.
    void create(const QString &adminName, const QString &adminPassword,
                const std::function<void(const QSqlDatabase &)> &fill = {});
    void close();
    bool isOpen() const;

    QSqlDatabase connection() const;

    // The monthly copy ZOL_yyyyMM.db beside the data file, for the month of `today`.
    QString monthlyCopyPath(const QDate &today) const;
    // Makes the monthly copy if it does not exist yet: a consistent copy of the
    // open file, never overwriting. Returns true when a copy was made.
    bool makeMonthlyCopy(const QDate &today);
    // Removes what an interrupted monthly copy or new data file left behind
    // (their temporary files); only while the lock is held.
    void removeLeftovers();

private:
    void applyPragmas();
    // Opens the connection to the file; a failure raises the fault with the message (%1 file, %2 reason).
    void connect(int faultNumber, const QString &message);

    QString m_dir;
    QString m_connectionName;
    int m_lockFd = -1;
};

}
