#include "PlanCommand.h"
#include "PlanningRun.h"
#include "zol/core/Digits.h"
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

}   // namespace

std::optional<PlanArgs> parsePlanArgs(const QStringList &args, QTextStream *err)
{
    PlanArgs p;
    QStringList words;
    for (const QString &a : args) {
        if (a == QLatin1String("--yes"))
            p.yes = true;
        else
            words << a;
    }
    // The window takes digits only, the year as wide as its field; so does the command.
    if (words.size() != 2 || !allAsciiDigits(words.at(0).trimmed()) || !allAsciiDigits(words.at(1).trimmed())
        || words.at(0).trimmed().size() > Schema::Size(QStringLiteral("Auftrag"), QStringLiteral("Jahr"))) {
        QTextStream stdErr(stderr);
        (err ? *err : stdErr) << "Aufruf: zol plan JAHR WOCHE [--yes]" << Qt::endl;
        return std::nullopt;
    }
    p.jahr = words.at(0);
    p.woche = words.at(1);
    return p;
}

int planCommand(Session &session, const QStringList &args, bool yes, QTextStream *out, QTextStream *err)
{
    QTextStream stdOut(stdout);
    QTextStream &o = out ? *out : stdOut;
    const std::optional<PlanArgs> parsed = parsePlanArgs(args, err);
    if (!parsed)
        return 2;
    yes = yes || parsed->yes;

    std::unique_ptr<YesPresenter> answering;
    if (yes)
        answering = std::make_unique<YesPresenter>();
    PlanningRun run(session);
    QString status;
    run.onStatus = [&status](const QString &text) { status = text; };
    const PlanResult r = run.run(parsed->jahr, parsed->woche);
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
