#include "zol/core/BatchPresenter.h"
#include <QBuffer>
#include <QtTest>

using namespace zol;

class TestBatchPresenter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void answers_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<bool>("yes");
        QTest::addColumn<bool>("interactive");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("exit");
        QTest::newRow("yes flag, Ja/Nein") << 4 << true << true << "n\n" << 6 << 0;
        QTest::newRow("yes flag, OK/Abbrechen") << 1 << true << false << "" << 1 << 0;
        QTest::newRow("no terminal, Ja/Nein") << 4 << false << false << "j\n" << 7 << 1;
        QTest::newRow("no terminal, OK/Abbrechen") << 1 << false << false << "j\n" << 2 << 1;
        QTest::newRow("typed j") << 4 << false << true << "j\n" << 6 << 0;
        QTest::newRow("typed Y") << 1 << false << true << "Y\n" << 1 << 0;
        QTest::newRow("typed ja") << 4 << false << true << "  ja\n" << 6 << 0;
        QTest::newRow("typed n") << 4 << false << true << "n\n" << 7 << 1;
        QTest::newRow("typed nothing") << 4 << false << true << "\n" << 7 << 1;
        QTest::newRow("input ended") << 1 << false << true << "" << 2 << 1;
    }
    void answers()
    {
        QFETCH(int, style);
        QFETCH(bool, yes);
        QFETCH(bool, interactive);
        QFETCH(QString, typed);
        QFETCH(int, answer);
        QFETCH(int, exit);
        QByteArray inData = typed.toUtf8(), outData, errData;
        QBuffer in(&inData), out(&outData), err(&errData);
        in.open(QIODevice::ReadOnly);
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        BatchPresenter p(&in, &out, &err, yes, interactive);
        const QString text = QStringLiteral("Aufträge für die Woche 07 im Jahr 2026 jetzt wirklich drucken?");
        QCOMPARE(ZeigeMeldung(text, style), answer);
        QVERIFY(QString::fromUtf8(outData).startsWith(text));
        QVERIFY(errData.isEmpty());
        QCOMPARE(p.exitStatus(), exit);
        QCOMPARE(p.answeredNo(), exit == 1);
    }

    void messagesAndExitStatus()
    {
        QByteArray outData, errData;
        QBuffer out(&outData), err(&errData);
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        ScriptedPresenter outer;
        {
            BatchPresenter p(nullptr, &out, &err, false, false);
            QCOMPARE(ZeigeMeldung(QStringLiteral("Planung beendet"), 0), 1);
            QCOMPARE(p.exitStatus(), 0);
            QCOMPARE(ZeigeMeldung(QStringLiteral("Bitte Jahr eingeben"), 48), 1);
            QVERIFY(p.refused());
            QCOMPARE(p.exitStatus(), 1);
            QCOMPARE(ZeigeMeldung(QStringLiteral("Fehler Nummer: 3022"), 16), 1);
            QVERIFY(p.faultShown());
            QCOMPARE(p.exitStatus(), 3);
            QCOMPARE(ZeigeMeldung(QStringLiteral("Sonderstil"), 64), 1);
            QCOMPARE(QString::fromUtf8(outData), QStringLiteral("Planung beendet\nSonderstil\n"));
            QCOMPARE(QString::fromUtf8(errData), QStringLiteral("Bitte Jahr eingeben\nFehler Nummer: 3022\n"));
        }
        QCOMPARE(installedPresenter(), &outer);
    }
};

QTEST_GUILESS_MAIN(TestBatchPresenter)
#include "tst_batchpresenter.moc"
