#include "RawData.h"
#include "StatisticsExport.h"
#include "zol/core/Fault.h"
#include "zol/core/Schema.h"
#include "zol/core/SortOnDisk.h"
#include "zol/core/Sql.h"
#include "zol/exchange/XlsxWriter.h"
#include <QLocale>
#include <QSqlQuery>

namespace zol {

const QStringList &rohdatenKopf()
{
    static const QStringList k = {
        QStringLiteral("Interne_Komponenten-Nr"), QStringLiteral("Komponente"), QStringLiteral("Jahr"),
        QStringLiteral("Woche"), QStringLiteral("Objekt"), QStringLiteral("Anweisung"), QStringLiteral("Datum"),
        QStringLiteral("Auftragstext"), QStringLiteral("Bemerkungstext"), QStringLiteral("Arbeitszeit"),
        QStringLiteral("Material-Code"), QStringLiteral("Material-Menge"), QStringLiteral("Kostenstelle"),
        QStringLiteral("Meldungs-Codierung"), QStringLiteral("Meldung_verbal?"), QStringLiteral("Intervall"),
        QStringLiteral("Zurückgemeldet?"), QStringLiteral("Anzahl_Personen"), QStringLiteral("Gewerk"),
        QStringLiteral("Betriebszustand"), QStringLiteral("Sicherheitshinweis")};
    return k;
}

const QStringList &rohdatenFelder()
{
    static const QStringList f = {
        QStringLiteral("TeIndex"), QStringLiteral("KompBezeichnung"), QStringLiteral("Jahr"), QStringLiteral("Woche"),
        QStringLiteral("Objekt"), QStringLiteral("Anweisung"), QStringLiteral("Datum"), QStringLiteral("Text"),
        QStringLiteral("Bemerkung"), QStringLiteral("PlanZeit"), QStringLiteral("Materialcode"),
        QStringLiteral("Materialmenge"), QStringLiteral("Kostenstelle"), QStringLiteral("Befund"),
        QStringLiteral("Verbal"), QStringLiteral("Intervall"), QStringLiteral("Rückmeldung"),
        QStringLiteral("AnzahlPersonen"), QStringLiteral("Ausfuehrender"), QStringLiteral("Betriebszustand"),
        QStringLiteral("SicherheitsHinweis")};
    return f;
}

qint64 rohdatenAnzahl(const QSqlDatabase &db, const QString &jahr, const QString &von, const QString &bis)
{
    const QString table = Schema::yearTableName(jahr);
    if (!Schema::tableExists(db, table))
        return -1;
    return scalar(db, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE Woche >= ? AND Woche <= ?").arg(ident(table)),
                  {von, bis})
        .toLongLong();
}

RohdatenErgebnis rohdatenSchreiben(const QSqlDatabase &db, const QString &jahr, const QString &von,
                                   const QString &bis, const QString &path, bool kopfzeilen,
                                   const Progress &progress, int maxRows)
{
    checkNewExportFile(path);
    const QString table = Schema::yearTableName(jahr);
    const qint64 total = rohdatenAnzahl(db, jahr, von, bis);
    if (total < 0)
        throw Fault(FaultNo::TableMissing, table);
    QStringList cols;
    const TableDef def = Schema::table(table);
    std::vector<bool> numeric;
    for (const QString &f : rohdatenFelder()) {
        cols << ident(f);
        const int i = def.fieldIndex(f);
        numeric.push_back(i >= 0 && def.fields.at(i).type != FieldType::Text);
    }
    // A posted year is ordered by component, which no index of the table serves.
    const SortOnDisk sortOnDisk(db);
    QSqlQuery q = exec(db, QStringLiteral("SELECT %1 FROM %2 WHERE Woche >= ? AND Woche <= ?"
                                          " ORDER BY TeIndex, Jahr, Woche, Objekt, Anweisung")
                               .arg(cols.join(QLatin1Char(',')), ident(table)),
                       {von, bis});

    RohdatenErgebnis out;
    XlsxWriter w(path);
    int row = maxRows;   // a full sheet: the first row opens one
    const auto newSheet = [&] {
        ++out.blaetter;
        w.addSheet(out.blaetter == 1 ? QStringLiteral("Rohdaten") : QStringLiteral("Rohdaten (%1)").arg(out.blaetter));
        row = 0;
        if (kopfzeilen) {
            for (int c = 0; c < rohdatenKopf().size(); ++c)
                w.writeText(0, c, rohdatenKopf().at(c));
            row = 2;
        }
    };
    const int n = int(cols.size());
    while (q.next()) {
        if (row >= maxRows)
            newSheet();
        for (int c = 0; c < n; ++c) {
            const QVariant v = q.value(c);
            if (numeric[c] && !v.isNull())
                w.writeNumber(row, c, v.toDouble());
            else
                w.writeText(row, c, v.toString());
        }
        ++row;
        if (++out.zeilen % 8192 == 0 && progress)
            progress(out.zeilen, total);
    }
    if (out.blaetter == 0)
        newSheet();
    w.finish();
    if (progress)
        progress(out.zeilen, total);
    return out;
}

QString rohdatenBlaetterText(const RohdatenErgebnis &e)
{
    if (e.blaetter <= 1)
        return {};
    return QStringLiteral("Die %1 Zeilen passen nicht auf ein Tabellenblatt (höchstens %2 Zeilen): sie stehen auf "
                          "%3 Blättern, \"Rohdaten\" und den folgenden.")
        .arg(QLocale(QLocale::German).toString(e.zeilen))
        .arg(QLocale(QLocale::German).toString(1048576))
        .arg(e.blaetter);
}

}
