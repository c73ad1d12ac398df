#pragma once
#include "Explorer.h"
#include "zol/core/Session.h"
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>

namespace zol {

// ---------------------------------------------------------------------------
// The search views of the main window and the rows the list shows.

// One entry of the list as it is drawn: name, image and one sub-item per
// displayed column.
struct ListRow {
    QString FileIndex;
    QString FileTyp;
    QString Text;
    ListImage image = ListImage::PlantComponent;
    QStringList subItems;
};
ListRow listRowOf(const Node &node, const OptionState &options);
// The rows of the given keys, in the order of the keys (keys no longer in
// the table are left out). Read in blocks, for a list that loads on demand.
QList<ListRow> listRows(const QSqlDatabase &db, const QStringList &keys, const OptionState &options);

// The filter texts of a search: index 0 belongs to the name (Text), index i
// from 1 to 18 to the i-th field of the column table. Missing entries are empty.
using SearchFilters = QStringList;
constexpr int SearchFilterCount = 19;

// The field a filter index stands for: "Text" for 0, else the field of the
// column table; empty outside.
QString searchField(int index, const OptionState &options);
// Whether a filter text restricts at all: blanks only and a lone "*" don't.
bool filterRestricts(const QString &text);

struct SearchStatement {
    QString sql;
    QVariantList values;
};
// The statement of the search in view 1, 2 or 3: the components (of the
// plant only in view 2, the Standards only in view 3) whose name and whose
// displayed columns match the filters, with the wildcards * and ? and without
// regard to case, ordered by name. Filters of columns not displayed don't count.
// The statement selects FileIndex only; the list reads the rows it shows.
SearchStatement searchStatement(int view, const SearchFilters &filters, const OptionState &options);
// The FileIndex values the search finds, by name.
QStringList SucheKomponenten(const QSqlDatabase &db, int view, const SearchFilters &filters, const OptionState &options);

// The values a filter combo offers: every value of the field among the
// components of the view, once, in order.
QStringList filterChoices(const QSqlDatabase &db, int view, const QString &field);

// Text of the warning for a component whose parent is missing.
QString orphanWarning();
// The window caption when a component is clicked in a search view: the path of
// its parent, or the warning when the parent is missing.
QString searchCaption(const QSqlDatabase &db, const QString &fileIndex);

// "Gehe zu Komponente in Strukturansicht": the installation to select in
// the tree for the component, or nothing after the message (no parent: the
// warning with its advice; a parent the tree doesn't hold: the fault text).
std::optional<QString> GeheZuKomponente(const QSqlDatabase &db, const ExplorerTree &tree, const QString &fileIndex);

}
