#pragma once
#include "zol/core/Session.h"
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>
#include <optional>

namespace zol {

// The overview of repair orders: filters, the query, sorting by column and
// the rules of the editable grid.

// The columns of the grid in their fixed positions.
struct ISSpalte {
    QString titel;
    QString feld;
    bool editierbar;
};
const QList<ISSpalte> &ISAuftraegeSpalten();
// Positions whose cells show and take the short texts of a code list.
bool istCodeSpalte(int position);
const QList<struct CodeText> &codeListeDerSpalte(int position);

// The filter boxes of the overview and its three status options.
struct ISAuftraegeFilter {
    QString MeldedatumVon, MeldedatumBis, ZuErledigenVon, ZuErledigenBis;
    QString Name, Kostenstelle, Gewerk;
    enum Status { Alle, NichtErledigt, Erledigt } status = Alle;
    // "(Auswahl: ...)": the filter values as the print names them.
    QString auswahlText() const;
};

// Leaving a filter box: trimmed; a date box that is not empty must hold a
// date ("Kein gültiges Datum. Geben Sie 'dd.mm.yyyy' ein", false).
bool FilterDatumVerlassen(QString &box);
// Leaving a "to" box: when both boxes of the pair hold dates, to may not
// stand before from ("Das Zeitintervall ist nicht plausibel", false).
bool FilterIntervallPruefen(const QString &von, const QString &bis);

// The query of the grid: WHERE with its bound values, and the ORDER BY a
// click on a column head set (the filters stay).
struct ISAuftraegeAbfrage {
    QString where;        // empty or " WHERE ..."
    QVariantList werte;
    QString orderBy = QStringLiteral(" ORDER BY Name, IdentNr, LaufendeNummer");
    QString sql(const QString &felder = QStringLiteral("rowid, *")) const
    {
        return QStringLiteral("SELECT %1 FROM Erfassung").arg(felder) + where + orderBy;
    }
};
ISAuftraegeAbfrage baueAbfrage(const ISAuftraegeFilter &filter);

// One flag per column group: the first click sorts descending, the next
// ascending, and so on; columns of a group share the flag. Nothing for a
// column that does not sort.
class ISSortierung {
public:
    std::optional<QString> klick(int position);

private:
    bool m_flag[12] = {};
};

// Editing a cell: positions that are never edited refuse with "Das Feld ist
// nicht editierbar".
bool ZelleEditierbar(int position);
// The check of a new cell value by position, each with its message; false
// refuses it. The positions of this check follow an order of their own (the
// one of the record), and the value must also suit the field it is written to.
bool PruefeZelle(int position, const QString &text);

// Whether a user may open or delete a row of that trade: not an Auswerter
// (opening only), and a Werker only rows of his trade.
bool darfZeileOeffnen(const QSqlDatabase &db, const Login &login, const QString &gewerk);
bool darfZeileLoeschen(const QSqlDatabase &db, const Login &login, const QString &gewerk);

// Read-only grid: roles other than Administrator and Master when they are
// Auswerter or Werker, or when the protection test says so.
bool ISAuftraegeNurLesen(const Login &login, bool geschuetzt);

// Writes one cell of the row (rowId) into its field; the code columns take
// the short text and store its position.
void schreibeZelle(const QSqlDatabase &db, qint64 rowId, int position, const QString &text);
// Deletes rows by rowId, all or none.
int loescheZeilen(const QSqlDatabase &db, const QList<qint64> &rowIds);

}
