#pragma once
#include "zol/print/PrinterF.h"
#include <QDialog>
#include <functional>
#include <memory>

namespace Ui {
class PrinterFWindow;
}
class QLineEdit;

namespace zol {

// The page of the preview: the paper at its true size, redrawn from the
// store's items of one page.
class PreviewPage : public QWidget {
    Q_OBJECT
public:
    explicit PreviewPage(QWidget *parent = nullptr);
    void setPage(const PageMetrics *metrics, const PrintPage *page);
    // Screen pixels per twip: the page is shown at the size of the paper.
    double scale() const;
    int paints() const { return m_paints; }

protected:
    void paintEvent(QPaintEvent *) override;

private:
    const PageMetrics *m_metrics = nullptr;
    const PrintPage *m_page = nullptr;
    int m_paints = 0;
};

// The preview window of the print engine (objectName "PrinterF", title
// "Druck-Vorschau"): pages through the stored job and prints any range of
// it to a printer or into a PDF file, as often as wanted.
class PrinterFWindow : public QDialog {
    Q_OBJECT
public:
    explicit PrinterFWindow(PrinterF &printer, QWidget *parent = nullptr);
    ~PrinterFWindow() override;

    int lastPage() const { return m_printer.store().pageCount(); }
    int shownPage() const { return m_printer.AktuelleSeite; }
    int beeps() const { return m_beeps; }
    PreviewPage *page() const { return m_picVisible; }

    // Where the range goes; by default the print dialog and the file dialog.
    // Tests put their own here.
    void setPdfFileChooser(std::function<QString()> chooser) { m_chooseFile = std::move(chooser); }

    // Draws the shown page and fills the page fields.
    void drawPage();

protected:
    void resizeEvent(QResizeEvent *) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void goTo(int page);
    void beep();
    void pageFieldEnter();
    void vonFieldEnter();
    void fieldLeft(QLineEdit *field);
    void placeControls();
    void updateScrollRanges();
    void scrolled();
    bool takeRange(int &from, int &to);
    void cmdDruckenVonBis_Click();
    void cmdPdf_Click();

    std::unique_ptr<Ui::PrinterFWindow> ui;
    PrinterF &m_printer;
    PreviewPage *m_picVisible = nullptr;
    std::function<QString()> m_chooseFile;
    int m_beeps = 0;
};

// Shows the preview window modally for every job that ends in preview mode.
class PreviewWindowPresenter : public PreviewPresenter {
public:
    explicit PreviewWindowPresenter(QWidget *parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget *parent) { m_parent = parent; }
    void showPreview(PrinterF &printer) override;

private:
    QWidget *m_parent;
};

// Sets up printing for a session with windows: the engine reads the print
// format from the options, previews show in the preview window, and direct
// jobs go to the system's default printer; without one a job raises
// fault 484, which the report explains through printerErrors.
void installPrinting(PrinterF &printer, const OptionState &options, QWidget *parent);

}
