#pragma once
#include "zol/core/Schema.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <memory>

namespace zol {

class SqliteFile;
class StagedFile;
class Statement;

// Writes one table into an SQLite exchange file (.db), the format that
// stands where the old system wrote an Access file.
//
// The table is made from a field list: name, type and, for text, the size.
// A text field is declared VARCHAR(size), so a reader of the file finds the
// size again (PRAGMA table_info) and can compare it with the live schema.
// Fields listed as required refuse the empty text; all others take it.
//
// The file is written under a temporary name beside the target and renamed
// at finish(); until then the target stays as it was. An existing target is
// copied first, so other tables in it stay, and a table of the same name in
// it is replaced (the caller asks the user before). All rows go in one
// transaction. Without finish() nothing reaches the target.
//
// Usage:
//   DbTableWriter w(path, "ExportObjekte", fields);
//   w.addRow({...});            // one value per field, in the field order
//   w.finish();
class DbTableWriter {
public:
    DbTableWriter(const QString &path, const QString &table, const QList<FieldDef> &fields,
                  const QStringList &required = {});
    ~DbTableWriter();
    DbTableWriter(const DbTableWriter &) = delete;
    DbTableWriter &operator=(const DbTableWriter &) = delete;

    // Values in field order; a missing trailing value is written empty. A
    // null or empty value of a text field is the empty text, of a number 0.
    void addRow(const QVariantList &values);
    int rowCount() const { return m_rows; }
    void finish();

    // The fields of a table of the live schema, for a table that mirrors it:
    // without `skip`, with `prefix` before every name, and `renames` applied
    // (source name -> name in the file) before the prefix.
    static QList<FieldDef> cloneFields(const QString &schemaTable, const QStringList &skip = {},
                                       const QString &prefix = {},
                                       const QList<QPair<QString, QString>> &renames = {});
    // The CREATE TABLE text of an exchange table.
    static QString createSql(const QString &table, const QList<FieldDef> &fields, const QStringList &required);
    // Whether the SQLite file at `path` has the table; false for a missing file.
    static bool fileHasTable(const QString &path, const QString &table);

private:
    QString m_table;
    QList<FieldDef> m_fields;
    std::unique_ptr<StagedFile> m_staged;
    std::unique_ptr<SqliteFile> m_file;
    std::unique_ptr<Statement> m_insert;
    QVariantList m_values;
    int m_rows = 0;
};

}
