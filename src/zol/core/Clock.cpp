#include "Clock.h"

namespace zol {

namespace {
QDate &fixedDay()
{
    static QDate day;
    return day;
}
}

QDate Heute()
{
    return fixedDay().isValid() ? fixedDay() : QDate::currentDate();
}

void setHeute(const QDate &day)
{
    fixedDay() = day;
}

}
