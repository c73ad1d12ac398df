#pragma once
#include "InstructionRow.h"
#include <QList>
#include <QString>
#include <optional>

namespace zol {

// A hit of the grid search: the row, the column and the selection in the cell.
struct SearchHit {
    int row = -1;
    int col = -1;
    int start = 0;   // 0-based position of the hit in the cell
    int length = 0;
    bool operator==(const SearchHit &) const = default;
};

enum class SearchDirection { Down = 0, Up = 1 };

// One search step of the grid: from the current cell to the next cell, in the
// direction, whose text holds the search text, case never mattering. Columns
// 1 to 11 are searched (not TeNummer, not Intervalltyp); the search wraps
// around once and comes back to the start. A blank search text searches
// nothing; a text not found shows "'<text>' nicht gefunden".
std::optional<SearchHit> findInRows(const QList<InstructionRow> &rows, int currentRow, int currentCol,
                                    const QString &searchText, SearchDirection direction);

// The selection the grid shows in its current cell.
struct CellSelection {
    int row = -1;
    int col = -1;
    int start = 0;
    int length = 0;
};

struct ReplaceStep {
    std::optional<int> changedRow;        // the row whose cell got the replacement
    std::optional<SearchHit> next;        // the next hit, if any
};

// The replace button: when the selection is exactly the search text (case
// ignored), the selection becomes the replacement; then one search runs from
// that cell. So the first press finds and the next replaces and finds on.
ReplaceStep replaceInRows(QList<InstructionRow> &rows, const CellSelection &selection, const QString &searchText,
                          const QString &replaceText, SearchDirection direction);

// The replace button is offered only while both texts are non-blank.
bool replaceEnabled(const QString &searchText, const QString &replaceText);

}
