#include "FindingsPrint.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/planning/OrderRows.h"
#include "zol/print/PrinterF.h"
#include <QDate>

namespace zol {

BefundDruckStatus BefundeDrucken(Session &session, const QString &jahr, const QString &woche, bool vorschau)
{
    return BefundeDrucken(session, PrinterF::instance(), jahr, woche, vorschau);
}

BefundDruckStatus BefundeDrucken(Session &session, PrinterF &p, const QString &jahr, const QString &woche, bool vorschau)
{
    try {
        const std::vector<AuftragZeile> rows = ladeAuftragZeilen(
            session.db(),
            QStringLiteral("SELECT * FROM Auftrag WHERE Jahr = ? AND Woche = ? AND Befund <> '' "
                           "ORDER BY KompBezeichnung, Objekt, Anweisung"),
            {jahr, woche});
        p.Vorschau = vorschau;
        p.setOptionState(&session.options());
        p.InitPrinter();
        if (rows.empty()) {
            ZeigeMeldung(QStringLiteral("Keine Befunde für diese Planugswoche vorhanden"), Style::Information);
            return BefundDruckStatus::KeineBefunde;
        }
        const QString datum = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
        const RueckmeldungSpalten s(p);
        const AnweisungsSpalten a(p);
        Komponenten komp(session.db());
        int zeile = Print_Rueckmeldung_Kopf(p, woche, jahr, datum, s);
        QString teIndex, objekt;
        bool neueSeite = true;

        const auto seitenwechsel = [&] {
            Print_Rueckmeldung_Fusszeile(p);
            p.NewPage();
            zeile = Print_Rueckmeldung_Kopf(p, woche, jahr, datum, s);
            neueSeite = true;
        };
        const auto komponente = [&](const AuftragZeile &z) {
            const auto &node = komp.node(z.TeIndex);
            const QString pfad = node ? komp.pfad(z.TeIndex) : QString();
            if (!Print_AnweisungsKomponente(p, node, pfad, zeile, a)) {
                seitenwechsel();
                Print_AnweisungsKomponente(p, node, pfad, zeile, a);
            }
            neueSeite = false;
        };
        const auto objektKopf = [&](const AuftragZeile &z) {
            const QString text = komp.objektKopf(z.TeIndex, z.Objekt);
            if (text.isEmpty())
                return;
            if (!Print_AnweisungsObjektZeile(p, text, z.Objekt, zeile, a)) {
                seitenwechsel();
                komponente(z);
                Print_AnweisungsObjektZeile(p, text, z.Objekt, zeile, a);
            }
        };

        for (const AuftragZeile &z : rows) {
            if (z.TeIndex != teIndex || neueSeite) {
                komponente(z);
                teIndex = z.TeIndex;
                objekt.clear();
            }
            if (z.Objekt != objekt) {
                objektKopf(z);
                objekt = z.Objekt;
            }
            if (!Print_Rueckmeldung_BefundZeile(p, z, zeile, s)) {
                seitenwechsel();
                komponente(z);
                objektKopf(z);
                // A row longer than a page is printed as far as it goes, never retried for ever.
                Print_Rueckmeldung_BefundZeile(p, z, zeile, s);
            }
        }
        Print_Rueckmeldung_Fusszeile(p);
        if (!zeigMitWiederholung(p))
            return BefundDruckStatus::Abgebrochen;
    } catch (const Fault &f) {
        if (printerErrors(f) != 3)
            return BefundDruckStatus::Abgebrochen;
        ZeigeMeldung(faultText(f), Style::Critical);
        return BefundDruckStatus::Fehler;
    }
    return BefundDruckStatus::Gedruckt;
}

}
