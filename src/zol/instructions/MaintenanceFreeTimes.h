#pragma once
#include <QList>
#include <QSqlDatabase>
#include <QString>

namespace zol {

// A row of WartungsfreieZeit: a range of weeks of the year without maintenance.
struct WartungsfreieZeitRow {
    QString WocheVon, WocheBis, Kommentar;
    qint64 rowId = 0;   // the store's row number, 0 for a row not yet written
};

namespace WartungsfreiCol {
constexpr int WocheVon = 0;
constexpr int WocheBis = 1;
constexpr int Kommentar = 2;
}

// Only Administrator and Master may change the ranges: the window passes no
// component, which counts as a Standard for everybody else.
bool maintenanceFreeTimesReadOnly(const QString &level);

QList<WartungsfreieZeitRow> loadMaintenanceFreeTimes(const QSqlDatabase &db);

// The column rule when a cell is left with a changed value. The typed text
// goes into the row (formatted as the column says); a refusal shows its
// message and the cell keeps its text. Returns false on a refusal.
bool leaveMaintenanceFreeCell(WartungsfreieZeitRow &row, int col, const QString &typed);

// The row rule before a write: both weeks "00"; the first not after the last.
bool maintenanceFreeRowRule(WartungsfreieZeitRow &row);

enum class MaintenanceFreeWrite { Written, Refused, DuplicateKey };
// Row rule and the write of one row (insert for rowId 0, else update). A
// range that exists already is refused with the closing message of the window.
MaintenanceFreeWrite writeMaintenanceFreeTime(const QSqlDatabase &db, const QString &level, WartungsfreieZeitRow &row);
bool deleteMaintenanceFreeTime(const QSqlDatabase &db, const QString &level, qint64 rowId);

QString maintenanceFreeDuplicateText();

}
