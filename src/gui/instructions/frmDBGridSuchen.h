#pragma once
#include "zol/instructions/ProtocolSearch.h"
#include <QDialog>
#include <memory>

namespace Ui {
class frmDBGridSuchen;
}

// What the search dialog needs of a grid: its lines, its current cell, the
// selection in that cell, and a way to show a hit and to change a cell.
class SearchableGrid {
public:
    virtual ~SearchableGrid() = default;
    // Commits what is being typed; false when a rule refused it.
    virtual bool prepareSearch() = 0;
    virtual QList<zol::InstructionRow> searchRows() const = 0;
    virtual int searchRow() const = 0;
    virtual int searchCol() const = 0;
    virtual zol::CellSelection cellSelection() const = 0;
    // The text of the current cell as it stands, typing included.
    virtual QString currentCellText() const = 0;
    // Moves to the hit and selects it in the cell; false when the grid can't leave its row.
    virtual bool showHit(const zol::SearchHit &hit) = 0;
    // Puts a replaced text into the current cell through the column rule.
    virtual bool replaceCell(int row, int col, const QString &text) = 0;
    virtual bool mayReplace() const = 0;
};

// Search and replace over the cells of a grid, without blocking it.
class frmDBGridSuchen : public QDialog {
    Q_OBJECT
public:
    explicit frmDBGridSuchen(QWidget *parent = nullptr);
    ~frmDBGridSuchen() override;

    // Remembers the grid, shows the dialog and puts the focus on txtSuchen.
    void zeig(SearchableGrid *grid);
    // The next hit in the chosen direction; without a search text as zeig.
    void Weitersuchen(SearchableGrid *grid, const QString &caption);
    // The replace step; without a replacement text as zeig.
    void Ersetzen(SearchableGrid *grid);

    // One search from the grid's current cell.
    void Suchen();
    // Replaces the selected hit and finds the next.
    void ErsetzenSchritt();

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    zol::SearchDirection direction() const;
    void updateReplaceState();

    std::unique_ptr<Ui::frmDBGridSuchen> ui;
    SearchableGrid *m_grid = nullptr;
};
