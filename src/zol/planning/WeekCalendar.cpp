#include "WeekCalendar.h"
#include "zol/core/Digits.h"
#include "zol/core/Sql.h"
#include <QSqlQuery>
#include <cmath>

namespace zol {

QString formatMask(const QString &text, int digits)
{
    const QString t = text.trimmed();
    if (!allAsciiDigits(t))
        return text;
    // A number: its digits without leading zeros, padded to the mask's width.
    qsizetype first = 0;
    while (first < t.size() - 1 && t.at(first) == QLatin1Char('0'))
        ++first;
    const QString n = t.mid(first);
    return n.size() >= digits ? n : QString(digits - n.size(), QLatin1Char('0')) + n;
}

double leadingNumber(const QString &text)
{
    const QString t = text.trimmed();
    qsizetype i = 0;
    if (i < t.size() && (t.at(i) == QLatin1Char('-') || t.at(i) == QLatin1Char('+')))
        ++i;
    while (i < t.size() && isAsciiDigit(t.at(i)))
        ++i;
    if (i < t.size() && t.at(i) == QLatin1Char('.')) {
        ++i;
        while (i < t.size() && isAsciiDigit(t.at(i)))
            ++i;
    }
    bool ok = false;
    const double v = t.left(i).toDouble(&ok);
    return ok ? v : 0.0;
}

bool wocheImBereich(const QString &woche)
{
    const double w = std::floor(leadingNumber(woche));
    return w >= 0 && w <= 52;
}

QString BetriebszustandXL(const QString &betriebszustand)
{
    return betriebszustand == QLatin1String("R") ? QStringLiteral("R") : QStringLiteral("Z");
}

static bool inRange(const QString &von, const QString &bis, const QString &woche)
{
    if (von.isEmpty())
        return false;
    if (von <= bis)
        return woche >= von && woche <= bis;
    return woche >= von || woche <= bis;   // across the year end
}

bool inKeineWartung(const KeineWartungFelder &k, const QString &woche)
{
    if (k.KeineWartung != QLatin1String("J"))
        return false;
    return inRange(k.Von1, k.Bis1, woche) || inRange(k.Von2, k.Bis2, woche);
}

std::optional<int> wholeNumber(const QString &text)
{
    const QString t = text.trimmed();
    if (!allAsciiDigits(t) || t.size() > 9)
        return std::nullopt;
    return t.toInt();
}

Bezug Bezug::of(const QString &bezugsjahr, const QString &bezugsWoche)
{
    return {wholeNumber(bezugsjahr), wholeNumber(bezugsWoche), formatWoche(bezugsWoche)};
}

IntervalLookup IntervalLookup::load(const QSqlDatabase &db)
{
    IntervalLookup l;
    QSqlQuery q = exec(db, QStringLiteral("SELECT Intervall, Typ, Abstand, \"HÄufigkeit\" FROM Intervalle"));
    while (q.next())
        l.addInterval(q.value(0).toString(), q.value(1).toString(), q.value(2).toDouble(), q.value(3).toDouble());

    QString cols = QStringLiteral("Intervall, BezugsWoche");
    for (int w = 1; w <= 52; ++w)
        cols += QStringLiteral(", W%1").arg(w, 2, 10, QLatin1Char('0'));
    QSqlQuery iva = exec(db, QStringLiteral("SELECT %1 FROM IVA").arg(cols));
    while (iva.next()) {
        Weeks weeks{};
        for (int w = 0; w < 52; ++w)
            weeks[w] = iva.value(2 + w).toString() == QLatin1String("1");
        l.addIva(iva.value(0).toString(), formatWoche(iva.value(1).toString()), weeks);
    }
    return l;
}

void IntervalLookup::addInterval(const QString &code, const QString &typ, double abstand, double haeufigkeit)
{
    // Rounded to a whole number half to even, as the interval arithmetic always did.
    m_intervals.insert(code.toUpper(), {typ, static_cast<long long>(std::nearbyint(abstand)), haeufigkeit});
}

void IntervalLookup::addIva(const QString &code, const QString &bezugsWoche, const Weeks &dueWeeks)
{
    m_iva[code.toUpper()].insert(bezugsWoche, dueWeeks);
}

// Codes are found without regard to case, as the data file compares them;
// the stored codes are upper case, so the fast path is the exact lookup.
const IntervalLookup::Interval *IntervalLookup::interval(const QString &code) const
{
    auto it = m_intervals.constFind(code);
    if (it == m_intervals.constEnd())
        it = m_intervals.constFind(code.toUpper());
    return it == m_intervals.constEnd() ? nullptr : &it.value();
}

const IntervalLookup::Weeks *IntervalLookup::iva(const QString &code, const QString &bezugsWoche) const
{
    auto byCode = m_iva.constFind(code);
    if (byCode == m_iva.constEnd())
        byCode = m_iva.constFind(code.toUpper());
    if (byCode == m_iva.constEnd())
        return nullptr;
    const auto it = byCode->constFind(bezugsWoche);
    return it == byCode->constEnd() ? nullptr : &it.value();
}

Due isDue(const IntervalLookup &lookup, const QString &code, const IntervalLookup::Interval &interval,
          int jahr, int woche, const Bezug &bezug)
{
    if (!bezug.jahr)
        return Due::FaultBezugsjahr;
    if (woche == 0)
        return jahr - *bezug.jahr < 0 ? Due::No : Due::Yes;

    if (!bezug.woche)
        return Due::FaultBezugsWoche;
    const long long d = wochenIndex(jahr, woche) - wochenIndex(*bezug.jahr, *bezug.woche);
    if (d < 0)
        return Due::No;   // nothing is planned before the reference week, whatever IVA says
    return dueByInterval(lookup, code, interval, woche, d, bezug.wocheText);
}

Due dueByInterval(const IntervalLookup &lookup, const QString &code, const IntervalLookup::Interval &interval,
                  int woche, long long d, const QString &bezugsWocheText)
{
    if (const IntervalLookup::Weeks *weeks = lookup.iva(code, bezugsWocheText))
        return (*weeks)[woche - 1] ? Due::Yes : Due::No;
    if (interval.abstand == 0)
        return Due::FaultAbstand;
    return d % interval.abstand == 0 ? Due::Yes : Due::No;
}

}
