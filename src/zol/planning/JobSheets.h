#pragma once
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>

namespace zol {

class Session;
class PrinterF;

// The three filter fields of the print frame, as typed: the legacy wildcards
// * and ? work, case does not matter. Empty (after trimming) means no filter.
struct JobSheetFilter {
    QString gewerk;
    QString kostenstelle;
    QString lokalisierung;
};

enum class JobSheetStatus {
    Done,        // sheets (and maybe the list) went to the printer or the preview
    NoOrders,    // no order row: the message was shown; the list may still have been printed
    Refused,     // year or week refused; `focus` names the field
    Cancelled,   // the question before printing answered No, or a printer fault given up
    Fault,       // a fault was shown
};

struct JobSheetResult {
    JobSheetStatus status = JobSheetStatus::Done;
    QString focus;            // "txtJahr" or "dbcWoche" after a refusal
    QString jahr, woche;      // as formatted with the masks "0000" and "00"
    int auftraege = 0;        // order rows of the sheets
    int seiten = 0;           // pages of the job (sheets and list)
    bool keineWartungListe = false;
};

// The status line of the window (lblTitel).
using StatusLine = std::function<void(const QString &)>;

// The print of one week's job sheets and, behind them, the list of
// components without maintenance: checks year and week, asks before a direct
// print (never before the preview), selects the orders by the filters, breaks
// the sheets by trade and the user's head keys, and ends the job with zeig of
// the engine. Nothing is written to the data file. A Werker prints only his
// own trade, whatever the filter says. The window's cmdDrucken (vorschau
// false) and cmdDruckVorschau (true) and the batch command call this.
JobSheetResult AuftragsDruckAnweisungen(Session &session, const QString &jahr, const QString &woche,
                                        const JobSheetFilter &filter, bool vorschau,
                                        const StatusLine &status = {});
// The same on a given engine (tests, benchmarks).
JobSheetResult AuftragsDruckAnweisungen(Session &session, PrinterF &printer, const QString &jahr,
                                        const QString &woche, const JobSheetFilter &filter, bool vorschau,
                                        const StatusLine &status = {});

// The statement of the sheets (keineWartung false) or of the list (true),
// with its bound values. Exposed so its plan can be checked.
struct JobSheetQuery {
    QString sql;
    QVariantList values;
};
JobSheetQuery jobSheetQuery(Session &session, const QString &jahr, const QString &woche,
                            const JobSheetFilter &filter, bool keineWartung);

// The values of a filter field (Ausfuehrender, Kostenstelle, Lokalisierung)
// found in a week, sorted, for the lists of the three combos. Nothing for a
// week text shorter than two characters.
QStringList AuftragsFilterWerte(Session &session, const QString &jahr, const QString &woche, const QString &feld);

}
