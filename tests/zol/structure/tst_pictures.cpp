#include "zol/core/Messages.h"
#include "zol/structure/Pictures.h"
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace zol;

class TestPictures : public QObject {
    Q_OBJECT

    static void touch(const QString &dir, const QString &name)
    {
        QFile f(dir + QLatin1Char('/') + name);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("x");
    }

private Q_SLOTS:
    void lookupOrder_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("found");
        QTest::newRow("JPG before BMP") << QStringList{"ZOL_B01.BMP", "ZOL_B01.JPG"} << 1 << "ZOL_B01.JPG";
        QTest::newRow("BMP before PNG") << QStringList{"ZOL_B02.PNG", "ZOL_B02.BMP"} << 2 << "ZOL_B02.BMP";
        QTest::newRow("PNG alone") << QStringList{"ZOL_B09.PNG"} << 9 << "ZOL_B09.PNG";
        QTest::newRow("lower case") << QStringList{"ZOL_B03.png", "ZOL_B03.bmp"} << 3 << "ZOL_B03.bmp";
        QTest::newRow("other slot's file") << QStringList{"ZOL_B01.JPG"} << 4 << "";
        QTest::newRow("WMF is not shown") << QStringList{"ZOL_B05.WMF"} << 5 << "";
        QTest::newRow("slot 10 does not exist") << QStringList{"ZOL_B010.JPG"} << 10 << "";
    }
    void lookupOrder()
    {
        QFETCH(QStringList, files);
        QFETCH(int, slot);
        QFETCH(QString, found);
        QTemporaryDir dir;
        for (const QString &f : files)
            touch(dir.path(), f);
        const QString path = bildDatei(dir.path(), slot);
        QCOMPARE(path.isEmpty() ? QString() : QFileInfo(path).fileName(), found);
    }

    void missingPictureMessage()
    {
        QTemporaryDir dir;
        ScriptedPresenter p;
        QVERIFY(BildSuchen(dir.path(), 1).isEmpty());
        QVERIFY(BildSuchen(dir.path(), 7).isEmpty());
        QCOMPARE(p.texts(),
                 (QStringList{"Die Datei ZOL_B01 wurde im aktuellen Verzeichnis mit keinem der Dateitypen JPG, BMP oder PNG gefunden",
                              "Die Datei ZOL_B07 wurde im aktuellen Verzeichnis mit keinem der Dateitypen JPG, BMP oder PNG gefunden"}));
        QCOMPARE(p.lastStyle(), Style::Exclamation);
        touch(dir.path(), QStringLiteral("ZOL_B07.JPG"));
        p.clear();
        QVERIFY(!BildSuchen(dir.path(), 7).isEmpty());
        QVERIFY(p.texts().isEmpty());
    }

    void windowPlacePerSlotAndUser()
    {
        QCOMPARE(bildSection(QStringLiteral("Hans"), 3), QStringLiteral("Hans\\env\\Bildanzeige03"));
        // 500 twips from the screen's corner, in the pixels every window place is kept in.
        QCOMPARE(bildFensterVorgabe().rect.topLeft(), QPoint(33, 33));
    }
};

QTEST_GUILESS_MAIN(TestPictures)
#include "tst_pictures.moc"
