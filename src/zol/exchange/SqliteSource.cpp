#include "SqliteFile.h"
#include "TableReader.h"
#include "zol/core/Fault.h"
#include "zol/core/Sql.h"
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlRecord>

namespace zol {

namespace {

class SqliteReader : public TableReader {
public:
    SqliteReader(const QSqlDatabase &db, const QString &path, const QString &table) : m_path(path), m_table(table)
    {
        static const QRegularExpression sized(QStringLiteral("\\(\\s*(\\d+)\\s*\\)"));
        QSqlQuery info = exec(db, QStringLiteral("PRAGMA table_info(%1)").arg(ident(table)));
        while (info.next()) {
            const QRegularExpressionMatch m = sized.match(info.value(2).toString());
            m_fields << SourceField{info.value(1).toString(), m.hasMatch() ? m.captured(1).toInt() : -1};
        }
        m_query = QSqlQuery(db);
        m_query.setForwardOnly(true);
        if (!m_query.exec(QStringLiteral("SELECT * FROM %1").arg(ident(table))))
            damaged();
    }
    QList<SourceField> fields() const override { return m_fields; }
    bool next(QStringList &values) override
    {
        if (!m_query.next()) {
            if (m_query.lastError().isValid())
                damaged();
            return false;
        }
        ++m_row;
        values.resize(m_fields.size());
        for (int i = 0; i < m_fields.size(); ++i)
            values[i] = m_query.value(i).toString();
        return true;
    }
    int rowNumber() const override { return m_row; }

private:
    [[noreturn]] void damaged() const
    {
        throw Fault(FaultNo::NotADatabase, QStringLiteral("Die Tabelle %1 der Datei %2 ist nach Zeile %3 nicht lesbar: %4")
                                               .arg(m_table, QFileInfo(m_path).fileName())
                                               .arg(m_row)
                                               .arg(m_query.lastError().text()));
    }
    QString m_path, m_table;
    QList<SourceField> m_fields;
    QSqlQuery m_query;
    int m_row = 0;
};

class SqliteSource : public TableSource {
public:
    explicit SqliteSource(const QString &path) : m_file(path, SqliteFile::ReadOnly)
    {
        QSqlQuery q = exec(m_file.db(), QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                                       "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"));
        while (q.next())
            m_tables << q.value(0).toString();
    }
    QString path() const override { return m_file.path(); }
    QStringList tables() const override { return m_tables; }
    bool knowsSizes() const override { return true; }
    std::unique_ptr<TableReader> open(const QString &table) override
    {
        for (const QString &t : m_tables)
            if (t.compare(table, Qt::CaseInsensitive) == 0)
                return std::make_unique<SqliteReader>(m_file.db(), m_file.path(), t);
        throwTableMissing(m_file.path(), table);
    }

private:
    SqliteFile m_file;
    QStringList m_tables;
};

}

std::unique_ptr<TableSource> openSqliteSource(const QString &path) { return std::make_unique<SqliteSource>(path); }

}
