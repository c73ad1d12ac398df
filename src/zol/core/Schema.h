#pragma once
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace zol {

enum class FieldType { Text, Integer, Double, Bool };

struct FieldDef {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0;   // maximum length of a text field; 0 for other types
};

struct IndexDef {
    QStringList fields;
    bool unique = false;
};

struct TableDef {
    QString name;
    QList<FieldDef> fields;
    QList<IndexDef> indexes;
    int fieldIndex(const QString &field) const;   // case-insensitive, -1 if absent
};

// The schema of the data file, written once: every table with its fields in
// their order and the size of every text field. Rules that limit an input ask
// Schema::Size, never a number of their own.
class Schema {
public:
    static constexpr int Version = 1;

    static const QList<TableDef> &tables();
    // The definition of a table; yearly feedback tables ("Rückmeldungen2016")
    // answer with the structure of Auftrag under their own name.
    static TableDef table(const QString &name);
    static bool hasTable(const QString &name);
    // Size of a text field, or -1 for an unknown field or a field that is not text.
    static int Size(const QString &table, const QString &field);
    static QStringList fieldNames(const QString &table);

    // The eleven catalog tables in their fixed order.
    static QStringList catalogTables();

    static QString yearTableName(const QString &jahr) { return QStringLiteral("Rückmeldungen") + jahr; }
    static bool isYearTable(const QString &name);

    static QString createTableSql(const TableDef &def);
    // Makes every table and the version entry in one transaction.
    static void create(const QSqlDatabase &db);
    // The interval codes, their IVA calendar rows and the first administrator.
    static void seed(const QSqlDatabase &db, const QString &adminName, const QString &adminPassword);
    // Makes the table Rückmeldungen<jahr> with the structure of Auftrag if it is missing.
    // Returns true when it was made.
    static bool ensureYearTable(const QSqlDatabase &db, const QString &jahr);
    static bool tableExists(const QSqlDatabase &db, const QString &name);
    // Makes every index of the schema that a table of the file lacks (a file
    // made by an earlier build); nothing happens when all are there.
    static void ensureIndexes(const QSqlDatabase &db);
    // The schema version stored in the file, 0 if the file has none.
    static int storedVersion(const QSqlDatabase &db);
};

}
