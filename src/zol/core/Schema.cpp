#include "Schema.h"
#include "Digits.h"
#include "Fault.h"
#include "zol/instructions/IntervalCodes.h"
#include "Passwords.h"
#include "Sql.h"
#include <QSqlRecord>
#include <algorithm>

namespace zol {

namespace {

FieldDef T(const char *name, int size) { return {QString::fromUtf8(name), FieldType::Text, size}; }
FieldDef I(const char *name) { return {QString::fromUtf8(name), FieldType::Integer, 0}; }
FieldDef D(const char *name) { return {QString::fromUtf8(name), FieldType::Double, 0}; }
FieldDef B(const char *name) { return {QString::fromUtf8(name), FieldType::Bool, 0}; }
IndexDef U(std::initializer_list<const char *> f)
{
    IndexDef d;
    for (auto n : f) d.fields << QString::fromUtf8(n);
    d.unique = true;
    return d;
}
IndexDef N(std::initializer_list<const char *> f)
{
    IndexDef d = U(f);
    d.unique = false;
    return d;
}

QList<FieldDef> auftragFields()
{
    return {T("TeIndex", 10), T("Jahr", 4), T("Woche", 2), T("Objekt", 6), T("Anweisung", 4),
            T("WIVerantwortlicher", 50), T("Ausfuehrender", 50), T("Kostenstelle", 30),
            T("Lokalisierung", 50), T("Option1", 50), T("KompBezeichnung", 100), T("Betriebszustand", 1),
            T("BetriebszustandXL", 1), D("PlanZeit"), T("Materialcode", 50), D("Materialmenge"),
            T("Bemerkung", 255), T("Text", 255), T("Rückmeldung", 1), T("Befund", 1), T("Verbal", 1),
            T("Intervall", 5), T("Datum", 10), I("AnzahlPersonen"), T("SicherheitsHinweis", 100),
            T("IntervallTyp", 1), T("KeineWartung", 1)};
}

QList<FieldDef> positionFields()
{
    return {T("TeNummer", 10), T("Objekt", 6), T("Anweisung", 4), T("Text", 255), T("Ausfuehrender", 50),
            T("Betriebszustand", 1), T("AnzahlPersonen", 3), T("Sicherheitshinweis", 100), T("Intervall", 5),
            T("Planzeit", 10), T("Materialcode", 50), T("Materialmenge", 10), T("Intervalltyp", 1)};
}

TableDef catalog(const char *name, int textSize, QList<FieldDef> further)
{
    TableDef t{QString::fromUtf8(name), {T("FileIndex", 10), T("FileAbove", 10), T("FileTyp", 1), T("Text", textSize)}, {}};
    t.fields += further;
    t.indexes = {U({"FileIndex"}), N({"FileAbove"})};
    return t;
}

QList<TableDef> buildTables()
{
    QList<TableDef> t;
    t << TableDef{QStringLiteral("User"), {T("Name", 50), T("Paßwort", 255), T("Level", 50)}, {U({"Name"})}};
    t << TableDef{QStringLiteral("ProtokollKopf"),
                  {T("FileIndex", 10), T("FileAbove", 10), T("FileTyp", 1), T("Katalog", 1), T("Text", 100),
                   T("BezugsJahr", 4), T("BezugsWoche", 2), T("Kostenstelle", 30), T("IdentNr", 30),
                   T("Klassifizierung", 50), T("Standort", 50), T("Lokalisierung", 50), T("Hersteller", 50),
                   T("Typ", 50), T("WIVerantwortlicher", 50), T("AnlagenVerantwortlicher", 50), T("Option1", 50),
                   T("Option2", 50), T("KeineWartung", 1), T("KeineWartungWocheVon1", 2),
                   T("KeineWartungWocheBis1", 2), T("KeineWartungWocheVon2", 2), T("KeineWartungWocheBis2", 2)},
                  {U({"FileIndex"}), N({"FileAbove", "Text"}), N({"IdentNr"}), N({"FileTyp", "Katalog"})}};
    // The second index serves the planning run: the instructions of one kind in
    // component order, read from the index alone.
    t << TableDef{QStringLiteral("ProtokollPositionen"), positionFields(),
                  {U({"TeNummer", "Objekt", "Anweisung"}), N({"Intervalltyp", "TeNummer", "Objekt", "Anweisung", "Intervall"})}};
    t << TableDef{QStringLiteral("ProtokollPositionenBuffer"), positionFields(), {}};
    t << TableDef{QStringLiteral("Intervalle"), {T("Intervall", 5), T("Typ", 1), I("Abstand"), D("HÄufigkeit")},
                  {U({"Intervall"})}};
    {
        TableDef iva{QStringLiteral("IVA"), {T("Intervall", 5), T("BezugsWoche", 2)}, {U({"Intervall", "BezugsWoche"})}};
        for (int w = 1; w <= 52; ++w)
            iva.fields << FieldDef{QStringLiteral("W%1").arg(w, 2, 10, QLatin1Char('0')), FieldType::Text, 1};
        t << iva;
    }
    t << catalog("Texte", 255, {T("Standardintervall", 5)});
    t << catalog("Material", 50, {T("BESCHREIBUNG", 255)});
    t << catalog("SHinweise", 100, {T("HINWEIS", 255)});
    t << catalog("Gewerke", 50, {T("Beschreibung", 255)});
    t << catalog("Kostenstellen", 30, {T("Beschreibung", 255)});
    t << catalog("Klassifizierungen", 50, {T("Beschreibung", 255)});
    t << catalog("Lokalisierungen", 50, {T("Beschreibung", 255)});
    t << catalog("Hersteller", 50, {T("Beschreibung", 255)});
    t << catalog("Benennungen", 100, {T("Beschreibung", 255)});
    t << catalog("Option1", 50, {T("Beschreibung", 255)});
    t << catalog("Option2", 50, {T("Beschreibung", 255)});
    t << TableDef{QStringLiteral("WartungsfreieZeit"), {T("WocheVon", 2), T("WocheBis", 2), T("Kommentar", 255)},
                  {U({"WocheVon", "WocheBis"})}};
    // Beside the key: the feedback views read the orders of a week by
    // component and the orders by trade, each level in its sort order straight
    // from an index, so a level is read page by page and a node's list without
    // sorting the table. Both begin with the week or end with it: a week's rows
    // lie together in them, and planning or deleting a week writes few pages.
    t << TableDef{QStringLiteral("Auftrag"), auftragFields(),
                  {U({"Jahr", "Woche", "TeIndex", "Objekt", "Anweisung"}), N({"TeIndex"}),
                   N({"Jahr", "Woche", "KompBezeichnung", "TeIndex", "Ausfuehrender"}),
                   N({"Ausfuehrender", "Jahr", "Woche"})}};
    t << TableDef{QStringLiteral("Rückmeldungen"), auftragFields(),
                  {N({"Jahr", "Woche", "TeIndex", "Objekt", "Anweisung"})}};
    t << TableDef{QStringLiteral("Erfassung"),
                  {T("Name", 100), T("IdentNr", 30), T("LaufendeNummer", 5), T("Datum", 10), D("Stunden"),
                   D("Minuten"), D("Lohnkosten"), D("materialkosten"), D("Fremdkosten"), T("Kostenstelle", 30),
                   T("Gewerk", 50), I("AuftragsHerkunft"), I("Auftragsart"), I("Schadensart"),
                   I("SchadensUrsache"), T("Bemerkung", 2000), T("Prioritaet", 1), T("ZuErledigenBis", 10),
                   B("ErledigtJN"), T("erledigtam", 10), T("Druck", 10)},
                  {N({"IdentNr", "LaufendeNummer"}), N({"Name", "IdentNr", "LaufendeNummer"})}};
    return t;
}

QString sqlType(FieldType t)
{
    switch (t) {
    case FieldType::Text: return QStringLiteral("TEXT COLLATE NOCASE");
    case FieldType::Integer: return QStringLiteral("INTEGER");
    case FieldType::Double: return QStringLiteral("REAL");
    case FieldType::Bool: return QStringLiteral("INTEGER");
    }
    return {};
}

QString defaultOf(FieldType t)
{
    // Text fields default to the empty text: the rules treat empty and missing alike.
    switch (t) {
    case FieldType::Text: return QStringLiteral(" NOT NULL DEFAULT ''");
    case FieldType::Bool: return QStringLiteral(" NOT NULL DEFAULT 0");
    default: return QStringLiteral(" DEFAULT 0");
    }
}

}   // namespace

int TableDef::fieldIndex(const QString &field) const
{
    for (int i = 0; i < fields.size(); ++i)
        if (fields.at(i).name.compare(field, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const QList<TableDef> &Schema::tables()
{
    static const QList<TableDef> all = buildTables();
    return all;
}

bool Schema::isYearTable(const QString &name)
{
    static const QString prefix = QStringLiteral("Rückmeldungen");
    if (!name.startsWith(prefix, Qt::CaseInsensitive) || name.size() != prefix.size() + 4)
        return false;
    for (int i = prefix.size(); i < name.size(); ++i)
        if (!isAsciiDigit(name.at(i)))
            return false;
    return true;
}

TableDef Schema::table(const QString &name)
{
    for (const TableDef &t : tables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return t;
    if (isYearTable(name)) {
        TableDef y = table(QStringLiteral("Rückmeldungen"));
        y.name = name;
        return y;
    }
    return {};
}

bool Schema::hasTable(const QString &name) { return !table(name).name.isEmpty(); }

int Schema::Size(const QString &tableName, const QString &field)
{
    const TableDef t = table(tableName);
    const int i = t.fieldIndex(field);
    if (i < 0 || t.fields.at(i).type != FieldType::Text)
        return -1;
    return t.fields.at(i).size;
}

QStringList Schema::fieldNames(const QString &tableName)
{
    QStringList out;
    for (const FieldDef &f : table(tableName).fields)
        out << f.name;
    return out;
}

QStringList Schema::catalogTables()
{
    return {QStringLiteral("Texte"), QStringLiteral("Material"), QStringLiteral("SHinweise"),
            QStringLiteral("Gewerke"), QStringLiteral("Kostenstellen"), QStringLiteral("Klassifizierungen"),
            QStringLiteral("Lokalisierungen"), QStringLiteral("Hersteller"), QStringLiteral("Benennungen"),
            QStringLiteral("Option1"), QStringLiteral("Option2")};
}

QString Schema::createTableSql(const TableDef &def)
{
    QStringList cols;
    for (const FieldDef &f : def.fields)
        cols << ident(f.name) + QLatin1Char(' ') + sqlType(f.type) + defaultOf(f.type);
    return QStringLiteral("CREATE TABLE ") + ident(def.name) + QStringLiteral(" (") + cols.join(QStringLiteral(", "))
        + QLatin1Char(')');
}

// `present`: the fields the table has in the file; an index over a field it
// lacks (a table of another build) is left out. Empty: a new table, all of them.
static void createIndexes(const QSqlDatabase &db, const TableDef &def, const QSqlRecord &present = {})
{
    int n = 0;
    for (const IndexDef &ix : def.indexes) {
        ++n;
        QStringList cols;
        for (const QString &f : ix.fields)
            cols << ident(f);
        if (!present.isEmpty()
            && std::any_of(ix.fields.begin(), ix.fields.end(), [&](const QString &f) { return !present.contains(f); }))
            continue;
        exec(db, QStringLiteral("CREATE %1INDEX IF NOT EXISTS %2 ON %3 (%4)")
                     .arg(ix.unique ? QStringLiteral("UNIQUE ") : QString(),
                          ident(QStringLiteral("ix_%1_%2").arg(def.name).arg(n)), ident(def.name),
                          cols.join(QStringLiteral(", "))));
    }
}

bool Schema::tableExists(const QSqlDatabase &db, const QString &name)
{
    return scalar(db, QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='table' AND name = ? COLLATE NOCASE"),
                  {name}).toInt() > 0;
}

int Schema::storedVersion(const QSqlDatabase &db)
{
    if (!tableExists(db, QStringLiteral("SchemaInfo")))
        return 0;
    return scalar(db, QStringLiteral("SELECT Wert FROM SchemaInfo WHERE Schluessel = 'Version'")).toInt();
}

void Schema::create(const QSqlDatabase &db)
{
    Transaction tx(db);
    exec(db, QStringLiteral("CREATE TABLE SchemaInfo (Schluessel TEXT PRIMARY KEY, Wert TEXT)"));
    exec(db, QStringLiteral("INSERT INTO SchemaInfo VALUES ('Version', ?)"), {QString::number(Version)});
    for (const TableDef &t : tables()) {
        exec(db, createTableSql(t));
        createIndexes(db, t);
    }
    tx.commit();
}

void Schema::ensureIndexes(const QSqlDatabase &db)
{
    QStringList present;
    QSqlQuery q = exec(db, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
    while (q.next())
        present << q.value(0).toString();
    Transaction tx(db);
    for (const QString &name : present)
        if (hasTable(name))
            createIndexes(db, table(name), db.record(name));
    tx.commit();
}

bool Schema::ensureYearTable(const QSqlDatabase &db, const QString &jahr)
{
    const QString name = yearTableName(jahr);
    if (tableExists(db, name))
        return false;
    Transaction tx(db);
    const TableDef def = table(name);
    exec(db, createTableSql(def));
    createIndexes(db, def);
    tx.commit();
    return true;
}

void Schema::seed(const QSqlDatabase &db, const QString &adminName, const QString &adminPassword)
{
    Transaction tx(db);
    Statement interval(db, QStringLiteral("INSERT INTO Intervalle (Intervall, Typ, Abstand, \"HÄufigkeit\") VALUES (?,?,?,?)"));
    for (const IntervalCode &c : standardIntervalCodes())
        interval.run({c.code, c.typ, c.abstand, c.haeufigkeit});

    QStringList cols{QStringLiteral("Intervall"), QStringLiteral("BezugsWoche")};
    QStringList marks{QStringLiteral("?"), QStringLiteral("?")};
    for (int w = 1; w <= 52; ++w) {
        cols << QStringLiteral("W%1").arg(w, 2, 10, QLatin1Char('0'));
        marks << QStringLiteral("?");
    }
    Statement iva(db, QStringLiteral("INSERT INTO IVA (%1) VALUES (%2)").arg(cols.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
    for (const IvaRow &row : standardIvaRows()) {
        QVariantList values{row.intervall, row.bezugsWoche};
        for (int w = 0; w < 52; ++w)
            values << (row.due[w] ? QStringLiteral("1") : QStringLiteral("0"));
        iva.run(values);
    }

    exec(db, QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES (?,?,?)"),
         {adminName, hashPassword(adminPassword), QStringLiteral("Administrator")});
    tx.commit();
}

}
