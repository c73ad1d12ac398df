#pragma once
#include <QDialog>
#include <memory>

namespace Ui {
class frmMsgBoxHOV;
}

// The program's own message window for the five styles of ZeigeMeldung. It
// shows only the buttons and the image of its style and grows with the text;
// a text taller than most of the screen scrolls.
class frmMsgBoxHOV : public QDialog {
    Q_OBJECT
public:
    explicit frmMsgBoxHOV(QWidget *parent = nullptr);
    ~frmMsgBoxHOV() override;

    // Prepares the window for the text and style (Load).
    void setMessage(const QString &text, int style);
    // Shows the window modally and returns the answer: 1 OK, 2 Cancel, 6 Yes, 7 No.
    int zeig(const QString &text, int style);
    int answer() const { return m_answer; }

    // Closing by the frame or Escape: OK for a message, No for Yes/No. An
    // OK/Cancel question can't be closed that way; Cancel is only its button.
    void reject() override;

private:
    void answerWith(int answer);
    void sizeToText();

    std::unique_ptr<Ui::frmMsgBoxHOV> ui;
    int m_style = 0;
    int m_answer = 0;
};
