#include "TableReader.h"
#include "zol/core/Fault.h"
#include <QFile>
#include <QFileInfo>
#include <mdbtools.h>
#include <vector>

namespace zol {

namespace {

[[noreturn]] void unreadable(const QString &path, const QString &why)
{
    throw Fault(FaultNo::NotADatabase,
                QStringLiteral("Die Datei %1 ist keine Access-Datei oder sie ist beschädigt: %2").arg(path, why));
}

// libmdb trusts the page structure it reads; a file cut short or not an
// Access file at all is turned away before it gets there.
void checkAccessHeader(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        unreadable(path, f.errorString());
    const QByteArray head = f.read(0x20);
    const QByteArray mark = head.mid(4, 15);
    if (head.size() < 0x20 || (mark != QByteArrayLiteral("Standard Jet DB") && mark != QByteArrayLiteral("Standard ACE DB")))
        unreadable(path, QStringLiteral("keine Jet-Kennung am Dateianfang"));
    // Jet 3 files have pages of 2 KB, all later versions of 4 KB.
    const qint64 page = head.at(0x14) == 0 ? 2048 : 4096;
    if (f.size() < 3 * page || f.size() % page != 0)
        unreadable(path, QStringLiteral("die Datei ist unvollständig"));
}

class AccessReader : public TableReader {
public:
    AccessReader(MdbTableDef *table, const QString &path, bool jet3) : m_table(table), m_path(path)
    {
        mdb_read_columns(m_table);
        mdb_rewind_table(m_table);
        const int n = int(m_table->num_cols);
        m_buffers.resize(size_t(n));
        m_lengths.resize(size_t(n));
        for (int i = 0; i < n; ++i) {
            auto *col = static_cast<MdbColumn *>(g_ptr_array_index(m_table->columns, i));
            int size = -1;
            if (col->col_type == MDB_TEXT)
                size = jet3 ? col->col_size : col->col_size / 2;   // later versions count bytes of UCS-2
            m_fields << SourceField{QString::fromUtf8(col->name), size};
            m_buffers[size_t(i)].assign(MDB_BIND_SIZE, 0);
            mdb_bind_column(m_table, i + 1, m_buffers[size_t(i)].data(), &m_lengths[size_t(i)]);
        }
    }
    ~AccessReader() override { mdb_free_tabledef(m_table); }
    QList<SourceField> fields() const override { return m_fields; }
    bool next(QStringList &values) override
    {
        if (!mdb_fetch_row(m_table))
            return false;
        ++m_row;
        values.resize(m_fields.size());
        for (int i = 0; i < m_fields.size(); ++i) {
            const int len = std::clamp(m_lengths[size_t(i)], 0, MDB_BIND_SIZE - 1);
            values[i] = QString::fromUtf8(m_buffers[size_t(i)].data(), len);
        }
        return true;
    }
    int rowNumber() const override { return m_row; }

private:
    MdbTableDef *m_table;
    QString m_path;
    QList<SourceField> m_fields;
    std::vector<std::vector<char>> m_buffers;
    std::vector<int> m_lengths;
    int m_row = 0;
};

class AccessSource : public TableSource {
public:
    explicit AccessSource(const QString &path) : m_path(path)
    {
        checkAccessHeader(path);
        m_mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
        if (!m_mdb)
            unreadable(path, QStringLiteral("mdbtools kann sie nicht öffnen"));
        if (!mdb_read_catalog(m_mdb, MDB_TABLE)) {
            mdb_close(m_mdb);
            unreadable(path, QStringLiteral("ihr Katalog ist nicht lesbar"));
        }
        for (unsigned i = 0; i < m_mdb->num_catalog; ++i) {
            auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(m_mdb->catalog, i));
            const QString name = QString::fromUtf8(entry->object_name);
            if (entry->object_type != MDB_TABLE || mdb_is_system_table(entry)
                || name.startsWith(QLatin1String("MSys"), Qt::CaseInsensitive))
                continue;
            m_tables << name;
            m_entries << entry;
        }
    }
    ~AccessSource() override { mdb_close(m_mdb); }
    QString path() const override { return m_path; }
    QStringList tables() const override { return m_tables; }
    bool knowsSizes() const override { return true; }
    std::unique_ptr<TableReader> open(const QString &table) override
    {
        for (int i = 0; i < m_tables.size(); ++i) {
            if (m_tables.at(i).compare(table, Qt::CaseInsensitive) != 0)
                continue;
            MdbTableDef *def = mdb_read_table(m_entries.at(i));
            if (!def)
                unreadable(m_path, QStringLiteral("die Tabelle %1 ist nicht lesbar").arg(table));
            return std::make_unique<AccessReader>(def, m_path, m_mdb->f->jet_version == MDB_VER_JET3);
        }
        throwTableMissing(m_path, table);
    }

private:
    QString m_path;
    MdbHandle *m_mdb = nullptr;
    QStringList m_tables;
    QList<MdbCatalogEntry *> m_entries;
};

}

std::unique_ptr<TableSource> openAccessSource(const QString &path) { return std::make_unique<AccessSource>(path); }

}
