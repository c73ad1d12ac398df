#include "ProtocolSearch.h"
#include "zol/core/Messages.h"

namespace zol {

namespace {
// The last searched column: every field but Intervalltyp.
constexpr int LastSearchCol = Col::Count - 2;
}

std::optional<SearchHit> findInRows(const QList<InstructionRow> &rows, int currentRow, int currentCol,
                                    const QString &searchText, SearchDirection direction)
{
    if (searchText.trimmed().isEmpty())
        return std::nullopt;
    const int count = int(rows.size());
    if (count > 0) {
        int row = qBound(0, currentRow, count - 1);
        int col = currentCol;
        int remaining = count + 1;
        // Every cell of every row is visited once, then the start row once more
        // for the cells before the start column.
        for (;;) {
            if (direction == SearchDirection::Down) {
                if (++col > LastSearchCol) {
                    col = 1;
                    if (--remaining < 1)
                        break;
                    row = (row + 1) % count;
                }
            } else {
                if (--col < 1) {
                    col = LastSearchCol;
                    if (--remaining < 1)
                        break;
                    row = (row - 1 + count) % count;
                }
            }
            const int pos = rows.at(row).value(col).indexOf(searchText, 0, Qt::CaseInsensitive);
            if (pos >= 0)
                return SearchHit{row, col, pos, int(searchText.size())};
        }
    }
    ZeigeMeldung(QLatin1Char('\'') + searchText + QStringLiteral("' nicht gefunden"), Style::Information);
    return std::nullopt;
}

ReplaceStep replaceInRows(QList<InstructionRow> &rows, const CellSelection &sel, const QString &searchText,
                          const QString &replaceText, SearchDirection direction)
{
    ReplaceStep step;
    const bool onCell = sel.row >= 0 && sel.row < rows.size() && sel.col >= 0 && sel.col < Col::Count;
    if (onCell && sel.length >= 1 && sel.length == searchText.size()) {
        QString &cell = rows[sel.row].field(sel.col);
        if (cell.mid(sel.start, sel.length).startsWith(searchText, Qt::CaseInsensitive)) {
            cell = cell.left(sel.start) + replaceText + cell.mid(sel.start + sel.length);
            step.changedRow = sel.row;
        }
    }
    step.next = findInRows(rows, sel.row, sel.col, searchText, direction);
    return step;
}

bool replaceEnabled(const QString &searchText, const QString &replaceText)
{
    return !searchText.trimmed().isEmpty() && !replaceText.trimmed().isEmpty();
}

}
