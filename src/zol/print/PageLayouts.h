#pragma once
#include "PrinterF.h"
#include "zol/structure/Node.h"
#include <QString>
#include <optional>

namespace zol {

// The page layouts of the reports, drawn on the print engine. Every column
// follows from the width of a template text in the job's font, chained from a
// left start, so one layout fits portrait with 8 pt and landscape with 9 pt.
// Vertical positions are line numbers: y = TextHeight("O") x line; the caller
// carries the line counter. Measure the columns after InitPrinter.

// One row of Auftrag (or of a yearly feedback table), as the layouts read it.
struct AuftragZeile {
    QString TeIndex, Jahr, Woche, Objekt, Anweisung, WIVerantwortlicher, Ausfuehrender, Kostenstelle,
        Lokalisierung, Option1, KompBezeichnung, Betriebszustand, BetriebszustandXL, Materialcode, Bemerkung,
        Text, Rueckmeldung, Befund, Verbal, Intervall, Datum, SicherheitsHinweis, IntervallTyp, KeineWartung;
    double PlanZeit = 0;
    double Materialmenge = 0;
    int AnzahlPersonen = 0;
    bool AnzahlPersonenLeer = false;   // the field holds nothing (NULL)
    // The value of an Auftrag field by its name (any case), as text.
    QString value(const QString &field) const;
};

// One instruction line of ProtokollPositionen for the instruction overview.
struct PositionZeile {
    QString TeNummer, Objekt, Anweisung, Text, Ausfuehrender, Betriebszustand, AnzahlPersonen, Sicherheitshinweis,
        Intervall, Planzeit, Materialcode, Materialmenge, Intervalltyp;
};

// Numbers as the sheets print them: mask "0.0" / "0.00" with a decimal comma.
QString maske01(double v);
QString maske001(double v);

// Job sheet columns (XPos_Anweisung_*), in twips.
struct AnweisungsSpalten {
    explicit AnweisungsSpalten(const PrinterF &p);
    double Nummer, Text, TextEnde, Personen, Betrieb, Intervall, Zeit, Menge, Neun, Zehn;
    // Right end of the instruction text: the safety note stands behind it.
    double TextRechts;
    // Column of remarks and material behind the time; the day strip behind the quantity.
    double Bemerkung, Tagesleiste;
};

// Findings list columns (XPos_Rückmeldung_*).
struct RueckmeldungSpalten {
    explicit RueckmeldungSpalten(const PrinterF &p);
    double Nummer, Text, Block, Code, Menge, Zeit, Befund, Verbal;
};

// Repair order list columns (XPos_Erfassung_*), used by the repair order prints.
struct ErfassungSpalten {
    explicit ErfassungSpalten(const PrinterF &p);
    double LaufendeNummer, Datum, Herkunft, Schadensart, Zeit, Auftragsart, Ursache, Lohn, Material, Fremd,
        ErledigtAm;
};

// Line height and the last line a row may use above the six foot lines.
double zeilenHoehe(const PrinterF &p);
int letzteZeile(const PrinterF &p);

// The head of a job sheet page. The head-key values are printed for the keys
// that break the sheets (field names of Auftrag in kopfFelder).
struct AnweisungsKopfDaten {
    QString Jahr, Woche, Datum;       // Datum: dd.mm.yyyy
    bool proGewerk = false;           // "Gewerk: " for a run of one trade, else "Ausführendes Gewerk: "
    QStringList kopfFelder;           // the active head keys
    AuftragZeile zeile;               // the first order row of the page
};

// Each returns the first free line below what it printed.
int Print_AnweisungsKopf(PrinterF &p, const AnweisungsKopfDaten &kopf, const AnweisungsSpalten &s);
// The component block; false, with nothing printed, when it doesn't fit above the
// foot together with folgeZeilen lines of the first row under it.
// pfad is the path through FileAbove; a missing node prints "Komponente wurde nicht gefunden".
bool Print_AnweisungsKomponente(PrinterF &p, const std::optional<Node> &node, const QString &pfad, int &zeile,
                                const AnweisungsSpalten &s, int folgeZeilen = 1);
// The lines the first row under a component block takes: the order row, and
// its object head above it when one is printed (objektKopf).
int Print_AnweisungsZeilenBedarf(PrinterF &p, const AuftragZeile &z, const QString &objektKopf,
                                 const AnweisungsSpalten &s);
bool Print_AnweisungsObjektZeile(PrinterF &p, const QString &text, const QString &objekt, int &zeile,
                                 const AnweisungsSpalten &s);
// One order row; false, with the line counter unchanged, when it doesn't fit.
// The running sum of planned time grows by the row's PlanZeit.
bool Print_AnweisungsZeile(PrinterF &p, const AuftragZeile &z, int &zeile, double &summe,
                           const AnweisungsSpalten &s);
// The foot, counted up from the bottom; blank items fill from zeile to it.
void Print_AnweisungsFusszeile(PrinterF &p, int zeile, double summe, const AnweisungsSpalten &s);

// The list of components without maintenance.
int Print_KeineWartungKopf(PrinterF &p, const QString &woche, const QString &jahr, const QString &datum);
bool Print_KeineWartungKomponente(PrinterF &p, const QString &pfad, int &zeile);
void Print_KeineWartungFusszeile(PrinterF &p);

// The overview of a component's instructions.
int Print_Protokoll_Kopf(PrinterF &p, const QString &datum, const AnweisungsSpalten &s);
bool Print_Protokoll_Komponente(PrinterF &p, const std::optional<Node> &node, const QString &pfad, int &zeile,
                                const AnweisungsSpalten &s);
bool Print_Protokoll_Zeile(PrinterF &p, const PositionZeile &z, int &zeile, const AnweisungsSpalten &s);

int Print_ProtokollStruktur_Kopf(PrinterF &p, const QString &datum);

// The findings list.
int Print_Rueckmeldung_Kopf(PrinterF &p, const QString &woche, const QString &jahr, const QString &datum,
                            const RueckmeldungSpalten &s);
bool Print_Rueckmeldung_BefundZeile(PrinterF &p, const AuftragZeile &z, int &zeile, const RueckmeldungSpalten &s);
void Print_Rueckmeldung_Fusszeile(PrinterF &p);

// The effort of one trade: hours per week with a bar of '*'.
int Print_Aufwand_Kopf(PrinterF &p, const QString &gewerk, double gesamtStunden, double schnittStunden,
                       const QString &datum);
// anteil in percent of the total; the bar has one '*' per percent.
bool Print_Aufwand_Zeile(PrinterF &p, const QString &woche, double stunden, double anteil, int &zeile);

// The head of the repair order list.
int Print_Erfassung_Kopf(PrinterF &p, const QString &datum, const ErfassungSpalten &s);

}

namespace zol {

// One repair order as the repair order prints read it: codes already as
// their short texts, dates as stored.
struct ErfassungDruckZeile {
    QString Name, IdentNr, LaufendeNummer, Datum, Kostenstelle, erledigtam;
    QString Herkunft, Auftragsart, Schadensart, Ursache;
    double Stunden = 0, Minuten = 0, Lohnkosten = 0, materialkosten = 0, Fremdkosten = 0;
};

// The sums of one component in the repair order list.
struct ErfassungSummen {
    double Stunden = 0, Minuten = 0, Lohnkosten = 0, materialkosten = 0, Fremdkosten = 0;
    void add(const ErfassungDruckZeile &z);
};

// Numbers of the repair order prints: as entered, with a decimal comma.
QString erfassungZahl(double v);
// Hours and minutes "h:mm".
QString erfassungZeit(double stunden, double minuten);

// The component line of a group; the line counter grows by one.
void Print_Erfassung_Komponente(PrinterF &p, const ErfassungDruckZeile &z, int &zeile);
// One order; every value cut to its column. The line counter grows by one.
void Print_Erfassung_Zeile(PrinterF &p, const ErfassungDruckZeile &z, int &zeile, const ErfassungSpalten &s);
// The sums of a group under a rule of "======"; minutes carried into hours.
// The line counter grows by two.
void Print_Erfassung_zusammen(PrinterF &p, int &zeile, ErfassungSummen summen, const ErfassungSpalten &s);
// The page of frequencies: one block per code list, every entry with its count.
struct HaeufigkeitsBlock {
    QString titel;
    QStringList texte;
    QList<int> anzahl;
};
void Print_Erfassung_Haeufigkeit(PrinterF &p, const QString &datum, const QList<HaeufigkeitsBlock> &bloecke);

// The single sheet of one order.
struct ErfassungBlatt {
    QString LaufendeNummer, Datum, IdentNr, KompText, Pfad, Lokalisierung, Laufweg;
    QString Auftragsart, Auftragsherkunft, Zeit, Lohnkosten, Materialkosten, Fremdleistung, ZuErledigenBis;
    QString Beschreibung;
};
void Print_Erfassung_Auftrag_Kopf(PrinterF &p, const QString &datum, const ErfassungBlatt &b);

}
