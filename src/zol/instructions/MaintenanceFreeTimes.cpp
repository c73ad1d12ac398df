#include "MaintenanceFreeTimes.h"
#include "InstructionRow.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Rights.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include <QSqlQuery>

namespace zol {

namespace {

const QString Tab = QStringLiteral("WartungsfreieZeit");

bool refuse(const QString &text)
{
    ZeigeMeldung(text, Style::Exclamation);
    return false;
}

QString nurNumerisch()
{
    return QStringLiteral("Es sind nur numerische Zeichen erlaubt");
}

}

bool maintenanceFreeTimesReadOnly(const QString &level)
{
    return standardCheckRefuses(level, true);
}

QList<WartungsfreieZeitRow> loadMaintenanceFreeTimes(const QSqlDatabase &db)
{
    QSqlQuery q = exec(db, QStringLiteral("SELECT rowid, WocheVon, WocheBis, Kommentar FROM WartungsfreieZeit"));
    QList<WartungsfreieZeitRow> rows;
    while (q.next())
        rows << WartungsfreieZeitRow{q.value(1).toString(), q.value(2).toString(), q.value(3).toString(),
                                     q.value(0).toLongLong()};
    return rows;
}

bool leaveMaintenanceFreeCell(WartungsfreieZeitRow &row, int col, const QString &typed)
{
    if (col == WartungsfreiCol::WocheVon) {
        // The first week is formatted four digits wide here and cut to two below,
        // as the window always did.
        row.WocheVon = formatMask(typed, QStringLiteral("0000"));
        if (!isNumeric(row.WocheVon))
            return refuse(nurNumerisch());
    } else if (col == WartungsfreiCol::WocheBis) {
        row.WocheBis = formatMask(typed, QStringLiteral("00"));
        if (!isNumeric(row.WocheBis))
            return refuse(nurNumerisch());
        // The test looks at WocheVon, as text; WocheBis itself is left alone.
        if (row.WocheVon > QLatin1String("52"))
            return refuse(QStringLiteral("Die Woche muß <= 52 sein"));
        if (row.WocheVon < QLatin1String("01"))
            return refuse(QStringLiteral("Die Woche muß >= 1 sein"));
    } else {
        row.Kommentar = typed;
        return true;
    }
    row.WocheVon = formatMask(row.WocheVon, QStringLiteral("00"));
    return true;
}

bool maintenanceFreeRowRule(WartungsfreieZeitRow &row)
{
    row.WocheVon = formatMask(row.WocheVon, QStringLiteral("00"));
    row.WocheBis = formatMask(row.WocheBis, QStringLiteral("00"));
    if (row.WocheVon > row.WocheBis)
        return refuse(QStringLiteral("Das Wochen-Intervall ist nicht plausibel"));
    return true;
}

QString maintenanceFreeDuplicateText()
{
    return QStringLiteral("Die gerade bearbeitete Zeile konnte nicht aktualisiert werden. Bitte überprüfen Sie, ob "
                          "WocheVon/WocheBis doppelt vorhanden sind und ändern Sie dieses gegebenenfalls");
}

MaintenanceFreeWrite writeMaintenanceFreeTime(const QSqlDatabase &db, const QString &level, WartungsfreieZeitRow &row)
{
    if (maintenanceFreeTimesReadOnly(level))
        return MaintenanceFreeWrite::Refused;
    WartungsfreieZeitRow candidate = row;
    if (!maintenanceFreeRowRule(candidate))
        return MaintenanceFreeWrite::Refused;
    // What the grid's cells can't hold never reaches the table.
    if (!isNumeric(candidate.WocheVon) || !isNumeric(candidate.WocheBis)) {
        refuse(nurNumerisch());
        return MaintenanceFreeWrite::Refused;
    }
    const QList<QPair<QString, QString>> sized{{QStringLiteral("WocheVon"), candidate.WocheVon},
                                               {QStringLiteral("WocheBis"), candidate.WocheBis},
                                               {QStringLiteral("Kommentar"), candidate.Kommentar}};
    for (const auto &[field, value] : sized) {
        const int size = Schema::Size(Tab, field);
        if (size >= 0 && value.size() > size) {
            refuse(InstructionText::hoechstens(size));
            return MaintenanceFreeWrite::Refused;
        }
    }
    try {
        if (candidate.rowId == 0) {
            QSqlQuery q = exec(db, QStringLiteral("INSERT INTO WartungsfreieZeit (WocheVon, WocheBis, Kommentar) VALUES (?,?,?)"),
                               {candidate.WocheVon, candidate.WocheBis, candidate.Kommentar});
            candidate.rowId = q.lastInsertId().toLongLong();
        } else
            exec(db, QStringLiteral("UPDATE WartungsfreieZeit SET WocheVon = ?, WocheBis = ?, Kommentar = ? WHERE rowid = ?"),
                 {candidate.WocheVon, candidate.WocheBis, candidate.Kommentar, candidate.rowId});
    } catch (const Fault &f) {
        if (f.number() != FaultNo::KeyExists)
            throw;
        refuse(maintenanceFreeDuplicateText());
        return MaintenanceFreeWrite::DuplicateKey;
    }
    row = candidate;
    return MaintenanceFreeWrite::Written;
}

bool deleteMaintenanceFreeTime(const QSqlDatabase &db, const QString &level, qint64 rowId)
{
    if (maintenanceFreeTimesReadOnly(level))
        return false;
    return exec(db, QStringLiteral("DELETE FROM WartungsfreieZeit WHERE rowid = ?"), {rowId}).numRowsAffected() > 0;
}

}
