#include "SortOnDisk.h"
#include <QSqlQuery>

namespace zol {

SortOnDisk::SortOnDisk(const QSqlDatabase &db) : m_db(db)
{
    QSqlQuery(m_db).exec(QStringLiteral("PRAGMA temp_store=FILE"));
}

SortOnDisk::~SortOnDisk()
{
    // The setting of every connection to the data file (see Database).
    QSqlQuery(m_db).exec(QStringLiteral("PRAGMA temp_store=MEMORY"));
}

}
