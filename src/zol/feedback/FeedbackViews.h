#pragma once
#include "zol/print/PageLayouts.h"
#include <QList>
#include <QPair>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

namespace zol {

class Session;

// The levels of a feedback tree: a component (its name at planning time and
// its key), a planned week (year and week) or a trade.
enum class Ebene { Komponente, Woche, Gewerk };

struct RueckmeldungsAnsicht {
    QString text;     // cmbView
    QString titel;    // lblTreeView
    QList<Ebene> ebenen;
};
// The eight views in list order.
const QList<RueckmeldungsAnsicht> &rueckmeldungsAnsichten();

inline const QString KomponenteFehltKnoten = QStringLiteral("Diese Komponente existiert nicht mehr!");

// The key of a tree node: the field values that select the orders under it,
// from the top level down. Values are bound, never pasted into the statement.
struct KnotenFilter {
    QList<QPair<QString, QString>> felder;   // field of Auftrag, value
    int tiefe = 0;                           // levels above and including the node
    bool operator==(const KnotenFilter &) const = default;
};

struct AnsichtKnoten {
    QString text;
    KnotenFilter filter;
    bool blatt = false;   // the last level of its view
};

// The nodes below a node of a view (below nothing: the top level), in the
// view's order. A Werker sees his own trade only. A long level is read page by
// page: at most `anzahl` nodes (0: all), those after the node `nach` (a node
// of the same level; none: from the first).
QList<AnsichtKnoten> ansichtKinder(Session &session, int ansicht, const KnotenFilter &oben = {},
                                   const AnsichtKnoten *nach = nullptr, int anzahl = 0);

// optOption: 0 both, 1 only open, 2 only reported.
enum class AuftragsAuswahl { Beide = 0, Offen = 1, Zurueckgemeldet = 2 };

struct AuftragsAbfrage {
    QString sql;
    QVariantList values;
};
// The orders of a node (with an empty filter: of every node), without the rows
// of maintenance-free weeks, sorted by name, year, week, object, instruction.
AuftragsAbfrage auftragsAbfrage(Session &session, const KnotenFilter &knoten, AuftragsAuswahl auswahl);

// One line of the summary list: the orders of one component under the node.
struct UebersichtZeile {
    QString TeIndex, Name, GeplantAm;
    int anzahl = 0, zurueckgemeldet = 0, befunde = 0;
    double arbeitszeit = 0;
};
// The summary lines of a node, the last being "  GESAMT:" with the sums.
QList<UebersichtZeile> uebersicht(Session &session, const KnotenFilter &knoten, AuftragsAuswahl auswahl);
inline const QString GesamtText = QStringLiteral("  GESAMT:");

// The list's text of a component: its current name, or the missing component's text.
QString komponentenName(const QSqlDatabase &db, const QString &teIndex);

// The path of a component through FileAbove, names joined by '\'; a
// component outside the tree gets the warning text.
QString komponentenPfad(const QSqlDatabase &db, const QString &teIndex);
inline const QString NichtImVerzeichnisText =
    QStringLiteral("Achtung: Diese Komponente ist nicht im Verzeichnis eingetragen!");

}
