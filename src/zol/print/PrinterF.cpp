#include "PrinterF.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include <cmath>
#include <vector>

namespace zol {

namespace {
PreviewPresenter *g_preview = nullptr;

const QString &noDriverText()
{
    static const QString t = QStringLiteral("Der Druckertreiber ist nicht verfügbar");
    return t;
}
}

void installPreviewPresenter(PreviewPresenter *presenter) { g_preview = presenter; }
PreviewPresenter *installedPreviewPresenter() { return g_preview; }

PrinterF::PrinterF() : m_metrics(std::make_unique<PageMetrics>())
{
    m_store.pages.emplace_back();
}

PrinterF::~PrinterF() = default;

PrinterF &PrinterF::instance()
{
    static PrinterF printer;
    return printer;
}

void PrinterF::InitPrinter()
{
    if (!Vorschau && !m_printer)
        throw Fault(484, noDriverText());
    // Whatever job is open, e.g. one a report left by a fault, is discarded.
    m_Seite = 1;
    m_CurrentX = 0;
    m_CurrentY = 0;

    JobFormat format;
    const int druckFormat = m_options ? m_options->gDruckFormat : 1;
    format.landscape = druckFormat == 2;
    format.pointSize = format.landscape ? 9 : 8;
    if (format.landscape != m_metrics->format().landscape || format.pointSize != m_metrics->format().pointSize)
        m_metrics = std::make_unique<PageMetrics>(format);

    m_store.format = format;
    m_store.pages.clear();
    m_store.pages.emplace_back();
    m_Bold = false;
}

void PrinterF::checkSeite() const
{
    // The page number is a 16-bit integer.
    if (m_Seite >= 32767)
        throw Fault(6, QStringLiteral("Überlauf"));
}

void PrinterF::NewPage()
{
    if (m_Seite == 0) {
        InitPrinter();
        return;
    }
    checkSeite();
    ++m_Seite;
    m_store.pages.emplace_back();
    m_CurrentX = 0;
    m_CurrentY = 0;
}

void PrinterF::PrintString(const QString &text)
{
    PrintItem item;
    item.X = float(m_CurrentX);
    item.Y = float(m_CurrentY);
    item.Bold = m_Bold;
    item.Text = text;
    m_store.pages.back().items.push_back(std::move(item));
    if (!Vorschau) {
        // On the printer a printed text ends its line.
        m_CurrentX = 0;
        m_CurrentY += TextHeight();
    }
}

namespace {

// The lines of one paragraph under the breaking rule: a line is the longest
// start of the rest that fits; within the back half of it the line is cut
// behind the last separator, else where it fits, in the middle of a word.
template<typename Emit>
void wrapParagraph(const QString &para, double width, const QString &separators, const PageMetrics &m, bool bold,
                   Emit out)
{
    const int n = int(para.size());
    std::vector<double> w(static_cast<size_t>(n));
    double rest = 0;
    for (int i = 0; i < n; ++i) {
        w[size_t(i)] = m.charWidth(para[i], bold);
        rest += w[size_t(i)];
    }
    int pos = 0;
    while (rest > width) {
        // The line is measured from its start, so a long paragraph costs
        // time in proportion to its length, not to its square.
        int len = 1;
        double cand = w[size_t(pos)];
        while (pos + len < n && cand + w[size_t(pos + len)] <= width) {
            cand += w[size_t(pos + len)];
            ++len;
        }
        // A character wider than the whole width still makes a line of its
        // own, so the walk always moves on.
        const int half = len / 2;
        for (int i = len - 1; i >= len - half; --i) {
            if (separators.contains(para[pos + i])) {
                len = i + 1;
                break;
            }
        }
        out(para.mid(pos, len));
        for (int i = 0; i < len; ++i)
            rest -= w[size_t(pos + i)];
        pos += len;
        if (pos >= n)
            return;
    }
    out(para.mid(pos));
}

template<typename Each>
void forEachParagraph(const QString &text, Each each)
{
    qsizetype start = 0;
    for (;;) {
        const qsizetype cr = text.indexOf(QLatin1Char('\r'), start);
        if (cr < 0) {
            each(text.mid(start));
            return;
        }
        each(text.mid(start, cr - start));
        // The cut drops the line feed behind the carriage return.
        start = cr + 2;
        if (start > text.size()) {
            return;
        }
    }
}

}

int PrinterF::PrintText(QString &text, int X1, int X2, int Y, int Ymax, const QString &separators)
{
    const double H = TextHeight();
    const double width = X2 - X1;
    int lines = 0;
    forEachParagraph(text, [&](const QString &para) {
        if (!para.isEmpty())
            wrapParagraph(para, width, separators, *m_metrics, m_Bold, [&](const QString &) { ++lines; });
    });
    if (text.isEmpty())
        lines = 1;
    if (!(lines < (Ymax - Y) / H))
        return lines;

    double y = Y;
    QStringList paragraphs;
    forEachParagraph(text, [&](const QString &para) { paragraphs << para; });
    for (const QString &para : std::as_const(paragraphs)) {
        text = para;
        if (para.isEmpty())
            continue;
        wrapParagraph(para, width, separators, *m_metrics, m_Bold, [&](const QString &line) {
            XPos(X1);
            YPos(y);
            PrintString(line);
            y += H;
        });
    }
    return lines;
}

QStringList PrinterF::WrapText(const QString &text, double width, const QString &separators) const
{
    QStringList lines;
    if (!text.isEmpty())
        wrapParagraph(text, width, separators, *m_metrics, m_Bold, [&](const QString &line) { lines << line; });
    return lines;
}

int PrinterF::Print_UnterenRand(int count, int X, int, int Y, int Ymax)
{
    const int H = int(std::nearbyint(TextHeight()));
    if (H <= 0)
        return count;
    for (int y = Y; Ymax - y >= H; y += H) {
        XPos(X);
        YPos(y);
        PrintString(QStringLiteral(" "));
        ++count;
    }
    return count;
}

void PrinterF::zeig()
{
    const auto reset = [this] {
        m_store.pages.clear();
        m_store.pages.emplace_back();
        m_Seite = 0;
        AktuelleSeite = 0;
    };
    if (Vorschau) {
        AktuelleSeite = 1;
        try {
            if (g_preview)
                g_preview->showPreview(*this);
        } catch (...) {
            reset();
            throw;
        }
    } else if (m_Seite > 0) {
        // A printer fault leaves the job open, so the report can repeat zeig.
        printPages(m_store, m_printer, 1, m_store.pageCount());
    }
    reset();
}

int printerErrors(const Fault &fault)
{
    QString text;
    switch (fault.number()) {
    case 396:
        text = fault.description();
        break;
    case 482:
        text = QStringLiteral("Es liegt ein Druckerfehler vor. Bitte überprüfen Sie die Druckereinstellungen und "
                              "ihren Drucker auf Fehler");
        break;
    case 483:
        text = QStringLiteral("Der Druckertreiber unterstützt die geforderte Eigenschaft nicht");
        break;
    case 484:
        text = noDriverText();
        break;
    default:
        return 3;
    }
    switch (ZeigeMeldung(text, Style::Critical)) {
    case 1:
    case 2:
    case 3:
        return 2;
    case 4:
        return 0;
    case 5:
        return 1;
    default:
        return 3;
    }
}

RangeCheck checkPrintRange(QString &von, QString &bis, int shownPage, int lastPage)
{
    RangeCheck r;
    bool okVon = false, okBis = false;
    int from = von.trimmed().toInt(&okVon);
    int to = bis.trimmed().toInt(&okBis);
    if (!okVon || !okBis) {
        if (!okVon)
            von = QString::number(shownPage);
        if (!okBis)
            bis = QString::number(shownPage);
        return r;
    }
    if (to > lastPage) {
        to = lastPage;
        bis = QString::number(to);
    }
    if (from > to) {
        von = QString::number(to);
        bis = QString::number(from);
        return r;
    }
    r.print = true;
    r.from = qMax(from, 1);
    r.to = to;
    return r;
}

void PdfPreviewPresenter::showPreview(PrinterF &printer)
{
    m_pages = printer.store().pageCount();
    m_written = writePdf(printer.store(), m_path, 1, m_pages, m_replace);
}

}

namespace zol {

bool printRange(const PageStore &store, QPagedPaintDevice *device, int from, int to)
{
    // The user ends the repeats; the bound only keeps a device that fails
    // for ever from holding the window.
    for (int attempt = 0; attempt < 100; ++attempt) {
        try {
            printPages(store, device, from, to);
            return true;
        } catch (const Fault &f) {
            switch (printerErrors(f)) {
            case 0:
                continue;
            case 3:
                ZeigeMeldung(faultText(f), Style::Critical);
                return false;
            default:
                return false;
            }
        }
    }
    return false;
}

bool zeigMitWiederholung(PrinterF &p)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        try {
            p.zeig();
            return true;
        } catch (const Fault &f) {
            const int r = printerErrors(f);
            if (r == 0)
                continue;
            if (r == 3)
                throw;
            return false;
        }
    }
    return false;
}

}
