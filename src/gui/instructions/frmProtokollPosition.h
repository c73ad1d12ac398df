#pragma once
#include "frmProtokoll.h"
#include "zol/core/Session.h"
#include "zol/instructions/PositionDialogRules.h"
#include <QDialog>
#include <memory>

namespace Ui {
class frmProtokollPosition;
}

// One line of a protocol in a form: edit it, or insert a line before or
// after it with a proposed number. Its own checks replace the grid's row rule.
class frmProtokollPosition : public QDialog {
    Q_OBJECT
public:
    explicit frmProtokollPosition(zol::Session &session, QWidget *parent = nullptr);
    ~frmProtokollPosition() override;

    // Fills the form for the grid's current line by the mode (0 edit,
    // 1 insert before, 2 insert after) and shows it modally; true when a
    // line was written.
    bool zeig(frmProtokoll &grid, int mode);
    // Fills the form without showing it; false when the grid can't leave its
    // changed row first.
    bool prepare(frmProtokoll &grid, int mode);
    void setCatalogPicker(CatalogPicker picker) { m_picker = std::move(picker); }
    // The OK button: checks, writes, hides.
    void Ok();

private:
    zol::PositionForm form() const;
    void fill(const zol::PositionForm &f);
    void fillCombos();
    void pick(const QString &table, QWidget *target);
    void step(int delta);

    std::unique_ptr<Ui::frmProtokollPosition> ui;
    zol::Session &m_session;
    CatalogPicker m_picker;
    frmProtokoll *m_grid = nullptr;
    int m_mode = 0;
    int m_line = -1;
    std::unique_ptr<zol::PositionDialogRules> m_rules;
};
