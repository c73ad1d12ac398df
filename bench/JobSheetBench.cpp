#include "Figures.h"
#include "JobSheetBench.h"
#include "zol/core/Session.h"
#include "zol/planning/JobSheets.h"
#include "zol/print/PageMetrics.h"
#include "zol/print/PrinterF.h"
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <cstdio>
#include <vector>

namespace zolbench {

namespace {

// Stands in for the preview window: draws page 1 as the window would at
// about screen size, then keeps the pages for the PDF.
class TimingPreview : public zol::PreviewPresenter {
public:
    explicit TimingPreview(const QElapsedTimer &clock) : m_clock(clock) {}
    void showPreview(zol::PrinterF &p) override
    {
        composed = m_clock.nsecsElapsed() / 1e9;
        QImage image(900, int(900 * p.Height() / p.Width()), QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::TextAntialiasing);
            painter.scale(image.width() / p.Width(), image.width() / p.Width());
            zol::renderPage(painter, p.metrics(), p.store().page(1));
        }
        firstPage = m_clock.nsecsElapsed() / 1e9;
        store = p.store();
    }
    double composed = -1;   // the pages laid out, before the first is drawn
    double firstPage = -1;
    zol::PageStore store;

private:
    const QElapsedTimer &m_clock;
};

// The pages as Qt alone would draw them: each text with ink at its baseline,
// in one of two fonts; no layout, no database.
struct RawText {
    QPointF baseline;
    bool bold;
    QString text;
};
using RawPages = std::vector<std::vector<RawText>>;

RawPages rawPages(const zol::PageStore &store, const zol::PageMetrics &metrics)
{
    RawPages pages;
    for (const zol::PrintPage &page : store.pages) {
        std::vector<RawText> &texts = pages.emplace_back();
        for (const zol::PrintItem &item : page.items)
            if (!item.Text.trimmed().isEmpty())
                texts.push_back({QPointF(item.X, item.Y + metrics.ascent(item.Bold)), item.Bold, item.Text});
    }
    return pages;
}

void drawRaw(QPainter &painter, const std::vector<RawText> &texts, const QFont fonts[2])
{
    int bold = -1;
    for (const RawText &t : texts) {
        if (int(t.bold) != bold) {
            bold = t.bold;
            painter.setFont(fonts[bold]);
        }
        painter.drawText(t.baseline, t.text);
    }
}

// Seconds Qt's PDF writer needs for the raw pages, written to `path`.
double rawPdfSeconds(const RawPages &pages, const QFont fonts[2], bool landscape, const QString &path)
{
    QElapsedTimer t;
    t.start();
    QPdfWriter writer(path);
    writer.setResolution(int(zol::TwipsPerInch));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                     QMarginsF(zol::PageMetrics::Margin, zol::PageMetrics::Margin,
                                               zol::PageMetrics::Margin, zol::PageMetrics::Margin)
                                         / zol::TwipsPerPoint,
                                     QPageLayout::Point));
    QPainter painter(&writer);
    for (std::size_t n = 0; n < pages.size(); ++n) {
        if (n > 0)
            writer.newPage();
        drawRaw(painter, pages[n], fonts);
    }
    painter.end();
    return t.nsecsElapsed() / 1e9;
}

// Seconds to draw one raw page as the preview shows it.
double rawPreviewSeconds(const std::vector<RawText> &texts, const QFont fonts[2], double width, double height)
{
    QElapsedTimer t;
    t.start();
    QImage image(900, int(900 * height / width), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(image.width() / width, image.width() / width);
    drawRaw(painter, texts, fonts);
    painter.end();
    return t.nsecsElapsed() / 1e9;
}

}   // namespace

bool jobSheetBench(zol::Session &session, const QString &jahr, const QString &woche, const QString &gewerk)
{
    QElapsedTimer clock;
    TimingPreview preview(clock);
    zol::PreviewPresenter *before = zol::installedPreviewPresenter();
    zol::installPreviewPresenter(&preview);
    zol::JobSheetFilter filter;
    filter.gewerk = gewerk;
    clock.start();
    const zol::JobSheetResult r = zol::AuftragsDruckAnweisungen(session, jahr, woche, filter, true);
    zol::installPreviewPresenter(before);
    if (r.status != zol::JobSheetStatus::Done || preview.store.pageCount() == 0) {
        std::fprintf(stderr, "job sheets %s/%s (%s) gave no pages\n", qPrintable(woche), qPrintable(jahr),
                     qPrintable(gewerk));
        return false;
    }
    figure("jobsheets_orders", r.auftraege, "rows", 0);
    figure("jobsheets_pages", preview.store.pageCount(), "pages", 0);
    figure("jobsheets_first_page_s", preview.firstPage, "s");

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("jobsheets.pdf"));
    QElapsedTimer t;
    t.start();
    if (!zol::writePdf(preview.store, path, 1, preview.store.pageCount()))
        return false;
    const double s = t.nsecsElapsed() / 1e9;
    figure("jobsheets_pdf_s", s, "s");
    figure("jobsheets_pdf_pages_per_s", preview.store.pageCount() / s, "pages/s", 0);
    figure("jobsheets_pdf_mb", QFileInfo(path).size() / 1048576.0, "MB", 1);

    // Against Qt alone drawing the same texts at the same places.
    const zol::PageMetrics metrics(preview.store.format);
    const QFont fonts[2] = {metrics.font(false), metrics.font(true)};
    const RawPages raw = rawPages(preview.store, metrics);
    const double rawPdf = rawPdfSeconds(raw, fonts, preview.store.format.landscape, dir.filePath(QStringLiteral("raw.pdf")));
    const double ours = preview.composed + s;   // from the button to the PDF written
    figure("jobsheets_s", ours, "s");
    figure("jobsheets_raw_pdf_s", rawPdf, "s");
    figure("jobsheets_ratio_to_raw", rawPdf / ours, "x", 2);
    const double rawFirst = rawPreviewSeconds(raw.front(), fonts, metrics.Width(), metrics.Height());
    figure("jobsheets_raw_first_page_s", rawFirst, "s");
    figure("jobsheets_first_page_ratio_to_raw", rawFirst / preview.firstPage, "x", 2);
    return true;
}

}
