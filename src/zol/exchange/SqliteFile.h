#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// A connection of its own to an SQLite file other than the data file (an
// exchange file, an old data file), closed and removed again with the object.
class SqliteFile {
public:
    enum Mode { ReadOnly, ReadWrite };
    SqliteFile(const QString &path, Mode mode);
    ~SqliteFile();
    SqliteFile(const SqliteFile &) = delete;
    SqliteFile &operator=(const SqliteFile &) = delete;

    QSqlDatabase db() const;
    QString path() const { return m_path; }
    // Closes the connection early (before the file is renamed).
    void close();

private:
    QString m_path;
    QString m_name;
};

}
