#pragma once
#include "EffortWindow.h"
#include <memory>

namespace Ui { class frmStatistikRueckgemeldet; }

// What was reported in the weeks of a posted year, grouped as the planned effort is.
class frmStatistikRueckgemeldet : public EffortWindow {
    Q_OBJECT
public:
    frmStatistikRueckgemeldet(zol::Session &session, Entries entries, QWidget *parent = nullptr);
    ~frmStatistikRueckgemeldet() override;

private:
    std::unique_ptr<Ui::frmStatistikRueckgemeldet> ui;
};
