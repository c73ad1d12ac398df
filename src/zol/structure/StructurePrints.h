#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <utility>

namespace zol {

class Session;
class PrinterF;

// What the main window has selected when a print starts: the marked entries
// of the list count when the list has the focus, otherwise the selected tree
// node. Keys are plain keys (a FileIndex, or RootProtok / RootKatalo).
struct StrukturAuswahl {
    QString baumKey;          // the selected tree node
    QStringList listeKeys;    // the marked entries of the list
    bool listeHatFokus = false;
};

enum class StrukturDruckStatus {
    Done,        // the pages went to the printer or the preview
    Nothing,     // nothing selected: the command ended without a word
    Cancelled,   // a question answered No, or a printer fault given up
    Fault,       // a fault was shown
};

// The status line of the main window (panel 1 of sbStatusBar).
using StrukturStatus = std::function<void(const QString &)>;

// "Ausgewählte: Drucken" / "Druckvorschau" and their "einzeln" forms: the
// instruction lists (WI-Übersicht) of the selected components; an
// installation brings every component below it, in the order of the table.
// einzeln: each component on a sheet of its own; otherwise one running sheet.
// A direct print asks first; the preview does not.
StrukturDruckStatus DruckeAusgewaehlte(Session &session, const StrukturAuswahl &auswahl, bool einzeln, bool vorschau,
                                       const StrukturStatus &status = {});
StrukturDruckStatus DruckeAusgewaehlte(Session &session, PrinterF &printer, const StrukturAuswahl &auswahl,
                                       bool einzeln, bool vorschau, const StrukturStatus &status = {});

// "Ausgewählte: Struktur drucken" / "Struktur Druckvorschau": the branch of
// the selection as an indented tree (Komponentenstruktur); asks whether
// components are listed too, and before a direct print.
StrukturDruckStatus DruckeStrukturAuswahl(Session &session, const StrukturAuswahl &auswahl, bool vorschau,
                                          const StrukturStatus &status = {});
StrukturDruckStatus DruckeStrukturAuswahl(Session &session, PrinterF &printer, const StrukturAuswahl &auswahl,
                                          bool vorschau, const StrukturStatus &status = {});

// One filter field of the search view: its caption as printed ("Name:",
// "Bezugswoche:", ...) and the value it holds.
using SuchFilterZeile = std::pair<QString, QString>;
// The printed caption of the search view's filter field of that index (0 the
// name, then the columns of the field table), whatever the field's label says.
QString suchFilterCaption(int index);

// cmdSucheDrucken: the filters of the search and the components it found
// (their FileIndex, in the order of the list). The question "Direkt auf
// Drucker drucken?" chooses between printer (Yes) and preview (No). Filters
// without a value are left out; the lines follow the order of the search view.
StrukturDruckStatus DruckeSuchergebnis(Session &session, const QList<SuchFilterZeile> &filter,
                                       const QStringList &komponenten, const StrukturStatus &status = {});
StrukturDruckStatus DruckeSuchergebnis(Session &session, PrinterF &printer, const QList<SuchFilterZeile> &filter,
                                       const QStringList &komponenten, const StrukturStatus &status = {});

}
