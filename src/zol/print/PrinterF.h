#pragma once
#include "PageMetrics.h"
#include "PageStore.h"
#include <QString>
#include <QStringList>
#include <memory>

class QPagedPaintDevice;

namespace zol {

class Fault;
class PrinterF;
struct OptionState;

// Whoever shows the stored pages when a report ends in preview mode: the
// preview window, or in batch runs and tests something that writes a PDF or
// keeps the pages. It returns when the user has closed the preview.
class PreviewPresenter {
public:
    virtual ~PreviewPresenter() = default;
    virtual void showPreview(PrinterF &printer) = 0;
};

// The print engine. A report sets Vorschau, calls InitPrinter, places texts
// with XPos, YPos and PrintString or PrintText, breaks pages with NewPage
// and ends with zeig. Positions and measures are twips throughout, counted
// from the top left of the printable area.
//
// Both modes keep the text items of every page; in direct mode the job goes
// to the printer device at zeig, in preview mode the preview presenter gets
// the store and can redraw or print any range of it again.
class PrinterF {
public:
    PrinterF();
    ~PrinterF();

    // True: pages are stored for preview. False: the job goes to the printer.
    bool Vorschau = false;

    // Number of the page being written, 1 for the first; 0 while no job is open.
    int Seite() const { return m_Seite; }
    // A report may count its sheets again, e.g. one sheet of its own per component
    // starts at 1; the pages of the store keep their order.
    void setSeite(int n) { if (m_Seite > 0 && n > 0) m_Seite = n; }
    // The page shown in the preview, 1-based; 0 outside the preview.
    int AktuelleSeite = 0;

    // Where the print format (DruckFormat: 1 portrait 8 pt, 2 landscape 9 pt) is read at InitPrinter.
    void setOptionState(const OptionState *options) { m_options = options; }
    // The printer of direct mode; the engine does not own it. None: InitPrinter
    // in direct mode raises fault 484.
    void setPrinter(QPagedPaintDevice *device) { m_printer = device; }
    QPagedPaintDevice *printer() const { return m_printer; }

    void InitPrinter();
    void NewPage();
    void XPos(double x) { m_CurrentX = x; }
    void YPos(double y) { m_CurrentY = y; }
    double CurrentX() const { return m_CurrentX; }
    double CurrentY() const { return m_CurrentY; }
    // Font.Bold of the printer object; stored with every item.
    void setBold(bool bold) { m_Bold = bold; }
    bool Bold() const { return m_Bold; }

    void PrintString(const QString &text);
    // Wraps a block (paragraphs cut at CR LF) into X2 - X1 at X1 from Y
    // downward, only if its lines are fewer than (Ymax - Y) / line height;
    // gives the number of lines in both cases. When printed, `text` holds
    // the last paragraph afterwards.
    int PrintText(QString &text, int X1, int X2, int Y, int Ymax, const QString &separators);
    // The lines PrintText would make of one paragraph in a column of that
    // width, without printing them.
    QStringList WrapText(const QString &text, double width, const QString &separators = QStringLiteral(" ")) const;
    // Fills from Y down to Ymax with blank lines at X; gives count plus the lines.
    int Print_UnterenRand(int count, int X, int unused, int Y, int Ymax);
    // Ends the job: to the printer in direct mode, to the preview presenter
    // in preview mode. Afterwards no job is open.
    void zeig();

    // Measuring with the job's font and the current bold flag.
    double TextWidth(const QString &text) const { return m_metrics->TextWidth(text, m_Bold); }
    double TextHeight(const QString & = QStringLiteral("O")) const { return m_metrics->TextHeight(m_Bold); }
    double Width() const { return m_metrics->Width(); }
    double Height() const { return m_metrics->Height(); }
    double ScaleWidth() const { return m_metrics->ScaleWidth(); }
    double ScaleHeight() const { return m_metrics->ScaleHeight(); }
    const PageMetrics &metrics() const { return *m_metrics; }

    // The stored pages: at least one, the last one being written.
    const PageStore &store() const { return m_store; }

    // The engine every report of the session uses.
    static PrinterF &instance();

private:
    void checkSeite() const;

    int m_Seite = 0;
    double m_CurrentX = 0;
    double m_CurrentY = 0;
    bool m_Bold = false;
    const OptionState *m_options = nullptr;
    QPagedPaintDevice *m_printer = nullptr;
    PageStore m_store;
    std::unique_ptr<PageMetrics> m_metrics;
};

void installPreviewPresenter(PreviewPresenter *presenter);
PreviewPresenter *installedPreviewPresenter();

// Explains a printer fault in the fault handler of a report. Gives 0 to
// repeat the faulty statement, 1 to go on behind it, 2 to give up, 3 to
// raise the fault again.
int printerErrors(const Fault &fault);

// Ends a report's job with zeig; a printer fault is explained by printerErrors
// and, on the user's word, the output is tried again (at most 100 times).
// False when the user gave up; a fault to raise again is thrown.
bool zeigMitWiederholung(PrinterF &printer);

// The check of the range fields before printing from the preview. Corrects
// the fields as the preview shows them and tells whether to print.
struct RangeCheck {
    bool print = false;
    int from = 0;
    int to = 0;
};
RangeCheck checkPrintRange(QString &von, QString &bis, int shownPage, int lastPage);

// A preview presenter for runs without windows: writes every page of the
// job into a PDF file.
class PdfPreviewPresenter : public PreviewPresenter {
public:
    // replaceExisting: the user agreed that an existing file is replaced.
    explicit PdfPreviewPresenter(QString path, bool replaceExisting = true)
        : m_path(std::move(path)), m_replace(replaceExisting) {}
    void showPreview(PrinterF &printer) override;
    bool written() const { return m_written; }
    int pages() const { return m_pages; }

private:
    QString m_path;
    bool m_replace;
    bool m_written = false;
    int m_pages = 0;
};

}

namespace zol {

// Sends a range of the store to a device, as the preview prints it: a
// printer fault is explained by printerErrors and, on its answer, the page
// range is tried again or given up; a fault that is no printer fault is
// shown with its number. True when every page went out.
bool printRange(const PageStore &store, QPagedPaintDevice *device, int from, int to);

}
