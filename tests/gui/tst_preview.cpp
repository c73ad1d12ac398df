#include "support/TestSupport.h"
#include "gui/print/PrinterFWindow.h"
#include "zol/core/Fault.h"
#include "zol/core/Messages.h"
#include "zol/core/Session.h"
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace zol;

class TestPreview : public QObject {
    Q_OBJECT

    OptionState options;
    PrinterF printer;

    // A job of five pages, each named by its number.
    void compose()
    {
        printer.setOptionState(&options);
        printer.Vorschau = true;
        printer.InitPrinter();
        for (int n = 1; n <= 5; ++n) {
            if (n > 1)
                printer.NewPage();
            printer.XPos(100);
            printer.YPos(100);
            printer.setBold(true);
            printer.PrintString(QStringLiteral("Seite Nummer %1").arg(n));
            printer.setBold(false);
            QString text = QStringLiteral("Sichtprüfung der Dichtungen und Schrauben auf festen Sitz, Ölstand "
                                          "prüfen und bei Bedarf nachfüllen.");
            printer.PrintText(text, 100, 4000, 400, int(printer.ScaleHeight()), QStringLiteral(" "));
        }
        printer.AktuelleSeite = 1;
    }

    template<typename T>
    static T *child(QWidget &w, const char *name)
    {
        T *c = w.findChild<T *>(QLatin1String(name));
        if (!c)
            qFatal("control %s missing", name);
        return c;
    }

    static QString field(QWidget &w, const char *name) { return child<QLineEdit>(w, name)->text().trimmed(); }

    static void enter(QWidget &w, const char *name, const QString &text)
    {
        QLineEdit *e = child<QLineEdit>(w, name);
        e->setFocus();
        e->selectAll();
        QTest::keyClicks(e, text);
        QTest::keyClick(e, Qt::Key_Return);
    }

private Q_SLOTS:
    void captionsAndControls()
    {
        compose();
        PrinterFWindow w(printer);
        QCOMPARE(w.objectName(), QStringLiteral("PrinterF"));
        QCOMPARE(w.windowTitle(), QStringLiteral("Druck-Vorschau"));
        QVERIFY(w.isModal());
        QCOMPARE(child<QWidget>(w, "Frame1")->property("title").toString(), QStringLiteral("Drucken folgender Seiten"));
        QCOMPARE(child<QToolButton>(w, "cmdLeftLeft")->toolTip(), QStringLiteral("erste Seite"));
        QCOMPARE(child<QToolButton>(w, "cmdLeft")->toolTip(), QStringLiteral("vorige Seite"));
        QCOMPARE(child<QToolButton>(w, "cmdRight")->toolTip(), QStringLiteral("nächste Seite"));
        QCOMPARE(child<QToolButton>(w, "cmdRightRight")->toolTip(), QStringLiteral("letzte Seite"));
        QCOMPARE(child<QLabel>(w, "lblVon")->text(), QStringLiteral("&von"));
        QCOMPARE(child<QLabel>(w, "lblBis")->text(), QStringLiteral("&bis"));
        QCOMPARE(child<QPushButton>(w, "cmdDruckenVonBis")->text(), QStringLiteral("&Drucken"));
        QCOMPARE(child<QPushButton>(w, "cmdAbbruch")->text(), QStringLiteral("&Abbruch"));
        for (const char *name : {"picFrame", "PicInnerFrame", "picVisible", "ScrollX", "ScrollY"})
            QVERIFY2(w.findChild<QWidget *>(QLatin1String(name)), name);
        QCOMPARE(child<QLabel>(w, "lblPosition")->text(), QStringLiteral(" / 5"));
        QCOMPARE(field(w, "txtSeite"), QStringLiteral("1"));
        QCOMPARE(field(w, "txtSeiteVon"), QStringLiteral("1"));
    }

    void paging()
    {
        compose();
        PrinterFWindow w(printer);
        w.resize(900, 700);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));

        // A page change costs one redraw of one page.
        QCoreApplication::processEvents();
        const int before = w.page()->paints();
        QTest::mouseClick(child<QToolButton>(w, "cmdRight"), Qt::LeftButton);
        QCoreApplication::processEvents();
        QCOMPARE(w.page()->paints(), before + 1);
        QCOMPARE(w.shownPage(), 2);
        QCOMPARE(field(w, "txtSeite"), QStringLiteral("2"));
        QCOMPARE(field(w, "txtSeiteBis"), QStringLiteral("2"));
        QTest::mouseClick(child<QToolButton>(w, "cmdRightRight"), Qt::LeftButton);
        QCOMPARE(w.shownPage(), 5);
        // Past the last page nothing moves and nothing is redrawn.
        QCoreApplication::processEvents();
        const int paints = w.page()->paints();
        QTest::mouseClick(child<QToolButton>(w, "cmdRight"), Qt::LeftButton);
        QCoreApplication::processEvents();
        QCOMPARE(w.shownPage(), 5);
        QCOMPARE(w.page()->paints(), paints);
        QTest::mouseClick(child<QToolButton>(w, "cmdLeft"), Qt::LeftButton);
        QCOMPARE(w.shownPage(), 4);
        QTest::mouseClick(child<QToolButton>(w, "cmdLeftLeft"), Qt::LeftButton);
        QCOMPARE(w.shownPage(), 1);
        QTest::mouseClick(child<QToolButton>(w, "cmdLeft"), Qt::LeftButton);
        QCOMPARE(w.shownPage(), 1);

        // The page field: a valid number shows that page; one out of range
        // restores the shown number with a beep; letters are swallowed.
        enter(w, "txtSeite", QStringLiteral("3"));
        QCOMPARE(w.shownPage(), 3);
        QCOMPARE(field(w, "txtSeiteBis"), QStringLiteral("3"));
        int beeps = w.beeps();
        enter(w, "txtSeite", QStringLiteral("9"));
        QCOMPARE(w.shownPage(), 3);
        QCOMPARE(field(w, "txtSeite"), QStringLiteral("3"));
        QCOMPARE(w.beeps(), beeps + 1);
        enter(w, "txtSeite", QStringLiteral("0"));
        QCOMPARE(field(w, "txtSeite"), QStringLiteral("3"));
        QCOMPARE(w.beeps(), beeps + 2);
        enter(w, "txtSeite", QStringLiteral("4x"));
        QCOMPARE(w.beeps(), beeps + 3);
        QCOMPARE(w.shownPage(), 4);

        // Leaving a range field corrects it with a beep.
        beeps = w.beeps();
        QLineEdit *bis = child<QLineEdit>(w, "txtSeiteBis");
        bis->setFocus();
        bis->setText(QStringLiteral("12"));
        child<QLineEdit>(w, "txtSeiteVon")->setFocus();
        QCOMPARE(bis->text(), QStringLiteral("5"));
        QCOMPARE(w.beeps(), beeps + 1);
        QLineEdit *von = child<QLineEdit>(w, "txtSeiteVon");
        von->setText(QString());
        bis->setFocus();
        QCOMPARE(von->text(), QStringLiteral("1"));
        QCOMPARE(w.beeps(), beeps + 2);

        // Arrow keys scroll the page inside its frame.
        QScrollBar *sy = child<QScrollBar>(w, "ScrollY");
        QVERIFY(sy->maximum() > 0);
        const int top = w.page()->y();
        w.page()->setFocus();
        QTest::keyClick(w.page(), Qt::Key_Down);
        QCOMPARE(sy->value(), 1);
        QVERIFY(w.page()->y() < top);
        QTest::keyClick(w.page(), Qt::Key_Up);
        QTest::keyClick(w.page(), Qt::Key_Up);
        QCOMPARE(sy->value(), 0);

        // The page has the paper's size.
        const double inches = w.page()->width() / double(w.page()->physicalDpiX());
        QVERIFY(w.page()->physicalDpiX() < 50 || qAbs(inches - 210 / 25.4) < 0.05);

        w.grab().save(QDir::temp().filePath(QStringLiteral("zol-preview.png")));
    }

    void printsRangesToPdf()
    {
        compose();
        PrinterFWindow w(printer);
        QTemporaryDir dir;
        QString next = dir.filePath(QStringLiteral("bereich"));
        w.setPdfFileChooser([&] { return next; });
        w.show();

        child<QLineEdit>(w, "txtSeiteVon")->setText(QStringLiteral("2"));
        child<QLineEdit>(w, "txtSeiteBis")->setText(QStringLiteral("4"));
        QTest::mouseClick(child<QPushButton>(w, "cmdPdf"), Qt::LeftButton);
        QVERIFY(QFile::exists(next + QStringLiteral(".pdf")));
        QCOMPARE(w.shownPage(), 4);   // the last page printed is shown
        QVERIFY(w.isVisible());

        auto text = [](const QString &path) { return zoltest::pdfText(path); };
        QString t = text(next + QStringLiteral(".pdf"));
        QCOMPARE(t.count(QLatin1Char('\f')), 3);
        QVERIFY(t.contains(QStringLiteral("Seite Nummer 2")));
        QVERIFY(t.contains(QStringLiteral("Seite Nummer 4")));
        QVERIFY(!t.contains(QStringLiteral("Seite Nummer 1")));
        QVERIFY(!t.contains(QStringLiteral("Seite Nummer 5")));

        // The same store again, with bis above the last page: corrected, not refused.
        next = dir.filePath(QStringLiteral("rest.pdf"));
        child<QLineEdit>(w, "txtSeiteVon")->setText(QStringLiteral("5"));
        child<QLineEdit>(w, "txtSeiteBis")->setText(QStringLiteral("8"));
        QTest::mouseClick(child<QPushButton>(w, "cmdPdf"), Qt::LeftButton);
        QCOMPARE(field(w, "txtSeiteBis"), QStringLiteral("5"));
        t = text(next);
        QCOMPARE(t.count(QLatin1Char('\f')), 1);
        QVERIFY(t.contains(QStringLiteral("Seite Nummer 5")));

        // von above bis prints nothing.
        next = dir.filePath(QStringLiteral("nichts.pdf"));
        child<QLineEdit>(w, "txtSeiteVon")->setText(QStringLiteral("4"));
        child<QLineEdit>(w, "txtSeiteBis")->setText(QStringLiteral("2"));
        QTest::mouseClick(child<QPushButton>(w, "cmdPdf"), Qt::LeftButton);
        QVERIFY(!QFile::exists(next));

        // An unwritable place: the message, no file, the window stays.
        ScriptedPresenter msg;
        next = dir.filePath(QStringLiteral("fehlt/x.pdf"));
        child<QLineEdit>(w, "txtSeiteVon")->setText(QStringLiteral("1"));
        child<QLineEdit>(w, "txtSeiteBis")->setText(QStringLiteral("2"));
        QTest::mouseClick(child<QPushButton>(w, "cmdPdf"), Qt::LeftButton);
        QCOMPARE(msg.shown().size(), 1);
        QCOMPARE(msg.lastStyle(), 16);
        QVERIFY(!QFile::exists(next));
        QVERIFY(w.isVisible());

        QTest::mouseClick(child<QPushButton>(w, "cmdAbbruch"), Qt::LeftButton);
        QVERIFY(!w.isVisible());
    }

    void zeigShowsTheWindowAndResets()
    {
        installPrinting(printer, options, nullptr);
        compose();
        bool seen = false;
        QTimer::singleShot(0, this, [&] {
            auto *w = qobject_cast<PrinterFWindow *>(QApplication::activeModalWidget());
            QVERIFY(w);
            seen = w->lastPage() == 5 && w->shownPage() == 1;
            w->close();
        });
        printer.zeig();
        installPreviewPresenter(nullptr);
        QVERIFY(seen);
        QCOMPARE(printer.Seite(), 0);
        QCOMPARE(printer.store().pageCount(), 1);

        // A machine without a printer: a direct job is a printer fault, not a crash.
        installPrinting(printer, options, nullptr);
        if (!printer.printer()) {
            ScriptedPresenter msg;
            printer.Vorschau = false;
            try {
                printer.InitPrinter();
                QFAIL("a job without a printer was opened");
            } catch (const Fault &f) {
                QCOMPARE(printerErrors(f), 2);
            }
            QCOMPARE(msg.texts(), QStringList{QStringLiteral("Der Druckertreiber ist nicht verfügbar")});
        }
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
