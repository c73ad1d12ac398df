#include "support/TestSupport.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include "zol/print/PrinterF.h"
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace zol;

namespace {

// Keeps what a preview would show.
struct RecordingPreview : PreviewPresenter {
    RecordingPreview() { installPreviewPresenter(this); }
    ~RecordingPreview() override { installPreviewPresenter(nullptr); }
    void showPreview(PrinterF &p) override
    {
        store = p.store();
        seite = p.Seite();
        aktuelle = p.AktuelleSeite;
        ++calls;
    }
    PageStore store;
    int seite = -1;
    int aktuelle = -1;
    int calls = 0;
};

QStringList texts(const PrintPage &page)
{
    QStringList out;
    for (size_t i = 1; i < page.items.size(); ++i)
        out << page.items[i].Text;
    return out;
}


int pdfPages(const QString &text) { return int(text.count(QLatin1Char('\f'))); }

struct PdfWord {
    int page;
    QString text;
    double x, y;   // top left in points from the paper's corner
};

QList<PdfWord> pdfWords(const QString &path)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), path, QStringLiteral("-")});
    p.waitForFinished(30000);
    const QString html = QString::fromUtf8(p.readAllStandardOutput());
    QList<PdfWord> out;
    int page = 0;
    static const QRegularExpression re(
        QStringLiteral(R"re(<page |<word xMin="([0-9.]+)" yMin="([0-9.]+)"[^>]*>([^<]*)</word>)re"));
    for (auto it = re.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        if (m.captured(0).startsWith(QStringLiteral("<page")))
            ++page;
        else
            out.append({page, m.captured(3), m.captured(1).toDouble(), m.captured(2).toDouble()});
    }
    return out;
}

const PdfWord *findWord(const QList<PdfWord> &words, int page, const QString &text)
{
    for (const auto &w : words)
        if (w.page == page && w.text == text)
            return &w;
    return nullptr;
}

}

class TestPrinterF : public QObject {
    Q_OBJECT

    OptionState options;
    PrinterF p;

    void start(int druckFormat = 1)
    {
        options.gDruckFormat = druckFormat;
        p.setOptionState(&options);
        p.Vorschau = true;
        p.InitPrinter();
    }

private Q_SLOTS:
    void fontIsExactAndMeasuresAsDrawn()
    {
        start();
        const QFont &f = p.metrics().font(false);
        QCOMPARE(QFontInfo(f).family(), QStringLiteral("DejaVu Sans"));
        const QString s = QStringLiteral("Prüfung der Ölpumpe, Kupplung und Lager (0000/00000)");
        QVERIFY(qAbs(p.TextWidth(s) - QFontMetricsF(f).horizontalAdvance(s)) < 1.0);
        // 8 point type in twips: the line is a little higher than 160.
        QVERIFY(p.TextHeight() > 160 && p.TextHeight() < 220);
        p.setBold(true);
        QVERIFY(p.TextWidth(s) > p.metrics().TextWidth(s, false));
    }

    void wrapping_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("widthOf");   // the width is that of this text
        QTest::addColumn<QString>("separators");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("textAfter");

        QTest::newRow("fits") << "Lager prüfen" << "Lager prüfen" << " "
                              << QStringList{"Lager prüfen"} << "Lager prüfen";
        QTest::newRow("blank in the back half") << "1234567890 2345678901234" << "1234567890 234567" << " "
                                                << QStringList{"1234567890 ", "2345678901234"}
                                                << "1234567890 2345678901234";
        // The look-back covers half the line: ten digits wide, it finds a blank
        // at the sixth character but not at the fifth.
        QTest::newRow("blank at the edge of the look-back") << "12345 789012345" << "1234567890" << " "
                                                            << QStringList{"12345 ", "789012345"} << "12345 789012345";
        QTest::newRow("blank just outside the look-back") << "1234 6789012345" << "1234567890" << " "
                                                          << QStringList{"1234 67890", "12345"} << "1234 6789012345";
        QTest::newRow("blank further left is ignored") << "123 4567890123456789012" << "123 456789012345" << " "
                                                       << QStringList{"123 456789012345", "6789012"}
                                                       << "123 4567890123456789012";
        // Digits all have the same width.
        QTest::newRow("word longer than the width") << "12345678901234567890123456" << "1234567890" << " "
                                                    << QStringList{"1234567890", "1234567890", "123456"}
                                                    << "12345678901234567890123456";
        QTest::newRow("no room at all") << "abc" << "" << " " << QStringList{"a", "b", "c"} << "abc";
        QTest::newRow("other separator") << "0000-1111-2222" << "0000-1111-22" << "-"
                                         << QStringList{"0000-1111-", "2222"} << "0000-1111-2222";
        QTest::newRow("paragraphs") << "Erster Absatz\r\nZweiter" << "Erster Absatz" << " "
                                    << QStringList{"Erster Absatz", "Zweiter"} << "Zweiter";
        QTest::newRow("empty paragraph counts nothing") << "Oben\r\n\r\nUnten" << "Oben Unten" << " "
                                                        << QStringList{"Oben", "Unten"} << "Unten";
    }

    void wrapping()
    {
        QFETCH(QString, text);
        QFETCH(QString, widthOf);
        QFETCH(QString, separators);
        QFETCH(QStringList, lines);
        QFETCH(QString, textAfter);
        start();
        const int x1 = 500;
        const int x2 = x1 + int(std::ceil(p.TextWidth(widthOf)));
        // Exact widths: a text exactly as wide as the room fits.
        QString t = text;
        const int n = p.PrintText(t, x1, x2, 1000, 10000, separators);
        QCOMPARE(n, lines.size());
        QCOMPARE(texts(p.store().page(1)), lines);
        QCOMPARE(t, textAfter);
        const double H = p.TextHeight();
        const auto &items = p.store().page(1).items;
        for (int i = 0; i < lines.size(); ++i) {
            QCOMPARE(items[size_t(i + 1)].X, float(x1));
            QCOMPARE(items[size_t(i + 1)].Y, float(1000 + i * H));
        }
    }

    void strictFitRule()
    {
        start();
        const double H = p.TextHeight();
        // A number of lines whose height is a whole number of twips, so the
        // room can be given exactly.
        int k = 1;
        while (k < 64 && k * H != std::floor(k * H))
            ++k;
        if (k == 64)
            QSKIP("no whole-numbered block height in this font");
        QStringList lines;
        for (int i = 0; i < k; ++i)
            lines << QStringLiteral("Zeile ") + QString::number(i + 1);
        const QString block = lines.join(QStringLiteral("\r\n"));
        const int y = 2000;
        QString t = block;
        // Room for exactly k lines is not enough: the comparison is strict.
        QCOMPARE(p.PrintText(t, 100, 5000, y, y + int(k * H), QStringLiteral(" ")), k);
        QCOMPARE(p.store().page(1).items.size(), size_t(1));
        QCOMPARE(t, block);
        QCOMPARE(p.PrintText(t, 100, 5000, y, y + int(k * H) + 1, QStringLiteral(" ")), k);
        QCOMPARE(texts(p.store().page(1)), lines);
        QCOMPARE(t, lines.last());

        // An empty text counts one line and prints nothing.
        QString empty;
        QCOMPARE(p.PrintText(empty, 100, 5000, y, y + 10000, QStringLiteral(" ")), 1);
        QCOMPARE(p.store().page(1).items.size(), size_t(k + 1));
    }

    // A value cut to its column keeps every character that fits, also one
    // exactly as wide as the column, and a very long value is cut as well.
    void cutToColumn()
    {
        start();
        const PageMetrics &m = p.metrics();
        const QString text = QStringLiteral("Wälzlagerfett WLF-2000 nach Plan");
        const double whole = m.TextWidth(text);
        QCOMPARE(m.fittingLength(text, whole), text.size());
        QCOMPARE(m.fittingLength(text, whole - 0.01), text.size() - 1);
        const double five = m.TextWidth(text.left(5));
        QCOMPARE(m.fittingLength(text, five), qsizetype(5));
        QCOMPARE(m.fittingLength(text, 0), qsizetype(0));
        QCOMPARE(m.fittingLength(QString(), 100), qsizetype(0));
        const QString longText = QStringLiteral("abcdefghij").repeated(20000);
        const qsizetype fits = m.fittingLength(longText, m.TextWidth(longText.left(150)));
        QCOMPARE(fits, qsizetype(150));
    }

    void portraitAndLandscape()
    {
        start(1);
        const QString text = QStringLiteral("Sichtprüfung der Dichtungen und Schrauben auf festen Sitz");
        const double w8 = p.TextWidth(text), h8 = p.TextHeight(), sw8 = p.ScaleWidth(), sh8 = p.ScaleHeight();
        // Exactly as wide as the room in 8 point: one line; in 9 point it wraps.
        QString t = text;
        QCOMPARE(p.PrintText(t, 0, int(std::ceil(w8)), 0, 10000, QStringLiteral(" ")), 1);
        start(2);
        const double w9 = p.TextWidth(text), h9 = p.TextHeight();
        QVERIFY(qAbs(w9 / w8 - 9.0 / 8.0) < 0.01);
        QVERIFY(qAbs(h9 / h8 - 9.0 / 8.0) < 0.02);
        QCOMPARE(p.ScaleWidth(), sh8);   // the same paper turned
        QCOMPARE(p.ScaleHeight(), sw8);
        QCOMPARE(p.store().format.pointSize, 9);
        QVERIFY(p.store().format.landscape);
        t = text;
        QCOMPARE(p.PrintText(t, 0, int(std::ceil(w8)), 0, 10000, QStringLiteral(" ")), 2);
    }

    void pagesAndBottomFill()
    {
        p.zeig();
        QCOMPARE(p.Seite(), 0);
        p.Vorschau = true;
        // NewPage without a job opens one.
        p.NewPage();
        QCOMPARE(p.Seite(), 1);
        QCOMPARE(p.store().pageCount(), 1);
        p.XPos(100);
        p.YPos(200);
        p.PrintString(QStringLiteral("Kopf"));
        QCOMPARE(p.CurrentX(), 100.0);   // preview: the position stays
        p.NewPage();
        p.NewPage();
        QCOMPARE(p.Seite(), 3);
        QCOMPARE(p.store().pageCount(), 3);
        QCOMPARE(texts(p.store().page(1)), QStringList{"Kopf"});
        QVERIFY(texts(p.store().page(3)).isEmpty());
        QCOMPARE(p.store().page(3).items.size(), size_t(1));   // the empty item at 0,0

        const int H = int(std::nearbyint(p.TextHeight()));
        QCOMPARE(p.Print_UnterenRand(7, 300, 0, 1000, 1000 + 3 * H), 10);
        QCOMPARE(p.Print_UnterenRand(0, 300, 0, 1000, 1000 + 3 * H - 1), 2);
        const auto &items = p.store().page(3).items;
        QCOMPARE(items.size(), size_t(6));
        QCOMPARE(items[5].Text, QStringLiteral(" "));
        QCOMPARE(items[5].Y, float(1000 + H));
        QCOMPARE(items[5].X, 300.0f);
    }

    void zeigHandsTheStoreToThePreview()
    {
        RecordingPreview preview;
        start();
        p.setBold(true);
        p.PrintString(QStringLiteral("Fett"));
        p.NewPage();
        p.setBold(false);
        p.PrintString(QStringLiteral("Mager"));
        p.zeig();
        QCOMPARE(preview.calls, 1);
        QCOMPARE(preview.seite, 2);
        QCOMPARE(preview.aktuelle, 1);
        QCOMPARE(preview.store.pageCount(), 2);
        QVERIFY(preview.store.page(1).items[1].Bold);
        QVERIFY(!preview.store.page(2).items[1].Bold);
        QCOMPARE(p.Seite(), 0);
        QCOMPARE(p.AktuelleSeite, 0);
        QCOMPARE(p.store().pageCount(), 1);

        // No page written: the preview shows one empty page.
        p.zeig();
        QCOMPARE(preview.calls, 2);
        QCOMPARE(preview.store.pageCount(), 1);
    }

    void directModeWithoutPrinter()
    {
        ScriptedPresenter msg;
        PrinterF direct;
        direct.Vorschau = false;
        int result = -1;
        try {
            direct.InitPrinter();
        } catch (const Fault &f) {
            result = printerErrors(f);
        }
        QCOMPARE(result, 2);
        QCOMPARE(msg.texts(), QStringList{"Der Druckertreiber ist nicht verfügbar"});
        QCOMPARE(msg.lastStyle(), 16);
    }

    // A report ends its job through zeigMitWiederholung: each "repeat" tries the
    // device again, any other answer gives the job up, and the job stays open.
    void reportRepeatsUntilTheUserGivesUp()
    {
        QTemporaryDir dir;
        QPdfWriter broken(dir.filePath(QStringLiteral("fehlt/x.pdf")));
        PrinterF direct;
        direct.setPrinter(&broken);
        direct.Vorschau = false;
        direct.InitPrinter();
        direct.PrintString(QStringLiteral("Seite"));
        ScriptedPresenter msg;
        msg.answer(4).answer(4).answer(1);
        QVERIFY(!zeigMitWiederholung(direct));
        QCOMPARE(msg.shown().size(), 3);
        QCOMPARE(msg.pendingAnswers(), 0);

        const QString path = dir.filePath(QStringLiteral("gut.pdf"));
        QPdfWriter writer(path);
        direct.setPrinter(&writer);
        QVERIFY(zeigMitWiederholung(direct));
        QCOMPARE(msg.shown().size(), 3);
    }

    void directModePrintsAtZeig()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("direkt.pdf"));
        {
            QPdfWriter writer(path);
            PrinterF direct;
            direct.setPrinter(&writer);
            direct.Vorschau = false;
            direct.InitPrinter();
            QString t = QStringLiteral("Erste Seite direkt");
            direct.PrintText(t, 100, 9000, 100, 9000, QStringLiteral(" "));
            direct.NewPage();
            direct.PrintString(QStringLiteral("Zweite Seite direkt"));
            // A device that fails leaves the job open; the report repeats zeig.
            QPdfWriter broken(dir.filePath(QStringLiteral("fehlt/x.pdf")));
            direct.setPrinter(&broken);
            ScriptedPresenter msg;
            msg.answer(4);
            int result = -1;
            try {
                direct.zeig();
            } catch (const Fault &f) {
                result = printerErrors(f);
            }
            QCOMPARE(result, 0);
            QCOMPARE(msg.lastText(), QStringLiteral("Es liegt ein Druckerfehler vor. Bitte überprüfen Sie die "
                                                   "Druckereinstellungen und ihren Drucker auf Fehler"));
            QCOMPARE(direct.Seite(), 2);
            direct.setPrinter(&writer);
            direct.zeig();
            QCOMPARE(direct.Seite(), 0);
        }
        const QString text = zoltest::pdfText(path);
        QVERIFY(text.contains(QStringLiteral("Erste Seite direkt")));
        QVERIFY(text.contains(QStringLiteral("Zweite Seite direkt")));
        QCOMPARE(pdfPages(text), 2);
    }

    void pdfOutput()
    {
        start();
        const QStringList words{QStringLiteral("Alpha"), QStringLiteral("Bravo"), QStringLiteral("Charlie"),
                                QStringLiteral("Delta")};
        for (int i = 0; i < words.size(); ++i) {
            if (i > 0)
                p.NewPage();
            p.XPos(100);
            p.YPos(100);
            p.PrintString(QStringLiteral("Links ") + words[i]);
            p.XPos(p.ScaleWidth() / 2);
            p.PrintString(QStringLiteral("Mitte Ölwechsel"));
            p.XPos(100);
            p.YPos(p.ScaleHeight() - p.TextHeight());
            p.setBold(true);
            p.PrintString(QStringLiteral("Fuß ") + QString::number(i + 1));
            p.setBold(false);
        }
        QTemporaryDir dir;
        const QString all = dir.filePath(QStringLiteral("alle.pdf"));
        QVERIFY(writePdf(p.store(), all, 1, p.store().pageCount()));
        QString text = zoltest::pdfText(all);
        QCOMPARE(pdfPages(text), 4);
        for (const QString &w : words)
            QVERIFY(text.contains(QStringLiteral("Links ") + w));
        QVERIFY(text.contains(QStringLiteral("Fuß 4")));
        // Every item stands where it was placed: twips from the printable
        // area's corner, which lies a quarter inch inside the paper.
        const auto placed = pdfWords(all);
        const double m = PageMetrics::Margin;
        const struct {
            int page;
            const char *word;
            double x, y;   // twips of the item
        } expect[] = {{1, "Links", 100, 100},
                      {1, "Mitte", p.ScaleWidth() / 2, 100},
                      {3, "Charlie", 100 + p.TextWidth(QStringLiteral("Links ")), 100},
                      {4, "Fuß", 100, p.ScaleHeight() - p.TextHeight()}};
        for (const auto &e : expect) {
            const PdfWord *w = findWord(placed, e.page, QString::fromUtf8(e.word));
            QVERIFY2(w, e.word);
            QVERIFY2(qAbs(w->x - (m + e.x) / 20) < 1.0, qPrintable(QString::number(w->x)));
            // The word box begins a little below the top of the line.
            QVERIFY2(qAbs(w->y - (m + e.y) / 20) < 3.0, qPrintable(QString::number(w->y)));
        }

        const QString range = dir.filePath(QStringLiteral("bereich.pdf"));
        QVERIFY(writePdf(p.store(), range, 2, 3));
        text = zoltest::pdfText(range);
        QCOMPARE(pdfPages(text), 2);
        QVERIFY(text.contains(QStringLiteral("Links Bravo")));
        QVERIFY(text.contains(QStringLiteral("Links Charlie")));
        QVERIFY(!text.contains(QStringLiteral("Links Alpha")));
        QVERIFY(!text.contains(QStringLiteral("Links Delta")));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 2);   // no temporary files left

        ScriptedPresenter msg;
        const QString bad = dir.filePath(QStringLiteral("fehlt/ordner/x.pdf"));
        QVERIFY(!writePdf(p.store(), bad, 1, 4));
        QCOMPARE(msg.shown().size(), 1);
        QVERIFY(msg.lastText().startsWith(QStringLiteral("Die Datei ")));
        QVERIFY(msg.lastText().contains(QStringLiteral("x.pdf")));
        QVERIFY(msg.lastText().contains(QStringLiteral("kann nicht geschrieben werden")));
        QCOMPARE(msg.lastStyle(), 16);
        QVERIFY(!QFile::exists(bad));
    }

    void pdfPresenterWritesTheJob()
    {
        QTemporaryDir dir;
        PdfPreviewPresenter pdf(dir.filePath(QStringLiteral("job.pdf")));
        installPreviewPresenter(&pdf);
        start(2);
        p.PrintString(QStringLiteral("Querformat Seite"));
        p.NewPage();
        p.zeig();
        installPreviewPresenter(nullptr);
        QVERIFY(pdf.written());
        QCOMPARE(pdf.pages(), 2);
        const QString text = zoltest::pdfText(dir.filePath(QStringLiteral("job.pdf")));
        QVERIFY(text.contains(QStringLiteral("Querformat Seite")));
        QCOMPARE(pdfPages(text), 2);
    }

    void printerErrorsMapping_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("result");
        const QString e482 = QStringLiteral("Es liegt ein Druckerfehler vor. Bitte überprüfen Sie die "
                                            "Druckereinstellungen und ihren Drucker auf Fehler");
        QTest::newRow("396 own text") << 396 << 1 << "Eigenschaft kann innerhalb einer Seite nicht gesetzt werden"
                                      << 2;
        QTest::newRow("482 ok") << 482 << 1 << e482 << 2;
        QTest::newRow("482 answer 2") << 482 << 2 << e482 << 2;
        QTest::newRow("482 answer 3") << 482 << 3 << e482 << 2;
        QTest::newRow("483 repeat") << 483 << 4 << "Der Druckertreiber unterstützt die geforderte Eigenschaft nicht"
                                    << 0;
        QTest::newRow("484 go on") << 484 << 5 << "Der Druckertreiber ist nicht verfügbar" << 1;
        QTest::newRow("484 other answer") << 484 << 6 << "Der Druckertreiber ist nicht verfügbar" << 3;
        QTest::newRow("other fault") << 3021 << 1 << QString() << 3;
    }

    void printerErrorsMapping()
    {
        QFETCH(int, number);
        QFETCH(int, answer);
        QFETCH(QString, text);
        QFETCH(int, result);
        ScriptedPresenter msg;
        msg.answer(answer);
        const Fault f(number, number == 396 ? QStringLiteral("Eigenschaft kann innerhalb einer Seite nicht gesetzt werden")
                                            : QStringLiteral("x"));
        QCOMPARE(printerErrors(f), result);
        if (text.isEmpty()) {
            QVERIFY(msg.shown().isEmpty());
        } else {
            QCOMPARE(msg.texts(), QStringList{text});
            QCOMPARE(msg.lastStyle(), 16);
        }
    }

    void printRangeFields_data()
    {
        QTest::addColumn<QString>("von");
        QTest::addColumn<QString>("bis");
        QTest::addColumn<bool>("print");
        QTest::addColumn<QString>("vonAfter");
        QTest::addColumn<QString>("bisAfter");
        // Shown page 3 of 7.
        QTest::newRow("range") << "2" << "5" << true << "2" << "5";
        QTest::newRow("bis above last is corrected") << "2" << "9" << true << "2" << "7";
        QTest::newRow("von above bis") << "6" << "4" << false << "4" << "6";
        QTest::newRow("von not numeric") << "x" << "5" << false << "3" << "5";
        QTest::newRow("bis empty") << "1" << "" << false << "1" << "3";
        QTest::newRow("von above last") << "8" << "9" << false << "7" << "8";
    }

    void printRangeFields()
    {
        QFETCH(QString, von);
        QFETCH(QString, bis);
        QFETCH(bool, print);
        QFETCH(QString, vonAfter);
        QFETCH(QString, bisAfter);
        const RangeCheck r = checkPrintRange(von, bis, 3, 7);
        QCOMPARE(r.print, print);
        QCOMPARE(von, vonAfter);
        QCOMPARE(bis, bisAfter);
        if (print) {
            QCOMPARE(r.from, von.toInt());
            QCOMPARE(r.to, bis.toInt());
        }
    }
};

QTEST_MAIN(TestPrinterF)
#include "tst_printerf.moc"
