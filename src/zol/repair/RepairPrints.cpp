#include "RepairPrints.h"
#include "RepairOverview.h"
#include "zol/core/Clock.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include "zol/core/Sql.h"
#include "zol/planning/OrderRows.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PdfReport.h"
#include "zol/print/PrinterF.h"

namespace zol {

namespace {

QString heute() { return Heute().toString(QStringLiteral("dd.MM.yyyy")); }

ErfassungDruckZeile druckZeile(const QSqlQuery &q)
{
    ErfassungDruckZeile z;
    z.Name = q.value(0).toString();
    z.IdentNr = q.value(1).toString();
    z.LaufendeNummer = q.value(2).toString();
    z.Datum = q.value(3).toString();
    z.Stunden = q.value(4).toDouble();
    z.Minuten = q.value(5).toDouble();
    z.Lohnkosten = q.value(6).toDouble();
    z.materialkosten = q.value(7).toDouble();
    z.Fremdkosten = q.value(8).toDouble();
    z.Kostenstelle = q.value(9).toString();
    z.Herkunft = kurzText(AuftragsHerkunftListe(), q.value(10).toInt());
    z.Auftragsart = kurzText(AuftragsartListe(), q.value(11).toInt());
    z.Schadensart = kurzText(SchadensartListe(), q.value(12).toInt());
    z.Ursache = kurzText(SchadensUrsacheListe(), q.value(13).toInt());
    z.erledigtam = q.value(14).toString();
    return z;
}

// Runs a report with the printer-fault rules of every report.
template<typename Body>
ISDruckStatus drucke(PrinterF &p, Session &session, bool vorschau, Body body)
{
    try {
        p.Vorschau = vorschau;
        p.setOptionState(&session.options());
        p.InitPrinter();
        body();
        if (!zeigMitWiederholung(p))
            return ISDruckStatus::Abgebrochen;
    } catch (const Fault &f) {
        if (printerErrors(f) != 3)
            return ISDruckStatus::Abgebrochen;
        ZeigeMeldung(faultText(f), Style::Critical);
        return ISDruckStatus::Fehler;
    }
    return ISDruckStatus::Gedruckt;
}

QList<int> zaehle(const QSqlDatabase &db, const ErfassungsListe &l, const QString &feld, int eintraege)
{
    QList<int> n(eintraege, 0);
    QSqlQuery q = exec(db, QStringLiteral("SELECT %1, count(*) FROM Erfassung%2 GROUP BY %1").arg(feld, l.where), l.werte);
    while (q.next()) {
        const int i = q.value(0).toInt();
        if (i >= 0 && i < eintraege)
            n[i] += q.value(1).toInt();
    }
    return n;
}

}

ISDruckStatus ErfassungStatistikDrucken(Session &session, const ErfassungsListe &liste, bool vorschau)
{
    return ErfassungStatistikDrucken(session, PrinterF::instance(), liste, vorschau);
}

ISDruckStatus ErfassungStatistikDrucken(Session &session, PrinterF &p, const ErfassungsListe &liste, bool vorschau)
{
    if (!vorschau && ZeigeMeldung(QStringLiteral("Wollen Sie die Statistik jetzt ausdrucken?"), Style::YesNo) == Answer::No)
        return ISDruckStatus::Nein;
    return drucke(p, session, vorschau, [&] {
        const QString datum = heute();
        const ErfassungSpalten s(p);
        const auto kopf = [&] {
            int z = Print_Erfassung_Kopf(p, datum, s);
            if (!liste.auswahl.isEmpty()) {
                p.XPos(s.LaufendeNummer);
                p.YPos(z * p.TextHeight());
                p.PrintString(liste.auswahl);
                z += 2;
            }
            return z;
        };
        const int letzte = letzteZeile(p);
        int zeile = kopf();
        const auto neueSeite = [&] {
            p.Print_UnterenRand(zeile, 100, 200, int(zeile * p.TextHeight()), int(letzte * p.TextHeight()));
            p.NewPage();
            zeile = kopf();
        };
        QSqlQuery q = exec(session.db(),
                           QStringLiteral("SELECT Name, IdentNr, LaufendeNummer, Datum, Stunden, Minuten, Lohnkosten, "
                                          "materialkosten, Fremdkosten, Kostenstelle, AuftragsHerkunft, Auftragsart, "
                                          "Schadensart, SchadensUrsache, erledigtam FROM Erfassung")
                               + liste.where + QStringLiteral(" ORDER BY Name, IdentNr, LaufendeNummer"),
                           liste.werte);
        QString identNr;
        bool erste = true;
        ErfassungSummen summen;
        while (q.next()) {
            const ErfassungDruckZeile z = druckZeile(q);
            if (erste || z.IdentNr != identNr) {
                if (!erste) {
                    if (zeile + 2 > letzte)
                        neueSeite();
                    Print_Erfassung_zusammen(p, zeile, summen, s);
                    ++zeile;
                }
                summen = {};
                identNr = z.IdentNr;
                erste = false;
                // The component line keeps with its first order.
                if (zeile + 2 > letzte)
                    neueSeite();
                Print_Erfassung_Komponente(p, z, zeile);
            }
            if (zeile + 1 > letzte)
                neueSeite();
            Print_Erfassung_Zeile(p, z, zeile, s);
            summen.add(z);
        }
        if (!erste) {
            if (zeile + 2 > letzte)
                neueSeite();
            Print_Erfassung_zusammen(p, zeile, summen, s);
        }
        p.Print_UnterenRand(zeile, 100, 200, int(zeile * p.TextHeight()), int(letzte * p.TextHeight()));
        p.NewPage();
        const QList<HaeufigkeitsBlock> bloecke = {
            {QStringLiteral("Auftragsherkunft: "), langTexte(AuftragsHerkunftListe()),
             zaehle(session.db(), liste, QStringLiteral("AuftragsHerkunft"), int(AuftragsHerkunftListe().size()))},
            {QStringLiteral("Schadensart: "), langTexte(SchadensartListe()),
             zaehle(session.db(), liste, QStringLiteral("Schadensart"), int(SchadensartListe().size()))},
            {QStringLiteral("Schadensursache: "), langTexte(SchadensUrsacheListe()),
             zaehle(session.db(), liste, QStringLiteral("SchadensUrsache"), int(SchadensUrsacheListe().size()))}};
        Print_Erfassung_Haeufigkeit(p, datum, bloecke);
    });
}

ISDruckStatus ISAuftragDrucken(Session &session, const ISAuftragSchluessel &key, bool vorschau)
{
    return ISAuftragDrucken(session, PrinterF::instance(), key, vorschau);
}

ISDruckStatus ISAuftragDrucken(Session &session, PrinterF &p, const ISAuftragSchluessel &key, bool vorschau)
{
    if (!vorschau && ZeigeMeldung(QStringLiteral("Wollen Sie den IS-Auftrag jetzt ausdrucken?"), Style::YesNo) == Answer::No)
        return ISDruckStatus::Nein;
    return drucke(p, session, vorschau, [&] {
        ErfassungBlatt b;
        if (const auto m = ladeISAuftrag(session.db(), key)) {
            b.LaufendeNummer = m->LaufendeNummer;
            b.Datum = m->MeldeDatum;
            b.IdentNr = m->IdentNr;
            b.Auftragsart = AuftragsartListe().value(m->Auftragsart).lang;
            b.Auftragsherkunft = AuftragsHerkunftListe().value(m->AuftragsHerkunft).lang;
            b.Zeit = m->Stunden + QLatin1Char(':')
                     + QStringLiteral("%1").arg(m->Minuten.toInt(), 2, 10, QLatin1Char('0'));
            b.Lohnkosten = m->Lohnkosten;
            b.Materialkosten = m->Materialkosten;
            b.Fremdleistung = m->Fremdaufwand;
            b.ZuErledigenBis = m->ZuErledigenBis;
            b.Beschreibung = m->Beschreibung;
        }
        const QVariant fileIndex =
            scalar(session.db(), QStringLiteral("SELECT FileIndex FROM ProtokollKopf WHERE IdentNr = ?"), {key.IdentNr});
        if (fileIndex.isValid()) {
            Komponenten komp(session.db());
            if (const auto &node = komp.node(fileIndex.toString())) {
                b.KompText = node->Text;
                b.Lokalisierung = node->Lokalisierung;
                b.Laufweg = node->Option1;
                b.Pfad = komp.pfad(node->FileIndex);
            }
        }
        Print_Erfassung_Auftrag_Kopf(p, heute(), b);
    });
}

bool parseRepairsArgs(const QStringList &args)
{
    const QString usage = QStringLiteral("Aufruf: zol print repairs --pdf DATEI [--offen|--erledigt]");
    QString pdf;
    int status = 0;
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i) == QLatin1String("--pdf") && i + 1 < args.size() && pdf.isEmpty())
            pdf = args.at(++i);
        else if ((args.at(i) == QLatin1String("--offen") || args.at(i) == QLatin1String("--erledigt")) && status == 0)
            status = args.at(i) == QLatin1String("--offen") ? 2 : 1;
        else {
            ZeigeMeldung(usage, Style::Exclamation);
            return false;
        }
    }
    if (pdf.isEmpty()) {
        ZeigeMeldung(usage, Style::Exclamation);
        return false;
    }
    if (const QString refusal = outputRefusal(pdf); !refusal.isEmpty()) {
        ZeigeMeldung(refusal, Style::Exclamation);
        return false;
    }
    return true;
}

int printRepairsCommand(Session &session, const QStringList &args)
{
    if (!parseRepairsArgs(args))
        return 2;
    const QString pdf = args.at(args.indexOf(QStringLiteral("--pdf")) + 1);
    ISAuftraegeFilter filter;
    if (args.contains(QStringLiteral("--offen")))
        filter.status = ISAuftraegeFilter::NichtErledigt;
    else if (args.contains(QStringLiteral("--erledigt")))
        filter.status = ISAuftraegeFilter::Erledigt;
    const ISAuftraegeAbfrage a = baueAbfrage(filter);
    return reportIntoPdf(
        pdf, [&] { return ErfassungStatistikDrucken(session, ErfassungsListe{a.where, a.werte, {}}, true); },
        [](ISDruckStatus status, bool written) {
            switch (status) {
            case ISDruckStatus::Gedruckt: return written ? 0 : 3;
            case ISDruckStatus::Nein:
            case ISDruckStatus::Abgebrochen: return 1;
            case ISDruckStatus::Fehler: return 3;
            }
            return 3;
        });
}

}
