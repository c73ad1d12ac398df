#pragma once
#include <QStringList>

namespace zol {

class Session;

// `zol export rohdaten JAHR [WW-WW] --xlsx FILE`
// `zol export geplant JJJJ/WW-JJJJ/WW [KEYS] [--material] [--ausgewaehlt KEY...] --xlsx FILE`
// `zol export rueckgemeldet JAHR [WW-WW] [KEYS] [--material] --xlsx FILE`
// KEYS are --komponente, --gewerk, --intervalltyp, --materialcode,
// --betriebszustand (and --kostenstelle for reported effort), grouping in the
// order given. The question for the two caption rows is answered by --yes.
// Exit status: 0 written, 1 refused (bad week, no posted year, no rows, an
// existing file, a role without statistics), 2 wrong usage, 3 fault.
int exportStatisticsCommand(Session &session, const QStringList &args, bool yes);
// The check of the words alone, before the data file is opened: false after
// the usage line was shown.
bool exportStatisticsArgsValid(const QStringList &args);

}
