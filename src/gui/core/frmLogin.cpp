#include "frmLogin.h"
#include "SelectOnFocus.h"
#include "ui_frmLogin.h"
#include "zol/core/Schema.h"
#include "zol/core/Users.h"

frmLogin::frmLogin(zol::Session &session, QWidget *parent)
    : QDialog(parent), m_session(session), ui(std::make_unique<Ui::frmLogin>())
{
    ui->setupUi(this);
    ui->txtUserName->setMaxLength(zol::Schema::Size(QStringLiteral("User"), QStringLiteral("Name")));
    zolgui::SelectOnFocus::install(ui->txtUserName);
    zolgui::SelectOnFocus::install(ui->txtPassword);

    connect(ui->txtUserName, &QLineEdit::returnPressed, this, [this] { ui->txtPassword->setFocus(); });
    connect(ui->txtPassword, &QLineEdit::returnPressed, this, &frmLogin::cmdOK_Click);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmLogin::cmdOK_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmLogin::reject);

    zol::beginLogin(m_session.login());
}

frmLogin::~frmLogin() = default;

void frmLogin::setUserName(const QString &name)
{
    if (name.isEmpty())
        return;
    ui->txtUserName->setText(name);
    ui->txtPassword->setFocus();
}

bool frmLogin::zeig()
{
    exec();
    return m_session.login().LoginSucceeded;
}

void frmLogin::reject()
{
    zol::cancelLogin(m_session.login());
    QDialog::reject();
}

void frmLogin::cmdOK_Click()
{
    const zol::LoginStep step = zol::loginOK(m_session, ui->txtUserName->text(), ui->txtPassword->text());
    switch (step.result) {
    case zol::LoginResult::Succeeded:
        accept();
        break;
    case zol::LoginResult::Cancel:
        QDialog::reject();
        break;
    case zol::LoginResult::Retry: {
        QLineEdit *next = step.focus == zol::LoginFocus::Password ? ui->txtPassword : ui->txtUserName;
        next->setFocus();
        next->selectAll();
        break;
    }
    }
}
