#pragma once
#include <QStringList>
#include <optional>

namespace zol {

class Session;

struct PostArgs {
    QString jahr, woche;
    bool loeschen = false;   // --delete: the week goes from Auftrag after posting
    bool yes = false;
};
// The words behind "post", checked before anything touches the data file:
// year and week of the digits 0 to 9 (padded to "0000" and "00"), the week at
// most 52. A wrong call shows the usage line (style 48) and gives nothing.
std::optional<PostArgs> parsePostArgs(const QStringList &args);

// `zol post YEAR WEEK [--delete] [--yes]`: posts the week with the window's
// questions, printed; the first is answered by --yes, the deletion question
// by --delete. Exit status: 0 posted, 1 refused or answered No (a week
// without orders included), 2 wrong usage, 3 fault.
int postCommand(Session &session, const QStringList &args, bool yes = false);

struct FindingsArgs {
    QString jahr, woche, pdf;
};
// The words behind "findings": year, week and --pdf FILE; a data file or an
// open file as the output is refused.
std::optional<FindingsArgs> parseFindingsArgs(const QStringList &args);

// `zol print findings YEAR WEEK --pdf FILE`: the findings print as the
// preview shows it, into a PDF. Exit status: 0 written, 1 no findings or an
// existing file kept, 2 wrong usage, 3 fault.
int printFindingsCommand(Session &session, const QStringList &args);

}
