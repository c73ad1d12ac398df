#pragma once
#include "EffortWindow.h"
#include <memory>

namespace Ui { class frmStatistikGeplant; }

// How much time or material the instructions call for in a range of weeks.
class frmStatistikGeplant : public EffortWindow {
    Q_OBJECT
public:
    frmStatistikGeplant(zol::Session &session, Entries entries, QWidget *parent = nullptr);
    ~frmStatistikGeplant() override;

private:
    std::unique_ptr<Ui::frmStatistikGeplant> ui;
};
