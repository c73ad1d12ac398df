#pragma once
#include "PageStore.h"
#include <QFont>
#include <QHash>
#include <QString>
#include <array>

class QPainter;
class QPagedPaintDevice;

namespace zol {

constexpr double TwipsPerInch = 1440.0;
constexpr double TwipsPerPoint = 20.0;

// The measuring device of a job: the job's font and its paper, answering
// TextWidth and TextHeight in twips. It needs no window and no printer, so
// the same store is laid out alike on screen, in a PDF and on paper.
//
// Every job prints in DejaVu Sans (Debian: fonts-dejavu-core), loaded from
// its file so the family is exact and the PDF can embed it. Kerning is off,
// so the width of a text is the sum of its characters' widths and the
// drawn text is as wide as it was measured.
class PageMetrics {
public:
    explicit PageMetrics(const JobFormat &format = {});

    static QString fontFamily();
    // A4 with a margin of a quarter inch all round, the usual unprintable
    // edge of a page printer.
    static constexpr double PaperShort = 11906;   // 210 mm
    static constexpr double PaperLong = 16838;    // 297 mm
    static constexpr double Margin = 360;

    const JobFormat &format() const { return m_format; }
    double Width() const { return m_format.landscape ? PaperLong : PaperShort; }
    double Height() const { return m_format.landscape ? PaperShort : PaperLong; }
    double ScaleWidth() const { return Width() - 2 * Margin; }
    double ScaleHeight() const { return Height() - 2 * Margin; }

    double TextWidth(const QString &text, bool bold = false) const;
    // The length of the longest start of a text that is at most width wide.
    qsizetype fittingLength(const QString &text, double width, bool bold = false) const;
    double charWidth(QChar c, bool bold) const;
    // The height of a line of the job's font; reports use TextHeight("O").
    double TextHeight(bool bold = false) const { return m_height[bold]; }
    double ascent(bool bold) const { return m_ascent[bold]; }
    // The font to draw with, sized in twips: a painter scaled to twips draws
    // it at the job's point size.
    const QFont &font(bool bold) const { return m_font[bold]; }

private:
    JobFormat m_format;
    QFont m_font[2];
    double m_height[2];
    double m_ascent[2];
    std::array<float, 256> m_latin[2];
    mutable QHash<QChar, double> m_other[2];
};

// Draws one page on a painter whose coordinates are twips from the top left
// of the printable area.
void renderPage(QPainter &painter, const PageMetrics &metrics, const PrintPage &page);

// Sends pages from..to (1-based, inclusive) of the store to a device: a
// printer or a PDF writer. A device that cannot be opened or cannot start a
// page raises Fault 482.
void printPages(const PageStore &store, QPagedPaintDevice *device, int from, int to);

// Writes pages from..to into a PDF file through OutputFile: never over a data
// file or an open file, beside its place under a temporary name that takes
// the file's name only when complete. An existing file is replaced only with
// replaceExisting (the user agreed, as a save dialog asks). On failure or
// refusal the user is told and false comes back.
bool writePdf(const PageStore &store, const QString &path, int from, int to, bool replaceExisting = true);

}
