#include "PlanCommand.h"
#include "PlanningRun.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include <QTextStream>
#include <cstdio>

namespace zol {

namespace {

// Answers the questions Yes after showing them, as the user asked with --yes;
// everything else goes to the presenter that was installed.
class YesPresenter : public MessagePresenter {
public:
    YesPresenter() : m_previous(installedPresenter()) { installPresenter(this); }
    ~YesPresenter() override { installPresenter(m_previous); }
    int present(const QString &text, int style) override
    {
        if (style == Style::YesNo || style == Style::OkCancel) {
            if (m_previous)
                m_previous->present(text, Style::Information);
            return style == Style::YesNo ? Answer::Yes : Answer::Ok;
        }
        return m_previous ? m_previous->present(text, style) : defaultAnswer(style);
    }

private:
    MessagePresenter *m_previous;
};

bool digitsOnly(const QString &t)
{
    for (QChar c : t)
        if (!c.isDigit())
            return false;
    return true;
}

}   // namespace

int planCommand(Session &session, const QStringList &args, bool yes, QTextStream *out, QTextStream *err)
{
    QTextStream stdOut(stdout), stdErr(stderr);
    QTextStream &o = out ? *out : stdOut;
    QTextStream &e = err ? *err : stdErr;

    QStringList words;
    for (const QString &a : args) {
        if (a == QLatin1String("--yes"))
            yes = true;
        else
            words << a;
    }
    // The window takes digits only, the year as wide as its field; so does the command.
    if (words.size() != 2 || !digitsOnly(words.at(0).trimmed()) || !digitsOnly(words.at(1).trimmed())
        || words.at(0).trimmed().size() > Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Jahr"))) {
        e << "Aufruf: zol plan JAHR WOCHE [--yes]" << Qt::endl;
        return 2;
    }

    std::unique_ptr<YesPresenter> answering;
    if (yes)
        answering = std::make_unique<YesPresenter>();
    PlanningRun run(session);
    QString status;
    run.onStatus = [&status](const QString &text) { status = text; };
    const PlanResult r = run.run(words.at(0), words.at(1));
    if (!status.isEmpty())
        o << status << Qt::endl;
    switch (r.outcome) {
    case PlanResult::Outcome::Planned: return 0;
    case PlanResult::Outcome::Refused:
    case PlanResult::Outcome::Declined: return 1;
    case PlanResult::Outcome::Fault: return 3;
    }
    return 3;
}

}
