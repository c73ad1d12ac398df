#include "GuiPresenter.h"
#include "frmMsgBoxHOV.h"
#include <QApplication>
#include <QMessageBox>

GuiPresenter::GuiPresenter() : m_previous(zol::installedPresenter()) { zol::installPresenter(this); }

GuiPresenter::~GuiPresenter()
{
    if (zol::installedPresenter() == this)
        zol::installPresenter(m_previous);
}

int GuiPresenter::present(const QString &text, int style)
{
    QWidget *parent = QApplication::activeWindow();
    if (zol::isKnownStyle(style)) {
        frmMsgBoxHOV box(parent);
        return box.zeig(text, style);
    }

    using B = QMessageBox::StandardButton;
    struct Choice {
        B button;
        int answer;
    };
    QList<Choice> choices;
    switch (style & 7) {
    case 1: choices = {{B::Ok, 1}, {B::Cancel, 2}}; break;
    case 2: choices = {{B::Abort, 3}, {B::Retry, 4}, {B::Ignore, 5}}; break;
    case 3: choices = {{B::Yes, 6}, {B::No, 7}, {B::Cancel, 2}}; break;
    case 4: choices = {{B::Yes, 6}, {B::No, 7}}; break;
    case 5: choices = {{B::Retry, 4}, {B::Cancel, 2}}; break;
    default: choices = {{B::Ok, 1}}; break;
    }
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    switch (style & 0x70) {
    case 16: icon = QMessageBox::Critical; break;
    case 32: icon = QMessageBox::Question; break;
    case 48: icon = QMessageBox::Warning; break;
    case 64: icon = QMessageBox::Information; break;
    }
    QMessageBox::StandardButtons buttons;
    for (const Choice &c : choices)
        buttons |= c.button;
    QMessageBox box(icon, QStringLiteral("ZOL"), text, buttons, parent);
    const int pressed = box.exec();
    for (const Choice &c : choices)
        if (c.button == pressed)
            return c.answer;
    return choices.size() == 1 ? 1 : choices.last().answer;
}
