#pragma once
#include "zol/core/Session.h"
#include <QStringList>
#include <optional>

class QTextStream;

namespace zol {

struct PlanArgs {
    QString jahr, woche;
    bool yes = false;
};
// The words after "plan", checked before anything touches the data file:
// two numbers of the digits 0 to 9, the year no wider than its field. A wrong
// call prints the usage line (to err, else stderr) and gives nothing.
std::optional<PlanArgs> parsePlanArgs(const QStringList &args, QTextStream *err = nullptr);

// The batch command `zol plan YEAR WEEK [--yes]`: the planning run of the
// window, its messages through ZeigeMeldung, the status line printed at the
// end. `args` are the words after "plan" ("--yes" may stand among them, as
// may `yes` be set by the caller). With yes, every question is shown and
// answered Yes. Exit status: 0 planned, 1 refused or answered No, 2 wrong
// usage, 3 fault.
int planCommand(Session &session, const QStringList &args, bool yes = false, QTextStream *out = nullptr,
                QTextStream *err = nullptr);

}
