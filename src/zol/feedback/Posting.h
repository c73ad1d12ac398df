#pragma once
#include <QString>

namespace zol {

class Session;

struct VerbuchenErgebnis {
    enum class Status {
        Nichts,        // no week given: nothing happens
        Abgelehnt,     // week 00, a level without the right, or a yearly table of another build
        Verneint,      // the question answered No
        Verbucht,
        Fehler,        // a fault was shown; the yearly table is as it was
    } status = Status::Nichts;
    bool geloescht = false;   // the week was deleted from Auftrag
    int kopiert = 0;          // rows of the week copied
    int kurzfristig = 0;      // short-term rows copied under the week
    bool tabelleAngelegt = false;
};

// Posts the week: asks, copies its rows (not those of maintenance-free weeks)
// and the year's short-term rows under its number into Rückmeldungen<Jahr>
// (made at the first posting of a year), replacing an earlier copy of the
// week, and deletes the week from Auftrag if the second question is answered
// Yes. All of it is one transaction.
VerbuchenErgebnis AuftragswocheVerbuchen(Session &session, const QString &jahr, const QString &woche);

// Deletes every order of the week from Auftrag after a question; the posted
// rows in the yearly table stay. True when deleted.
bool AuftragswocheLoeschen(Session &session, const QString &jahr, const QString &woche);

// True when the yearly table exists but its fields are not those of Auftrag
// in their order.
bool jahrestabelleAbweichend(const Session &session, const QString &jahr);

}
