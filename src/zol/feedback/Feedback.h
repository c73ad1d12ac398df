#pragma once
#include "zol/print/PageLayouts.h"
#include <QSqlDatabase>
#include <QString>
#include <optional>

namespace zol {

class Session;
struct Login;

// The five fields that identify an order row; feedback finds a row by exactly these.
struct AuftragSchluessel {
    QString TeIndex, Jahr, Woche, Objekt, Anweisung;
    static AuftragSchluessel von(const AuftragZeile &z) { return {z.TeIndex, z.Jahr, z.Woche, z.Objekt, z.Anweisung}; }
    bool operator==(const AuftragSchluessel &) const = default;
};

inline const QString KomponenteFehltText = QStringLiteral("Diese Komponente existiert nicht mehr");

// What the record area of the feedback window shows for one order row.
// MeldungsCode and Verbal are list indexes, -1 for no selection.
struct RueckmeldungAnzeige {
    bool leer = true;
    QString IdentNr, Jahr, Woche, Objekt, Anweisung, Kostenstelle, Materialcode, Intervall, Auftragstext,
        Bemerkung, Status, Zeit, MaterialMenge;
    int MeldungsCode = -1;
    int Verbal = -1;
};

// The row as the fields show it, with the fallbacks of an empty field ("0,0"
// for time and quantity, the missing component's text for IdentNr). Without a
// row everything is empty and the lists have no selection.
RueckmeldungAnzeige zeigeAuftrag(const QSqlDatabase &db, const std::optional<AuftragZeile> &zeile);

// What the user can change, as typed.
struct RueckmeldungEingabe {
    QString Zeit, MaterialMenge, Kostenstelle, Materialcode, Auftragstext, Bemerkung;
    int MeldungsCode = -1;
    int Verbal = -1;
    static RueckmeldungEingabe aus(const RueckmeldungAnzeige &a);
};

// True when a typed text (time, quantity, order text, remark) differs from the record on display.
bool eingabeGeaendert(const RueckmeldungAnzeige &angezeigt, const RueckmeldungEingabe &eingabe);

// Time and quantity: digits with at most one decimal comma ("1,5", ",5", "2").
bool istNumerisch(const QString &text);
// The value of a numeric text (decimal comma); 0 for anything else.
double zahlAus(const QString &text);
// A stored number as the fields show it, with a decimal comma.
QString zahlText(double v);
// The keys txtZeit and txtMaterialMenge take: digits and the comma.
bool zeichenErlaubt(QChar c);
// How many characters a field of the record area takes (its field's Size;
// the number fields take as many characters as their eight bytes).
int eingabeLaenge(const QString &feld);

// The save of cmdRückmeldung: checks quantity and time, then RückmeldungSpeichern.
struct SpeicherErgebnis {
    enum class Status { Gespeichert, KeinDatensatz, Abgelehnt, NichtGefunden, Fehler } status = Status::Gespeichert;
    QString focus;                      // "txtMaterialMenge" or "txtZeit" after a refusal
    std::optional<AuftragZeile> zeile;  // the row as saved
};
SpeicherErgebnis Zurueckmelden(const QSqlDatabase &db, const std::optional<AuftragSchluessel> &schluessel,
                               const RueckmeldungEingabe &eingabe);

// Writes the feedback into the row of the key, field by field in the window's
// order. False when no row has this key (nothing is written).
bool RückmeldungSpeichern(const QSqlDatabase &db, const AuftragSchluessel &schluessel,
                          const RueckmeldungEingabe &eingabe);

// Quick cancel: the row is saved as "Storniert" with the values typed.
SpeicherErgebnis Stornieren(const QSqlDatabase &db, const AuftragSchluessel &schluessel,
                            RueckmeldungEingabe eingabe);

// On selecting another row: true when the new row is to be shown. A changed
// record asks "Satz ohne Rückmeldung verlassen?"; either answer clears the flag,
// so a second try moves without a question.
bool SatzVerlassen(bool gleicheZeile, bool &geaendert);

// What the level of the user allows in the feedback window.
struct RueckmeldungRechte {
    bool storno = true, rueckmelden = true, isAuftrag = true, verbuchen = true, loeschen = true;
    QString werkerGewerk;   // non-empty: every list shows this trade only
};
RueckmeldungRechte rueckmeldungRechte(const Login &login);

}
