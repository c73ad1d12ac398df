#include "DbTableWriter.h"
#include "SqliteFile.h"
#include "StagedFile.h"
#include "zol/core/Fault.h"
#include "zol/core/Sql.h"
#include <QFile>
#include <QFileInfo>

namespace zol {

static QString declaredType(const FieldDef &f)
{
    switch (f.type) {
    case FieldType::Text: return QStringLiteral("VARCHAR(%1)").arg(f.size);
    case FieldType::Integer: return QStringLiteral("INTEGER");
    case FieldType::Double: return QStringLiteral("DOUBLE");
    case FieldType::Bool: return QStringLiteral("BOOLEAN");
    }
    return {};
}

QString DbTableWriter::createSql(const QString &table, const QList<FieldDef> &fields, const QStringList &required)
{
    QStringList cols;
    for (const FieldDef &f : fields) {
        QString c = ident(f.name) + QLatin1Char(' ') + declaredType(f);
        if (required.contains(f.name, Qt::CaseInsensitive))
            c += QStringLiteral(" NOT NULL CHECK (%1 <> '')").arg(ident(f.name));
        cols << c;
    }
    return QStringLiteral("CREATE TABLE ") + ident(table) + QStringLiteral(" (") + cols.join(QStringLiteral(", "))
        + QLatin1Char(')');
}

QList<FieldDef> DbTableWriter::cloneFields(const QString &schemaTable, const QStringList &skip, const QString &prefix,
                                           const QList<QPair<QString, QString>> &renames)
{
    QList<FieldDef> out;
    for (FieldDef f : Schema::table(schemaTable).fields) {
        if (skip.contains(f.name, Qt::CaseInsensitive))
            continue;
        for (const auto &r : renames)
            if (r.first.compare(f.name, Qt::CaseInsensitive) == 0)
                f.name = r.second;
        f.name = prefix + f.name;
        out << f;
    }
    return out;
}

bool DbTableWriter::fileHasTable(const QString &path, const QString &table)
{
    if (!QFileInfo(path).isFile())
        return false;
    SqliteFile file(path, SqliteFile::ReadOnly);
    return Schema::tableExists(file.db(), table);
}

DbTableWriter::DbTableWriter(const QString &path, const QString &table, const QList<FieldDef> &fields,
                             const QStringList &required)
    : m_table(table), m_fields(fields), m_staged(std::make_unique<StagedFile>(path))
{
    if (fields.isEmpty())
        throw Fault(FaultNo::General, QStringLiteral("Die Tabelle %1 hat keine Felder.").arg(table));
    if (QFileInfo(path).isFile() && !QFile::copy(path, m_staged->tempPath()))
        throw Fault(FaultNo::CannotWrite, QStringLiteral("Die Datei %1 kann nicht geschrieben werden.").arg(path));
    m_file = std::make_unique<SqliteFile>(m_staged->tempPath(), SqliteFile::ReadWrite);
    const QSqlDatabase db = m_file->db();
    // The temporary file is thrown away on any failure, so the journal would only cost time.
    exec(db, QStringLiteral("PRAGMA journal_mode=OFF"));
    exec(db, QStringLiteral("PRAGMA synchronous=OFF"));
    exec(db, QStringLiteral("BEGIN"));
    exec(db, QStringLiteral("DROP TABLE IF EXISTS ") + ident(table));
    exec(db, createSql(table, fields, required));
    QStringList marks;
    for (int i = 0; i < fields.size(); ++i)
        marks << QStringLiteral("?");
    m_insert = std::make_unique<Statement>(db, QStringLiteral("INSERT INTO %1 VALUES (%2)")
                                                   .arg(ident(table), marks.join(QLatin1Char(','))));
    m_values.resize(fields.size());
}

DbTableWriter::~DbTableWriter()
{
    m_insert.reset();
    m_file.reset();   // closes before the staged file removes the temporary copy
}

void DbTableWriter::addRow(const QVariantList &values)
{
    for (int i = 0; i < m_fields.size(); ++i) {
        const QVariant v = i < values.size() ? values.at(i) : QVariant();
        const FieldDef &f = m_fields.at(i);
        if (f.type == FieldType::Text) {
            const QString s = v.toString();
            if (f.size > 0 && s.size() > f.size)
                throw Fault(FaultNo::General,
                            QStringLiteral("Der Wert \"%1\" ist für das Feld %2 der Tabelle %3 zu lang (höchstens %4 Zeichen).")
                                .arg(s.left(40), f.name, m_table)
                                .arg(f.size));
            m_values[i] = s.isNull() ? QStringLiteral("") : s;
        } else if (f.type == FieldType::Double) {
            m_values[i] = v.isNull() ? 0.0 : v.toDouble();
        } else {
            m_values[i] = v.isNull() ? 0 : v.toLongLong();
        }
    }
    m_insert->run(m_values);
    ++m_rows;
}

void DbTableWriter::finish()
{
    m_insert.reset();
    exec(m_file->db(), QStringLiteral("COMMIT"));
    m_file->close();
    m_staged->commit();
}

}
