#include "gui/core/frmFirstTime.h"
#include "support/GuiSession.h"
#include <QDesktopServices>
#include <QFile>
#include <QPushButton>
#include <QUrl>
#include <QtTest>

using zoltest::GuiSession;

// Stands in for the desktop's viewer: takes every file URL handed to it.
class Viewer : public QObject {
    Q_OBJECT
public:
    Viewer() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Viewer() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QStringList opened;
public slots:
    void open(const QUrl &url) { opened << url.toLocalFile(); }
};

class TestManual : public QObject {
    Q_OBJECT
private slots:
    // "Dokumentation (PDF)" and the first-time window's help both hand the
    // manual to the desktop's viewer; without one to find, the user is told.
    void helpOpensTheManual()
    {
        GuiSession s;
        Viewer viewer;
        QVERIFY(s.login("Meister"));

        auto missing = s.trigger("mnuHelpContents");
        QCOMPARE(missing.messages,
                 QStringList{"Die Dokumentationsdatei ZOL.PDF existiert nicht oder konnte nicht geöffnet werden"});
        QVERIFY(viewer.opened.isEmpty());

        const QString manual = s.dir() + "/ZOL.PDF";
        QFile f(manual);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        auto shown = s.trigger("mnuHelpContents");
        QVERIFY(shown.messages.isEmpty());
        QCOMPARE(viewer.opened, QStringList{manual});

        // The first-time window's "Hilfe" opens the same file.
        frmFirstTime *first = s.firstTime();
        QVERIFY(first);
        first->findChild<QPushButton *>("Command1")->click();
        QCOMPARE(viewer.opened, (QStringList{manual, manual}));
    }
};

QTEST_MAIN(TestManual)
#include "tst_manual.moc"
