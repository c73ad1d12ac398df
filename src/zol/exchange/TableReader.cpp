#include "TableReader.h"
#include "zol/core/Fault.h"
#include <QFileInfo>

namespace zol {

void throwTableMissing(const QString &path, const QString &table)
{
    throw Fault(FaultNo::TableMissing,
                QStringLiteral("Die Datei %1 enthält keine Tabelle %2.").arg(QFileInfo(path).fileName(), table));
}

static QString suffixOf(const QString &path) { return QFileInfo(path).suffix().toLower(); }

bool isReadableExchangeFile(const QString &path)
{
    static const QStringList known = {QStringLiteral("db"), QStringLiteral("mdb"), QStringLiteral("accdb"),
                                      QStringLiteral("xlsx"), QStringLiteral("ods")};
    return known.contains(suffixOf(path));
}

std::unique_ptr<TableSource> openTableSource(const QString &path, const SheetLayout &layout)
{
    const QFileInfo fi(path);
    if (!fi.isFile())
        throw Fault(FaultNo::FileNotFound, QStringLiteral("Die Datei %1 wurde nicht gefunden.").arg(path));
    if (fi.size() == 0)
        throw Fault(FaultNo::NotADatabase, QStringLiteral("Die Datei %1 ist leer.").arg(path));
    const QString s = suffixOf(path);
    if (s == QLatin1String("db"))
        return openSqliteSource(path);
    if (s == QLatin1String("mdb") || s == QLatin1String("accdb"))
        return openAccessSource(path);
    if (s == QLatin1String("xlsx") || s == QLatin1String("ods"))
        return openSheetSource(path, layout);
    throw Fault(FaultNo::NotADatabase,
                QStringLiteral("Die Datei %1 hat keine lesbare Endung (.db, .mdb, .accdb, .xlsx, .ods).").arg(path));
}

namespace {

class MemoryReader : public TableReader {
public:
    explicit MemoryReader(const MemorySource::Table &t) : m_table(t) {}
    QList<SourceField> fields() const override { return m_table.fields; }
    bool next(QStringList &values) override
    {
        if (m_row >= m_table.rows.size())
            return false;
        values = m_table.rows.at(m_row++);
        while (values.size() < m_table.fields.size())
            values << QString();
        return true;
    }
    int rowNumber() const override { return int(m_row); }

private:
    MemorySource::Table m_table;
    qsizetype m_row = 0;
};

}

QStringList MemorySource::tables() const
{
    QStringList names;
    for (const Table &t : m_tables)
        names << t.name;
    return names;
}

bool MemorySource::knowsSizes() const
{
    for (const Table &t : m_tables)
        for (const SourceField &f : t.fields)
            if (f.size < 0)
                return false;
    return true;
}

std::unique_ptr<TableReader> MemorySource::open(const QString &table)
{
    for (const Table &t : m_tables)
        if (t.name.compare(table, Qt::CaseInsensitive) == 0)
            return std::make_unique<MemoryReader>(t);
    throwTableMissing(m_path, table);
}

}
