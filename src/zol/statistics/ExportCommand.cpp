#include "ExportCommand.h"
#include "Effort.h"
#include "RawData.h"
#include "StatisticsExport.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Session.h"
#include <QRegularExpression>
#include <optional>

namespace zol {

namespace {

const QString Usage = QStringLiteral(
    "Aufruf: zol export rohdaten JAHR [WW-WW] --xlsx DATEI\n"
    "        zol export geplant JJJJ/WW-JJJJ/WW [Schlüssel] [--material] --xlsx DATEI\n"
    "        zol export rueckgemeldet JAHR [WW-WW] [Schlüssel] [--material] --xlsx DATEI\n"
    "Schlüssel, in der Reihenfolge der Gruppierung: --komponente --gewerk --intervalltyp --materialcode"
    " --betriebszustand --kostenstelle (nur rueckgemeldet)");

enum class Kind { Rohdaten, Geplant, Rueckgemeldet };

struct ExportArgs {
    Kind kind = Kind::Rohdaten;
    QString jahrVon, wocheVon = QStringLiteral("01"), jahrBis, wocheBis = QStringLiteral("52");
    QStringList keys;
    bool material = false;
    QString xlsx;
    bool yes = false;
};

std::optional<ExportArgs> parse(const QStringList &args)
{
    if (args.isEmpty())
        return std::nullopt;
    ExportArgs a;
    const QString kind = args.first();
    if (kind == QLatin1String("rohdaten"))
        a.kind = Kind::Rohdaten;
    else if (kind == QLatin1String("geplant"))
        a.kind = Kind::Geplant;
    else if (kind == QLatin1String("rueckgemeldet"))
        a.kind = Kind::Rueckgemeldet;
    else
        return std::nullopt;
    const QList<AufwandSchluessel> &offered = a.kind == Kind::Geplant ? geplantSchluessel() : rueckgemeldetSchluessel();
    QStringList words;
    for (int i = 1; i < args.size(); ++i) {
        const QString w = args.at(i);
        if (w == QLatin1String("--yes")) {
            a.yes = true;
        } else if (w == QLatin1String("--xlsx") && i + 1 < args.size()) {
            a.xlsx = args.at(++i);
        } else if (w == QLatin1String("--material") && a.kind != Kind::Rohdaten) {
            a.material = true;
        } else if (w.startsWith(QLatin1String("--")) && a.kind != Kind::Rohdaten) {
            QString key;
            for (const AufwandSchluessel &k : offered)
                if (w.mid(2).compare(k.text, Qt::CaseInsensitive) == 0)
                    key = k.key;
            if (key.isEmpty() || a.keys.contains(key))
                return std::nullopt;
            a.keys << key;
        } else if (w.startsWith(QLatin1String("--"))) {
            return std::nullopt;
        } else {
            words << w;
        }
    }
    if (a.xlsx.isEmpty())
        return std::nullopt;
    if (a.kind == Kind::Geplant) {
        // JJJJ/WW-JJJJ/WW
        static const QRegularExpression range(QStringLiteral("^(\\d{1,4})/(\\d{1,2})-(\\d{1,4})/(\\d{1,2})$"));
        const auto m = words.size() == 1 ? range.match(words.first()) : QRegularExpressionMatch();
        if (!m.hasMatch())
            return std::nullopt;
        a.jahrVon = m.captured(1);
        a.wocheVon = m.captured(2);
        a.jahrBis = m.captured(3);
        a.wocheBis = m.captured(4);
        return a;
    }
    if (words.isEmpty() || words.size() > 2)
        return std::nullopt;
    a.jahrVon = a.jahrBis = words.first();
    if (words.size() == 2) {
        static const QRegularExpression weeks(QStringLiteral("^(\\d{1,2})-(\\d{1,2})$"));
        const auto m = weeks.match(words.at(1));
        if (!m.hasMatch())
            return std::nullopt;
        a.wocheVon = m.captured(1);
        a.wocheBis = m.captured(2);
    }
    return a;
}

// A refusal of the input: the message in style 48, status 1.
int refuse(const QString &text)
{
    ZeigeMeldung(text, Style::Exclamation);
    return 1;
}

}   // namespace

bool exportStatisticsArgsValid(const QStringList &args)
{
    if (parse(args))
        return true;
    ZeigeMeldung(Usage, Style::Exclamation);
    return false;
}

int exportStatisticsCommand(Session &session, const QStringList &args, bool yes)
{
    std::optional<ExportArgs> a = parse(args);
    if (!a) {
        ZeigeMeldung(Usage, Style::Exclamation);
        return 2;
    }
    yes = yes || a->yes;
    if (session.login().Level == QLatin1String("Werker"))
        return refuse(QStringLiteral("Statistiken sind für die Rolle Werker nicht freigegeben"));
    const bool reported = a->kind != Kind::Geplant;
    const PeriodCheck weeks = checkWeeks(a->wocheVon, a->wocheBis, reported ? MsgNurWochenSind : MsgNurWochen,
                                         MsgBisNichtKleiner);
    if (!weeks.ok() && !(a->kind == Kind::Geplant && weeks.message == MsgBisNichtKleiner))
        return refuse(weeks.message);
    for (QString *jahr : {&a->jahrVon, &a->jahrBis})
        if (const PeriodCheck c = checkJahr(*jahr); !c.ok())
            return refuse(c.message);
    const WochenBereich bereich{a->jahrVon.toInt(), weekNumber(a->wocheVon), a->jahrBis.toInt(), weekNumber(a->wocheBis)};
    if (wochenIndex(bereich.jahrBis, bereich.wocheBis) < wochenIndex(bereich.jahrVon, bereich.wocheVon))
        return refuse(MsgBisNichtKleiner);

    try {
        checkNewExportFile(a->xlsx);
        if (a->kind == Kind::Rohdaten) {
            const qint64 n = rohdatenAnzahl(session.db(), a->jahrVon, a->wocheVon, a->wocheBis);
            if (n < 0)
                return refuse(MsgKeineVerbuchten);
            if (n == 0)
                return refuse(MsgKeineDatenZeitraum);
            const bool kopf = (yes ? Answer::Yes : ZeigeMeldung(MsgKopfzeilen, Style::YesNo)) == Answer::Yes;
            const RohdatenErgebnis r = rohdatenSchreiben(session.db(), a->jahrVon, a->wocheVon, a->wocheBis, a->xlsx, kopf);
            if (const QString t = rohdatenBlaetterText(r); !t.isEmpty())
                ZeigeMeldung(t, Style::Information);
        } else {
            AufwandParameter p;
            p.auswertung = a->material ? Auswertung::Material : Auswertung::Zeit;
            p.schluessel = a->keys;
            std::optional<AufwandErgebnis> r;
            if (a->kind == Kind::Geplant)
                r = geplanterAufwand(session.db(), p, bereich);
            else
                r = rueckgemeldeterAufwand(session.db(), p, a->jahrVon, a->wocheVon, a->wocheBis);
            if (!r)
                return refuse(MsgKeineVerbuchten);
            if (r->zeilen.isEmpty())
                return refuse(MsgKeineStatistikdaten);
            const QStringList names = a->kind == Kind::Geplant ? geplantAuswertungen() : rueckgemeldetAuswertungen();
            const bool kopf = (yes ? Answer::Yes : ZeigeMeldung(MsgKopfzeilen, Style::YesNo)) == Answer::Yes;
            exportArbeitsmappe(a->xlsx, names.at(int(p.auswertung)), r->spalten, kopf, r->zeilen);
        }
    } catch (const OutputRefused &r) {
        ZeigeMeldung(r.description(), Style::Exclamation);
        return r.existingFile() ? 1 : 2;
    } catch (const Fault &f) {
        ZeigeMeldung(QStringLiteral("Die Arbeitsmappe %1 konnte nicht geschrieben werden: %2").arg(a->xlsx, f.description()),
                     Style::Critical);
        return 3;
    }
    ZeigeMeldung(MsgExportiert, Style::Information);
    return 0;
}

}
