#pragma once
#include <QString>
#include <QStringList>
#include <QList>
#include <QQueue>

namespace zol {

class Fault;

// Styles of ZeigeMeldung and the answers it gives back.
namespace Style {
constexpr int Information = 0;
constexpr int Critical = 16;
constexpr int Exclamation = 48;
constexpr int OkCancel = 1;
constexpr int YesNo = 4;
}
namespace Answer {
constexpr int Ok = 1;
constexpr int Cancel = 2;
constexpr int Yes = 6;
constexpr int No = 7;
}

bool isKnownStyle(int style);

// Whoever shows messages to the user: the message window, the terminal of a
// batch command, or a test script.
class MessagePresenter {
public:
    virtual ~MessagePresenter() = default;
    virtual int present(const QString &text, int style) = 0;
};

// The presenter in use; the library asks the user only through it.
void installPresenter(MessagePresenter *presenter);
MessagePresenter *installedPresenter();

// The one message call of the system. Without a presenter (no window, no
// terminal) questions are answered No/Cancel and messages are dropped.
int ZeigeMeldung(const QString &text, int style);

// The fault message of the explorer routines: number, description, the
// caller's text, and that the action was cancelled.
int ZeigeFehler(const Fault &fault, const QString &text);

// The fault text of the start-up and the other fault handlers.
QString faultText(const Fault &fault);

// The answer a presenter gives when nobody answers: OK for messages, No and
// Cancel for questions.
int defaultAnswer(int style);

// Records every message and answers questions from a queue; tests install it
// to assert the exact messages in their order.
class ScriptedPresenter : public MessagePresenter {
public:
    struct Shown {
        QString text;
        int style;
    };
    ScriptedPresenter();   // installs itself
    ~ScriptedPresenter() override;   // puts back the presenter it replaced

    ScriptedPresenter &answer(int a) { m_answers.enqueue(a); return *this; }
    int present(const QString &text, int style) override;

    const QList<Shown> &shown() const { return m_shown; }
    QStringList texts() const;
    QString lastText() const { return m_shown.isEmpty() ? QString() : m_shown.last().text; }
    int lastStyle() const { return m_shown.isEmpty() ? -1 : m_shown.last().style; }
    int pendingAnswers() const { return int(m_answers.size()); }
    void clear() { m_shown.clear(); m_answers.clear(); }

private:
    QQueue<int> m_answers;
    QList<Shown> m_shown;
    MessagePresenter *m_previous;
};

}
