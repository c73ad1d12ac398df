#include "support/TestSupport.h"
#include "zol/core/Session.h"
#include "zol/print/PageLayouts.h"
#include "zol/print/PrinterF.h"
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace zol;

namespace {

const PrintItem *find(const PrintPage &page, const QString &text)
{
    for (const auto &it : page.items)
        if (it.Text == text)
            return &it;
    return nullptr;
}

QString pdfText(const PageStore &store)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("l.pdf"));
    if (!writePdf(store, path, 1, store.pageCount()))
        return {};
    return zoltest::pdfText(path);
}

Node sampleNode()
{
    Node n;
    n.FileIndex = QStringLiteral("0000000010");
    n.Text = QStringLiteral("Verdichter V1");
    n.Kostenstelle = QStringLiteral("K-17");
    n.IdentNr = QStringLiteral("ID-9");
    n.BezugsJahr = QStringLiteral("2025");
    n.BezugsWoche = QStringLiteral("07");
    n.KeineWartungWocheVon1 = QStringLiteral("10");
    n.KeineWartungWocheBis1 = QStringLiteral("12");
    n.KeineWartungWocheVon2 = QStringLiteral("30");
    n.KeineWartungWocheBis2 = QStringLiteral("33");
    return n;
}

// Texts of a page that overlap another text of the same line or leave the
// page: each item stands in the rectangle from its x over its width in the
// job's type. Blanks are space, not ink; the underscores of a handwriting
// line are written on, and count as no text.
QStringList overlaps(PrinterF &p, const PrintPage &page)
{
    struct Box {
        double x0, x1;
        QString text;
    };
    QMap<int, QList<Box>> lines;
    QStringList out;
    for (const PrintItem &it : page.items) {
        const QString ink = it.Text.trimmed();
        if (ink.isEmpty() || ink.count(QLatin1Char('_')) == ink.size())
            continue;
        p.setBold(it.Bold);
        const qsizetype lead = it.Text.indexOf(ink);
        const double x0 = it.X + p.TextWidth(it.Text.left(lead));
        const double x1 = x0 + p.TextWidth(ink);
        if (x0 < -1 || x1 > p.ScaleWidth() + 1)
            out << QStringLiteral("off the page: ") + ink;
        for (const Box &b : lines[qRound(it.Y)])
            if (x0 < b.x1 - 1 && b.x0 < x1 - 1)
                out << b.text + QStringLiteral(" / ") + ink;
        lines[qRound(it.Y)] << Box{x0, x1, ink};
    }
    p.setBold(false);
    return out;
}

QString withoutBlanks(QString t)
{
    return t.remove(QLatin1Char(' '));
}

}

class TestPageLayouts : public QObject {
    Q_OBJECT

    OptionState options;
    PrinterF p;

    void start(int format = 1)
    {
        options.gDruckFormat = format;
        p.setOptionState(&options);
        p.Vorschau = true;
        p.InitPrinter();
    }
    const PrintPage &page() const { return p.store().pages.back(); }

private Q_SLOTS:
    // Landscape with the bigger type moves every column to the right; each chain keeps its order.
    void columnsFollowTheType()
    {
        start(1);
        const AnweisungsSpalten a1(p);
        const RueckmeldungSpalten r1(p);
        const ErfassungSpalten e1(p);
        start(2);
        const AnweisungsSpalten a2(p);
        const RueckmeldungSpalten r2(p);
        const ErfassungSpalten e2(p);
        const auto chain = [](std::initializer_list<double> xs) {
            double last = -1;
            for (double x : xs) {
                if (x <= last)
                    return false;
                last = x;
            }
            return true;
        };
        for (const auto *a : {&a1, &a2}) {
            QVERIFY(chain({a->Nummer, a->Text, a->TextRechts, a->TextEnde, a->Personen, a->Betrieb, a->Intervall,
                           a->Zeit, a->Bemerkung, a->Menge, a->Tagesleiste, a->Neun, a->Zehn}));
        }
        QVERIFY(chain({r1.Nummer, r1.Text, r1.Block, r1.Code, r1.Menge, r1.Zeit, r1.Befund, r1.Verbal}));
        QVERIFY(chain({e1.LaufendeNummer, e1.Datum, e1.Herkunft, e1.Schadensart, e1.Zeit, e1.Auftragsart,
                       e1.Ursache, e1.Lohn, e1.Material, e1.Fremd, e1.ErledigtAm}));
        QCOMPARE(a1.Nummer, a2.Nummer);
        QVERIFY(a2.Text > a1.Text);
        QVERIFY(a2.Personen - a2.TextEnde > a1.Personen - a1.TextEnde);
        QVERIFY(a2.Zeit > a1.Zeit + 1000);
        QVERIFY(r2.Block > r1.Block && r2.Verbal - r2.Block > r1.Verbal - r1.Block);
        QVERIFY(e2.ErledigtAm > e1.ErledigtAm);
        // The right-hand block of the job sheet ends on the paper in both formats.
        QVERIFY(a1.Bemerkung + p.metrics().TextWidth(QStringLiteral("Bemerkungen")) < PageMetrics(JobFormat{}).ScaleWidth());
    }

    // One order row: the columns, the safety note ending before the persons, the sum.
    void orderRow()
    {
        start();
        const AnweisungsSpalten s(p);
        AuftragZeile z;
        z.Objekt = QStringLiteral("000003");
        z.Anweisung = QStringLiteral("0040");
        z.Text = QStringLiteral("Keilriemen spannen");
        z.SicherheitsHinweis = QStringLiteral("SH-1");
        z.AnzahlPersonen = 2;
        z.Betriebszustand = QStringLiteral("R");
        z.Intervall = QStringLiteral("3M");
        z.PlanZeit = 12.5;
        z.Materialcode = QStringLiteral("RIEMEN");
        z.Materialmenge = 2;
        int zeile = 10;
        double summe = 7.5;
        QVERIFY(Print_AnweisungsZeile(p, z, zeile, summe, s));
        QCOMPARE(zeile, 11);
        QCOMPARE(summe, 20.0);
        const double y = 10 * p.TextHeight();
        const auto at = [&](const QString &t, double x) {
            const PrintItem *it = find(page(), t);
            QVERIFY2(it, qPrintable(t));
            QVERIFY2(qAbs(it->X - x) < 1, qPrintable(t));
            QVERIFY(qAbs(it->Y - y) < 1);
        };
        at(QStringLiteral("Keilriemen spannen"), s.Text);
        at(QStringLiteral("    0040"), s.Nummer);
        at(QStringLiteral("2"), s.Personen);
        at(QStringLiteral("R"), s.Betrieb);
        at(QStringLiteral("3M"), s.Intervall);
        at(QStringLiteral("12,5"), s.Zeit);
        at(QStringLiteral("RIEMEN"), s.Bemerkung);
        at(QStringLiteral("2,0"), s.Menge);
        const PrintItem *sh = find(page(), QStringLiteral("  SH-1"));
        QVERIFY(sh);
        QVERIFY(qAbs(sh->X + p.TextWidth(QStringLiteral("  SH-1")) -
                     (s.Personen - p.TextWidth(QStringLiteral("XX")) + p.TextWidth(QStringLiteral("I")))) < 1);

        // A row that does not fit above the foot leaves the page and the counter as they were.
        const size_t before = page().items.size();
        zeile = letzteZeile(p);
        QVERIFY(!Print_AnweisungsZeile(p, z, zeile, summe, s));
        QCOMPARE(zeile, letzteZeile(p));
        QCOMPARE(summe, 20.0);
        QCOMPARE(page().items.size(), before);

        // A head row of an object prints the object in bold and adds nothing to the sum.
        z.Anweisung = QStringLiteral("0000");
        z.Text = QStringLiteral("Lüfter");
        zeile = 20;
        QVERIFY(Print_AnweisungsZeile(p, z, zeile, summe, s));
        QCOMPARE(summe, 20.0);
        QVERIFY(find(page(), QStringLiteral("000003"))->Bold);
        QVERIFY(find(page(), QStringLiteral("Lüfter"))->Bold);
    }

    // Rows with the longest values the catalogs hold: every value stays in its
    // column (wrapped onto the row's next lines where it is longer), no text
    // of a line runs over another, and nothing of the note or the code is lost.
    void longValuesStayInTheirColumns_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("intervall");
        for (int format : {1, 2})
            for (const char *iv : {"3M", "1T", "WT", "7T"})
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(format == 1 ? "portrait" : "landscape", iv)))
                    << format << QString::fromLatin1(iv);
    }

    void longValuesStayInTheirColumns()
    {
        QFETCH(int, format);
        QFETCH(QString, intervall);
        start(format);
        const AnweisungsSpalten s(p);
        const QStringList hinweise = {
            QStringLiteral("Gehörschutz und Schutzbrille tragen, Anlage freischalten, gegen Wiedereinschalten "
                           "sichern, Erdung!"),
            QStringLiteral("Explosionsschutzbestimmungen-beachten-Zone1-Freigabeschein-erforderlich"),
            QStringLiteral("Heiß!")};
        const QStringList codes = {QStringLiteral("Wälzlagerfett-Hochtemperatur-LGHP2-400g-Kartusche"),
                                   QStringLiteral("Wälzlagerfett"), QStringLiteral("OEL-HLP46")};
        int zeile = 5;
        double summe = 0;
        for (int i = 0; i < hinweise.size(); ++i) {
            AuftragZeile z;
            z.Objekt = QStringLiteral("000010");
            z.Anweisung = QStringLiteral("00%1").arg(10 * (i + 1));
            z.Text = QStringLiteral("Lager der Antriebswelle auf Geräusche, Temperatur und Schmierung prüfen; "
                                    "Dichtungen auf Leckage sichten").repeated(i == 0 ? 3 : 1);
            z.SicherheitsHinweis = hinweise.at(i);
            z.Materialcode = codes.at(i);
            z.Materialmenge = 0.2;
            z.AnzahlPersonen = 2;
            z.Betriebszustand = QStringLiteral("R");
            z.Intervall = intervall;
            z.PlanZeit = 120;
            const int before = zeile;
            const size_t items = page().items.size();
            QVERIFY(Print_AnweisungsZeile(p, z, zeile, summe, s));
            QVERIFY(zeile > before);
            QCOMPARE(Print_AnweisungsZeilenBedarf(p, z, {}, s), zeile - before);
            // The note and the code are whole, over as many lines as they need.
            QString hinweis, code;
            for (size_t k = items; k < page().items.size(); ++k) {
                const PrintItem &it = page().items[k];
                p.setBold(it.Bold);
                const double ende = s.Personen - p.TextWidth(QStringLiteral("XX")) + p.TextWidth(QStringLiteral("I"));
                if (qAbs(it.X + p.TextWidth(it.Text) - ende) < 1)
                    hinweis += it.Text;
                if (qAbs(it.X - s.Bemerkung) < 1 && !it.Text.startsWith(QLatin1Char('_')) && !it.Text.startsWith(QLatin1String("Mo")))
                    code += it.Text;
            }
            p.setBold(false);
            QCOMPARE(withoutBlanks(hinweis), withoutBlanks(z.SicherheitsHinweis));
            QCOMPARE(withoutBlanks(code), withoutBlanks(z.Materialcode));
        }
        const QStringList bad = overlaps(p, page());
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(QLatin1String(" | "))));

        // A person count of 0 is a value and printed; an empty field prints nothing.
        AuftragZeile z;
        z.Anweisung = QStringLiteral("0090");
        z.Text = QStringLiteral("Sichtprüfung");
        z.AnzahlPersonen = 0;
        const auto personen = [&] {
            int n = 0;
            for (const PrintItem &it : page().items)
                n += it.Text == QLatin1String("0") && qAbs(it.X - s.Personen) < 1;
            return n;
        };
        QVERIFY(Print_AnweisungsZeile(p, z, zeile, summe, s));
        QCOMPARE(personen(), 1);
        z.AnzahlPersonenLeer = true;
        QVERIFY(Print_AnweisungsZeile(p, z, zeile, summe, s));
        QCOMPARE(personen(), 1);
    }

    // A component block is never left at the foot without the first row under it.
    void componentBlockKeepsItsFirstRow()
    {
        start();
        const AnweisungsSpalten s(p);
        AuftragZeile z;
        z.Anweisung = QStringLiteral("0010");
        z.Text = QStringLiteral("Prüfen");
        z.SicherheitsHinweis = QStringLiteral("Gehörschutz und Schutzbrille tragen, Anlage freischalten, gegen "
                                              "Wiedereinschalten sichern");
        const int folge = Print_AnweisungsZeilenBedarf(p, z, {}, s);
        QVERIFY(folge > 1);
        QCOMPARE(Print_AnweisungsZeilenBedarf(p, z, QStringLiteral("Getriebe"), s), folge + 1);
        int zeile = letzteZeile(p) - 7;
        int probe = zeile;
        const size_t before = page().items.size();
        QVERIFY(!Print_AnweisungsKomponente(p, sampleNode(), {}, probe, s, folge));
        QCOMPARE(probe, zeile);
        QCOMPARE(page().items.size(), before);
        QVERIFY(Print_AnweisungsKomponente(p, sampleNode(), {}, zeile, s, 0));
    }

    void componentBlockAndFoot()
    {
        start();
        const AnweisungsSpalten s(p);
        int zeile = 7;
        QVERIFY(Print_AnweisungsKomponente(p, sampleNode(), QStringLiteral("Werk\\Verdichter V1"), zeile, s));
        QCOMPARE(zeile, 13);
        for (const char *label : {"Komponente: ", "KSt.: ", "Standort: ", "Ident-Nr: ", "Lok.: ", "Inspekteur: ",
                                  "Herst.: ", "Klass.: ", "WI-Steuerung: ", "Typ: ", "Laufweg: ", "Option: "})
            QVERIFY2(find(page(), QString::fromUtf8(label)), label);
        QVERIFY(find(page(), QStringLiteral("Werk\\Verdichter V1")));
        zeile = 20;
        QVERIFY(Print_AnweisungsKomponente(p, std::nullopt, {}, zeile, s));
        QVERIFY(find(page(), QStringLiteral("Komponente wurde nicht gefunden")));
        zeile = letzteZeile(p) - 3;
        QVERIFY(!Print_AnweisungsKomponente(p, sampleNode(), {}, zeile, s));

        Print_AnweisungsFusszeile(p, 30, 123.45, s);
        const double h = p.TextHeight();
        const PrintItem *sum = find(page(), QStringLiteral("123,5   Minuten"));
        QVERIFY(sum);
        QCOMPARE(double(sum->Y), double(float(p.ScaleHeight() - h)));
        QVERIFY(find(page(), QStringLiteral("Name (Druckschrift)")));
        QVERIFY(find(page(), QStringLiteral("+ := Ausgeführt; S := Storniert; F := Fehler gefunden; R := Repariert ")));
        // Blank items fill from the last row down to the foot.
        int blanks = 0;
        for (const auto &it : page().items)
            blanks += it.Text == QLatin1String(" ") && it.X == 100;
        QVERIFY(blanks > 0);
        QVERIFY(blanks >= int((p.ScaleHeight() - 6 * h) / h) - 31);
    }

    void instructionOverview()
    {
        start();
        const AnweisungsSpalten s(p);
        int zeile = Print_Protokoll_Kopf(p, QStringLiteral("01.02.2026"), s);
        QCOMPARE(zeile, 5);
        for (const char *w : {"WI-Übersicht", "  Sicherheits-", "    hinweis", "Material-", "   code  ", "menge ",
                              "Gewerk", "zeit"})
            QVERIFY2(find(page(), QString::fromUtf8(w)), w);
        QVERIFY(Print_Protokoll_Komponente(p, sampleNode(), QStringLiteral("Werk"), zeile, s));
        QVERIFY(find(page(), QStringLiteral("2025/07")));
        QVERIFY(find(page(), QStringLiteral("Keine Wartung in den Wochen:  10 - 12   30 - 33")));
        PositionZeile pos;
        pos.Objekt = QStringLiteral("000001");
        pos.Anweisung = QStringLiteral("0010");
        pos.Text = QStringLiteral("Filter tauschen");
        pos.Betriebszustand = QStringLiteral("X");
        pos.Planzeit = QStringLiteral("1,5");
        pos.Materialcode = QStringLiteral("F-10");
        pos.Materialmenge = QStringLiteral("0");
        pos.Ausfuehrender = QStringLiteral("Elt");
        QVERIFY(Print_Protokoll_Zeile(p, pos, zeile, s));
        QCOMPARE(double(find(page(), QStringLiteral("1,5"))->X), double(float(s.Neun)));
        QVERIFY(find(page(), QStringLiteral("Elt")));
        QCOMPARE(double(find(page(), QStringLiteral("Elt"))->X), double(float(s.Zehn)));
        // A long trade wraps at its blanks onto the row's next lines, within the margin.
        pos.Anweisung = QStringLiteral("0020");
        pos.Ausfuehrender = QStringLiteral("Elektro und MSR Halle Nord West");
        const int before = zeile;
        QVERIFY(Print_Protokoll_Zeile(p, pos, zeile, s));
        QStringList gewerk;
        for (const PrintItem &it : page().items)
            if (qAbs(it.X - s.Zehn) < 1 && it.Y >= before * p.TextHeight() - 1) {
                gewerk << it.Text;
                QVERIFY(it.X + p.TextWidth(it.Text) <= p.ScaleWidth());
            }
        QVERIFY(gewerk.size() > 1);
        QCOMPARE(zeile - before, gewerk.size());
        QCOMPARE(gewerk.join(QLatin1Char(' ')), pos.Ausfuehrender);
        QCOMPARE(double(find(page(), QStringLiteral("F-10"))->X), double(float(s.Zeit)));
        QVERIFY(!find(page(), QStringLiteral("X")));
        QVERIFY(!find(page(), QStringLiteral("0,0")));
        int z2 = zeile;
        QVERIFY(Print_Protokoll_Komponente(p, std::nullopt, {}, z2, s));
        QVERIFY(find(page(), QStringLiteral("Komponente nicht gefunden")));

        p.NewPage();
        QCOMPARE(Print_ProtokollStruktur_Kopf(p, QStringLiteral("01.02.2026")), 3);
        QVERIFY(find(page(), QStringLiteral("Komponentenstruktur")));
        QVERIFY(find(page(), QStringLiteral("               Blatt Nr. 2")));
    }

    void findingsList()
    {
        start();
        const RueckmeldungSpalten s(p);
        int zeile = Print_Rueckmeldung_Kopf(p, QStringLiteral("12"), QStringLiteral("2026"),
                                            QStringLiteral("01.02.2026"), s);
        QVERIFY(find(page(), QStringLiteral("   Woche: 12/2026")));
        QVERIFY(find(page(), QStringLiteral("Geplante Wartungs- und Inspektionsmaßnahmen")));
        AuftragZeile z;
        z.Anweisung = QStringLiteral("0010");
        z.Text = QStringLiteral("Lager schmieren");
        z.Intervall = QStringLiteral("1M");
        z.PlanZeit = 20;
        z.Befund = QStringLiteral("F");
        z.Verbal = QStringLiteral("I");
        z.Bemerkung = QStringLiteral("Lager läuft heiß");
        const int start = zeile;
        QVERIFY(Print_Rueckmeldung_BefundZeile(p, z, zeile, s));
        QCOMPARE(zeile, start + 2);
        QVERIFY(find(page(), QStringLiteral("Hinweis:")));
        QCOMPARE(double(find(page(), QStringLiteral("F"))->X), double(float(s.Befund)));
        z.Bemerkung.clear();
        QVERIFY(Print_Rueckmeldung_BefundZeile(p, z, zeile, s));
        QCOMPARE(zeile, start + 3);
        // The text and its note move to the next page together.
        z.Bemerkung = QStringLiteral("x");
        const size_t before = page().items.size();
        zeile = int((p.ScaleHeight() - 3 * p.TextHeight()) / p.TextHeight()) - 1;
        QVERIFY(!Print_Rueckmeldung_BefundZeile(p, z, zeile, s));
        QCOMPARE(page().items.size(), before);
        Print_Rueckmeldung_Fusszeile(p);

        const QString text = pdfText(p.store());
        QVERIFY2(QRegularExpression(QStringLiteral("0010 +Lager schmieren +1M +0,0 +20,0 +F +I")).match(text).hasMatch(),
                 qPrintable(text));
        QVERIFY(text.contains(QStringLiteral("Hinweis: Lager läuft heiß")));
        QVERIFY(text.contains(QStringLiteral("I = Instandhaltung-, P = Produktion ist informiert")));
    }

    void effortAndRepairHeads()
    {
        start();
        int zeile = Print_Aufwand_Kopf(p, QStringLiteral("Elektro"), 40, 2.5, QStringLiteral("01.02.2026"));
        QVERIFY(Print_Aufwand_Zeile(p, QStringLiteral("07"), 4, 10, zeile));
        QVERIFY(find(page(), QStringLiteral("**********")));
        QVERIFY(find(page(), QStringLiteral("4,00 h  10,0 %")));
        zeile = letzteZeile(p) + 5;
        QVERIFY(!Print_Aufwand_Zeile(p, QStringLiteral("08"), 4, 10, zeile));

        const QString effort = pdfText(p.store());
        // The eleven columns of the repair order list need the landscape page.
        start(2);
        const ErfassungSpalten s(p);
        QVERIFY(s.ErledigtAm + p.TextWidth(QStringLiteral("00.00.0000")) < p.ScaleWidth());
        QCOMPARE(Print_Erfassung_Kopf(p, QStringLiteral("01.02.2026"), s), 4);
        QCOMPARE(double(find(page(), QStringLiteral("Erledigt"))->X), double(float(s.ErledigtAm)));

        QVERIFY(effort.contains(QStringLiteral("für Gewerk Elektro")));
        QVERIFY(QRegularExpression(QStringLiteral("Gesamtzeit: 40,00 h\\.")).match(effort).hasMatch());
        QVERIFY(QRegularExpression(QStringLiteral("07 +\\*{10} 4,00 h +10,0 %")).match(effort).hasMatch());
        const QString text = pdfText(p.store());
        QVERIFY(QRegularExpression(QStringLiteral(
            "Lfd.Nr. +Meldedatum +Herkunft +Schadensart +Zeit +Auftragsart +Ursache +Lohn +Material +Fremd +Erledigt"))
                    .match(text).hasMatch());
    }
};

QTEST_MAIN(TestPageLayouts)
#include "tst_pagelayouts.moc"
