#include "TestSupport.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include <QDir>
#include <QFile>
#include <QProcess>

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

QString pdfText(const QString &path, bool layout)
{
    QProcess p;
    QStringList args;
    if (layout)
        args << QStringLiteral("-layout");
    args << path << QStringLiteral("-");
    p.start(QStringLiteral("pdftotext"), args);
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return QString();
    return QString::fromUtf8(p.readAllStandardOutput());
}

int countRows(const QSqlDatabase &db, const QString &table, const QString &where, const QVariantList &values)
{
    QString sql = QStringLiteral("SELECT count(*) FROM ") + zol::ident(table);
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    return zol::scalar(db, sql, values).toInt();
}

QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QString zipMember(const QString &zipFile, const QString &member)
{
    QProcess p;
    p.start(QStringLiteral("unzip"), {QStringLiteral("-p"), zipFile, member});
    p.waitForFinished();
    return QString::fromUtf8(p.readAllStandardOutput());
}

}
