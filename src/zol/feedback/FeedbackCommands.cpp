#include "FeedbackCommands.h"
#include "FindingsPrint.h"
#include "Posting.h"
#include "zol/core/Digits.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/print/PdfReport.h"
#include "zol/print/PrinterF.h"
#include <QQueue>

namespace zol {

namespace {

// Answers the questions in the order given after showing them; everything
// else goes to the presenter that was installed.
class AnswerPresenter : public MessagePresenter {
public:
    explicit AnswerPresenter(QList<int> answers) : m_answers(answers), m_previous(installedPresenter())
    {
        installPresenter(this);
    }
    ~AnswerPresenter() override { installPresenter(m_previous); }
    int present(const QString &text, int style) override
    {
        if (style == Style::YesNo || style == Style::OkCancel) {
            const int answer = m_answers.isEmpty() ? defaultAnswer(style) : m_answers.dequeue();
            if (m_previous)
                m_previous->present(text + (answer == Answer::Yes || answer == Answer::Ok ? QStringLiteral(" Ja")
                                                                                        : QStringLiteral(" Nein")),
                                    Style::Information);
            return answer;
        }
        return m_previous ? m_previous->present(text, style) : defaultAnswer(style);
    }

private:
    QQueue<int> m_answers;
    MessagePresenter *m_previous;
};

// Year and week as the windows store them; nothing when they are no numbers.
std::optional<std::pair<QString, QString>> jahrUndWoche(const QStringList &words)
{
    if (words.size() != 2)
        return std::nullopt;
    const QString j = words.at(0).trimmed(), w = words.at(1).trimmed();
    if (!allAsciiDigits(j) || !allAsciiDigits(w) || j.isEmpty() || w.isEmpty() || j.size() > 4 || w.size() > 2)
        return std::nullopt;
    return std::make_pair(j.rightJustified(4, QLatin1Char('0')), w.rightJustified(2, QLatin1Char('0')));
}

bool wocheImBereich(const QString &woche)
{
    if (woche.toInt() <= 52)
        return true;
    ZeigeMeldung(QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig"), Style::Exclamation);
    return false;
}

}   // namespace

std::optional<PostArgs> parsePostArgs(const QStringList &args)
{
    PostArgs p;
    QStringList words;
    for (const QString &a : args) {
        if (a == QLatin1String("--yes"))
            p.yes = true;
        else if (a == QLatin1String("--delete"))
            p.loeschen = true;
        else
            words << a;
    }
    const auto jw = jahrUndWoche(words);
    if (!jw) {
        ZeigeMeldung(QStringLiteral("Aufruf: zol post JAHR WOCHE [--delete] [--yes]"), Style::Exclamation);
        return std::nullopt;
    }
    if (!wocheImBereich(jw->second))
        return std::nullopt;
    p.jahr = jw->first;
    p.woche = jw->second;
    return p;
}

int postCommand(Session &session, const QStringList &args, bool yes)
{
    const std::optional<PostArgs> call = parsePostArgs(args);
    if (!call)
        return 2;
    // The window posts the week of a row it shows; a week without orders is named here.
    if (call->woche != QLatin1String("00")
        && scalar(session.db(), QStringLiteral("SELECT count(*) FROM Auftrag WHERE Jahr = ? AND Woche = ?"),
                  {call->jahr, call->woche})
                   .toInt()
               == 0) {
        ZeigeMeldung(QStringLiteral("Für die Woche %1/%2 sind keine Aufträge vorhanden").arg(call->jahr, call->woche),
                     Style::Exclamation);
        return 1;
    }
    AnswerPresenter answers({yes || call->yes ? Answer::Yes : Answer::No, call->loeschen ? Answer::Yes : Answer::No});
    const VerbuchenErgebnis r = AuftragswocheVerbuchen(session, call->jahr, call->woche);
    switch (r.status) {
    case VerbuchenErgebnis::Status::Verbucht:
        ZeigeMeldung(QStringLiteral("Auftragswoche %1/%2 verbucht: %3 Aufträge, %4 kurzfristige Aufträge%5")
                         .arg(call->jahr, call->woche)
                         .arg(r.kopiert)
                         .arg(r.kurzfristig)
                         .arg(r.geloescht ? QStringLiteral(", Woche gelöscht") : QString()),
                     Style::Information);
        return 0;
    case VerbuchenErgebnis::Status::Fehler: return 3;
    default: return 1;
    }
}

std::optional<FindingsArgs> parseFindingsArgs(const QStringList &args)
{
    const QString usage = QStringLiteral("Aufruf: zol print findings JAHR WOCHE --pdf DATEI");
    FindingsArgs p;
    QStringList words;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--pdf") && i + 1 < args.size())
            p.pdf = args.at(++i);
        else if (args.at(i).startsWith(QLatin1String("--"))) {
            ZeigeMeldung(usage, Style::Exclamation);
            return std::nullopt;
        } else
            words << args.at(i);
    }
    const auto jw = jahrUndWoche(words);
    if (!jw || p.pdf.isEmpty()) {
        ZeigeMeldung(usage, Style::Exclamation);
        return std::nullopt;
    }
    if (!wocheImBereich(jw->second))
        return std::nullopt;
    if (const QString refusal = outputRefusal(p.pdf); !refusal.isEmpty()) {
        ZeigeMeldung(refusal, Style::Exclamation);
        return std::nullopt;
    }
    p.jahr = jw->first;
    p.woche = jw->second;
    return p;
}

int printFindingsCommand(Session &session, const QStringList &args)
{
    const std::optional<FindingsArgs> call = parseFindingsArgs(args);
    if (!call)
        return 2;
    return reportIntoPdf(
        call->pdf, [&] { return BefundeDrucken(session, call->jahr, call->woche, true); },
        [](BefundDruckStatus status, bool written) {
            switch (status) {
            case BefundDruckStatus::Gedruckt: return written ? 0 : 3;
            case BefundDruckStatus::KeineBefunde:
            case BefundDruckStatus::Abgebrochen: return 1;
            case BefundDruckStatus::Fehler: return 3;
            }
            return 3;
        });
}

}
