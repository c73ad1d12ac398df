#pragma once
#include "zol/core/Session.h"
#include "zol/structure/Node.h"
#include <QDate>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>

namespace zol {

// Repair orders (IS-Aufträge): rows of Erfassung. An order belongs to its
// component by value (a copy of Name and IdentNr); its key is Name, IdentNr,
// LaufendeNummer, the running number counting per component. Dates are
// stored as text "yyyy.mm.dd", so that comparing texts compares dates, and
// shown "dd.mm.yyyy".

// ------------------------------------------------------------------ code lists

// One entry of a code list: the capture windows show the long text, the
// overview and the prints the short one. The stored value is the position.
struct CodeText {
    QString lang;
    QString kurz;
};
const QList<CodeText> &AuftragsHerkunftListe();
const QList<CodeText> &AuftragsartListe();
const QList<CodeText> &SchadensartListe();
const QList<CodeText> &SchadensUrsacheListe();
QStringList langTexte(const QList<CodeText> &liste);
QStringList kurzTexte(const QList<CodeText> &liste);
// The short text of a stored position; empty outside the list.
QString kurzText(const QList<CodeText> &liste, int position);

// ------------------------------------------------------------------ date forms

// A date as typed into a box: d.m.yyyy, d.m.yy (00–29 are 20xx), also with
// '/' or '-', or the stored form yyyy.mm.dd. Nothing for any other text.
std::optional<QDate> datumAusText(const QString &text);
// The stored form "yyyy.mm.dd" of a box; empty for an empty box. A text that
// is no date stays as it was typed.
QString datumGespeichert(const QString &box);
// The shown form "dd.mm.yyyy" of a stored date; a text that is no date as it is.
QString datumAngezeigt(const QString &stored);

// Numbers of the time and cost boxes: the stored value with a decimal comma.
QString zahlAngezeigt(double v);

// ------------------------------------------------------------------ the record

struct ISAuftragSchluessel {
    QString Name, IdentNr, LaufendeNummer;
    bool operator==(const ISAuftragSchluessel &) const = default;
};

// The boxes of the capture windows, as texts; dates in the shown form.
struct ISAuftragMaske {
    QString Name, IdentNr, LaufendeNummer;
    QString MeldeDatum;
    QString Stunden = QStringLiteral("0"), Minuten = QStringLiteral("0");
    QString Lohnkosten = QStringLiteral("0"), Materialkosten = QStringLiteral("0"),
            Fremdaufwand = QStringLiteral("0");
    QString Kostenstelle, Gewerk;
    int AuftragsHerkunft = 0, Auftragsart = 0, Schadensart = 0, SchadensUrsache = 0;
    QString Beschreibung;
    QString Prioritaet;
    QString ZuErledigenBis;
    bool Erledigt = false;
    QString ErledigtAm;
    QString Druck;   // shown and edited in the overview only

    ISAuftragSchluessel schluessel() const { return {Name, IdentNr, LaufendeNummer}; }
};

// Empty boxes as a window clears them: 0 in time and costs, the user's trade
// for a Werker.
ISAuftragMaske leereMaske(const Login &login);
// The order of that key, its dates in the shown form; nothing when it is gone.
std::optional<ISAuftragMaske> ladeISAuftrag(const QSqlDatabase &db, const ISAuftragSchluessel &key);

// The box a failed check gives the focus to.
enum class ISFeld {
    Keins, MeldeDatum, Stunden, Minuten, Lohnkosten, Materialkosten, Fremdaufwand, Prioritaet, ZuErledigenBis,
    ErledigtAm
};

// ------------------------------------------------------------------ box rules

// Keyboard filters: what a key adds to a box, or false (swallowed with a beep).
bool zeitTaste(QChar c);    // Stunden, Minuten: digits
bool betragTaste(QChar c);  // costs and priority: digits and comma

// A new priority chosen: 0, 1 and 3 put their date into the due box, 2 empties
// it; a number above 3 or below 0 (as text) is refused with the message on the
// allowed values (false). Anything else changes nothing.
bool PrioritaetGewaehlt(ISAuftragMaske &m);
// The due date of a priority: 0 today, 1 in 2 days, 3 in 180 days; nothing for others.
std::optional<QDate> faelligAm(const QString &prioritaet, const QDate &heute);

// Leaving a date box: an empty box passes; a date is rewritten (done date
// "dd.mm.yyyy", due date "dd.mm.yy"); any other text gets the message (false).
enum class DatumsBox { ZuErledigenBis, ErledigtAm };
bool DatumVerlassen(QString &box, DatumsBox welche);
// Leaving Minuten: more than 59 gets "Maximal 59 Minuten eingeben" (false).
bool MinutenVerlassen(const QString &box);
// Ticking "Erledigt?" puts today into the done box, unticking empties it.
void ErledigtGeklickt(ISAuftragMaske &m, bool erledigt);

// Empty costs and times become 0; the first cost that is not numeric gets
// "Der Wert muß numerisch sein". Returns that box, or Keins.
ISFeld PruefeZahlenfelder(ISAuftragMaske &m);
// The checks before a save in their order: the numbers, the priority, the due date.
ISFeld PruefeVorSpeichern(ISAuftragMaske &m);

enum class SpeicherArt {
    Allgemein,   // the general capture
    Einzel,      // the single capture: shorter message, no test for new orders
};
struct ISSpeicherErgebnis {
    ISFeld fehler = ISFeld::Keins;   // Keins: written
    bool gesperrt = false;           // done: done date, tick, due date and priority locked
    bool ok() const { return fehler == ISFeld::Keins; }
};
// Writes the boxes into the order of m's key (the key itself stays). The
// priority writes its date unless the due box holds one, which has the last
// word; a new order may not be due before today. Nothing is written on a
// failure. An order that is not done loses its done date.
ISSpeicherErgebnis SpeichereDatensatz(const QSqlDatabase &db, ISAuftragMaske &m, SpeicherArt art, bool neu);

// ------------------------------------------------------------------ making orders

// The checks before an order is made for a component: it exists, has an
// IdentNr, and the number is unique. Each failure shows its message.
std::optional<Node> PruefeKomponente(const QSqlDatabase &db, const QString &fileIndex);

// The next running number of the component, "00001" for the first. The rows
// are read in the order of the capture (Name, IdentNr, LaufendeNummer); from
// the first row of that name and number on, every row of the number counts
// whatever its name (so orders made before a rename still count, unless they
// stand ahead of it). Empty and non-numeric numbers are skipped, gaps stay.
QString NaechsteLaufendeNummer(const QSqlDatabase &db, const QString &name, const QString &identNr);

// Writes a new order of the component at once and gives its key: the boxes
// of vorgaben, the component's name, number and cost centre, the user's trade
// for a Werker, priority 0 and due today, not done.
ISAuftragSchluessel NeuerISAuftrag(const QSqlDatabase &db, const Login &login, const Node &komponente,
                                   const ISAuftragMaske &vorgaben);

// Deletes the order(s) of that key. Returns the number of rows removed.
int LoescheISAuftrag(const QSqlDatabase &db, const ISAuftragSchluessel &key);

// ------------------------------------------------------------------ browsing

// Which orders the general capture browses: by status (1 done, 2 not done,
// anything else all) and, for a Werker, only his trade.
class ErfassungsAuswahl {
public:
    ErfassungsAuswahl(const QSqlDatabase &db, const Login &login, int status);
    int status() const { return m_status; }

    // Moves in the order Name, IdentNr, LaufendeNummer. Nothing when there is no such row.
    std::optional<ISAuftragSchluessel> erster() const;
    std::optional<ISAuftragSchluessel> letzter() const;
    std::optional<ISAuftragSchluessel> naechster(const ISAuftragSchluessel &von) const;
    std::optional<ISAuftragSchluessel> voriger(const ISAuftragSchluessel &von) const;
    bool enthaelt(const ISAuftragSchluessel &key) const;
    bool leer() const { return !erster(); }
    // The first row of a name, of a number, of a number and running number.
    std::optional<ISAuftragSchluessel> ersterMitName(const QString &name) const;
    std::optional<ISAuftragSchluessel> ersterMitIdentNr(const QString &identNr) const;
    std::optional<ISAuftragSchluessel> ersterMitNummer(const QString &identNr, const QString &laufendeNummer) const;

    // The lists of the three key combos.
    QStringList namen() const;
    QStringList identNummern(const QString &name) const;
    QStringList laufendeNummern(const QString &identNr) const;

    // The rows of the selection for the listing, with their bound values.
    QString where() const { return m_where; }
    QVariantList werte() const { return m_werte; }

private:
    std::optional<ISAuftragSchluessel> eine(const QString &bedingung, const QVariantList &werte,
                                            bool rueckwaerts = false) const;
    QStringList liste(const QString &feld, const QString &bedingung, const QVariantList &werte) const;

    QSqlDatabase m_db;
    int m_status;
    QString m_where;   // " WHERE ..." or empty
    QVariantList m_werte;
};

}

namespace zol {

// A few repair orders on the first components of the demo plant: open and
// done ones, of several trades, origins and kinds of damage.
void addDemoRepairOrders(const QSqlDatabase &db, int jahr = 2026);

}
