#include "Catalog.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/NameOrder.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/print/PrinterF.h"
#include <QDate>
#include <QHash>
#include <QSet>
#include <QSqlRecord>

namespace zol {

namespace {

bool isTreeField(const QString &field)
{
    const QString u = field.toUpper();
    return u == QLatin1String("FILEINDEX") || u == QLatin1String("FILEABOVE") || u == QLatin1String("FILETYP")
        || u == QLatin1String("TEXT");
}

QStringList furtherOf(const QSqlRecord &rec)
{
    QStringList out;
    for (int i = 0; i < rec.count(); ++i)
        if (!isTreeField(rec.fieldName(i)))
            out << rec.fieldName(i);
    return out;
}

// Reads rows of a query into list rows; the further fields by name, so the
// order of the SELECT doesn't matter.
QList<CatalogRow> readRows(QSqlQuery &q, const QStringList &further)
{
    const QSqlRecord rec = q.record();
    const int iIndex = rec.indexOf(QStringLiteral("FileIndex"));
    const int iAbove = rec.indexOf(QStringLiteral("FileAbove"));
    const int iTyp = rec.indexOf(QStringLiteral("FileTyp"));
    const int iText = rec.indexOf(QStringLiteral("Text"));
    QList<int> iFurther;
    for (const QString &f : further)
        iFurther << rec.indexOf(f);
    QList<CatalogRow> out;
    while (q.next()) {
        CatalogRow r{q.value(iIndex).toString(), q.value(iAbove).toString(), q.value(iTyp).toString(),
                     q.value(iText).toString(), {}};
        for (int i : iFurther)
            r.further << (i >= 0 ? q.value(i).toString() : QString());
        out << r;
    }
    return out;
}

const QString kSeparator = QStringLiteral("     ---     ");

QString entryLine(const CatalogRow &r)
{
    QStringList parts;
    parts << (r.Text.isEmpty() ? QStringLiteral("-") : r.Text);
    for (const QString &v : r.further)
        parts << (v.isEmpty() ? QStringLiteral("-") : v);
    return parts.join(kSeparator);
}

}   // namespace

const QList<CatalogKind> &catalogKinds()
{
    static const QList<CatalogKind> kinds{
        {1, QStringLiteral("Anweisung"), QStringLiteral("Texte"), QStringLiteral("Anweisungs-Katalog")},
        {2, QStringLiteral("Material-Code"), QStringLiteral("Material"), QStringLiteral("Material-Katalog")},
        {3, QStringLiteral("Sicherheitshinweis"), QStringLiteral("SHinweise"), QStringLiteral("Sicherheitshinweis-Katalog")},
        {4, QStringLiteral("Gewerk"), QStringLiteral("Gewerke"), QStringLiteral("Gewerke-Katalog")},
        {5, QStringLiteral("Kostenstelle"), QStringLiteral("Kostenstellen"), QStringLiteral("Kostenstellen-Katalog")},
        {6, QStringLiteral("Klassifizierung"), QStringLiteral("Klassifizierungen"), QStringLiteral("Klassifizierungs-Katalog")},
        {7, QStringLiteral("Lokalisierung"), QStringLiteral("Lokalisierungen"), QStringLiteral("Lokalisierungs-Katalog")},
        {8, QStringLiteral("Hersteller"), QStringLiteral("Hersteller"), QStringLiteral("Hersteller-Katalog")},
        {9, QStringLiteral("Benennung"), QStringLiteral("Benennungen"), QStringLiteral("Benennungs-Katalog")},
        {10, QStringLiteral("Laufweg"), QStringLiteral("Option1"), QStringLiteral("Laufweg-Katalog")},
        {11, QStringLiteral("Option"), QStringLiteral("Option2"), QStringLiteral("Options-Katalog")},
    };
    return kinds;
}

std::optional<CatalogKind> catalogKindOfTable(const QString &table)
{
    for (const CatalogKind &k : catalogKinds())
        if (k.Table.compare(table, Qt::CaseInsensitive) == 0)
            return k;
    return std::nullopt;
}

QString catalogColumnHeader(const QString &field)
{
    static const QHash<QString, QString> known{
        {QStringLiteral("ANWEISUNG"), QStringLiteral("Anweisung")},
        {QStringLiteral("STANDARDINTERVALL"), QStringLiteral("Standardintervall")},
        {QStringLiteral("MATERIAL-CODE"), QStringLiteral("Material-Code")},
        {QStringLiteral("BESCHREIBUNG"), QStringLiteral("Beschreibung")},
        {QStringLiteral("SICHERHEITSHINWEIS"), QStringLiteral("Sicherheitshinweis")},
        {QStringLiteral("HINWEIS"), QStringLiteral("Hinweis")},
        {QStringLiteral("GEWERK"), QStringLiteral("Gewerk")},
        {QStringLiteral("BENENNUNG"), QStringLiteral("Benennung")},
        {QStringLiteral("HERSTELLER"), QStringLiteral("Hersteller")},
        {QStringLiteral("KOSTENSTELLE"), QStringLiteral("Kostenstelle")},
        {QStringLiteral("KLASSIFIZIERUNG"), QStringLiteral("Klassifizierung")},
        {QStringLiteral("LOKALISIERUNG"), QStringLiteral("Lokalisierung")},
        {QStringLiteral("LAUFWEG"), QStringLiteral("Laufweg")},
        {QStringLiteral("OPTION"), QStringLiteral("Option")},
    };
    return known.value(field.toUpper(), field);
}

QStringList catalogFurtherFields(const QSqlDatabase &db, const QString &table)
{
    return furtherOf(db.record(table));
}

QString catalogSection(const Session &session, const QString &name)
{
    return session.section(QStringLiteral("\\env\\'") + name + QLatin1Char('\''));
}

// ---------------------------------------------------------------------------

Catalog::Catalog(Session &session, CatalogKind kind)
    : m_session(session), m_kind(std::move(kind)), m_explorer(session, ExplorerTable::catalog(m_kind.Table))
{
}

bool Catalog::Init()
{
    try {
        QSqlQuery q = exec(m_session.db(), QStringLiteral("SELECT * FROM %1 ORDER BY [Text] LIMIT 0").arg(ident(m_kind.Table)));
        m_further = furtherOf(q.record());
        m_open = true;
    } catch (const Fault &) {
        m_further.clear();
        m_open = false;
        ZeigeMeldung(QStringLiteral("Fehler beim Öffnen der Datenbank"), Style::Critical);
    }
    return m_open;
}

QStringList Catalog::columnHeaders() const
{
    QStringList out{m_kind.Name};
    for (const QString &f : m_further)
        out << catalogColumnHeader(f);
    return out;
}

void Catalog::setStatusSink(std::function<void(const QString &)> sink)
{
    m_status = sink;
    m_explorer.onStatus = std::move(sink);
}

void Catalog::status(const QString &text) const
{
    if (m_status)
        m_status(text);
}

QList<CatalogRow> Catalog::loadListView(const QString &folderKey)
{
    status(QStringLiteral("Lade Verzeichnis-Einträge neu"));
    QList<CatalogRow> out;
    Statement st(m_session.db(),
                 QStringLiteral("SELECT * FROM %1 WHERE FileAbove = ? AND FileTyp = ? ORDER BY %2").arg(ident(m_kind.Table), nameOrder(QStringLiteral("Text"))));
    for (const QString &typ : {FileTypOrdner, FileTypFile}) {
        QSqlQuery &q = st.run({folderKey, typ});
        for (const CatalogRow &r : readRows(q, m_further))
            if (!r.Text.isEmpty())
                out << r;
        q.finish();
    }
    status(QString());
    return out;
}

std::optional<CatalogRow> Catalog::row(const QString &key) const
{
    QSqlQuery q = exec(m_session.db(), QStringLiteral("SELECT * FROM %1 WHERE FileIndex = ?").arg(ident(m_kind.Table)), {key});
    const QList<CatalogRow> rows = readRows(q, m_further);
    if (rows.isEmpty())
        return std::nullopt;
    return rows.first();
}

bool Catalog::mayEdit() const
{
    const QString &level = m_session.login().Level;
    return level != QLatin1String("Werker") && level != QLatin1String("Auswerter");
}

CatalogPick Catalog::doubleClick(const QString &key, bool picker) const
{
    CatalogPick pick;
    const std::optional<CatalogRow> r = row(key);
    if (!r)
        return pick;
    if (r->isFolder()) {
        pick.action = CatalogPick::OpenFolder;
    } else if (!picker) {
        if (mayEdit())
            pick.action = CatalogPick::OpenProperties;
    } else {
        pick.action = CatalogPick::Choose;
        pick.Tag = r->Text;
        // Standardintervall is the first further field of Texte.
        if (m_kind.Table == QLatin1String("Texte"))
            pick.interval = r->further.value(0);
    }
    return pick;
}

std::optional<QList<CatalogProperty>> Catalog::Eigenschaften(const QString &key) const
{
    if (!mayEdit())
        return std::nullopt;
    const std::optional<CatalogRow> r = row(key);
    if (!r)
        return std::nullopt;
    const QStringList headers = columnHeaders();
    QList<CatalogProperty> out;
    out << CatalogProperty{QStringLiteral("Text"), headers.value(0), r->Text, Schema::Size(m_kind.Table, QStringLiteral("Text"))};
    for (int i = 0; i < m_further.size(); ++i)
        out << CatalogProperty{m_further.at(i), headers.value(i + 1), r->further.value(i),
                               Schema::Size(m_kind.Table, m_further.at(i))};
    return out;
}

bool Catalog::saveEigenschaften(const QString &key, const QStringList &values)
{
    if (!mayEdit())
        return false;
    const QSqlDatabase db = m_session.db();
    try {
        const std::optional<QList<CatalogProperty>> props = Eigenschaften(key);
        if (!props)
            return false;
        QStringList sets;
        QVariantList bound;
        for (int i = 0; i < props->size() && i < values.size(); ++i) {
            const CatalogProperty &p = props->at(i);
            // A value longer than its field is left as it stood.
            if (p.size >= 0 && values.at(i).size() > p.size)
                continue;
            sets << ident(p.field) + QStringLiteral(" = ?");
            bound << values.at(i);
        }
        if (sets.isEmpty())
            return true;
        bound << key;
        Transaction tx(db);
        exec(db, QStringLiteral("UPDATE %1 SET %2 WHERE FileIndex = ?").arg(ident(m_kind.Table), sets.join(QLatin1Char(','))),
             bound);
        tx.commit();
        return true;
    } catch (const Fault &f) {
        ZeigeFehler(f, QStringLiteral("Kann Eigenschaften nicht speichern"));
        return false;
    }
}

// ---------------------------------------------------------------------------

QString Catalog::druckKopf(int page, const QDate &date) const
{
    return QStringLiteral("Ausdruck aus dem ") + m_kind.Title + QStringLiteral("               Blatt Nr. ")
        + QString::number(page) + QStringLiteral("   Gedruckt : ") + date.toString(QStringLiteral("dd.MM.yyyy"));
}

QList<Catalog::PrintLine> Catalog::druckZeilen(bool alle, const QStringList &selected) const
{
    const QSqlDatabase db = m_session.db();
    QSqlQuery q = exec(db, QStringLiteral("SELECT * FROM %1 WHERE FileTyp IN ('O','F') ORDER BY [FileTyp],[FileAbove],[Text]")
                               .arg(ident(m_kind.Table)));
    const QList<CatalogRow> rows = readRows(q, m_further);
    QHash<QString, QList<int>> below;   // FileAbove -> rows, in the order read
    QHash<QString, int> byKey;
    for (int i = 0; i < rows.size(); ++i) {
        below[rows.at(i).FileAbove] << i;
        byKey.insert(rows.at(i).FileIndex, i);
    }

    QList<PrintLine> out;
    QSet<QString> done;   // a damaged chain that runs in a circle is printed once
    QString lastHead;
    std::function<void(const CatalogRow &, const QString &)> folder = [&](const CatalogRow &f, const QString &path) {
        if (done.contains(f.FileIndex))
            return;
        done.insert(f.FileIndex);
        out << PrintLine{true, path};
        lastHead = path;
        for (int i : below.value(f.FileIndex))
            if (!rows.at(i).isFolder())
                out << PrintLine{false, entryLine(rows.at(i))};
        for (int i : below.value(f.FileIndex))
            if (rows.at(i).isFolder())
                folder(rows.at(i), path + QLatin1Char('\\') + rows.at(i).Text);
    };

    const ExplorerTable table = ExplorerTable::catalog(m_kind.Table);
    if (alle) {
        for (int i : below.value(CatalogRoot))
            if (rows.at(i).isFolder())
                folder(rows.at(i), rows.at(i).Text);
    } else {
        for (const QString &key : selected) {
            const auto it = byKey.constFind(key);
            if (it == byKey.constEnd())
                continue;
            const CatalogRow &r = rows.at(*it);
            if (r.isFolder()) {
                folder(r, FullPath(db, table, r.FileIndex));
            } else if (!done.contains(r.FileIndex)) {
                done.insert(r.FileIndex);
                const QString head = FullPath(db, table, r.FileAbove);
                if (head != lastHead || out.isEmpty()) {
                    out << PrintLine{true, head};
                    lastHead = head;
                }
                out << PrintLine{false, entryLine(r)};
            }
        }
    }
    return out;
}

void Catalog::compose(PrinterF &printer, const QList<PrintLine> &lines) const
{
    printer.InitPrinter();
    const QDate today = QDate::currentDate();
    const int H = int(printer.TextHeight());
    const int left = int(printer.TextWidth(QStringLiteral("O0TI")));
    const int indent = left + int(printer.TextWidth(QStringLiteral("OOOO")));
    const int right = int(printer.ScaleWidth());
    const int bottom = int(printer.ScaleHeight());
    int page = 1;
    auto head = [&]() {
        printer.setBold(true);
        printer.XPos(left);
        printer.YPos(0);
        printer.PrintString(druckKopf(page, today));
        printer.setBold(false);
        return 2 * H;
    };
    int y = head();
    bool topOfPage = true;
    const QString separators = QStringLiteral(" -\\,;.");
    for (const PrintLine &line : lines) {
        // A folder's path stands apart from the entries above it.
        if (line.folder && !topOfPage)
            y += H / 2;
        const int x = line.folder ? left : indent;
        printer.setBold(line.folder);
        QString text = line.text;
        const size_t before = printer.store().pages.back().items.size();
        int n = printer.PrintText(text, x, right, y, bottom, separators);
        // PrintText draws nothing when the block doesn't fit above the bottom.
        if (printer.store().pages.back().items.size() == before) {
            printer.NewPage();
            ++page;
            y = head();
            printer.setBold(line.folder);
            text = line.text;
            n = printer.PrintText(text, x, right, y, bottom, separators);
        }
        printer.setBold(false);
        y += n * H;
        topOfPage = false;
    }
}

void Catalog::Drucken(PrinterF &printer, bool alle, const QStringList &selected, bool vorschau)
{
    QList<PrintLine> lines;
    try {
        lines = druckZeilen(alle, selected);
    } catch (const Fault &f) {
        ZeigeFehler(f, QStringLiteral("Kann Druckauftrag nicht erstellen"));
        return;
    }
    if (lines.isEmpty()) {
        ZeigeMeldung(QStringLiteral("Keine zu druckenden Einträge vorhanden"), Style::Exclamation);
        return;
    }
    status(QStringLiteral("Erstelle Druckauftrag"));
    printer.Vorschau = vorschau;
    for (;;) {
        try {
            compose(printer, lines);
            printer.zeig();
            break;
        } catch (const Fault &f) {
            const int r = printerErrors(f);
            if (r == 0)
                continue;   // the user asked to try the job again
            if (r == 3)
                ZeigeMeldung(faultText(f), Style::Critical);
            break;
        }
    }
    status(QString());
}

}
