#pragma once
#include <QDate>

namespace zol {

// Today's date for the rules that depend on it (due dates, the done date).
// Tests set a fixed day; an invalid date gives the system clock back.
QDate Heute();
void setHeute(const QDate &day);

}
