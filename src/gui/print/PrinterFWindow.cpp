#include "PrinterFWindow.h"
#include "ui_PrinterFWindow.h"
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>
#include <cmath>

namespace zol {

namespace {
// The page moves against its frame in steps of this many twips.
constexpr double ScrollStep = 250;
}

PreviewPage::PreviewPage(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picVisible"));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

double PreviewPage::scale() const
{
    // Some screens report no or a nonsensical size; then the logical
    // resolution stands in for the physical one.
    int dpi = physicalDpiX();
    if (dpi < 50 || dpi > 600)
        dpi = logicalDpiX();
    return dpi / TwipsPerInch;
}

void PreviewPage::setPage(const PageMetrics *metrics, const PrintPage *page)
{
    m_metrics = metrics;
    m_page = page;
    if (m_metrics) {
        const double s = scale();
        resize(int(std::ceil(m_metrics->Width() * s)), int(std::ceil(m_metrics->Height() * s)));
    }
    update();
}

void PreviewPage::paintEvent(QPaintEvent *)
{
    ++m_paints;
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (!m_metrics || !m_page)
        return;
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(Qt::black);
    const double s = scale();
    painter.scale(s, s);
    painter.translate(PageMetrics::Margin, PageMetrics::Margin);
    renderPage(painter, *m_metrics, *m_page);
}

PrinterFWindow::PrinterFWindow(PrinterF &printer, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::PrinterFWindow>()), m_printer(printer)
{
    ui->setupUi(this);
    setModal(true);
    m_picVisible = new PreviewPage(ui->PicInnerFrame);
    if (m_printer.AktuelleSeite < 1)
        m_printer.AktuelleSeite = 1;

    connect(ui->cmdLeftLeft, &QToolButton::clicked, this, [this] { goTo(1); });
    connect(ui->cmdRightRight, &QToolButton::clicked, this, [this] { goTo(lastPage()); });
    connect(ui->cmdLeft, &QToolButton::clicked, this, [this] {
        if (shownPage() > 1)
            goTo(shownPage() - 1);
    });
    connect(ui->cmdRight, &QToolButton::clicked, this, [this] {
        if (shownPage() < lastPage())
            goTo(shownPage() + 1);
    });
    connect(ui->cmdDruckenVonBis, &QPushButton::clicked, this, &PrinterFWindow::cmdDruckenVonBis_Click);
    connect(ui->cmdPdf, &QPushButton::clicked, this, &PrinterFWindow::cmdPdf_Click);
    connect(ui->cmdAbbruch, &QPushButton::clicked, this, &QDialog::close);
    connect(ui->ScrollX, &QScrollBar::valueChanged, this, &PrinterFWindow::scrolled);
    connect(ui->ScrollY, &QScrollBar::valueChanged, this, &PrinterFWindow::scrolled);

    for (QObject *o : {static_cast<QObject *>(ui->txtSeite), static_cast<QObject *>(ui->txtSeiteVon),
                       static_cast<QObject *>(ui->txtSeiteBis), static_cast<QObject *>(ui->PicInnerFrame),
                       static_cast<QObject *>(m_picVisible)})
        o->installEventFilter(this);

    drawPage();
    ui->txtSeite->setText(QStringLiteral("1"));
    ui->txtSeiteVon->setText(QStringLiteral("1"));
    placeControls();
}

PrinterFWindow::~PrinterFWindow() = default;

void PrinterFWindow::drawPage()
{
    const int shown = qBound(1, shownPage(), lastPage());
    m_printer.AktuelleSeite = shown;
    ui->lblPosition->setText(QStringLiteral(" / ") + QString::number(lastPage()));
    // Numbers carry the leading blank of a positive number turned to text.
    const QString number = QStringLiteral(" ") + QString::number(shown);
    ui->txtSeite->setText(number);
    ui->txtSeiteBis->setText(number);
    m_picVisible->setPage(&m_printer.metrics(), &m_printer.store().page(shown));
    updateScrollRanges();
}

void PrinterFWindow::goTo(int page)
{
    m_printer.AktuelleSeite = page;
    drawPage();
}

void PrinterFWindow::beep()
{
    ++m_beeps;
    QApplication::beep();
}

void PrinterFWindow::pageFieldEnter()
{
    bool ok = false;
    const int n = ui->txtSeite->text().trimmed().toInt(&ok);
    if (!ok || n < 1 || n > lastPage()) {
        ui->txtSeite->setText(QStringLiteral(" ") + QString::number(shownPage()));
        beep();
        return;
    }
    goTo(n);
}

void PrinterFWindow::vonFieldEnter()
{
    bool ok = false;
    const int n = ui->txtSeiteVon->text().trimmed().toInt(&ok);
    if (!ok || n > lastPage()) {
        ui->txtSeiteVon->setText(QStringLiteral(" ") + QString::number(shownPage()));
        beep();
    }
}

void PrinterFWindow::fieldLeft(QLineEdit *field)
{
    bool ok = false;
    const int n = field->text().trimmed().toInt(&ok);
    QString corrected;
    if (!ok)
        corrected = field == ui->txtSeiteBis ? QString::number(shownPage()) : QStringLiteral("1");
    else if (n < 1)
        corrected = QStringLiteral("1");
    else if (n > lastPage())
        corrected = QString::number(lastPage());
    else
        return;
    field->setText(corrected);
    beep();
}

bool PrinterFWindow::eventFilter(QObject *watched, QEvent *event)
{
    auto *field = qobject_cast<QLineEdit *>(watched);
    if (field) {
        if (event->type() == QEvent::FocusIn) {
            QTimer::singleShot(0, field, &QLineEdit::selectAll);
        } else if (event->type() == QEvent::FocusOut) {
            fieldLeft(field);
        } else if (event->type() == QEvent::KeyPress) {
            auto *key = static_cast<QKeyEvent *>(event);
            if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
                if (field == ui->txtSeite)
                    pageFieldEnter();
                else if (field == ui->txtSeiteVon)
                    vonFieldEnter();
                return true;
            }
            const QString text = key->text();
            const bool character = !text.isEmpty() && key->key() != Qt::Key_Tab && key->key() != Qt::Key_Backtab
                && key->key() != Qt::Key_Escape && !(key->modifiers() & Qt::ControlModifier);
            if (character && key->key() != Qt::Key_Backspace && !(text.size() == 1 && text[0].isDigit()
                                                                    && text[0] <= QLatin1Char('9'))) {
                beep();
                return true;
            }
        }
        return QDialog::eventFilter(watched, event);
    }
    if ((watched == ui->PicInnerFrame || watched == m_picVisible) && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        QScrollBar *bar = nullptr;
        int step = 0;
        switch (key->key()) {
        case Qt::Key_Up: bar = ui->ScrollY; step = -1; break;
        case Qt::Key_Down: bar = ui->ScrollY; step = 1; break;
        case Qt::Key_Left: bar = ui->ScrollX; step = -1; break;
        case Qt::Key_Right: bar = ui->ScrollX; step = 1; break;
        default: break;
        }
        if (bar) {
            bar->setValue(qBound(bar->minimum(), bar->value() + step, bar->maximum()));
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void PrinterFWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (!isMinimized())
        placeControls();
}

void PrinterFWindow::placeControls()
{
    const double px = logicalDpiX() / TwipsPerInch;
    const QSize strip = ui->Frame1->sizeHint();
    setMinimumSize(strip.width() + int(200 * px), 3 * strip.height());
    ui->Frame1->setGeometry(qMax(0, (width() - strip.width()) / 2), 0, strip.width(), strip.height());
    const int margin = int(200 * px);
    const int top = strip.height() + int(100 * px);
    ui->picFrame->setGeometry(margin, top, qMax(0, width() - 2 * margin), qMax(0, height() - top - margin));
    const QRect inside = ui->picFrame->contentsRect();
    const int bar = ui->ScrollY->sizeHint().width();
    const int barH = ui->ScrollX->sizeHint().height();
    ui->PicInnerFrame->setGeometry(inside.x(), inside.y(), qMax(0, inside.width() - bar),
                                   qMax(0, inside.height() - barH));
    ui->ScrollY->setGeometry(inside.right() + 1 - bar, inside.y(), bar, qMax(0, inside.height() - barH));
    ui->ScrollX->setGeometry(inside.x(), inside.bottom() + 1 - barH, qMax(0, inside.width() - bar), barH);
    updateScrollRanges();
}

void PrinterFWindow::updateScrollRanges()
{
    const double step = ScrollStep * m_picVisible->scale();
    const QSize frame = ui->PicInnerFrame->size();
    const QSize pageSize = m_picVisible->size();
    ui->ScrollX->setRange(0, qMax(0, int(std::ceil((pageSize.width() - frame.width()) / step))));
    ui->ScrollY->setRange(0, qMax(0, int(std::ceil((pageSize.height() - frame.height()) / step))));
    ui->ScrollX->setPageStep(qMax(1, int(frame.width() / step)));
    ui->ScrollY->setPageStep(qMax(1, int(frame.height() / step)));
    scrolled();
}

void PrinterFWindow::scrolled()
{
    const double step = ScrollStep * m_picVisible->scale();
    const QSize frame = ui->PicInnerFrame->size();
    const QSize pageSize = m_picVisible->size();
    const int x = pageSize.width() < frame.width() ? (frame.width() - pageSize.width()) / 2
                                                   : -int(std::lround(step * ui->ScrollX->value()));
    const int y = pageSize.height() < frame.height() ? (frame.height() - pageSize.height()) / 2
                                                     : -int(std::lround(step * ui->ScrollY->value()));
    m_picVisible->move(x, y);
}

bool PrinterFWindow::takeRange(int &from, int &to)
{
    QString von = ui->txtSeiteVon->text();
    QString bis = ui->txtSeiteBis->text();
    const RangeCheck r = checkPrintRange(von, bis, shownPage(), lastPage());
    ui->txtSeiteVon->setText(von);
    ui->txtSeiteBis->setText(bis);
    from = r.from;
    to = r.to;
    return r.print;
}

void PrinterFWindow::cmdDruckenVonBis_Click()
{
    int from = 0, to = 0;
    if (!takeRange(from, to))
        return;
    QPrinter device(QPrinter::HighResolution);
    QPrintDialog dialog(&device, this);
    dialog.setWindowTitle(tr("Drucken"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    printRange(m_printer.store(), device.isValid() ? &device : nullptr, from, to);
    goTo(to);
}

void PrinterFWindow::cmdPdf_Click()
{
    int from = 0, to = 0;
    if (!takeRange(from, to))
        return;
    QString path = m_chooseFile ? m_chooseFile()
                                : QFileDialog::getSaveFileName(this, tr("PDF-Datei speichern"), QString(),
                                                               tr("PDF-Dateien (*.pdf)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".pdf");
    writePdf(m_printer.store(), path, from, to);
    goTo(to);
}

void PreviewWindowPresenter::showPreview(PrinterF &printer)
{
    PrinterFWindow window(printer, m_parent);
    window.exec();
}

void installPrinting(PrinterF &printer, const OptionState &options, QWidget *parent)
{
    static PreviewWindowPresenter presenter;
    static std::unique_ptr<QPrinter> device;
    presenter.setParent(parent);
    installPreviewPresenter(&presenter);
    printer.setOptionState(&options);
    if (!device)
        device = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer.setPrinter(device->isValid() ? device.get() : nullptr);
}

}
