#include "MassChange.h"
#include "Explorer.h"
#include "Node.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/planning/WeekCalendar.h"

namespace zol {

namespace {
MassChangeResult refuse(const QString &text, const QString &focus)
{
    ZeigeMeldung(text, Style::Exclamation);
    MassChangeResult r;
    r.focus = focus;
    return r;
}

bool nurEinEnde(const QString &von, const QString &bis)
{
    return von.trimmed().isEmpty() != bis.trimmed().isEmpty();
}
}

MassChangeResult MassenAenderung(Session &session, const QStringList &selected, MassChangeInput &in)
{
    if (ZeigeMeldung(QStringLiteral("Wollen Sie diese Änderungen jetzt wirklich an allen ausgewählten Objekten durchführen?"),
                     Style::YesNo)
        != Answer::Yes)
        return {};

    in.BezugsJahr = formatJahr(in.BezugsJahr.trimmed());
    in.BezugsWoche = formatWoche(in.BezugsWoche.trimmed());
    // An empty week leaves the field of every entry as it is, so only a typed week is checked.
    if (!in.BezugsWoche.isEmpty()) {
        const double woche = leadingNumber(in.BezugsWoche);
        if (woche > 52 || woche < 1)
            return refuse(QStringLiteral("Als Wochenzahl sind nur 1 bis 52 zulässig"), QStringLiteral("txtBezugsWoche"));
    }

    const bool wochenLeer = in.WocheVon1.trimmed().isEmpty() && in.WocheBis1.trimmed().isEmpty()
        && in.WocheVon2.trimmed().isEmpty() && in.WocheBis2.trimmed().isEmpty();
    if (in.KeineWartung) {
        if (wochenLeer)
            return refuse(QStringLiteral("Bitte ein Wochenintervall eingeben, wenn Sie 'Keine Wartung' definieren wollen"),
                          QStringLiteral("txtWocheVon1"));
        if (nurEinEnde(in.WocheVon1, in.WocheBis1))
            return refuse(QStringLiteral("Das Wochenintervall ist nicht plausibel"), QStringLiteral("txtWocheVon1"));
        if (nurEinEnde(in.WocheVon2, in.WocheBis2))
            return refuse(QStringLiteral("Das Wochenintervall ist nicht plausibel"), QStringLiteral("txtWocheVon2"));
    } else if (!wochenLeer) {
        ZeigeMeldung(QStringLiteral("Sie haben ein Wochenintervall eingegeben, ohne 'Keine Wartung' markiert zu haben"),
                     Style::Exclamation);
        in.WocheVon1.clear();
        in.WocheBis1.clear();
        in.WocheVon2.clear();
        in.WocheBis2.clear();
    }

    const QString kopf = QStringLiteral("ProtokollKopf");
    const QList<QPair<QString, const QString *>> felder = {
        {QStringLiteral("BezugsJahr"), &in.BezugsJahr},
        {QStringLiteral("BezugsWoche"), &in.BezugsWoche},
        {QStringLiteral("Kostenstelle"), &in.Kostenstelle},
        {QStringLiteral("Klassifizierung"), &in.Klassifizierung},
        {QStringLiteral("Standort"), &in.Standort},
        {QStringLiteral("Lokalisierung"), &in.Lokalisierung},
        {QStringLiteral("Hersteller"), &in.Hersteller},
        {QStringLiteral("Typ"), &in.Typ},
        {QStringLiteral("WIVerantwortlicher"), &in.WIVerantwortlicher},
        {QStringLiteral("AnlagenVerantwortlicher"), &in.AnlagenVerantwortlicher},
        {QStringLiteral("Option1"), &in.Option1},
        {QStringLiteral("Option2"), &in.Option2},
    };
    const QList<QPair<QString, const QString *>> wochen = {
        {QStringLiteral("KeineWartungWocheVon1"), &in.WocheVon1},
        {QStringLiteral("KeineWartungWocheBis1"), &in.WocheBis1},
        {QStringLiteral("KeineWartungWocheVon2"), &in.WocheVon2},
        {QStringLiteral("KeineWartungWocheBis2"), &in.WocheBis2},
    };

    const QSqlDatabase db = session.db();
    MassChangeResult result;
    try {
        Transaction tx(db);
        for (const QString &key : selected) {
            std::optional<Node> node = loadNode(db, key);
            if (!node)
                continue;
            if (standardCheckRefuses(session.login(), db, key))
                continue;
            for (const auto &f : felder)
                if (!f.second->trimmed().isEmpty())
                    node->setValue(f.first, f.second->left(Schema::Size(kopf, f.first)));
            node->KeineWartung = in.KeineWartung ? QStringLiteral("J") : QStringLiteral("N");
            for (const auto &w : wochen)
                node->setValue(w.first, w.second->left(Schema::Size(kopf, w.first)));
            saveNode(db, *node);
            result.changed << key;
        }
        tx.commit();
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
        return {};
    }
    result.done = true;
    return result;
}

}
