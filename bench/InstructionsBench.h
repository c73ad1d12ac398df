#pragma once
#include <QSqlDatabase>

namespace zolbench {

// The protocol grid's figures on a component of 2,000 instruction lines: open
// (lines read and the grid model filled), a search over all lines that finds
// nothing (the longest search), and the paste of 1,000 buffered lines into an
// empty component.
void instructionsBench(const QSqlDatabase &db);

}
