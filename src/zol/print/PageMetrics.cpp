#include "PageMetrics.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/OutputFile.h"
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>

namespace zol {

namespace {

const char *const FontDir = "/usr/share/fonts/truetype/dejavu/";

QString loadFamily()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        throw Fault(484, QStringLiteral("Der Druckertreiber ist nicht verfügbar"));
    QString family;
    for (const char *file : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"}) {
        const int id = QFontDatabase::addApplicationFont(QLatin1String(FontDir) + QLatin1String(file));
        if (id >= 0 && family.isEmpty()) {
            const QStringList families = QFontDatabase::applicationFontFamilies(id);
            if (!families.isEmpty())
                family = families.first();
        }
    }
    // Without the files the installed family of the same name is taken.
    return family.isEmpty() ? QStringLiteral("DejaVu Sans") : family;
}

}

QString PageMetrics::fontFamily()
{
    static const QString family = loadFamily();
    return family;
}

PageMetrics::PageMetrics(const JobFormat &format) : m_format(format)
{
    const QString family = fontFamily();
    for (int b = 0; b < 2; ++b) {
        QFont &f = m_font[b];
        f.setFamily(family);
        f.setPixelSize(qRound(m_format.pointSize * TwipsPerPoint));
        f.setBold(b == 1);
        f.setKerning(false);
        f.setHintingPreference(QFont::PreferNoHinting);
        f.setStyleStrategy(QFont::StyleStrategy(QFont::PreferOutline | QFont::PreferMatch));
        const QFontMetricsF fm(f);
        m_height[b] = fm.height();
        m_ascent[b] = fm.ascent();
        for (int c = 0; c < 256; ++c)
            m_latin[b][size_t(c)] = float(fm.horizontalAdvance(QChar(c)));
    }
}

double PageMetrics::charWidth(QChar c, bool bold) const
{
    if (c.unicode() < 256)
        return m_latin[bold][c.unicode()];
    auto it = m_other[bold].constFind(c);
    if (it != m_other[bold].constEnd())
        return *it;
    const double w = QFontMetricsF(m_font[bold]).horizontalAdvance(c);
    m_other[bold].insert(c, w);
    return w;
}

double PageMetrics::TextWidth(const QString &text, bool bold) const
{
    double w = 0;
    for (QChar c : text)
        w += charWidth(c, bold);
    return w;
}

qsizetype PageMetrics::fittingLength(const QString &text, double width, bool bold) const
{
    double w = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        w += charWidth(text.at(i), bold);
        if (w > width)
            return i;
    }
    return text.size();
}

void renderPage(QPainter &painter, const PageMetrics &metrics, const PrintPage &page)
{
    int bold = -1;
    for (const PrintItem &item : page.items) {
        // Blank items fill a page to its bottom; they leave no ink.
        if (std::all_of(item.Text.cbegin(), item.Text.cend(), [](QChar c) { return c.isSpace(); }))
            continue;
        if (int(item.Bold) != bold) {
            bold = item.Bold;
            painter.setFont(metrics.font(item.Bold));
        }
        painter.drawText(QPointF(item.X, item.Y + metrics.ascent(item.Bold)), item.Text);
    }
}

void printPages(const PageStore &store, QPagedPaintDevice *device, int from, int to)
{
    if (!device)
        throw Fault(484, QStringLiteral("Der Druckertreiber ist nicht verfügbar"));
    from = qMax(from, 1);
    to = qMin(to, store.pageCount());
    const PageMetrics metrics(store.format);
    const QPageLayout layout(QPageSize(QPageSize::A4),
                             store.format.landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                             QMarginsF(PageMetrics::Margin, PageMetrics::Margin, PageMetrics::Margin,
                                       PageMetrics::Margin) / TwipsPerPoint,
                             QPageLayout::Point);
    if (!device->setPageLayout(layout)) {
        // A printer with wider unprintable edges keeps its own margins.
        device->setPageSize(QPageSize(QPageSize::A4));
        device->setPageOrientation(layout.orientation());
    }
    QPainter painter;
    if (!painter.begin(device))
        throw Fault(482, QStringLiteral("Es liegt ein Druckerfehler vor. Bitte überprüfen Sie die "
                                        "Druckereinstellungen und ihren Drucker auf Fehler"));
    painter.scale(device->logicalDpiX() / TwipsPerInch, device->logicalDpiY() / TwipsPerInch);
    for (int n = from; n <= to; ++n) {
        if (n > from && !device->newPage()) {
            painter.end();
            throw Fault(482, QStringLiteral("Es liegt ein Druckerfehler vor. Bitte überprüfen Sie die "
                                            "Druckereinstellungen und ihren Drucker auf Fehler"));
        }
        renderPage(painter, metrics, store.page(n));
    }
    painter.end();
}

bool writePdf(const PageStore &store, const QString &path, int from, int to, bool replaceExisting)
{
    try {
        OutputFile out(path, replaceExisting ? OutputFile::ReplaceExisting : OutputFile::KeepExisting);
        {
            QPdfWriter writer(&out.device());
            writer.setResolution(int(TwipsPerInch));
            writer.setCreator(QStringLiteral("ZOL"));
            writer.setTitle(QFileInfo(path).completeBaseName());
            printPages(store, &writer, from, to);
        }
        out.commit();
        return true;
    } catch (const OutputRefused &r) {
        ZeigeMeldung(r.description(), Style::Exclamation);
    } catch (const Fault &f) {
        ZeigeMeldung(f.number() == FaultNo::CannotWrite
                         ? f.description()
                         : QStringLiteral("Die Datei '%1' kann nicht geschrieben werden: %2")
                               .arg(QDir::toNativeSeparators(path), f.description()),
                     Style::Critical);
    }
    return false;
}

}
