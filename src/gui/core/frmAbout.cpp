#include "frmAbout.h"
#include "ui_frmAbout.h"
#include "frmSplash.h"
#include "zol/core/Messages.h"
#include <QStyle>

frmAbout::frmAbout(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::frmAbout>())
{
    ui->setupUi(this);
    ui->lblVersion->setText(frmSplash::versionText());
    ui->picIcon->setPixmap(style()->standardIcon(QStyle::SP_ComputerIcon).pixmap(64, 64));
    connect(ui->cmdOk, &QPushButton::clicked, this, &QDialog::accept);
    // There is no system information tool on this platform.
    connect(ui->cmdSysInfo, &QPushButton::clicked, this, [] {
        zol::ZeigeMeldung(tr("Die System-Informationen sind augenblicklich nicht verfügbar"), zol::Style::Information);
    });
}

frmAbout::~frmAbout() = default;
