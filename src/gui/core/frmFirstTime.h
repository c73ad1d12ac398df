#pragma once
#include "zol/core/Session.h"
#include <QDialog>
#include <memory>

namespace Ui { class frmFirstTime; }

// The greeting after the first start of a user, until he asks not to see it again.
class frmFirstTime : public QDialog {
    Q_OBJECT
public:
    explicit frmFirstTime(zol::Session &session, QWidget *parent = nullptr);
    ~frmFirstTime() override;

private:
    void close_();
    std::unique_ptr<Ui::frmFirstTime> ui;
    zol::Session &m_session;
};

// Opens ZOL.PDF with the desktop (the help button and the help menu).
void openZolDocumentation(zol::Session &session);
