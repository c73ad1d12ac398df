#include "support/TestSupport.h"
#include "gui/core/WindowState.h"
#include "zol/core/Settings.h"
#include <QWidget>
#include <QtTest>

using zoltest::TempData;

class TestWindowState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void saveAndRestore()
    {
        TempData d(false);
        const QString sec = QStringLiteral("Anna\\env\\Protokoll");
        const zol::WindowGeometry defaults{QRect(50, 60, 400, 300), 0};

        QWidget fresh;
        QCOMPARE(restoreWindowState(&fresh, sec, defaults), 0);
        QCOMPARE(fresh.size(), QSize(400, 300));

        QWidget w;
        w.resize(520, 410);
        w.move(30, 40);
        w.show();
        saveWindowState(&w, sec);
        w.showMaximized();
        saveWindowState(&w, sec);   // keeps the normal geometry, adds the state

        QWidget back;
        QCOMPARE(restoreWindowState(&back, sec, defaults), 2);
        QCOMPARE(back.size(), QSize(520, 410));
        QCOMPARE(back.pos(), QPoint(30, 40));
        QCOMPARE(zol::GetSetting(sec, QStringLiteral("WindowState")), QStringLiteral("2"));
    }
};

QTEST_MAIN(TestWindowState)
#include "tst_windowstate.moc"
