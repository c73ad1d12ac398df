#include "Posting.h"
#include "Feedback.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include <QSqlRecord>

namespace zol {

namespace {

bool darf(const Session &session, bool recht, const QString &was)
{
    if (recht)
        return true;
    ZeigeMeldung(QStringLiteral("Als %1 dürfen Sie keine Auftragswoche %2").arg(session.login().Level, was),
                 Style::Exclamation);
    return false;
}

}   // namespace

bool jahrestabelleAbweichend(const Session &session, const QString &jahr)
{
    const QString name = Schema::yearTableName(jahr);
    if (!Schema::tableExists(session.db(), name))
        return false;
    const QSqlRecord r = session.db().record(name);
    const QStringList soll = Schema::fieldNames(QStringLiteral("Auftrag"));
    if (r.count() != soll.size())
        return true;
    for (int i = 0; i < r.count(); ++i)
        if (r.fieldName(i).compare(soll.at(i), Qt::CaseInsensitive) != 0)
            return true;
    return false;
}

VerbuchenErgebnis AuftragswocheVerbuchen(Session &session, const QString &jahrIn, const QString &wocheIn)
{
    using S = VerbuchenErgebnis::Status;
    VerbuchenErgebnis r;
    const QString jahr = jahrIn.trimmed(), woche = wocheIn.trimmed();
    if (jahr.isEmpty() || woche.isEmpty())
        return r;
    if (!darf(session, rueckmeldungRechte(session.login()).verbuchen, QStringLiteral("verbuchen"))) {
        r.status = S::Abgelehnt;
        return r;
    }
    if (woche == QLatin1String("00")) {
        ZeigeMeldung(QStringLiteral("Kurzfristige Aufträge können nicht einzeln verbucht werden"), Style::Exclamation);
        r.status = S::Abgelehnt;
        return r;
    }
    if (ZeigeMeldung(QStringLiteral("Wollen Sie die Auftragswoche %1/%2 jetzt wirklich verbuchen?").arg(jahr, woche),
                     Style::YesNo)
        != Answer::Yes) {
        r.status = S::Verneint;
        return r;
    }
    const QString tabelle = Schema::yearTableName(jahr);
    // Rows copied by position need the same fields in the same order.
    if (jahrestabelleAbweichend(session, jahr)) {
        ZeigeMeldung(QStringLiteral("Die Tabelle %1 hat nicht den Aufbau der Tabelle Auftrag. Die Auftragswoche %2/%3 "
                                    "wurde nicht verbucht.")
                         .arg(tabelle, jahr, woche),
                     Style::Critical);
        r.status = S::Abgelehnt;
        return r;
    }
    const bool loeschen =
        ZeigeMeldung(QStringLiteral("Die Auftragswoche nach der Verbuchung löschen?"), Style::YesNo) == Answer::Yes;

    const QSqlDatabase db = session.db();
    QStringList spalten;
    for (const QString &f : Schema::fieldNames(QStringLiteral("Auftrag")))
        spalten << ident(f);
    const QString liste = spalten.join(QStringLiteral(", "));
    const QString ziel = ident(tabelle);
    try {
        Transaction tx(db);
        r.tabelleAngelegt = Schema::ensureYearTable(db, jahr);
        // An earlier posting of the week is replaced, its short-term copies included.
        exec(db, QStringLiteral("DELETE FROM %1 WHERE Jahr = ? AND Woche = ?").arg(ziel), {jahr, woche});
        r.kopiert = exec(db,
                         QStringLiteral("INSERT INTO %1 (%2) SELECT %2 FROM Auftrag WHERE Jahr = ? AND Woche = ? "
                                        "AND KeineWartung = 'N'")
                             .arg(ziel, liste),
                         {jahr, woche})
                        .numRowsAffected();
        if (loeschen)
            exec(db, QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
        // The year's short-term orders stand in every posted week under its number.
        QStringList kurz = spalten;
        kurz[Schema::table(QStringLiteral("Auftrag")).fieldIndex(QStringLiteral("Woche"))] = QStringLiteral("?");
        r.kurzfristig = exec(db,
                             QStringLiteral("INSERT INTO %1 (%2) SELECT %3 FROM Auftrag WHERE Jahr = ? AND Woche = '00'")
                                 .arg(ziel, liste, kurz.join(QStringLiteral(", "))),
                             {woche, jahr})
                            .numRowsAffected();
        tx.commit();
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
        r = VerbuchenErgebnis{};
        r.status = S::Fehler;
        return r;
    }
    r.geloescht = loeschen;
    r.status = S::Verbucht;
    return r;
}

bool AuftragswocheLoeschen(Session &session, const QString &jahrIn, const QString &wocheIn)
{
    const QString jahr = jahrIn.trimmed(), woche = wocheIn.trimmed();
    if (jahr.isEmpty() || woche.isEmpty())
        return false;
    if (!darf(session, rueckmeldungRechte(session.login()).loeschen, QStringLiteral("löschen")))
        return false;
    if (ZeigeMeldung(QStringLiteral("Wirklich alle Aufträge der Woche %1/%2 löschen?").arg(jahr, woche), Style::YesNo)
        != Answer::Yes)
        return false;
    try {
        Transaction tx(session.db());
        exec(session.db(), QStringLiteral("DELETE FROM Auftrag WHERE Jahr = ? AND Woche = ?"), {jahr, woche});
        tx.commit();
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
        return false;
    }
    return true;
}

}
