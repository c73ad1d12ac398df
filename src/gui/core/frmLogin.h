#pragma once
#include <QDialog>
#include <memory>

namespace zol {
class Session;
}
namespace Ui {
class frmLogin;
}

// The login window: finds the user, counts failed tries, fills the login
// object of the session. Its result: accepted when the login succeeded.
class frmLogin : public QDialog {
    Q_OBJECT

public:
    explicit frmLogin(zol::Session &session, QWidget *parent = nullptr);
    ~frmLogin() override;

    // Shows the window modally; true when the user is logged in.
    bool zeig();
    // Fills in a name given on the command line; the password is asked next.
    void setUserName(const QString &name);

    void reject() override;

private:
    void cmdOK_Click();

    zol::Session &m_session;
    std::unique_ptr<Ui::frmLogin> ui;
};
