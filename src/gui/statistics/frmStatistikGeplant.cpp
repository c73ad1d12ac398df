#include "frmStatistikGeplant.h"
#include "ui_frmStatistikGeplant.h"

frmStatistikGeplant::frmStatistikGeplant(zol::Session &session, Entries entries, QWidget *parent)
    : EffortWindow(session, std::move(entries), false, parent), ui(std::make_unique<Ui::frmStatistikGeplant>())
{
    ui->setupUi(this);
    init();
}

frmStatistikGeplant::~frmStatistikGeplant() = default;
