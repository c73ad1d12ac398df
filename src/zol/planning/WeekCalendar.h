#pragma once
#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <array>
#include <optional>

namespace zol {

// The planning calendar: 52 weeks a year, week "00" is the collecting slot of
// the short-term orders of a year. Year and week are text, always padded.

inline const QString MsgWochenBereich = QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig");

// The masks "0000" and "00": they pad a number with leading zeros and never
// cut ("16" -> "0016", "123" stays "123"). Text that is not a plain number
// stays as it is.
QString formatMask(const QString &text, int digits);
inline QString formatJahr(const QString &text) { return formatMask(text, 4); }
inline QString formatWoche(const QString &text) { return formatMask(text, 2); }

// The numeric value of a text the way the week check reads it: the leading
// number (sign, digits, decimals), 0 when there is none.
double leadingNumber(const QString &text);

// The week check of planning and printing: the value, cut to a whole number,
// lies in 0..52.
bool wocheImBereich(const QString &woche);

// Running week number, so that week 52 of one year and week 01 of the next are neighbours.
constexpr long long wochenIndex(long long jahr, long long woche) { return jahr * 52 + woche; }

// R stays R, every other operating state (empty included) is Z.
QString BetriebszustandXL(const QString &betriebszustand);

// The maintenance-free fields of a component.
struct KeineWartungFelder {
    QString KeineWartung, Von1, Bis1, Von2, Bis2;
};
// True when the planned week lies in one of the component's maintenance-free
// ranges. Weeks are compared as text; Von > Bis is a range across the year end.
bool inKeineWartung(const KeineWartungFelder &k, const QString &woche);

// Intervalle and IVA held in memory (twenty codes, a few hundred calendar
// rows), so that the due decision needs no database.
class IntervalLookup {
public:
    struct Interval {
        QString typ;
        long long abstand = 0;   // rounded to a whole number
        double haeufigkeit = 0;  // times a year (HÄufigkeit)
    };
    using Weeks = std::array<bool, 52>;   // W01..W52: due in that week

    static IntervalLookup load(const QSqlDatabase &db);

    void addInterval(const QString &code, const QString &typ, double abstand, double haeufigkeit = 0);
    void addIva(const QString &code, const QString &bezugsWoche, const Weeks &dueWeeks);

    const Interval *interval(const QString &code) const;
    // The IVA row of a code and a reference week (formatted "00"), or null.
    const Weeks *iva(const QString &code, const QString &bezugsWoche) const;

private:
    QHash<QString, Interval> m_intervals;
    QHash<QString, QHash<QString, Weeks>> m_iva;
};

// The reference year and week of a component, read once per component.
struct Bezug {
    std::optional<int> jahr;   // nothing when the stored text is no number
    std::optional<int> woche;
    QString wocheText;         // the stored week with the mask "00", the IVA key

    static Bezug of(const QString &bezugsjahr, const QString &bezugsWoche);
};

// Outcome of the due decision. The faults are the inputs that leave no answer:
// a reference year or week that is no number, a distance of 0 without a
// calendar row.
enum class Due { No, Yes, FaultBezugsjahr, FaultBezugsWoche, FaultAbstand };

// Is an instruction with the interval `code` (found in the lookup as
// `interval`) due in year `jahr`, week `woche` (0 = the short-term orders)?
// A week before the reference week is never due.
Due isDue(const IntervalLookup &lookup, const QString &code, const IntervalLookup::Interval &interval,
          int jahr, int woche, const Bezug &bezug);

// The interval rule of a long-term instruction in week `woche` (1..52), `d`
// weeks after its reference week (d may be negative: the planned effort of
// the statistics counts weeks before the reference too): the IVA row of the
// code and reference week alone decides if there is one, else d must be a
// multiple of the distance. Yes, No, or FaultAbstand for a distance of 0.
Due dueByInterval(const IntervalLookup &lookup, const QString &code, const IntervalLookup::Interval &interval,
                  int woche, long long d, const QString &bezugsWocheText);

// A stored whole number ("2015", "07"); nothing for empty or non-numeric text.
std::optional<int> wholeNumber(const QString &text);

}
