#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zol {

// Names are listed as the legacy database ordered them: case ignored, and an
// umlaut with its plain letter (Ä with A, ß as ss), not behind z. SQLite has no
// such order of its own; a collation is registered on every connection to the
// data file, and a statement orders names through nameOrder.
bool registerNameCollation(const QSqlDatabase &db);
// The ORDER BY term for a name column, e.g. "Text COLLATE ZOLNAME".
QString nameOrder(const QString &column);
// The ORDER BY term that keeps values equal but for case next to each other,
// at the database's own speed (letters A to Z), for a control break over
// large tables, e.g. "Ausfuehrender COLLATE NOCASE".
QString caselessOrder(const QString &column);
// The comparison itself: negative, zero or positive as a sorts before, with or after b.
int compareNames(const QString &a, const QString &b);

}
