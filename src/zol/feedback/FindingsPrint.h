#pragma once
#include <QString>

namespace zol {

class Session;
class PrinterF;

enum class BefundDruckStatus {
    Gedruckt,       // the pages went to the printer or the preview
    KeineBefunde,   // the message was shown, nothing printed
    Abgebrochen,    // a printer fault given up
    Fehler,         // a fault was shown
};

// The findings of a week (orders with a finding), by component and object,
// on paper or in the preview (vorschau). Nothing is written to the data file.
BefundDruckStatus BefundeDrucken(Session &session, const QString &jahr, const QString &woche, bool vorschau);
// The same on a given engine (tests, benchmarks).
BefundDruckStatus BefundeDrucken(Session &session, PrinterF &printer, const QString &jahr, const QString &woche,
                                 bool vorschau);

}
