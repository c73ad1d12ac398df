#include "zol/core/Rights.h"
#include <QtTest>

using namespace zol;

class TestRights : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commandRule_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("inStandards");
        QTest::addColumn<int>("view");
        QTest::addColumn<QStringList>("on");
        QTest::addColumn<QStringList>("off");

        const QStringList changing{"mnuFileDelete", "mnuPopUpTvDelete", "tbLöschen", "mnuFileEdit",
                                   "mnuPopUpLv1Umbenennen", "LabelEdit", "mnuEditCut", "mnuPopUpLv1Cut",
                                   "tbAusschneiden"};
        const QStringList creating{"mnuFileNeuProtokoll", "mnuPopUpLv2NeuOrdner", "mnuEditPaste",
                                   "mnuPopUpLv2Paste", "tbEinfügen"};
        const QStringList properties{"mnuFileEigenschaften", "mnuPopUpTvEigenschaften", "tbEigenschaften"};

        QTest::newRow("Benutzer in Standards, structure view") << "User" << true << 0
            << QStringList{"mnuTEStrukturDruck", "mnuEditCopy", "mnuKatalogGewerk"}
            << changing + creating + properties + QStringList{"mnuPopUpLv1ISAuftrag"};
        QTest::newRow("Benutzer in Standards, search without Standards") << "User" << true << 2
            << changing + properties
            << creating + QStringList{"mnuTEStrukturDruck", "mnuPopUpLv1ISAuftrag"};
        QTest::newRow("Benutzer in Standards, search view") << "User" << true << 1
            << properties << changing + creating;
        QTest::newRow("Benutzer in Standards, only Standards") << "User" << true << 3
            << QStringList{"mnuEditCopy"} << changing + creating + properties;
        QTest::newRow("Benutzer in the plant") << "User" << false << 0
            << changing + creating + properties + QStringList{"mnuPopUpLv1ISAuftrag", "mnuTEStrukturDruck"}
            << QStringList{};
        QTest::newRow("Master in Standards") << "Master" << true << 0
            << changing + creating + properties << QStringList{"mnuPopUpLv1ISAuftrag"};
        QTest::newRow("Administrator, only Standards") << "Administrator" << true << 3
            << changing + properties << creating + QStringList{"mnuTEStrukturDruck"};
        QTest::newRow("Auswerter in the plant") << "Auswerter" << false << 0
            << QStringList{"mnuTEStrukturDruck", "mnuKatalogGewerk", "mnuStatistikenPlan", "tbLöschen", "LabelEdit"}
            << QStringList{"mnuFileDelete", "mnuFileEdit", "mnuEditCopy", "mnuEditPaste", "mnuViewOptions",
                           "mnuWartungsfreieZeiten", "mnuFileImportAufträge", "mnuAufträgeISAuftragErstellen",
                           "mnuPopUpLv1ISAuftrag", "mnuPopUpTvEigenschaften"};
        QTest::newRow("Werker in the plant") << "Werker" << false << 0
            << QStringList{"mnuAufträgeISAuftragErstellen", "mnuAufträgeISAuftragBearbeiten", "mnuPopUpLv1ISAuftrag"}
            << QStringList{"mnuFileDelete", "mnuEditCopy", "mnuTEStrukturDruck", "mnuKatalogGewerk",
                           "mnuKatalogAnweisungen", "mnuStatistikenPlan", "mnuRohdatenExport",
                           "mnuFileDruckenAusgewählt", "mnuFileExportExcelAufträge", "mnuViewOptions"};
    }
    void commandRule()
    {
        QFETCH(QString, level);
        QFETCH(bool, inStandards);
        QFETCH(int, view);
        QFETCH(QStringList, on);
        QFETCH(QStringList, off);
        const QSet<QString> enabled = enabledCommands(level, inStandards, view);
        for (const QString &c : on) {
            QVERIFY2(governedCommands().contains(c), qPrintable(c));
            QVERIFY2(enabled.contains(c), qPrintable(c + QStringLiteral(" should be on")));
        }
        for (const QString &c : off) {
            QVERIFY2(governedCommands().contains(c), qPrintable(c));
            QVERIFY2(!enabled.contains(c), qPrintable(c + QStringLiteral(" should be off")));
        }
    }

    void mastersAndAdministratorsShareTheRule()
    {
        for (int view = 0; view <= 3; ++view)
            for (bool s : {false, true}) {
                QCOMPARE(enabledCommands(QStringLiteral("Master"), s, view),
                         enabledCommands(QStringLiteral("Administrator"), s, view));
                // Nothing an Auswerter or Werker has is denied to a Benutzer.
                const QSet<QString> user = enabledCommands(QStringLiteral("User"), s, view);
                QVERIFY(user.contains(enabledCommands(QStringLiteral("Auswerter"), s, view)));
                QVERIFY(user.contains(enabledCommands(QStringLiteral("Werker"), s, view)));
            }
    }

    void standardCheck_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("isStandard");
        QTest::addColumn<bool>("refused");
        QTest::newRow("Administrator, Standard") << "Administrator" << true << false;
        QTest::newRow("Master, Standard") << "Master" << true << false;
        QTest::newRow("Benutzer, Standard") << "User" << true << true;
        QTest::newRow("Benutzer, plant") << "User" << false << false;
        QTest::newRow("Auswerter, plant") << "Auswerter" << false << true;
        QTest::newRow("Werker, plant") << "Werker" << false << true;
    }
    void standardCheck()
    {
        QFETCH(QString, level);
        QFETCH(bool, isStandard);
        QTEST(standardCheckRefuses(level, isStandard), "refused");
    }
};

QTEST_GUILESS_MAIN(TestRights)
#include "tst_rights.moc"
