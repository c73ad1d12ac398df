#include "Figures.h"
#include "JobSheetBench.h"
#include "zol/core/Session.h"
#include "zol/planning/JobSheets.h"
#include "zol/print/PageMetrics.h"
#include "zol/print/PrinterF.h"
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <cstdio>

namespace zolbench {

namespace {

// Stands in for the preview window: draws page 1 as the window would at
// about screen size, then keeps the pages for the PDF.
class TimingPreview : public zol::PreviewPresenter {
public:
    explicit TimingPreview(const QElapsedTimer &clock) : m_clock(clock) {}
    void showPreview(zol::PrinterF &p) override
    {
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
    double firstPage = -1;
    zol::PageStore store;

private:
    const QElapsedTimer &m_clock;
};

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
    return true;
}

}
