#pragma once
#include "JobSheets.h"
#include <QStringList>
#include <optional>

namespace zol {

class Session;

struct JobSheetArgs {
    QString jahr, woche, pdf;
    JobSheetFilter filter;
};
// The words behind "jobsheets", checked before anything touches the data
// file: a wrong call or a data file as the output shows its message (style
// 48) and gives nothing.
std::optional<JobSheetArgs> parseJobSheetsArgs(const QStringList &args);

// `zol print jobsheets YEAR WEEK --pdf FILE [--gewerk T] [--kostenstelle K]
// [--lokalisierung L]`; args are the words behind "jobsheets". Writes exactly
// the pages of the preview into FILE. An existing FILE is replaced only when
// the user answers Yes (--yes). Exit status: 0 done, 1 refused, kept or
// nothing to print, 2 wrong usage (a data file or an open file as FILE
// included), 3 fault (an unwritable file included).
int printJobSheetsCommand(Session &session, const QStringList &args);

}
