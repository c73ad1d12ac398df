#include "Migration.h"
#include "zol/core/Database.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Passwords.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QFileInfo>
#include <QTextStream>
#include <QUuid>

namespace zol {

namespace {

QString schemaName(const QString &oldName)
{
    for (const TableDef &t : Schema::tables())
        if (t.name.compare(oldName, Qt::CaseInsensitive) == 0)
            return t.name;
    if (Schema::isYearTable(oldName))
        return oldName;
    return {};
}

QVariant valueFor(const FieldDef &f, const QString &text)
{
    if (f.type == FieldType::Text)
        return text;
    if (text.trimmed().isEmpty())
        return QVariant();
    const QString t = QString(text).replace(QLatin1Char(','), QLatin1Char('.')).trimmed();
    if (f.type == FieldType::Double)
        return t.toDouble();
    if (f.type == FieldType::Bool)
        return t == QLatin1String("1") || t.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0
            || t == QLatin1String("-1");
    return qint64(t.toDouble());
}

}

QList<MigratedTable> migrateTables(const QSqlDatabase &db, TableSource &old)
{
    const QStringList tables = old.tables();
    if (!tables.contains(QStringLiteral("User"), Qt::CaseInsensitive))
        throwTableMissing(old.path(), QStringLiteral("User"));
    QList<MigratedTable> counts;
    for (const QString &oldName : tables) {
        const QString name = schemaName(oldName);
        if (name.isEmpty()) {
            counts << MigratedTable{oldName, -1};
            continue;
        }
        if (Schema::isYearTable(name))
            Schema::ensureYearTable(db, name.mid(QStringLiteral("Rückmeldungen").size()));
        exec(db, QStringLiteral("DELETE FROM %1").arg(ident(name)));
        const TableDef def = Schema::table(name);
        std::unique_ptr<TableReader> reader = old.open(oldName);
        const QList<SourceField> fields = reader->fields();
        // Each field of the new table with the old field of its name.
        QList<QPair<FieldDef, int>> pairs;
        for (const FieldDef &f : def.fields)
            for (int i = 0; i < fields.size(); ++i)
                if (fields.at(i).name.compare(f.name, Qt::CaseInsensitive) == 0)
                    pairs << qMakePair(f, i);
        if (pairs.isEmpty()) {
            counts << MigratedTable{name, 0};
            continue;
        }
        QStringList cols, marks;
        for (const auto &p : pairs) {
            cols << ident(p.first.name);
            marks << QStringLiteral("?");
        }
        Statement insert(db, QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                 .arg(ident(name), cols.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
        const bool users = name == QLatin1String("User");
        QStringList row;
        QVariantList values;
        int n = 0;
        while (reader->next(row)) {
            ++n;
            values.clear();
            for (const auto &[f, i] : pairs) {
                QString text = row.value(i);
                if (users && f.name == QStringLiteral("Paßwort") && !text.isEmpty() && !isPasswordHash(text))
                    text = hashPassword(text);
                if (f.type == FieldType::Text && f.size > 0 && text.size() > f.size)
                    throw Fault(FaultNo::General,
                                QStringLiteral("Tabelle %1, Zeile %2, Feld %3: der Wert hat %4 Zeichen, das Feld "
                                               "fasst %5.")
                                    .arg(oldName)
                                    .arg(reader->rowNumber())
                                    .arg(f.name)
                                    .arg(text.size())
                                    .arg(f.size));
                values << valueFor(f, text);
            }
            insert.run(values);
        }
        counts << MigratedTable{name, n};
    }
    return counts;
}

int migrateCommand(const QString &dataDir, const QStringList &args)
{
    if (args.size() != 1 || args.first().startsWith(QLatin1String("--"))) {
        ZeigeMeldung(QStringLiteral("Aufruf: zol migrate ALT.mdb"), Style::Exclamation);
        return 2;
    }
    Database database(Database::resolveDataDir(dataDir));
    if (database.fileExists()) {
        ZeigeMeldung(QStringLiteral("Die Datendatei '%1' existiert bereits; sie wird nicht verändert.")
                         .arg(database.filePath()),
                     Style::Exclamation);
        return 1;
    }
    std::unique_ptr<TableSource> old;
    try {
        old = openTableSource(args.first());
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Exclamation);
        return 1;
    }
    QList<MigratedTable> counts;
    try {
        // The seeded administrator gives way to the users of the old file.
        database.create(QStringLiteral("Admin"), QUuid::createUuid().toString(),
                        [&](const QSqlDatabase &db) { counts = migrateTables(db, *old); });
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Exclamation);
        return f.number() == FaultNo::General || f.number() == FaultNo::TableMissing ? 1 : 3;
    }
    QTextStream out(stdout);
    for (const MigratedTable &t : counts)
        out << (t.rows < 0 ? QStringLiteral("%1: übergangen").arg(t.table)
                           : QStringLiteral("%1: %2 Zeilen").arg(t.table).arg(t.rows))
            << Qt::endl;
    out << QStringLiteral("Datendatei angelegt: %1").arg(database.filePath()) << Qt::endl;
    return 0;
}

}
