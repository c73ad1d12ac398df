#pragma once
#include "StatisticsInput.h"
#include "zol/planning/WeekCalendar.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>

namespace zol {

// Planned effort (expanded from the instructions' intervals over a range of
// weeks) and reported effort (added up from a posted year), grouped by keys
// the user chooses, in their order.

// A grouping key as the list of keys offers it: caption and field.
struct AufwandSchluessel {
    QString text;
    QString key;
};
// "Komponente", "Gewerk", "Intervalltyp", "Materialcode", "Betriebszustand".
const QList<AufwandSchluessel> &geplantSchluessel();
// The same for reported effort, with "Kostenstelle" besides.
const QList<AufwandSchluessel> &rueckgemeldetSchluessel();

// What is added up: position 0 the time, position 1 the material.
enum class Auswertung { Zeit = 0, Material = 1 };
QStringList geplantAuswertungen();        // "Geplanter Zeitaufwand", "Geplanter Materialverbrauch"
QStringList rueckgemeldetAuswertungen();  // "Rückgem. Zeitaufwand", "Rückgem. Materialaufwand"
// The caption of the value column: "Zeitaufwand" or "Materialverbrauch".
QString wertSpalte(Auswertung a);

// A range of weeks across years, each counted as year * 52 + week.
struct WochenBereich {
    int jahrVon = 0, wocheVon = 0, jahrBis = 0, wocheBis = 0;
};

// The planned value of one instruction over the range: minutes or quantity.
// A short-term instruction spreads its yearly frequency evenly over the weeks
// from its reference on; a long-term one adds its value in every week of the
// range in its rhythm (by the planning's interval rule, weeks before the
// reference week counting too). The walk over the weeks stops as soon as a
// week passes the last week of the range, in whatever year.
double GeplanterWert(const IntervalLookup &lookup, const QString &intervall, const QString &bezugsJahr,
                     const QString &bezugsWoche, const QString &wert, const WochenBereich &bereich);
// The weeks of the range on which a long-term instruction falls due.
int faelligeWochen(const IntervalLookup &lookup, const QString &intervall, const IntervalLookup::Interval &iv,
                   int bezugsJahr, int bezugsWoche, const QString &bezugsWocheText, const WochenBereich &bereich);

// The reported value of one posted row: a short-term row counts for its
// share of one week of its yearly frequency.
double RueckgemeldeterWert(const IntervalLookup &lookup, const QString &intervall, double wert);

struct AufwandParameter {
    Auswertung auswertung = Auswertung::Zeit;
    QStringList schluessel;   // keys (fields) in the order chosen
    bool alle = true;         // all components, or the entries
    QStringList entries;      // with alle false: the entries of the main window
};

struct AufwandErgebnis {
    QStringList spalten;          // one per key, then the value column
    QList<QStringList> zeilen;    // groups with an effort other than 0
};

// Planned effort of the instructions over the range.
AufwandErgebnis geplanterAufwand(const QSqlDatabase &db, const AufwandParameter &p, const WochenBereich &bereich,
                                 const Progress &progress = {});
// Reported effort of the weeks von..bis of the posted year (rows cancelled
// with finding S left out); nothing when the year was never posted.
std::optional<AufwandErgebnis> rueckgemeldeterAufwand(const QSqlDatabase &db, const AufwandParameter &p,
                                                      const QString &jahr, const QString &wocheVon,
                                                      const QString &wocheBis, const Progress &progress = {});

}
