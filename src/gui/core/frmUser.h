#pragma once
#include "zol/core/Users.h"
#include <QDialog>
#include <memory>

namespace Ui {
class frmUser;
}

// The user administration. The list shows every user with the password
// masked, since no window shows a password; the password field opens empty,
// and an empty field on "Aktualisieren" keeps the stored password.
class frmUser : public QDialog {
    Q_OBJECT

public:
    explicit frmUser(zol::Session &session, QWidget *parent = nullptr);
    ~frmUser() override;

    void zeig();

    // The trade of a new Werker is asked with an input box; tests put in a script.
    void setTradeInput(zol::AskTrade askTrade) { m_askTrade = std::move(askTrade); }

Q_SIGNALS:
    // The logged-in user changed his own entry: the main window applies the menus.
    void ownEntryChanged(bool mnuViewUser, bool mnuViewPasswort);

private:
    void fillList(const QString &select = {});
    void showSelected();
    QString selectedName() const;
    void cmdNeu_Click();
    void cmdUpdate_Click();
    void cmdLoeschen_Click();
    std::optional<QString> askTradeBox();
    void afterEdit(const zol::UserEdit &edit, const QString &select);

    zol::Session &m_session;
    std::unique_ptr<Ui::frmUser> ui;
    zol::AskTrade m_askTrade;
};
