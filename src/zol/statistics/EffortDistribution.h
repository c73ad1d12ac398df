#pragma once
#include "zol/planning/WeekCalendar.h"
#include <QSqlDatabase>
#include <QString>
#include <array>

namespace zol {

class PrinterF;

// How the planned working time of a trade (or of the trades a pattern with *
// and ? matches) spreads over the 52 weeks of a year: a planning picture laid
// from the instructions, not from the orders.

inline const QString MsgGewerkAuswaehlen = QStringLiteral(
    "Bitte ein Gewerk auswählen (Sie können auch die Platzhalter * und ? verwenden und damit zusammenfassende "
    "Summierungen erreichen)");
inline const QString MsgKeineAuftraegeGewerk = QStringLiteral("Keine Aufträge für dieses Gewerk vorhanden");
inline const QString MsgGesamtzeitNull = QStringLiteral("Gesamte Ausführungszeit = 0");

struct Aufwandsverteilung {
    std::array<double, 52> WochenZeit{};      // minutes of the week
    std::array<double, 52> WochenProzent{};   // share of the year's total, 0..1
    std::array<double, 52> WochenBalken{};    // bar length, the largest week 1
    double summe = 0;
    QString message;     // a refusal; the weeks are then empty
    enum class Field { None, Gewerk, Jahr } field = Field::None;
    bool ok() const { return message.isEmpty(); }
};

// Adds one instruction to the weeks of year `jahr` (the year as typed, after
// the mask): a long-term one in the rhythm of its reference week, a yearly
// code by its week in the running week count, a short-term one evenly.
void VerteileAufwand(const IntervalLookup &lookup, const QString &jahr, const QString &intervall,
                     const QString &intervallTyp, const QString &planZeit, const QString &bezugsJahr,
                     const QString &bezugsWoche, std::array<double, 52> &wochenZeit);

// The whole run for a trade pattern and a year, with its refusals.
Aufwandsverteilung aufwandsverteilung(const QSqlDatabase &db, const QString &gewerk, QString &jahr);

// The preview sheet: head with trade, total and average, a line per week.
void Print_Aufwandsverteilung(PrinterF &p, const QString &gewerk, const Aufwandsverteilung &v);

// The rows of the spreadsheet: week, share and hours, as text "0.00".
QList<QStringList> aufwandsverteilungZeilen(const Aufwandsverteilung &v);
QStringList aufwandsverteilungKopf();   // "Woche", "Zeit(Prozent)", "Zeit(Stunden)"

}
