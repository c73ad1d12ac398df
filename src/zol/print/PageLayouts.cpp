#include "PageLayouts.h"
#include "zol/instructions/IntervalCodes.h"
#include <cmath>

namespace zol {

namespace {

const QString TW_Nummer = QStringLiteral("0000/00000");
const QString TW_Breit = QStringLiteral("mmmmmmmmmmn");

double H(const PrinterF &p) { return p.TextHeight(); }

void put(PrinterF &p, double x, double y, const QString &text, bool bold = false)
{
    p.setBold(bold);
    p.XPos(x);
    p.YPos(y);
    p.PrintString(text);
}

// Writes at a line and gives the x behind the text, for chained head items.
double putLine(PrinterF &p, double x, int zeile, const QString &text, bool bold = false)
{
    put(p, x, zeile * H(p), text, bold);
    const double w = p.TextWidth(text);
    p.setBold(false);
    return x + w;
}

void putRight(PrinterF &p, double right, int zeile, const QString &text, bool bold = false)
{
    p.setBold(bold);
    putLine(p, right - p.TextWidth(text), zeile, text, bold);
}

// A rule of "---" from x = 100 to the right margin.
void rule(PrinterF &p, int zeile)
{
    const double w = p.TextWidth(QStringLiteral("---"));
    const int n = w > 0 ? int((p.ScaleWidth() - 100) / w) : 0;
    putLine(p, 100, zeile, QStringLiteral("---").repeated(n));
}

// Cuts a text so it fits a width; a master-data value must not run into the next cell.
QString fit(const PrinterF &p, const QString &text, double width)
{
    return text.left(p.metrics().fittingLength(text, width, p.Bold()));
}

// Whether n more lines from zeile stay above a limit counted from the bottom.
bool passt(const PrinterF &p, int zeile, int n, int fussZeilen)
{
    return zeile + n < (p.ScaleHeight() - fussZeilen * H(p)) / H(p);
}

// The lines for handwriting end at the right margin: trailing underscores are
// dropped where the job's type is too wide for all of them.
QString bisRand(const PrinterF &p, double x, const QString &text)
{
    QString t = text;
    while (t.endsWith(QLatin1Char('_')) && x + p.TextWidth(t) > p.ScaleWidth())
        t.chop(1);
    return t;
}

QString blattNr(const PrinterF &p) { return QString::number(p.Seite()); }

double zahl(const QString &text)
{
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    return t.toDouble();
}

}   // namespace

QString maske01(double v) { return QString::number(v, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')); }
QString maske001(double v) { return QString::number(v, 'f', 2).replace(QLatin1Char('.'), QLatin1Char(',')); }

QString AuftragZeile::value(const QString &field) const
{
    const QString f = field.toLower();
    if (f == u"teindex") return TeIndex;
    if (f == u"jahr") return Jahr;
    if (f == u"woche") return Woche;
    if (f == u"objekt") return Objekt;
    if (f == u"anweisung") return Anweisung;
    if (f == u"wiverantwortlicher") return WIVerantwortlicher;
    if (f == u"ausfuehrender") return Ausfuehrender;
    if (f == u"kostenstelle") return Kostenstelle;
    if (f == u"lokalisierung") return Lokalisierung;
    if (f == u"option1") return Option1;
    if (f == u"kompbezeichnung") return KompBezeichnung;
    if (f == u"betriebszustand") return Betriebszustand;
    if (f == u"betriebszustandxl") return BetriebszustandXL;
    if (f == u"materialcode") return Materialcode;
    if (f == u"bemerkung") return Bemerkung;
    if (f == u"text") return Text;
    if (f == u"intervall") return Intervall;
    if (f == u"sicherheitshinweis") return SicherheitsHinweis;
    if (f == u"intervalltyp") return IntervallTyp;
    if (f == u"keinewartung") return KeineWartung;
    if (f == u"befund") return Befund;
    if (f == u"verbal") return Verbal;
    if (f == u"datum") return Datum;
    if (f == u"planzeit") return QString::number(PlanZeit);
    if (f == u"materialmenge") return QString::number(Materialmenge);
    if (f == u"anzahlpersonen") return QString::number(AnzahlPersonen);
    return {};
}

AnweisungsSpalten::AnweisungsSpalten(const PrinterF &p)
{
    Nummer = 100;
    Text = Nummer + p.TextWidth(TW_Nummer);
    TextEnde = p.ScaleWidth() / 11 * 5 - 150;
    Personen = TextEnde + p.TextWidth(TW_Breit);
    Betrieb = Personen + p.TextWidth(QStringLiteral("XX"));
    Intervall = Betrieb + p.TextWidth(QStringLiteral("OO"));
    Zeit = Intervall + p.TextWidth(QStringLiteral("OOO"));
    Menge = Zeit + p.TextWidth(TW_Breit);
    Neun = Menge + p.TextWidth(QStringLiteral("00000000"));
    Zehn = Neun + p.TextWidth(QStringLiteral("00000"));
    TextRechts = TextEnde - (Personen - TextEnde) / 2;
    Bemerkung = Zeit + p.TextWidth(QStringLiteral("====="));
    Tagesleiste = Menge + p.TextWidth(QStringLiteral("===="));
}

RueckmeldungSpalten::RueckmeldungSpalten(const PrinterF &p)
{
    Nummer = 200;
    Text = Nummer + p.TextWidth(QStringLiteral("0000/0000"));
    Block = p.ScaleWidth() / 5 * 3;
    Code = Block + p.TextWidth(QStringLiteral("Intervall "));
    Menge = Code + p.TextWidth(QStringLiteral("OOOOOOOOOOO"));
    Zeit = Menge + p.TextWidth(QStringLiteral("00000000"));
    Befund = Zeit + p.TextWidth(QStringLiteral("000000000"));
    Verbal = Befund + p.TextWidth(QStringLiteral("Befund "));
    // Where the type is too wide for the page, the columns from the interval on
    // move left together, so that no head runs into its neighbour.
    const double over = Verbal + p.TextWidth(QStringLiteral("Verbal")) - p.ScaleWidth();
    if (over > 0)
        for (double *x : {&Block, &Code, &Menge, &Zeit, &Befund, &Verbal})
            *x -= over;
}

ErfassungSpalten::ErfassungSpalten(const PrinterF &p)
{
    const QString f15 = QStringLiteral("000000000000000");
    const QString f9 = QStringLiteral("000000000");
    LaufendeNummer = 300;
    Datum = LaufendeNummer + p.TextWidth(QStringLiteral("000000"));
    Herkunft = Datum + p.TextWidth(QStringLiteral("00.00.000000"));
    Schadensart = Herkunft + p.TextWidth(f15);
    Zeit = Schadensart + p.TextWidth(f15);
    Auftragsart = Zeit + p.TextWidth(QStringLiteral("000.0000"));
    Ursache = Auftragsart + p.TextWidth(f15);
    Lohn = Ursache + p.TextWidth(f15);
    Material = Lohn + p.TextWidth(f9);
    Fremd = Material + p.TextWidth(f9);
    ErledigtAm = Fremd + p.TextWidth(QStringLiteral("0000000000"));
    // Where the type is too wide for the page, the columns from the origin on
    // close up in proportion, so that the done date still fits on the sheet.
    const double rechts = p.ScaleWidth() - p.TextWidth(QStringLiteral("0000.00.00 "));
    if (ErledigtAm > rechts && ErledigtAm > Herkunft) {
        const double f = (rechts - Herkunft) / (ErledigtAm - Herkunft);
        for (double *x : {&Schadensart, &Zeit, &Auftragsart, &Ursache, &Lohn, &Material, &Fremd, &ErledigtAm})
            *x = Herkunft + (*x - Herkunft) * f;
    }
}

double zeilenHoehe(const PrinterF &p) { return H(p); }
int letzteZeile(const PrinterF &p) { return int((p.ScaleHeight() - 6 * H(p)) / H(p)); }

// ---------------------------------------------------------------- job sheet

int Print_AnweisungsKopf(PrinterF &p, const AnweisungsKopfDaten &k, const AnweisungsSpalten &s)
{
    const double right = p.ScaleWidth();
    const AuftragZeile &z = k.zeile;
    putLine(p, 100, 0, QStringLiteral("WI - AUFTRAG"), true);
    putRight(p, right, 0, QStringLiteral("Blatt Nr. ") + blattNr(p), true);

    double x = putLine(p, 100, 1, k.proGewerk ? QStringLiteral("Gewerk: ") : QStringLiteral("Ausführendes Gewerk: "));
    x = putLine(p, x, 1, z.Ausfuehrender, true);
    x = putLine(p, x, 1, QStringLiteral("  für Woche: "));
    x = putLine(p, x, 1, k.Woche, true);
    x = putLine(p, x, 1, QStringLiteral("      im Jahr: "));
    putLine(p, x, 1, k.Jahr, true);
    putRight(p, right, 1, QStringLiteral("  Gedruckt:   ") + k.Datum);

    // The values of the head keys that break the sheets.
    const auto aktiv = [&](const char *feld) {
        for (const QString &f : k.kopfFelder)
            if (f.compare(QLatin1String(feld), Qt::CaseInsensitive) == 0)
                return true;
        return false;
    };
    x = 100;
    const double gap = p.TextWidth(QStringLiteral("   "));
    const auto item = [&](const QString &label, const QString &value) {
        x = putLine(p, x, 2, label);
        x = putLine(p, x, 2, value, true) + gap;
    };
    if (aktiv("Lokalisierung"))
        item(QStringLiteral("Lokal.: "), z.Lokalisierung);
    if (aktiv("Option1"))
        item(QStringLiteral("Weg: "), z.Option1);
    if (aktiv("Kostenstelle"))
        item(QStringLiteral("Kst: "), z.Kostenstelle);
    if (aktiv("BetriebszustandXL"))
        item(QStringLiteral("   BZustand "),
             z.BetriebszustandXL == QLatin1String("R") ? z.Betriebszustand : QStringLiteral("L,X"));
    if (aktiv("Materialcode"))
        item(QStringLiteral("   Mat: "), z.Materialcode);

    rule(p, 3);
    const double sEnde = s.Personen - p.TextWidth(QStringLiteral("XX")) + p.TextWidth(QStringLiteral("I"));
    const auto heads = [&](int zeile, const QString &nummer, const QString &text, const QString &sh,
                           const QString &ap, const QString &bz, const QString &iv, const QString &zeit,
                           const QString &bem) {
        putLine(p, s.Nummer, zeile, nummer, true);
        if (!text.isEmpty())
            putLine(p, s.Text, zeile, text, true);
        putRight(p, sEnde, zeile, sh, true);
        putLine(p, s.Personen, zeile, ap, true);
        putLine(p, s.Betrieb, zeile, bz, true);
        putLine(p, s.Intervall, zeile, iv, true);
        putLine(p, s.Zeit, zeile, zeit, true);
        putLine(p, s.Bemerkung, zeile, bem, true);
    };
    heads(4, QStringLiteral("Objekt/"), {}, QStringLiteral("S"), QStringLiteral("A"), QStringLiteral("B"),
          QStringLiteral("I"), QStringLiteral("Plan-"), QStringLiteral("Material/"));
    heads(5, QStringLiteral("Anweisung"), QStringLiteral("                         Anweisungstext"),
          QStringLiteral("H"), QStringLiteral("P"), QStringLiteral("Z"), QStringLiteral("V"),
          QStringLiteral("zeit"), QStringLiteral("Bemerkungen"));
    rule(p, 6);
    p.setBold(false);
    return 7;
}

namespace {

// The master data block of a component over four columns; for the
// instruction overview with the reference week and the maintenance-free weeks.
bool komponentenBlock(PrinterF &p, const std::optional<Node> &node, const QString &pfad, int &zeile, bool protokoll,
                      const QString &fehlt, int folgeZeilen)
{
    // The block is never left at the foot without the first row under it.
    const int n = !node ? 2 : (protokoll ? 7 : 6);
    if (!passt(p, zeile, n + folgeZeilen, 6))
        return false;
    if (!node) {
        putLine(p, 100, zeile + 1, fehlt, true);
        zeile += n;
        return true;
    }
    const Node &k = *node;
    double x = putLine(p, 100, zeile + 1, QStringLiteral("Komponente: "), true);
    x = putLine(p, x, zeile + 1, k.Text, true);
    if (protokoll) {
        x = putLine(p, x + p.TextWidth(QStringLiteral("      ")), zeile + 1, QStringLiteral("BWoche: "));
        putLine(p, x, zeile + 1, k.BezugsJahr + QLatin1Char('/') + k.BezugsWoche);
    }
    putLine(p, 100, zeile + 2, fit(p, pfad, p.ScaleWidth() - 100));

    const double spalte = (p.ScaleWidth() - 100) / 4;
    const auto feld = [&](int r, int c, const QString &label, const QString &value) {
        const double x0 = 100 + c * spalte;
        const double x1 = putLine(p, x0, zeile + r, label);
        putLine(p, x1, zeile + r, fit(p, value, x0 + spalte - x1 - 60), true);
    };
    feld(3, 0, QStringLiteral("KSt.: "), k.Kostenstelle);
    feld(3, 1, QStringLiteral("Standort: "), k.Standort);
    feld(3, 2, QStringLiteral("Ident-Nr: "), k.IdentNr);
    feld(3, 3, QStringLiteral("Lok.: "), k.Lokalisierung);
    feld(4, 0, QStringLiteral("Inspekteur: "), k.WIVerantwortlicher);
    feld(4, 1, QStringLiteral("Herst.: "), k.Hersteller);
    feld(4, 2, QStringLiteral("Klass.: "), k.Klassifizierung);
    feld(4, 3, QStringLiteral("WI-Steuerung: "), k.AnlagenVerantwortlicher);
    feld(5, 0, QStringLiteral("Typ: "), k.Typ);
    feld(5, 1, QStringLiteral("Laufweg: "), k.Option1);
    feld(5, 2, QStringLiteral("Option: "), k.Option2);
    if (protokoll) {
        putLine(p, 100, zeile + 6,
                QStringLiteral("Keine Wartung in den Wochen:  ") + k.KeineWartungWocheVon1 + QStringLiteral(" - ") +
                    k.KeineWartungWocheBis1 + QStringLiteral("   ") + k.KeineWartungWocheVon2 +
                    QStringLiteral(" - ") + k.KeineWartungWocheBis2);
    }
    p.setBold(false);
    zeile += n;
    return true;
}

// The object number and its head text in bold, wrapped into the text column.
bool objektZeile(PrinterF &p, const QString &text, const QString &objekt, int &zeile, const AnweisungsSpalten &s)
{
    p.setBold(true);
    QString t = text;
    const double h = H(p);
    const int lines = p.PrintText(t, int(s.Text), int(s.TextRechts), int(zeile * h),
                                  int(p.ScaleHeight() - 6 * h), QStringLiteral(" "));
    if (!(lines < (p.ScaleHeight() - 6 * h - int(zeile * h)) / h)) {
        p.setBold(false);
        return false;
    }
    putLine(p, s.Nummer, zeile, objekt, true);
    p.setBold(false);
    zeile += lines;
    return true;
}

// The instruction text of a row and its number; the lines it took, or 0 when it does not fit.
int textUndNummer(PrinterF &p, const QString &text, const QString &anweisung, int zeile, const AnweisungsSpalten &s)
{
    const double h = H(p);
    int lines = 1;
    p.setBold(false);
    if (!text.isEmpty()) {
        QString t = text;
        lines = p.PrintText(t, int(s.Text), int(s.TextRechts), int(zeile * h), int(p.ScaleHeight() - 6 * h),
                            QStringLiteral(" "));
        if (!(lines < (p.ScaleHeight() - 6 * h - int(zeile * h)) / h))
            return 0;
    } else if (!passt(p, zeile, 1, 6)) {
        return 0;
    }
    putLine(p, s.Nummer, zeile, QStringLiteral("    ") + anweisung);
    return lines;
}

// A value wrapped into a column of its own: broken at blanks, inside a word
// only where one word is wider than the column; no line leaves the column.
QStringList spalte(const PrinterF &p, const QString &text, double width)
{
    QStringList lines;
    QString line;
    for (const QString &word : text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (p.TextWidth(longer) <= width) {
            line = longer;
            continue;
        }
        if (!line.isEmpty())
            lines << line;
        line = word;
        if (p.TextWidth(word) > width) {
            // A word wider than the column is broken where it must be.
            const QStringList parts = p.WrapText(word, width);
            for (qsizetype i = 0; i + 1 < parts.size(); ++i)
                lines << fit(p, parts.at(i), width);
            line = parts.isEmpty() ? QString() : fit(p, parts.last(), width);
        }
    }
    if (!line.isEmpty())
        lines << line;
    return lines;
}

// What an order row prints beside its text, laid out before anything is
// printed so that the row's height is known. The safety note and the material
// code wrap in their columns; a day strip that must share the material column
// (the page too narrow behind the quantity) goes below code and quantity.
struct Beiwerte {
    QStringList hinweis;
    double hinweisEnde = 0;
    QStringList material;
    QString strip;
    double stripX = 0;
    int stripZeile = 0;
    double mengeBis = 0;
    int zeilen() const
    {
        return qMax(qMax(int(hinweis.size()), int(material.size())), strip.isEmpty() ? 0 : stripZeile + 1);
    }
};

Beiwerte beiwerte(const PrinterF &p, const AuftragZeile &z, const AnweisungsSpalten &s)
{
    Beiwerte b;
    const double luecke = p.TextWidth(QStringLiteral(" "));
    b.hinweisEnde = s.Personen - p.TextWidth(QStringLiteral("XX")) + p.TextWidth(QStringLiteral("I"));
    if (!z.SicherheitsHinweis.trimmed().isEmpty())
        b.hinweis = spalte(p, z.SicherheitsHinweis, b.hinweisEnde - s.TextRechts - p.TextWidth(QStringLiteral("  ")));
    if (!z.Materialcode.isEmpty())
        b.material = spalte(p, z.Materialcode, s.Menge - s.Bemerkung - luecke);
    b.mengeBis = p.ScaleWidth();
    b.strip = dayStrip(z.Intervall);
    if (!b.strip.isEmpty()) {
        // Behind the quantity where the page is wide enough for all seven days; else
        // in the remarks column, which a strip row leaves free. All strips align.
        b.stripX = s.Tagesleiste;
        if (b.stripX + p.TextWidth(QStringLiteral("Mo Di Mi Do Fr Sa So _____")) > p.ScaleWidth())
            b.stripX = s.Bemerkung;
        if (b.stripX == s.Bemerkung)
            b.stripZeile = qMax(int(b.material.size()), z.Materialmenge > 0 ? 1 : 0);
        else
            b.mengeBis = s.Tagesleiste - luecke;
        b.strip = bisRand(p, b.stripX, b.strip);
    }
    return b;
}

}   // namespace

bool Print_AnweisungsKomponente(PrinterF &p, const std::optional<Node> &node, const QString &pfad, int &zeile,
                                const AnweisungsSpalten &, int folgeZeilen)
{
    return komponentenBlock(p, node, pfad, zeile, false, QStringLiteral("Komponente wurde nicht gefunden"), folgeZeilen);
}

bool Print_AnweisungsObjektZeile(PrinterF &p, const QString &text, const QString &objekt, int &zeile,
                                 const AnweisungsSpalten &s)
{
    return objektZeile(p, text, objekt, zeile, s);
}

bool Print_AnweisungsZeile(PrinterF &p, const AuftragZeile &z, int &zeile, double &summe, const AnweisungsSpalten &s)
{
    if (z.Anweisung == QLatin1String("0000"))
        return objektZeile(p, z.Text, z.Objekt, zeile, s);

    p.setBold(false);
    const Beiwerte b = beiwerte(p, z, s);
    if (!passt(p, zeile, b.zeilen(), 6))
        return false;
    int lines = textUndNummer(p, z.Text, z.Anweisung, zeile, s);
    if (lines == 0)
        return false;
    const double luecke = p.TextWidth(QStringLiteral(" "));
    for (int i = 0; i < b.hinweis.size(); ++i)
        putRight(p, b.hinweisEnde, zeile + i, QStringLiteral("  ") + b.hinweis.at(i));
    if (!z.AnzahlPersonenLeer)
        putLine(p, s.Personen, zeile, fit(p, QString::number(z.AnzahlPersonen), s.Betrieb - s.Personen - luecke));
    if (!z.Betriebszustand.isEmpty() && z.Betriebszustand != QLatin1String("X"))
        putLine(p, s.Betrieb, zeile, fit(p, z.Betriebszustand, s.Intervall - s.Betrieb - luecke));
    if (!z.Intervall.isEmpty())
        putLine(p, s.Intervall, zeile, fit(p, z.Intervall, s.Zeit - s.Intervall - luecke));
    putLine(p, s.Zeit, zeile, fit(p, maske01(z.PlanZeit), s.Bemerkung - s.Zeit - luecke));
    summe += z.PlanZeit;
    p.setBold(false);

    // The line for the worker's remarks is written on: code and quantity stand on it.
    if (!z.Intervall.endsWith(QLatin1Char('T')))
        putLine(p, s.Bemerkung, zeile, bisRand(p, s.Bemerkung, QStringLiteral("________________________________________")));
    for (int i = 0; i < b.material.size(); ++i)
        putLine(p, s.Bemerkung, zeile + i, b.material.at(i));
    if (z.Materialmenge > 0)
        putLine(p, s.Menge, zeile, fit(p, maske01(z.Materialmenge), b.mengeBis - s.Menge));
    if (!b.strip.isEmpty())
        putLine(p, b.stripX, zeile + b.stripZeile, b.strip);
    zeile += qMax(lines, b.zeilen());
    return true;
}

int Print_AnweisungsZeilenBedarf(PrinterF &p, const AuftragZeile &z, const QString &objektKopf,
                                 const AnweisungsSpalten &s)
{
    const auto textZeilen = [&](QString text, bool bold) {
        p.setBold(bold);
        // PrintText only counts where there is no room at all.
        const int n = text.isEmpty() ? 1 : p.PrintText(text, int(s.Text), int(s.TextRechts), 0, 0, QStringLiteral(" "));
        p.setBold(false);
        return n;
    };
    if (z.Anweisung == QLatin1String("0000"))
        return textZeilen(objektKopf.isEmpty() ? z.Text : objektKopf, true);
    // An object head goes with the instruction under it.
    const int kopf = objektKopf.isEmpty() ? 0 : textZeilen(objektKopf, true);
    return kopf + qMax(textZeilen(z.Text, false), beiwerte(p, z, s).zeilen());
}

void Print_AnweisungsFusszeile(PrinterF &p, int zeile, double summe, const AnweisungsSpalten &)
{
    const double h = H(p);
    const double sh = p.ScaleHeight();
    p.setBold(false);
    p.Print_UnterenRand(zeile, 100, 0, int(zeile * h), int(sh - 6 * h));

    const double w = p.TextWidth(QStringLiteral("---"));
    const int n = w > 0 ? int((p.ScaleWidth() - 100) / w) : 0;
    put(p, 100, sh - 6 * h, QStringLiteral("---").repeated(n));
    const double sw = p.ScaleWidth();
    const double name = 100 + sw * 0.25, unterschrift = 100 + sw * 0.6;
    const QString linie = QStringLiteral("_").repeated(30);
    put(p, 100, sh - 4 * h, QStringLiteral("_").repeated(18));
    put(p, name, sh - 4 * h, linie);
    put(p, unterschrift, sh - 4 * h, linie);
    put(p, 100, sh - 3 * h, QStringLiteral("Datum"));
    put(p, name, sh - 3 * h, QStringLiteral("Name (Druckschrift)"));
    put(p, unterschrift, sh - 3 * h, QStringLiteral("Unterschrift"));
    put(p, 100, sh - 2 * h, QStringLiteral("+ := Ausgeführt; S := Storniert; F := Fehler gefunden; R := Repariert "));
    const QString label = QStringLiteral("Summierte Planzeit bisher:   ");
    put(p, 100, sh - h, label);
    put(p, 100 + p.TextWidth(label), sh - h, maske01(summe) + QStringLiteral("   Minuten"), true);
    p.setBold(false);
}

// ------------------------------------------------- list without maintenance

int Print_KeineWartungKopf(PrinterF &p, const QString &woche, const QString &jahr, const QString &datum)
{
    double x = putLine(p, 100, 0, QStringLiteral("      WI - AUFTRÄGE"), true);
    x = putLine(p, x, 0, QStringLiteral("               Blatt Nr. ") + blattNr(p));
    putLine(p, x, 0, QStringLiteral("   Gedruckt : ") + datum);
    x = putLine(p, 100, 1, QStringLiteral("  für Woche: ") + woche);
    putLine(p, x, 1, QStringLiteral("     im Jahr: ") + jahr);
    rule(p, 2);
    putLine(p, 100, 4,
            QStringLiteral("Für die Woche %1/%2 ist für folgende Komponenten keine Wartung vorgesehen").arg(woche, jahr),
            true);
    putLine(p, 100, 5, QStringLiteral("und werden daher keine WI-Aufträge ausgedruckt:"), true);
    p.setBold(false);
    return 7;
}

bool Print_KeineWartungKomponente(PrinterF &p, const QString &pfad, int &zeile)
{
    const double h = H(p);
    QString t = pfad.isEmpty() ? QStringLiteral(" ") : pfad;
    p.setBold(false);
    const int lines = p.PrintText(t, 300, int(p.ScaleWidth()), int(zeile * h), int(p.ScaleHeight() - 3 * h),
                                  QStringLiteral("\\ "));
    if (!(lines < (p.ScaleHeight() - 3 * h - int(zeile * h)) / h))
        return false;
    zeile += lines;
    return true;
}

void Print_KeineWartungFusszeile(PrinterF &p)
{
    put(p, 100, p.ScaleHeight() - 2 * H(p), QStringLiteral("Unterschrift: _ _ _ _ _ _ _ _ _ _"));
}

// ----------------------------------------------------- instruction overview

int Print_Protokoll_Kopf(PrinterF &p, const QString &datum, const AnweisungsSpalten &s)
{
    double x = putLine(p, 100, 0, QStringLiteral("WI-Übersicht"), true);
    x = putLine(p, x, 0, QStringLiteral("               Blatt Nr. ") + blattNr(p));
    putLine(p, x, 0, QStringLiteral("   Gedruckt : ") + datum);
    rule(p, 1);
    putLine(p, s.Nummer, 2, QStringLiteral("Objekt/"), true);
    putLine(p, s.TextRechts, 2, QStringLiteral("  Sicherheits-"), true);
    putLine(p, s.Personen, 2, QStringLiteral("A"), true);
    putLine(p, s.Betrieb, 2, QStringLiteral("B"), true);
    putLine(p, s.Intervall, 2, QStringLiteral("I"), true);
    putLine(p, s.Zeit, 2, QStringLiteral("Material-"), true);
    putLine(p, s.Menge, 2, QStringLiteral("Material"), true);
    putLine(p, s.Neun, 2, QStringLiteral("Plan-"), true);
    putLine(p, s.Nummer, 3, QStringLiteral("Anweisung"), true);
    putLine(p, s.Text, 3, QStringLiteral("                         Anweisungstext"), true);
    putLine(p, s.TextRechts, 3, QStringLiteral("    hinweis"), true);
    putLine(p, s.Personen, 3, QStringLiteral("P"), true);
    putLine(p, s.Betrieb, 3, QStringLiteral("Z"), true);
    putLine(p, s.Intervall, 3, QStringLiteral("V"), true);
    putLine(p, s.Zeit, 3, QStringLiteral("   code  "), true);
    putLine(p, s.Menge, 3, QStringLiteral("menge "), true);
    putLine(p, s.Neun, 3, QStringLiteral("zeit"), true);
    putLine(p, s.Zehn, 3, QStringLiteral("Gewerk"), true);
    rule(p, 4);
    p.setBold(false);
    return 5;
}

bool Print_Protokoll_Komponente(PrinterF &p, const std::optional<Node> &node, const QString &pfad, int &zeile,
                                const AnweisungsSpalten &)
{
    return komponentenBlock(p, node, pfad, zeile, true, QStringLiteral("Komponente nicht gefunden"), 1);
}

bool Print_Protokoll_Zeile(PrinterF &p, const PositionZeile &z, int &zeile, const AnweisungsSpalten &s)
{
    if (z.Anweisung == QLatin1String("0000"))
        return objektZeile(p, z.Text, z.Objekt, zeile, s);
    // The trade wraps in the last column, at its blanks.
    p.setBold(false);
    const QStringList gewerk = spalte(p, z.Ausfuehrender, p.ScaleWidth() - s.Zehn);
    if (!passt(p, zeile, int(gewerk.size()), 6))
        return false;
    const int lines = textUndNummer(p, z.Text, z.Anweisung, zeile, s);
    if (lines == 0)
        return false;
    // The overview has no room for the safety note in front of the persons: it stands under its head.
    const double luecke = p.TextWidth(QStringLiteral(" "));
    if (!z.Sicherheitshinweis.isEmpty())
        putLine(p, s.TextRechts, zeile, fit(p, QStringLiteral("  ") + z.Sicherheitshinweis, s.Personen - s.TextRechts - luecke));
    if (!z.AnzahlPersonen.trimmed().isEmpty())
        putLine(p, s.Personen, zeile, fit(p, z.AnzahlPersonen.trimmed(), s.Betrieb - s.Personen - luecke));
    if (!z.Betriebszustand.isEmpty() && z.Betriebszustand != QLatin1String("X"))
        putLine(p, s.Betrieb, zeile, fit(p, z.Betriebszustand, s.Intervall - s.Betrieb - luecke));
    if (!z.Intervall.isEmpty())
        putLine(p, s.Intervall, zeile, fit(p, z.Intervall, s.Zeit - s.Intervall - luecke));
    if (!z.Materialcode.isEmpty())
        putLine(p, s.Zeit, zeile, fit(p, z.Materialcode, s.Menge - s.Zeit - luecke));
    if (zahl(z.Materialmenge) > 0)
        putLine(p, s.Menge, zeile, fit(p, maske01(zahl(z.Materialmenge)), s.Neun - s.Menge - luecke));
    putLine(p, s.Neun, zeile, fit(p, maske01(zahl(z.Planzeit)), s.Zehn - s.Neun - luecke));
    for (int i = 0; i < gewerk.size(); ++i)
        putLine(p, s.Zehn, zeile + i, gewerk.at(i));
    zeile += qMax(lines, int(gewerk.size()));
    return true;
}

int Print_ProtokollStruktur_Kopf(PrinterF &p, const QString &datum)
{
    double x = putLine(p, 100, 0, QStringLiteral("Komponentenstruktur"), true);
    x = putLine(p, x, 0, QStringLiteral("               Blatt Nr. ") + blattNr(p));
    putLine(p, x, 0, QStringLiteral("   Gedruckt : ") + datum);
    rule(p, 1);
    return 3;
}

// ----------------------------------------------------------- findings list

int Print_Rueckmeldung_Kopf(PrinterF &p, const QString &woche, const QString &jahr, const QString &datum,
                            const RueckmeldungSpalten &s)
{
    double x = putLine(p, s.Nummer, 0, QStringLiteral("Geplante Wartungs- und Inspektionsmaßnahmen"), true);
    putLine(p, x, 0, QStringLiteral("   Seite: ") + blattNr(p));
    x = putLine(p, s.Nummer, 1, QStringLiteral("Rückmeldung von Befunden und Reparaturen"), true);
    x = putLine(p, x, 1, QStringLiteral("   Gedruckt : ") + datum);
    putLine(p, x, 1, QStringLiteral("   Woche: ") + woche + QLatin1Char('/') + jahr);
    rule(p, 2);
    putLine(p, s.Nummer, 3, QStringLiteral("Objekt/"), true);
    putLine(p, s.Code, 3, QStringLiteral("Material"), true);
    putLine(p, s.Zeit, 3, QStringLiteral("Arbeits-"), true);
    // The last two heads keep inside the right margin where the type is wide.
    p.setBold(true);
    const double xVerbal = qMin(s.Verbal, p.ScaleWidth() - p.TextWidth(QStringLiteral("Verbal")));
    const double xBefund = qMin(s.Befund, xVerbal - p.TextWidth(QStringLiteral(" Befund")));
    putLine(p, xBefund, 3, QStringLiteral("Befund"), true);
    putLine(p, xVerbal, 3, QStringLiteral("Verbal"), true);
    putLine(p, s.Nummer, 4, QStringLiteral("Anweisung"), true);
    putLine(p, s.Text, 4, QStringLiteral("      WI-Anweisung"), true);
    putLine(p, s.Block, 4, QStringLiteral("Intervall"), true);
    putLine(p, s.Code, 4, QStringLiteral("  Code"), true);
    putLine(p, s.Menge, 4, QStringLiteral(" menge"), true);
    putLine(p, s.Zeit, 4, QStringLiteral("zeit"), true);
    rule(p, 5);
    p.setBold(false);
    return 6;
}

bool Print_Rueckmeldung_BefundZeile(PrinterF &p, const AuftragZeile &z, int &zeile, const RueckmeldungSpalten &s)
{
    const double h = H(p);
    const double ymax = p.ScaleHeight() - 3 * h;
    const QString text = z.Text.isEmpty() ? QStringLiteral(" ") : z.Text;
    p.setBold(false);
    // Counted first (a limit at the start prints nothing), so the text and its note move on together.
    QString t = text;
    const int lines = p.PrintText(t, int(s.Text), int(s.Block - 100), int(zeile * h), int(zeile * h), QStringLiteral(" "));
    const int need = lines + (z.Bemerkung.isEmpty() ? 0 : 1);
    if (!(need < (ymax - int(zeile * h)) / h))
        return false;
    t = text;
    p.PrintText(t, int(s.Text), int(s.Block - 100), int(zeile * h), int(ymax), QStringLiteral(" "));
    putLine(p, s.Nummer, zeile, z.Anweisung);
    putLine(p, s.Block, zeile, z.Intervall);
    if (!z.Materialcode.isEmpty())
        putLine(p, s.Code, zeile, fit(p, z.Materialcode, s.Menge - s.Code - 60));
    putLine(p, s.Menge, zeile, maske01(z.Materialmenge));
    putLine(p, s.Zeit, zeile, maske01(z.PlanZeit));
    putLine(p, s.Befund, zeile, z.Befund, true);
    putLine(p, s.Verbal, zeile, z.Verbal, true);
    zeile += lines;
    if (!z.Bemerkung.isEmpty()) {
        const double x = putLine(p, s.Text, zeile, QStringLiteral("Hinweis:"), true);
        putLine(p, x + p.TextWidth(QStringLiteral(" ")), zeile, fit(p, z.Bemerkung, p.ScaleWidth() - x - 100));
        ++zeile;
    }
    p.setBold(false);
    return true;
}

void Print_Rueckmeldung_Fusszeile(PrinterF &p)
{
    const double h = H(p);
    put(p, 200, p.ScaleHeight() - 2 * h, QStringLiteral("   F := Fehler; R := Repariert; S := Storniert"));
    put(p, 200, p.ScaleHeight() - h, QStringLiteral("   I = Instandhaltung-, P = Produktion ist informiert"));
}

// ----------------------------------------------------------------- effort

int Print_Aufwand_Kopf(PrinterF &p, const QString &gewerk, double gesamt, double schnitt, const QString &datum)
{
    double x = putLine(p, 100, 0, QStringLiteral(" für Gewerk "), true);
    x = putLine(p, x, 0, gewerk, true);
    x = putLine(p, x, 0, QStringLiteral("  Gesamtzeit: ") + maske001(gesamt) + QStringLiteral(" h."));
    putLine(p, x, 0, QStringLiteral("   Gedruckt : ") + datum);
    putLine(p, 100, 1, QStringLiteral("Durchschnittliche Stundenzahl/Woche: ") + maske001(schnitt) + QStringLiteral(" h"));
    rule(p, 2);
    putLine(p, 100, 3, QStringLiteral("Woche     Zeit (% - Stunden)"), true);
    p.setBold(false);
    return 5;
}

bool Print_Aufwand_Zeile(PrinterF &p, const QString &woche, double stunden, double anteil, int &zeile)
{
    if (!passt(p, zeile, 1, 1))
        return false;
    putLine(p, 100, zeile, woche);
    const QString bar = QStringLiteral("*").repeated(qMax(0, int(std::lround(anteil))));
    double x = putLine(p, 100 + p.TextWidth(QStringLiteral("Woche     ")), zeile, bar);
    putLine(p, x + p.TextWidth(QStringLiteral(" ")), zeile,
            maske001(stunden) + QStringLiteral(" h  ") + maske01(anteil) + QStringLiteral(" %"));
    ++zeile;
    return true;
}

// ------------------------------------------------------- repair order list

int Print_Erfassung_Kopf(PrinterF &p, const QString &datum, const ErfassungSpalten &s)
{
    const double x = putLine(p, s.LaufendeNummer, 0, QStringLiteral("Ausserplanmässige Instandsetzungen"), true);
    putLine(p, x, 0, QStringLiteral("   Gedruckt : ") + datum);
    rule(p, 1);
    // Plain type: the chained columns leave no room for bold heads.
    putLine(p, s.LaufendeNummer, 2, QStringLiteral("Lfd.Nr."));
    putLine(p, s.Datum, 2, QStringLiteral("Meldedatum"));
    putLine(p, s.Herkunft, 2, QStringLiteral("Herkunft"));
    putLine(p, s.Schadensart, 2, QStringLiteral("Schadensart"));
    putLine(p, s.Zeit, 2, QStringLiteral("Zeit"));
    putLine(p, s.Auftragsart, 2, QStringLiteral("Auftragsart"));
    putLine(p, s.Ursache, 2, QStringLiteral("Ursache"));
    putLine(p, s.Lohn, 2, QStringLiteral("Lohn"));
    putLine(p, s.Material, 2, QStringLiteral("Material"));
    putLine(p, s.Fremd, 2, QStringLiteral("Fremd"));
    putLine(p, s.ErledigtAm, 2, QStringLiteral("Erledigt"));
    rule(p, 3);
    p.setBold(false);
    return 4;
}

}

// ------------------------------------------------------------ repair orders

namespace zol {

void ErfassungSummen::add(const ErfassungDruckZeile &z)
{
    Stunden += z.Stunden;
    Minuten += z.Minuten;
    Lohnkosten += z.Lohnkosten;
    materialkosten += z.materialkosten;
    Fremdkosten += z.Fremdkosten;
}

QString erfassungZahl(double v) { return QString::number(v, 'g', 15).replace(QLatin1Char('.'), QLatin1Char(',')); }

QString erfassungZeit(double stunden, double minuten)
{
    return erfassungZahl(stunden) + QLatin1Char(':') + QStringLiteral("%1").arg(qint64(minuten), 2, 10, QLatin1Char('0'));
}

void Print_Erfassung_Komponente(PrinterF &p, const ErfassungDruckZeile &z, int &zeile)
{
    const QString text = z.Name + QStringLiteral("       -    IdentNr.:   ") + z.IdentNr
                         + QStringLiteral("       -    Kostenstelle:   ") + z.Kostenstelle;
    p.setBold(true);
    putLine(p, 300, zeile, fit(p, text, p.ScaleWidth() - 300), true);
    p.setBold(false);
    ++zeile;
}

void Print_Erfassung_Zeile(PrinterF &p, const ErfassungDruckZeile &z, int &zeile, const ErfassungSpalten &s)
{
    const std::pair<double, QString> zellen[] = {
        {s.LaufendeNummer, z.LaufendeNummer}, {s.Datum, z.Datum}, {s.Herkunft, z.Herkunft},
        {s.Schadensart, z.Schadensart}, {s.Zeit, erfassungZeit(z.Stunden, z.Minuten)},
        {s.Auftragsart, z.Auftragsart}, {s.Ursache, z.Ursache}, {s.Lohn, erfassungZahl(z.Lohnkosten)},
        {s.Material, erfassungZahl(z.materialkosten)}, {s.Fremd, erfassungZahl(z.Fremdkosten)},
        {s.ErledigtAm, z.erledigtam}};
    const int n = int(std::size(zellen));
    for (int i = 0; i < n; ++i) {
        const double rechts = i + 1 < n ? zellen[i + 1].first : p.ScaleWidth();
        // A blank's width between columns, so two values never touch.
        const double breite = rechts - zellen[i].first - p.TextWidth(QStringLiteral(" "));
        putLine(p, zellen[i].first, zeile, fit(p, zellen[i].second, breite));
    }
    ++zeile;
}

void Print_Erfassung_zusammen(PrinterF &p, int &zeile, ErfassungSummen sum, const ErfassungSpalten &s)
{
    const double stunden = sum.Stunden + std::floor(sum.Minuten / 60);
    const double minuten = sum.Minuten - 60 * std::floor(sum.Minuten / 60);
    // The time's "(h)" may use the free order-kind column; every sum stops at the next column.
    const std::tuple<double, double, QString> werte[] = {
        {s.Zeit, s.Ursache, erfassungZeit(stunden, minuten) + QStringLiteral("  (h)")},
        {s.Lohn, s.Material, erfassungZahl(sum.Lohnkosten)},
        {s.Material, s.Fremd, erfassungZahl(sum.materialkosten)},
        {s.Fremd, s.ErledigtAm, erfassungZahl(sum.Fremdkosten)}};
    for (const auto &[x, rechts, text] : werte) {
        const double breite = rechts - x - p.TextWidth(QStringLiteral(" "));
        putLine(p, x, zeile, fit(p, QStringLiteral("======"), breite));
        putLine(p, x, zeile + 1, fit(p, text, breite));
    }
    zeile += 2;
}

void Print_Erfassung_Haeufigkeit(PrinterF &p, const QString &datum, const QList<HaeufigkeitsBlock> &bloecke)
{
    const auto kopf = [&] {
        putLine(p, p.ScaleWidth() * 3 / 4, 0, QStringLiteral("Gedruckt : ") + datum);
        rule(p, 1);
        const QString titel = QStringLiteral("Befundhäufigkeit");
        p.setBold(true);
        putLine(p, (p.ScaleWidth() - p.TextWidth(titel)) / 2, 3, titel, true);
        p.setBold(false);
        return 5;
    };
    int zeile = kopf();
    const int letzte = int(p.ScaleHeight() / H(p)) - 1;
    for (int b = 0; b < bloecke.size(); ++b) {
        const HaeufigkeitsBlock &block = bloecke.at(b);
        const QString luecke = b == 0 ? QStringLiteral("              ") : QStringLiteral("               ");
        // A title never stands alone at a page foot.
        if (zeile + 1 > letzte) {
            p.NewPage();
            zeile = kopf();
        }
        putLine(p, 200, zeile++, block.titel, true);
        for (int i = 0; i < block.texte.size(); ++i) {
            if (zeile > letzte) {
                p.NewPage();
                zeile = kopf();
            }
            putLine(p, 200, zeile++, fit(p, luecke + QString::number(block.anzahl.value(i)) + QStringLiteral("  *  ")
                                             + block.texte.at(i), p.ScaleWidth() - 200));
        }
        ++zeile;
    }
}

void Print_Erfassung_Auftrag_Kopf(PrinterF &p, const QString &datum, const ErfassungBlatt &b)
{
    const double breite = p.ScaleWidth() - 100;
    const auto zeile = [&](int n, const QString &text, bool bold = false) {
        p.setBold(bold);
        putLine(p, 100, n, fit(p, text, breite), bold);
        p.setBold(false);
    };
    zeile(0, QStringLiteral("Gedruckt : ") + datum);
    zeile(1, QStringLiteral("I N S T A N D S E T Z U N G  (allgemeine Erfassung)"), true);
    rule(p, 2);
    zeile(4, QStringLiteral("Laufende Nummer: ") + b.LaufendeNummer, true);
    zeile(5, QStringLiteral("Meldedatum: ") + b.Datum + QStringLiteral("       -        Ident-Nr: ") + b.IdentNr);
    // The component and its path may be long: wrapped over as many lines as they need.
    int n = 6;
    const QStringList komp = p.WrapText(b.KompText + QStringLiteral("   (") + b.Pfad + QStringLiteral(")"), breite,
                                        QStringLiteral(" \\"));
    for (const QString &l : komp)
        zeile(n++, l, true);
    zeile(n++, QStringLiteral("       -        Lokalisierung: ") + b.Lokalisierung
                   + QStringLiteral("       -        Laufweg: ") + b.Laufweg);
    zeile(n++, QStringLiteral("Auftragsart: ") + b.Auftragsart + QStringLiteral("       -        Auftragsherkunft: ")
                   + b.Auftragsherkunft);
    zeile(n++, QStringLiteral("Zeit: ") + b.Zeit + QStringLiteral("       -        Lohnkosten: ") + b.Lohnkosten
                   + QStringLiteral("       -        Materialkosten: ") + b.Materialkosten
                   + QStringLiteral("       -        Fremdleistung:  ") + b.Fremdleistung);
    zeile(n++, QStringLiteral("Zu erledigen bis: ") + b.ZuErledigenBis, true);
    rule(p, n++);
    zeile(++n, QStringLiteral("Beschreibung:"), true);
    ++n;
    const double h = H(p);
    const int fuss = int(p.ScaleHeight() / h) - 2;
    QString text = b.Beschreibung;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    // A description longer than the sheet is cut at its foot, never printed over it.
    const QStringList absaetze = text.split(QStringLiteral("\r\n"));
    for (const QString &absatz : absaetze)
        for (const QString &l : p.WrapText(absatz, breite))
            if (n < fuss)
                zeile(n++, l);
    zeile(fuss + 1, QStringLiteral("Aussteller / Tel: . . . . . . . . . .  . . . . . .   Gesehen: . . . "));
}

}
