#pragma once
#include "RepairOrders.h"
#include <QString>
#include <QVariantList>

namespace zol {

class PrinterF;

enum class ISDruckStatus {
    Gedruckt,      // the pages went to the printer or the preview
    Nein,          // the question before printing was answered No
    Abgebrochen,   // a printer fault given up
    Fehler,        // a fault was shown
};

// What a listing prints: the orders of a selection (its WHERE with bound
// values, as the capture or the overview holds it), and for the overview
// the line that names its filters.
struct ErfassungsListe {
    QString where;
    QVariantList werte;
    QString auswahl;   // "(Auswahl: ...)" or empty
};

// "Ausserplanmässige Instandsetzungen": the orders grouped by component with
// their sums, then the page "Befundhäufigkeit" of the same orders. Direct
// printing asks "Wollen Sie die Statistik jetzt ausdrucken?" first.
ISDruckStatus ErfassungStatistikDrucken(Session &session, PrinterF &printer, const ErfassungsListe &liste,
                                        bool vorschau);
ISDruckStatus ErfassungStatistikDrucken(Session &session, const ErfassungsListe &liste, bool vorschau);

// The single sheet of one order. Direct printing asks
// "Wollen Sie den IS-Auftrag jetzt ausdrucken?" first.
ISDruckStatus ISAuftragDrucken(Session &session, PrinterF &printer, const ISAuftragSchluessel &key, bool vorschau);
ISDruckStatus ISAuftragDrucken(Session &session, const ISAuftragSchluessel &key, bool vorschau);

// `zol print repairs --pdf FILE [--offen|--erledigt]`: the listing of all
// orders (or the open or the done ones) as the preview shows it, into a PDF.
// Exit status: 0 written, 1 an existing file kept, 2 wrong usage, 3 fault.
int printRepairsCommand(Session &session, const QStringList &args);
// The words behind "repairs", checked before anything touches the data file.
bool parseRepairsArgs(const QStringList &args);

}
