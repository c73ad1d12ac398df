#pragma once
#include <QList>
#include <QString>
#include <array>

namespace zol {

// An interval code as a new data file is seeded with it.
struct IntervalCode {
    QString code;
    QString typ;        // "K" short-term, "L" long-term
    int abstand;        // weeks between two due weeks
    double haeufigkeit; // occurrences per year
};

// One row of the IVA calendar: the due weeks of a code for one reference week.
struct IvaRow {
    QString intervall;
    QString bezugsWoche;
    std::array<bool, 52> due{};
};

// The twenty codes in the order of the legend.
const QList<IntervalCode> &standardIntervalCodes();
// Calendar rows for the codes whose distance is no whole number of weeks in a
// 52-week year (4M), one row for every reference week.
QList<IvaRow> standardIvaRows();

// The definition of the codes shown to users, word for word.
QString intervalLegend();

// The strip of days printed on a job sheet for a short-term code, 40 characters;
// empty for every other code.
QString dayStrip(const QString &code);

}
