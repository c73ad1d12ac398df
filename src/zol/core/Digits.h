#pragma once
#include <QChar>
#include <QStringView>

namespace zol {

// Numbers typed by users and stored in text fields are written with the
// digits 0 to 9 only. QChar::isDigit() also accepts Arabic-Indic, full-width
// and other digits, which the number conversions then fail on.
inline bool isAsciiDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

// True for a non-empty text of the digits 0 to 9 only.
inline bool allAsciiDigits(QStringView t)
{
    if (t.isEmpty())
        return false;
    for (QChar c : t)
        if (!isAsciiDigit(c))
            return false;
    return true;
}

}
