#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// Hands out the next key of ProtokollKopf or of a catalog table from the
// table's bookkeeping row "LastIndex". Keys only grow; a deleted node's number
// stays unused until the counter has run through all numbers. The caller adds
// the new row (in the same transaction).
QString NeuerFileIndex(const QSqlDatabase &db, const QString &table);

// True when the number stands on at most one row of ProtokollKopf.
bool IdentNrEindeutig(const QSqlDatabase &db, const QString &identNr);

// Ten digits, as every FileIndex is written.
QString formatFileIndex(qint64 n);

}
