#include "JobSheets.h"
#include "OrderRows.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Options.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PrinterF.h"
#include <QDate>
#include <QDir>
#include <QHash>
#include <QSet>
#include <QSqlRecord>
#include <optional>
#include <vector>

namespace zol {

namespace {

const QString WarteText = QStringLiteral("Warte auf Eingaben");

// Format(text, "0000") / "00": a number is padded, anything else stays as typed.
QString maske(const QString &text, int width)
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok);
    if (!ok || v < 0)
        return text.trimmed();
    return QStringLiteral("%1").arg(v, width, 10, QLatin1Char('0'));
}

bool wocheGueltig(const QString &woche)
{
    bool ok = false;
    const double v = QString(woche).replace(QLatin1Char(','), QLatin1Char('.')).trimmed().toDouble(&ok);
    if (!ok)
        return false;
    const int w = int(v);   // cut to a whole number
    return w >= 0 && w <= 52;
}

// The head keys as fields of Auftrag; a stored text that names none of the
// offered fields is left out. Settings with only the older single key break by it.
QStringList kopfFelder(const OptionState &o)
{
    QStringList out;
    bool any = false;
    for (int i = 0; i < 6; ++i) {
        const QString f = i < o.gKopfwechsel.size() ? kopfwechselFeld(o.gKopfwechsel.at(i)) : QString();
        out << f;
        any = any || !f.isEmpty();
    }
    if (!any) {
        const QString alt = kopfwechselFeld(o.gKopfwechselAlt);
        if (!alt.isEmpty())
            out[0] = alt;
    }
    return out;
}

JobSheetFilter wirksamerFilter(const Session &session, JobSheetFilter f)
{
    // A Werker's trade is fixed to his own.
    if (session.login().Level == Role::Werker)
        f.gewerk = session.login().WerkerGewerk;
    return f;
}

std::vector<AuftragZeile> lade(Session &session, const JobSheetQuery &jq)
{
    return ladeAuftragZeilen(session.db(), jq.sql, jq.values);
}

// The sheets of the order rows; the job is open afterwards.
void druckeBlaetter(PrinterF &p, Komponenten &komp, const std::vector<AuftragZeile> &rows, const QStringList &keys,
                    const AnweisungsKopfDaten &kopfVorlage)
{
    const AnweisungsSpalten s(p);
    AnweisungsKopfDaten kopf = kopfVorlage;
    for (const QString &k : keys)
        if (!k.isEmpty())
            kopf.kopfFelder << k;

    int zeile = 0;
    double summe = 0;
    bool neueSeite = true;
    QString teIndex, objekt, gewerk;
    QStringList merk(keys.size());

    const auto kopfDrucken = [&](const AuftragZeile &z) {
        kopf.zeile = z;
        zeile = Print_AnweisungsKopf(p, kopf, s);
        neueSeite = true;
    };
    const auto umbruch = [&](const AuftragZeile &z) {
        Print_AnweisungsFusszeile(p, zeile, summe, s);
        p.NewPage();
        kopfDrucken(z);
    };
    const auto komponente = [&](const AuftragZeile &z) {
        const auto &node = komp.node(z.TeIndex);
        const QString pfad = node ? komp.pfad(z.TeIndex) : QString();
        const int folge = Print_AnweisungsZeilenBedarf(p, z, komp.objektKopf(z.TeIndex, z.Objekt), s);
        if (!Print_AnweisungsKomponente(p, node, pfad, zeile, s, folge)) {
            umbruch(z);
            // On a fresh page the block stands, however long the row under it.
            Print_AnweisungsKomponente(p, node, pfad, zeile, s, 0);
        }
        neueSeite = false;
    };
    const auto objektKopf = [&](const AuftragZeile &z) {
        const QString text = komp.objektKopf(z.TeIndex, z.Objekt);
        if (text.isEmpty())
            return;
        if (!Print_AnweisungsObjektZeile(p, text, z.Objekt, zeile, s)) {
            umbruch(z);
            komponente(z);
            Print_AnweisungsObjektZeile(p, text, z.Objekt, zeile, s);
        }
    };

    kopfDrucken(rows.front());
    gewerk = rows.front().Ausfuehrender;
    for (int k = 0; k < keys.size(); ++k)
        if (!keys.at(k).isEmpty())
            merk[k] = rows.front().value(keys.at(k));

    for (size_t i = 0; i < rows.size(); ++i) {
        const AuftragZeile &z = rows[i];
        bool wechsel = z.Ausfuehrender != gewerk;
        for (int k = 0; k < keys.size(); ++k)
            if (!keys.at(k).isEmpty() && z.value(keys.at(k)) != merk.at(k))
                wechsel = true;
        if (wechsel)
            umbruch(z);
        gewerk = z.Ausfuehrender;
        for (int k = 0; k < keys.size(); ++k)
            if (!keys.at(k).isEmpty())
                merk[k] = z.value(keys.at(k));

        if (z.TeIndex != teIndex || neueSeite) {
            komponente(z);
            teIndex = z.TeIndex;
            objekt.clear();
        }
        if (z.Objekt != objekt) {
            objektKopf(z);
            objekt = z.Objekt;
        }
        if (!Print_AnweisungsZeile(p, z, zeile, summe, s)) {
            umbruch(z);
            komponente(z);
            objektKopf(z);
            // A row longer than a whole page is printed as far as it goes, never retried for ever.
            if (!Print_AnweisungsZeile(p, z, zeile, summe, s))
                continue;
        }
    }
    Print_AnweisungsFusszeile(p, zeile, summe, s);
}

// The list of components without maintenance behind the sheets. True when it printed.
bool AuftragsDruckKeineWartung(PrinterF &p, Komponenten &komp, const std::vector<AuftragZeile> &rows,
                               bool jobOffen, const QString &woche, const QString &jahr, const QString &datum)
{
    if (rows.empty())
        return false;
    if (jobOffen)
        p.NewPage();
    else
        p.InitPrinter();
    p.setBold(false);
    int zeile = Print_KeineWartungKopf(p, woche, jahr, datum);
    QString teIndex;
    for (const AuftragZeile &z : rows) {
        if (z.TeIndex == teIndex)
            continue;
        teIndex = z.TeIndex;
        const QString pfad = komp.node(z.TeIndex) ? komp.pfad(z.TeIndex) : z.KompBezeichnung;
        if (!Print_KeineWartungKomponente(p, pfad, zeile)) {
            Print_KeineWartungFusszeile(p);
            p.NewPage();
            zeile = Print_KeineWartungKopf(p, woche, jahr, datum);
            Print_KeineWartungKomponente(p, pfad, zeile);
        }
    }
    Print_KeineWartungFusszeile(p);
    return true;
}

}   // namespace

JobSheetQuery jobSheetQuery(Session &session, const QString &jahr, const QString &woche, const JobSheetFilter &filter,
                            bool keineWartung)
{
    const JobSheetFilter f = wirksamerFilter(session, filter);
    JobSheetQuery q;
    // Auftrag leads: the week picks its rows by index; each finds its component by key.
    q.sql = QStringLiteral("SELECT Auftrag.* FROM Auftrag CROSS JOIN ProtokollKopf ON Auftrag.TeIndex = "
                           "ProtokollKopf.FileIndex WHERE Auftrag.Jahr = ? AND Auftrag.Woche = ?");
    q.values << jahr << woche;
    const auto like = [&](const QString &feld, const QString &text) {
        if (text.trimmed().isEmpty())
            return;
        // Field and text compare in upper case, umlauts included (the database's
        // LIKE and upper() fold ASCII letters only).
        q.sql += QStringLiteral(" AND Auftrag.%1 GLOB ?").arg(feld);
        q.values << caselessGlob(text);
    };
    like(QStringLiteral("Kostenstelle"), f.kostenstelle);
    like(QStringLiteral("Lokalisierung"), f.lokalisierung);
    like(QStringLiteral("Ausfuehrender"), f.gewerk);
    if (keineWartung) {
        q.sql += QStringLiteral(" AND upper(Auftrag.KeineWartung) = 'J' ORDER BY Auftrag.KompBezeichnung, "
                                "Auftrag.TeIndex");
        return q;
    }
    q.sql += QStringLiteral(" AND upper(Auftrag.KeineWartung) = 'N' ORDER BY Auftrag.Ausfuehrender");
    const OptionState &o = session.options();
    const QStringList keys = kopfFelder(o);
    // The sixth key breaks the sheets but does not sort them.
    for (int i = 0; i < 5; ++i)
        if (!keys.at(i).isEmpty())
            q.sql += QStringLiteral(", Auftrag.") + ident(keys.at(i));
    for (const QString &stored : o.gAuftragsortierung) {
        const QString feld = auftragsortierungFeld(stored);
        if (!feld.isEmpty())
            q.sql += QStringLiteral(", ProtokollKopf.") + ident(feld);
    }
    q.sql += QStringLiteral(", Auftrag.KompBezeichnung, Auftrag.TeIndex, Auftrag.Objekt, Auftrag.Anweisung");
    return q;
}

JobSheetResult AuftragsDruckAnweisungen(Session &session, const QString &jahr, const QString &woche,
                                        const JobSheetFilter &filter, bool vorschau, const StatusLine &status)
{
    return AuftragsDruckAnweisungen(session, PrinterF::instance(), jahr, woche, filter, vorschau, status);
}

JobSheetResult AuftragsDruckAnweisungen(Session &session, PrinterF &p, const QString &jahrText,
                                        const QString &wocheText, const JobSheetFilter &filter, bool vorschau,
                                        const StatusLine &status)
{
    JobSheetResult r;
    const auto melde = [&](const QString &t) {
        if (status)
            status(t);
    };
    if (!session.login().UserName.isEmpty())
        LadeOptionen(session);

    if (jahrText.trimmed().isEmpty()) {
        ZeigeMeldung(QStringLiteral("Bitte Jahr eingeben"), Style::Exclamation);
        r.status = JobSheetStatus::Refused;
        r.focus = QStringLiteral("txtJahr");
        return r;
    }
    r.jahr = maske(jahrText, 4);
    if (wocheText.trimmed().isEmpty()) {
        ZeigeMeldung(QStringLiteral("Bitte Woche eingeben"), Style::Exclamation);
        r.status = JobSheetStatus::Refused;
        r.focus = QStringLiteral("dbcWoche");
        return r;
    }
    r.woche = maske(wocheText, 2);
    if (!wocheGueltig(r.woche)) {
        ZeigeMeldung(QStringLiteral("Nur Werte von 00 bis 52 sind als Wochenzahl zulässig"), Style::Exclamation);
        r.status = JobSheetStatus::Refused;
        r.focus = QStringLiteral("dbcWoche");
        return r;
    }
    if (!vorschau
        && ZeigeMeldung(QStringLiteral("Aufträge für die Woche %1 im Jahr %2 jetzt wirklich drucken?").arg(r.woche, r.jahr),
                        Style::YesNo)
               != Answer::Yes) {
        r.status = JobSheetStatus::Cancelled;
        return r;
    }

    const QString datum = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
    try {
        const std::vector<AuftragZeile> rows = lade(session, jobSheetQuery(session, r.jahr, r.woche, filter, false));
        const std::vector<AuftragZeile> frei = lade(session, jobSheetQuery(session, r.jahr, r.woche, filter, true));
        Komponenten komp(session.db());
        p.Vorschau = vorschau;
        p.setOptionState(&session.options());
        r.auftraege = int(rows.size());

        if (rows.empty()) {
            ZeigeMeldung(QStringLiteral("Es sind keine Aufträge mit diesen Angaben vorhanden"), Style::Exclamation);
            r.status = JobSheetStatus::NoOrders;
            r.keineWartungListe = AuftragsDruckKeineWartung(p, komp, frei, false, r.woche, r.jahr, datum);
            if (r.keineWartungListe) {
                r.seiten = p.Seite();
                if (!zeigMitWiederholung(p))
                    r.status = JobSheetStatus::Cancelled;
            }
            melde(WarteText);
            return r;
        }

        melde(QStringLiteral("Woche %1/%2 wird gedruckt (%3 Aufträge)").arg(r.woche, r.jahr).arg(rows.size()));
        p.InitPrinter();
        AnweisungsKopfDaten kopf;
        kopf.Jahr = r.jahr;
        kopf.Woche = r.woche;
        kopf.Datum = datum;
        kopf.proGewerk = !wirksamerFilter(session, filter).gewerk.trimmed().isEmpty();
        druckeBlaetter(p, komp, rows, kopfFelder(session.options()), kopf);
        r.keineWartungListe = AuftragsDruckKeineWartung(p, komp, frei, true, r.woche, r.jahr, datum);
        r.seiten = p.Seite();
        if (!zeigMitWiederholung(p))
            r.status = JobSheetStatus::Cancelled;
    } catch (const Fault &f) {
        const int answer = printerErrors(f);
        if (answer == 3) {
            ZeigeMeldung(faultText(f), Style::Critical);
            r.status = JobSheetStatus::Fault;
        } else {
            r.status = JobSheetStatus::Cancelled;
        }
    }
    melde(WarteText);
    return r;
}

QStringList AuftragsFilterWerte(Session &session, const QString &jahr, const QString &woche, const QString &feld)
{
    QStringList out;
    if (woche.size() < 2)
        return out;
    static const QStringList erlaubt = {QStringLiteral("Ausfuehrender"), QStringLiteral("Kostenstelle"),
                                        QStringLiteral("Lokalisierung")};
    if (!erlaubt.contains(feld))
        return out;
    QSqlQuery q = exec(session.db(),
                       QStringLiteral("SELECT DISTINCT %1 FROM Auftrag WHERE Jahr = ? AND Woche = ? ORDER BY %1")
                           .arg(ident(feld)),
                       {jahr, woche});
    while (q.next())
        out << q.value(0).toString();
    return out;
}

}
