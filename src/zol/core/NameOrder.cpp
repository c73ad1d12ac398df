#include "NameOrder.h"
#include <QSqlDriver>
#include <QVariant>
#include <sqlite3.h>

namespace zol {

namespace {

QString folded(const QString &name)
{
    QString out;
    out.reserve(name.size());
    for (QChar c : name) {
        switch (c.toLower().unicode()) {
        case u'ä': out += QLatin1Char('a'); break;
        case u'ö': out += QLatin1Char('o'); break;
        case u'ü': out += QLatin1Char('u'); break;
        case u'ß': out += QLatin1String("ss"); break;
        default: out += c.toLower();
        }
    }
    return out;
}

int collate(void *, int lengthA, const void *a, int lengthB, const void *b)
{
    return compareNames(QString::fromUtf8(static_cast<const char *>(a), lengthA),
                        QString::fromUtf8(static_cast<const char *>(b), lengthB));
}

}

int compareNames(const QString &a, const QString &b)
{
    if (const int c = folded(a).compare(folded(b)))
        return c;
    // Names equal but for case or umlauts keep a fixed order.
    return a.compare(b);
}

bool registerNameCollation(const QSqlDatabase &db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3 *connection = *static_cast<sqlite3 *const *>(handle.constData());
    return connection
        && sqlite3_create_collation(connection, "ZOLNAME", SQLITE_UTF8, nullptr, &collate) == SQLITE_OK;
}

QString nameOrder(const QString &column)
{
    return column + QStringLiteral(" COLLATE ZOLNAME");
}

QString caselessOrder(const QString &column)
{
    return column + QStringLiteral(" COLLATE NOCASE");
}

}
