#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <memory>

namespace Ui {
class frmAuftragsplanung;
}

// Planning of orders: year and week, the planning run with its progress and
// status line. The print frame of the job sheets sits beside the planning
// frame in layoutFrames.
class frmAuftragsplanung : public QWidget {
    Q_OBJECT

public:
    explicit frmAuftragsplanung(zol::Session &session, QWidget *parent = nullptr);
    ~frmAuftragsplanung() override;

    // Shows the window with the current year and the planned weeks of that year.
    void zeig();
    // Fills the week list with the planned weeks of the year in txtJahr.
    void LadeWochen();
    // The planning run for the year and week in the fields.
    void Planen();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<Ui::frmAuftragsplanung> ui;
    zol::Session &m_session;
};
