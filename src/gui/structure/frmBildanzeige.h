#pragma once
#include "zol/core/Session.h"
#include <QWidget>
#include <memory>

namespace Ui {
class frmBildanzeige;
}

// "Bildanzeige": one of the nine pictures of the data folder in a window of
// its own, which keeps its place per slot and user.
class frmBildanzeige : public QWidget {
    Q_OBJECT

public:
    explicit frmBildanzeige(zol::Session &session, QWidget *parent = nullptr);
    ~frmBildanzeige() override;

    // The menu command of a slot (1..9): the slot's open window comes to the
    // front; otherwise the picture is looked up (message when there is none)
    // and a new window shows it with the title "Bild n". Returns the window,
    // or nullptr when no picture was found. The window deletes itself when closed.
    static frmBildanzeige *oeffne(zol::Session &session, int slot, QWidget *parent = nullptr);
    // The open window of a slot, or nullptr.
    static frmBildanzeige *fensterVon(int slot);

    // Places the window as stored for the slot, loads the slot's picture and shows it.
    bool zeig(const QString &title, int slot);
    int slot() const { return m_slot; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    std::unique_ptr<Ui::frmBildanzeige> ui;
    zol::Session &m_session;
    int m_slot = 0;
};
