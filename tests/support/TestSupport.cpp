#include "TestSupport.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include <QDir>

namespace zoltest {

TempData::TempData(bool create)
{
    zol::setSettingsFile(QDir(m_dir.path()).filePath(QStringLiteral("settings.ini")));
    m_db = std::make_unique<zol::Database>(m_dir.path());
    if (create) {
        m_db->create(QStringLiteral("Admin"), QStringLiteral("admin"));
        m_db->open();
    }
}

TempData::~TempData()
{
    m_db.reset();
    zol::setSettingsFile({});
}

void TempData::closeDatabase() { m_db->close(); }

void TempData::reopen()
{
    m_db->close();
    m_db->open();
}

int countRows(const QSqlDatabase &db, const QString &table, const QString &where, const QVariantList &values)
{
    QString sql = QStringLiteral("SELECT count(*) FROM ") + zol::ident(table);
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    return zol::scalar(db, sql, values).toInt();
}

}
