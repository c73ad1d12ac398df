#pragma once
#include "frmDBGridSuchen.h"
#include "zol/core/Session.h"
#include "zol/instructions/ProtocolGridRules.h"
#include <QMainWindow>
#include <functional>
#include <memory>
#include <utility>

namespace Ui {
class frmProtokoll;
}
class ProtocolModel;
class RuledTableView;

// Asks a catalog for an entry: given the catalog's table, it returns the
// chosen text (empty when nothing was chosen) and, for Texte, the entry's
// standard interval.
using CatalogPicker = std::function<std::pair<QString, QString>(const QString &catalogTable)>;

// The protocol of one component as a grid: the column rule when a cell is
// left, the row rule before a row is written, row selection, delete, copy and
// paste through the shared row buffer, search and replace.
class frmProtokoll : public QMainWindow, public SearchableGrid {
    Q_OBJECT
public:
    explicit frmProtokoll(zol::Session &session, QWidget *parent = nullptr);
    ~frmProtokoll() override;

    // Opens the window on the component of the list key (the FileIndex, with
    // or without its double quotes); text is the list entry's text for the
    // caption. False when the component doesn't exist: the window stays empty.
    bool zeig(const QString &key, const QString &text);
    // The component's FileIndex.
    const QString &Tag() const { return m_tag; }

    void setCatalogPicker(CatalogPicker picker) { m_picker = std::move(picker); }

    // The whole-list operations on this window's lines, for the explorer; the
    // grid shows the result when its own component is concerned.
    int DeleteTePositionen(const QString &teNummer);
    int CopyTePositionen(const QString &sourceTeNummer, const QString &targetTeNummer);

    ProtocolModel *model() const { return m_model.get(); }
    RuledTableView *grid() const;
    zol::ProtocolGrid *rules() const { return m_grid.get(); }
    frmDBGridSuchen *Suchen() const { return m_suchen; }
    // The current line of the grid, -1 on the new row or none.
    int currentLine() const;
    // Writes a changed current row; false when the rules refused it.
    bool leaveRow();
    // Reads the lines anew and stands on the line with these numbers, if any.
    void reloadAt(const QString &objekt, const QString &anweisung);

    // The commands of the menus.
    void columnButton(int col);
    void selectAllRows();
    void copyRows();
    void pasteRows();
    void deleteRows();
    void refresh();
    // The exchange of this component's lines with a file.
    void exportLines();
    void importLines();
    QList<int> selectedLines() const;

    // SearchableGrid
    bool prepareSearch() override;
    QList<zol::InstructionRow> searchRows() const override;
    int searchRow() const override;
    int searchCol() const override;
    zol::CellSelection cellSelection() const override;
    QString currentCellText() const override;
    bool showHit(const zol::SearchHit &hit) override;
    bool replaceCell(int row, int col, const QString &text) override;
    bool mayReplace() const override;

Q_SIGNALS:
    // Fenster menu: 0 cascade, 1 side by side, 2 one under another.
    void arrangeRequested(int mode);
    // Zeile menu: the position dialog in mode 0 edit, 1 before, 2 after.
    void positionRequested(int mode);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void applyRights();
    void loadLayout();
    void saveLayout();
    void showPopup(const QPoint &globalPos);
    void selectLines(const QList<int> &lines);

    std::unique_ptr<Ui::frmProtokoll> ui;
    zol::Session &m_session;
    std::unique_ptr<zol::ProtocolGrid> m_grid;
    std::unique_ptr<ProtocolModel> m_model;
    frmDBGridSuchen *m_suchen;
    CatalogPicker m_picker;
    QString m_tag;
    int m_anchor = 0;
    // The last hit shown, for a replace after the editor closed (the dialog took the focus).
    std::optional<zol::SearchHit> m_lastHit;
};
