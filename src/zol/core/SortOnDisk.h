#pragma once
#include <QSqlDatabase>

namespace zol {

// While it lives, the database sorts and keeps its temporary results in
// files instead of memory, so that a statement ordering millions of rows
// (a whole posted year) costs a bounded amount of memory. The data file's
// usual setting comes back afterwards.
class SortOnDisk {
public:
    explicit SortOnDisk(const QSqlDatabase &db);
    ~SortOnDisk();
    SortOnDisk(const SortOnDisk &) = delete;
    SortOnDisk &operator=(const SortOnDisk &) = delete;

private:
    QSqlDatabase m_db;
};

}
