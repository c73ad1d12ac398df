#pragma once
#include "zol/core/Messages.h"

class QWidget;

// Shows the messages of the library: the five styles in frmMsgBoxHOV, any
// other style in the platform's message box with the title "ZOL", whose
// buttons and icon follow the usual style numbers.
class GuiPresenter : public zol::MessagePresenter {
public:
    GuiPresenter();    // installs itself
    ~GuiPresenter() override;   // puts back the presenter it replaced
    int present(const QString &text, int style) override;

private:
    zol::MessagePresenter *m_previous;
};
