#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

namespace zol {

// A field of a table in an exchange file: its name, and for a text field the
// size the file declares (-1 when the file knows no sizes, as a spreadsheet).
struct SourceField {
    QString name;
    int size = -1;
};

// One table of an exchange file, read row by row: every value as text, the
// empty text for an empty cell or a Null. A damaged row throws zol::Fault
// naming file, table and row.
class TableReader {
public:
    virtual ~TableReader() = default;
    virtual QList<SourceField> fields() const = 0;
    // The next row, one value per field; false after the last row.
    virtual bool next(QStringList &values) = 0;
    // The number of the row last read as the file counts it (1 = first row).
    virtual int rowNumber() const = 0;
};

// An exchange file with its tables: an SQLite file (.db), an Access file
// (.mdb, .accdb) or a workbook (.xlsx, .ods). Each import rule is written
// once against this interface.
class TableSource {
public:
    virtual ~TableSource() = default;
    virtual QString path() const = 0;
    // The user's tables (the system tables left out), in the file's order.
    virtual QStringList tables() const = 0;
    // Whether the file declares the size of its text fields.
    virtual bool knowsSizes() const = 0;
    // The table of that name (case-insensitive); fault 3078 when it is missing.
    virtual std::unique_ptr<TableReader> open(const QString &table) = 0;
};

// How a sheet is read: a sheet whose first row holds these names (in any
// order, case-insensitive) takes that row as its field names and begins on the
// next non-empty row; any other sheet takes these names for its columns in
// this order and begins on row 1. Tables of database files ignore it.
struct SheetLayout {
    QStringList columns;
};

// Opens the file by its ending; a file that is missing, of another kind than
// its ending says, or damaged is fault 3343 or 3024 with a message naming it.
std::unique_ptr<TableSource> openTableSource(const QString &path, const SheetLayout &layout = {});

std::unique_ptr<TableSource> openSqliteSource(const QString &path);
std::unique_ptr<TableSource> openAccessSource(const QString &path);
std::unique_ptr<TableSource> openSheetSource(const QString &path, const SheetLayout &layout);

// The file filter entries the readers understand, for file dialogs.
bool isReadableExchangeFile(const QString &path);

// A source held in memory, for tests and for rules that build a table
// themselves. Sizes are known when every field was given one.
class MemorySource : public TableSource {
public:
    struct Table {
        QString name;
        QList<SourceField> fields;
        QList<QStringList> rows;
    };
    explicit MemorySource(QList<Table> tables, QString path = QStringLiteral("memory")) :
        m_tables(std::move(tables)), m_path(std::move(path)) {}
    QString path() const override { return m_path; }
    QStringList tables() const override;
    bool knowsSizes() const override;
    std::unique_ptr<TableReader> open(const QString &table) override;

private:
    QList<Table> m_tables;
    QString m_path;
};

// The fault of a table that isn't in the file.
[[noreturn]] void throwTableMissing(const QString &path, const QString &table);

}
