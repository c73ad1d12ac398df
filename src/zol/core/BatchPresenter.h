#pragma once
#include "Messages.h"
#include <QIODevice>
#include <QFile>
#include <memory>

namespace zol {

// The messages of a batch command: each text is printed verbatim on its own
// line, faults (style 16) and refusals (style 48) on the error stream, the rest
// on the output stream. A question is answered Yes/OK by --yes; otherwise, when
// the input is a terminal, the user types the answer (j, J, y, Y mean yes);
// with neither the answer is No/Cancel. The presenter remembers what it showed
// so that the command can give its exit status. It installs itself and puts
// back the presenter it replaced when it ends.
class BatchPresenter : public MessagePresenter {
public:
    // On the process's stdin, stdout and stderr; interactive if stdin is a terminal.
    explicit BatchPresenter(bool yes);
    // On the given devices (tests); nothing is owned. in may be null.
    BatchPresenter(QIODevice *in, QIODevice *out, QIODevice *err, bool yes, bool interactive);
    ~BatchPresenter() override;

    int present(const QString &text, int style) override;

    bool refused() const { return m_refused; }
    bool faultShown() const { return m_fault; }
    bool answeredNo() const { return m_answeredNo; }
    // 0 done, 1 refused or a question answered No, 3 a fault was shown.
    int exitStatus() const;

private:
    std::unique_ptr<QFile> m_stdin, m_stdout, m_stderr;
    QIODevice *m_in = nullptr;
    QIODevice *m_out = nullptr;
    QIODevice *m_err = nullptr;
    bool m_yes = false;
    bool m_interactive = false;
    bool m_refused = false;
    bool m_fault = false;
    bool m_answeredNo = false;
    MessagePresenter *m_previous = nullptr;
};

}
