#include "frmStatistikRueckgemeldet.h"
#include "ui_frmStatistikRueckgemeldet.h"

frmStatistikRueckgemeldet::frmStatistikRueckgemeldet(zol::Session &session, Entries entries, QWidget *parent)
    : EffortWindow(session, std::move(entries), true, parent), ui(std::make_unique<Ui::frmStatistikRueckgemeldet>())
{
    ui->setupUi(this);
    init();
}

frmStatistikRueckgemeldet::~frmStatistikRueckgemeldet() = default;
