#pragma once
#include <QStringList>

namespace zol {

class Session;

// `zol print jobsheets YEAR WEEK --pdf FILE [--gewerk T] [--kostenstelle K]
// [--lokalisierung L]`; args are the words behind "jobsheets". Writes exactly
// the pages of the preview into FILE. Exit status: 0 done, 1 refused or
// nothing to print, 2 wrong usage, 3 fault (an unwritable file included).
int printJobSheetsCommand(Session &session, const QStringList &args);

}
