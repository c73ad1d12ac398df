#include "Messages.h"
#include "Fault.h"

namespace zol {

namespace {
MessagePresenter *g_presenter = nullptr;
}

bool isKnownStyle(int style)
{
    return style == Style::Information || style == Style::Critical || style == Style::Exclamation
        || style == Style::OkCancel || style == Style::YesNo;
}

void installPresenter(MessagePresenter *presenter) { g_presenter = presenter; }
MessagePresenter *installedPresenter() { return g_presenter; }

int defaultAnswer(int style)
{
    if (style == Style::YesNo)
        return Answer::No;
    if (style == Style::OkCancel)
        return Answer::Cancel;
    return Answer::Ok;
}

int ZeigeMeldung(const QString &text, int style)
{
    if (!g_presenter)
        return defaultAnswer(style);
    return g_presenter->present(text, style);
}

QString faultText(const Fault &fault)
{
    return QStringLiteral("Fehler Nummer: ") + QString::number(fault.number()) + QStringLiteral(". ")
        + QStringLiteral(" Beschreibung: ") + fault.description();
}

int ZeigeFehler(const Fault &fault, const QString &text)
{
    return ZeigeMeldung(QStringLiteral("Fehler Nummer: ") + QString::number(fault.number())
                            + QStringLiteral(" Beschreibung: ") + fault.description() + QStringLiteral(" ")
                            + text + QStringLiteral(". ") + QStringLiteral("Aktion wurde abgebrochen"),
                        Style::Critical);
}

ScriptedPresenter::ScriptedPresenter() : m_previous(g_presenter) { g_presenter = this; }
ScriptedPresenter::~ScriptedPresenter() { g_presenter = m_previous; }

int ScriptedPresenter::present(const QString &text, int style)
{
    m_shown.append({text, style});
    if (!m_answers.isEmpty())
        return m_answers.dequeue();
    return defaultAnswer(style);
}

QStringList ScriptedPresenter::texts() const
{
    QStringList out;
    for (const auto &s : m_shown)
        out << s.text;
    return out;
}

}
