#pragma once
#include <QDialog>
#include <memory>

namespace zol {
class Session;
}
namespace Ui {
class frmPasswort;
}

// "Passwort ändern": the logged-in user sets a new password. Both fields open
// empty; no window shows a stored password.
class frmPasswort : public QDialog {
    Q_OBJECT

public:
    explicit frmPasswort(zol::Session &session, QWidget *parent = nullptr);
    ~frmPasswort() override;

    void zeig();

private:
    void cmdOK_Click();

    zol::Session &m_session;
    std::unique_ptr<Ui::frmPasswort> ui;
};
