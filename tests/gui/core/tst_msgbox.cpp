#include "gui/core/GuiPresenter.h"
#include "gui/core/frmMsgBoxHOV.h"
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QtTest>

using namespace zol;

namespace {
const QStringList kButtons{"cmdOkay", "cmdCancelOkay", "cmdCancelCancel", "cmdYNYes", "cmdYNNo"};
const QStringList kImages{"imgInformation", "imgEmergency", "imgWarning", "imgQuestion"};

// Acts on the modal window once exec() is running.
void whenShown(std::function<void(QWidget *)> act)
{
    QTimer::singleShot(0, qApp, [act] {
        QWidget *w = QApplication::activeModalWidget();
        QVERIFY(w);
        act(w);
    });
}
}

class TestMsgBox : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void styleShowsItsButtonsAndImage_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QString>("image");
        QTest::newRow("0") << 0 << QStringList{"cmdOkay"} << QStringList{"&OK"} << "imgInformation";
        QTest::newRow("16") << 16 << QStringList{"cmdOkay"} << QStringList{"&OK"} << "imgEmergency";
        QTest::newRow("48") << 48 << QStringList{"cmdOkay"} << QStringList{"&OK"} << "imgWarning";
        QTest::newRow("1") << 1 << QStringList{"cmdCancelOkay", "cmdCancelCancel"} << QStringList{"O&K", "&Abbrechen"}
                           << "imgQuestion";
        QTest::newRow("4") << 4 << QStringList{"cmdYNYes", "cmdYNNo"} << QStringList{"&Ja", "&Nein"} << "imgQuestion";
    }
    void styleShowsItsButtonsAndImage()
    {
        QFETCH(int, style);
        QFETCH(QStringList, buttons);
        QFETCH(QStringList, captions);
        QFETCH(QString, image);
        frmMsgBoxHOV box;
        box.setMessage(QStringLiteral("Soll die Komponente mit allen Anweisungen wirklich gelöscht werden?"), style);
        box.show();
        QCOMPARE(box.windowTitle(), QStringLiteral("ZOL"));
        QCOMPARE(box.findChild<QLabel *>("lblMessageText")->text(),
                 QStringLiteral("Soll die Komponente mit allen Anweisungen wirklich gelöscht werden?"));
        for (const QString &name : kButtons) {
            auto *b = box.findChild<QPushButton *>(name);
            QVERIFY2(b, qPrintable(name));
            QCOMPARE(b->isVisible(), buttons.contains(name));
            if (buttons.contains(name))
                QCOMPARE(b->text(), captions.at(buttons.indexOf(name)));
        }
        for (const QString &name : kImages) {
            auto *img = box.findChild<QLabel *>(name);
            QVERIFY2(img, qPrintable(name));
            QCOMPARE(img->isVisible(), name == image);
            QVERIFY(!img->pixmap().isNull());
        }
        QCOMPARE(box.findChild<QPushButton *>(buttons.first())->isDefault(), true);
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOT_DIR"))
            box.grab().save(qEnvironmentVariable("ZOL_SCREENSHOT_DIR") + QStringLiteral("/frmMsgBoxHOV_%1.png").arg(style));
    }

    void buttonGivesItsAnswer_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("answer");
        QTest::newRow("OK of 0") << 0 << "cmdOkay" << 1;
        QTest::newRow("OK of 16") << 16 << "cmdOkay" << 1;
        QTest::newRow("OK of 48") << 48 << "cmdOkay" << 1;
        QTest::newRow("OK of 1") << 1 << "cmdCancelOkay" << 1;
        QTest::newRow("Abbrechen of 1") << 1 << "cmdCancelCancel" << 2;
        QTest::newRow("Ja") << 4 << "cmdYNYes" << 6;
        QTest::newRow("Nein") << 4 << "cmdYNNo" << 7;
    }
    void buttonGivesItsAnswer()
    {
        QFETCH(int, style);
        QFETCH(QString, button);
        QFETCH(int, answer);
        GuiPresenter presenter;
        whenShown([button](QWidget *w) {
            QCOMPARE(w->objectName(), QStringLiteral("frmMsgBoxHOV"));
            QTest::mouseClick(w->findChild<QPushButton *>(button), Qt::LeftButton);
        });
        QCOMPARE(ZeigeMeldung(QStringLiteral("Text"), style), answer);
    }

    void closingByTheFrame_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("closes");
        QTest::newRow("message") << 48 << 1 << true;
        QTest::newRow("Ja/Nein") << 4 << 7 << true;
        QTest::newRow("OK/Abbrechen stays") << 1 << 2 << false;
    }
    void closingByTheFrame()
    {
        QFETCH(int, style);
        QFETCH(int, answer);
        QFETCH(bool, closes);
        frmMsgBoxHOV box;
        bool closed = false;
        whenShown([&](QWidget *w) {
            w->close();
            QTest::keyClick(w, Qt::Key_Escape);
            closed = !w->isVisible();
            if (!closed)   // only its own button ends the OK/Cancel question
                QTest::mouseClick(w->findChild<QPushButton *>("cmdCancelCancel"), Qt::LeftButton);
        });
        QCOMPARE(box.zeig(QStringLiteral("Text"), style), answer);
        QCOMPARE(closed, closes);
    }

    void longTextMakesTheWindowTaller()
    {
        frmMsgBoxHOV box;
        box.setMessage(QStringLiteral("Kurz"), 0);
        const QSize small = box.size();
        QStringList lines;
        for (int i = 1; i <= 15; ++i)
            lines << QStringLiteral("Zeile %1: Die Komponente kann nicht gelöscht werden, weil noch Aufträge bestehen.").arg(i);
        box.setMessage(lines.join(QLatin1Char('\n')), 48);
        QVERIFY(box.height() > small.height() + 10 * box.fontMetrics().lineSpacing());
        QVERIFY(box.height() <= box.screen()->availableGeometry().height());
        box.show();
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOT_DIR"))
            box.grab().save(qEnvironmentVariable("ZOL_SCREENSHOT_DIR") + QStringLiteral("/frmMsgBoxHOV_long.png"));

        // Far beyond the screen: the window stops growing and the text scrolls.
        box.setMessage(QString(lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).repeated(20), 0);
        QVERIFY(box.height() <= box.screen()->availableGeometry().height());
        QCoreApplication::processEvents();
        QVERIFY(box.findChild<QScrollArea *>("scrMessageText")->verticalScrollBar()->maximum() > 0);
    }

    void otherStyleUsesThePlatformBox()
    {
        GuiPresenter presenter;
        QString title, text;
        whenShown([&](QWidget *w) {
            auto *mb = qobject_cast<QMessageBox *>(w);
            QVERIFY(mb);
            title = mb->windowTitle();
            text = mb->text();
            mb->button(QMessageBox::No)->click();
        });
        QCOMPARE(ZeigeMeldung(QStringLiteral("Weiter?"), 32 + 3), 7);
        QCOMPARE(title, QStringLiteral("ZOL"));
        QCOMPARE(text, QStringLiteral("Weiter?"));
    }
};

QTEST_MAIN(TestMsgBox)
#include "tst_msgbox.moc"
