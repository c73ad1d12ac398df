#include "frmPasswort.h"
#include "SelectOnFocus.h"
#include "ui_frmPasswort.h"
#include "zol/core/Users.h"

frmPasswort::frmPasswort(zol::Session &session, QWidget *parent)
    : QDialog(parent), m_session(session), ui(std::make_unique<Ui::frmPasswort>())
{
    ui->setupUi(this);
    setObjectName(QStringLiteral("frmPaßwort"));
    ui->txtPasswort->setObjectName(QStringLiteral("txtPaßwort"));
    zolgui::SelectOnFocus::install(ui->txtPasswort);
    zolgui::SelectOnFocus::install(ui->txtConfirm);

    connect(ui->txtPasswort, &QLineEdit::returnPressed, this, [this] { ui->txtConfirm->setFocus(); });
    connect(ui->txtConfirm, &QLineEdit::returnPressed, this, &frmPasswort::cmdOK_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmPasswort::cmdOK_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmPasswort::reject);
}

frmPasswort::~frmPasswort() = default;

void frmPasswort::zeig()
{
    ui->txtPasswort->clear();
    ui->txtConfirm->clear();
    ui->txtPasswort->setFocus();
    exec();
}

void frmPasswort::cmdOK_Click()
{
    if (zol::changePassword(m_session, ui->txtPasswort->text(), ui->txtConfirm->text())
        == zol::PasswordChange::Mismatch) {
        ui->txtConfirm->setFocus();
        return;
    }
    accept();
}
