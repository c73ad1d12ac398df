#include "BatchPresenter.h"
#include <cstdio>
#include <unistd.h>

namespace zol {

BatchPresenter::BatchPresenter(bool yes)
    : m_stdin(std::make_unique<QFile>()), m_stdout(std::make_unique<QFile>()), m_stderr(std::make_unique<QFile>()),
      m_yes(yes), m_interactive(::isatty(STDIN_FILENO) == 1)
{
    // Unbuffered, so that a prompt is on the terminal before the input is read
    // and the lines of stdout and stderr keep their order.
    m_stdin->open(stdin, QIODevice::ReadOnly | QIODevice::Text);
    m_stdout->open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
    m_stderr->open(stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
    m_in = m_stdin.get();
    m_out = m_stdout.get();
    m_err = m_stderr.get();
    m_previous = installedPresenter();
    installPresenter(this);
}

BatchPresenter::BatchPresenter(QIODevice *in, QIODevice *out, QIODevice *err, bool yes, bool interactive)
    : m_in(in), m_out(out), m_err(err), m_yes(yes), m_interactive(interactive), m_previous(installedPresenter())
{
    installPresenter(this);
}

BatchPresenter::~BatchPresenter()
{
    if (installedPresenter() == this)
        installPresenter(m_previous);
}

int BatchPresenter::exitStatus() const
{
    if (m_fault)
        return 3;
    if (m_refused || m_answeredNo)
        return 1;
    return 0;
}

int BatchPresenter::present(const QString &text, int style)
{
    const bool question = style == Style::YesNo || style == Style::OkCancel;
    const bool toErr = style == Style::Critical || style == Style::Exclamation;
    if (style == Style::Critical)
        m_fault = true;
    if (style == Style::Exclamation)
        m_refused = true;

    QIODevice *dev = toErr ? m_err : m_out;
    if (!question) {
        if (dev)
            dev->write((text + QLatin1Char('\n')).toUtf8());
        return Answer::Ok;
    }

    const int yes = style == Style::YesNo ? Answer::Yes : Answer::Ok;
    const int no = style == Style::YesNo ? Answer::No : Answer::Cancel;
    int answer = no;
    if (m_yes) {
        if (m_out)
            m_out->write((text + QStringLiteral(" [j/n] j\n")).toUtf8());
        answer = yes;
    } else if (m_interactive && m_in) {
        if (m_out)
            m_out->write((text + QStringLiteral(" [j/n] ")).toUtf8());
        const QString line = QString::fromUtf8(m_in->readLine()).trimmed();
        if (line.size() >= 1 && QStringLiteral("jJyY").contains(line.at(0)))
            answer = yes;
    } else if (m_out) {
        m_out->write((text + QStringLiteral(" [j/n] n\n")).toUtf8());
    }
    if (answer == no)
        m_answeredNo = true;
    return answer;
}

}
