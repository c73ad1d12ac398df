#pragma once
#include "StatisticsInput.h"
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace zol {

// The posted feedback of a span of weeks of one year, row by row and
// unchanged, into a workbook.

inline const QString MsgKeineDatenZeitraum = QStringLiteral("Keine Statistikdaten für diesen Zeitraum vorhanden");

// The 21 head texts and the fields of the yearly table behind them.
const QStringList &rohdatenKopf();
const QStringList &rohdatenFelder();

// Rows of weeks von..bis of the year; -1 when the year was never posted.
qint64 rohdatenAnzahl(const QSqlDatabase &db, const QString &jahr, const QString &von, const QString &bis);

struct RohdatenErgebnis {
    qint64 zeilen = 0;
    int blaetter = 0;
};

// Writes the rows into a new workbook, ordered by component, year, week,
// object and instruction: sheet "Rohdaten", the head texts in row 1 and row
// 2 blank when asked. A sheet holds at most `maxRows` rows; the rest goes on
// to further sheets "Rohdaten (2)", ..., each with its own head.
RohdatenErgebnis rohdatenSchreiben(const QSqlDatabase &db, const QString &jahr, const QString &von,
                                   const QString &bis, const QString &path, bool kopfzeilen,
                                   const Progress &progress = {}, int maxRows = 1048576);

// What the user is told when the rows took more than one sheet.
QString rohdatenBlaetterText(const RohdatenErgebnis &e);

}
