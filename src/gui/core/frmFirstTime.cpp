#include "frmFirstTime.h"
#include "ui_frmFirstTime.h"
#include "zol/core/Startup.h"
#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

void openZolDocumentation(zol::Session &session)
{
    zol::openDocumentation(session.database().dataDir(), QCoreApplication::applicationDirPath(),
                           [](const QString &path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
}

frmFirstTime::frmFirstTime(zol::Session &session, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmFirstTime>()), m_session(session)
{
    ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    connect(ui->Command1, &QPushButton::clicked, this, [this] { openZolDocumentation(m_session); });
    connect(ui->Command2, &QPushButton::clicked, this, &frmFirstTime::close_);
}

frmFirstTime::~frmFirstTime() = default;

void frmFirstTime::close_()
{
    // Only this button writes: closing by the frame shows the window again next time.
    zol::SaveFirstTime(m_session.login().UserName, !ui->chkHide->isChecked());
    accept();
}
