#include "SqliteFile.h"
#include "zol/core/Fault.h"
#include "zol/core/Sql.h"
#include <QAtomicInt>
#include <QSqlError>

namespace zol {

static QAtomicInt g_connections;

SqliteFile::SqliteFile(const QString &path, Mode mode)
    : m_path(path), m_name(QStringLiteral("zol_file_%1").arg(g_connections.fetchAndAddRelaxed(1)))
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    db.setDatabaseName(path);
    if (mode == ReadOnly)
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!db.open()) {
        const QString reason = db.lastError().text();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        m_name.clear();
        throw Fault(FaultNo::FileNotFound, QStringLiteral("Die Datei %1 kann nicht geöffnet werden: %2").arg(path, reason));
    }
    try {
        // Reading the schema is the first touch of the file: a file that is no
        // SQLite database fails here, not later in the middle of a rule.
        scalar(db, QStringLiteral("SELECT count(*) FROM sqlite_master"));
    } catch (...) {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        m_name.clear();
        throw Fault(FaultNo::NotADatabase,
                    QStringLiteral("Die Datei %1 ist keine Datenbank-Datei oder sie ist beschädigt.").arg(path));
    }
}

SqliteFile::~SqliteFile() { close(); }

QSqlDatabase SqliteFile::db() const { return QSqlDatabase::database(m_name, false); }

void SqliteFile::close()
{
    if (m_name.isEmpty())
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_name, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_name);
    m_name.clear();
}

}
