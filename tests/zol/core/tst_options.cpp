#include "support/TestSupport.h"
#include "zol/core/Options.h"
#include "zol/core/Settings.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;

class TestOptions : public QObject {
    Q_OBJECT

    static QList<int> alle()
    {
        QList<int> l;
        for (int i = 1; i <= 18; ++i)
            l << i;
        return l;
    }

private Q_SLOTS:
    void noKeysGiveDefaults()
    {
        TempData d(false);
        OptionState st;
        st.gDruckFormat = 2;
        st.gAuftragsortierung << QStringLiteral("Typ");
        LadeOptionen(QStringLiteral("Anna"), st);
        QCOMPARE(st.gSpaltenFeld.size(), 18);
        QCOMPARE(st.gSpaltenFeld.at(3), QStringLiteral("IdentNr"));
        QCOMPARE(st.gSpaltenFeld.at(11), QStringLiteral("Option1"));
        QCOMPARE(st.gSpaltenIndex, alle());
        QCOMPARE(st.gKopfwechsel, QStringList(6, QString()));
        QVERIFY(st.gKopfwechselAlt.isEmpty());
        QVERIFY(st.gAuftragsortierung.isEmpty());
        QCOMPARE(st.gDruckFormat, 1);
        for (bool f : st.gSpalteSichtbar)
            QVERIFY(!f);
    }

    void storedColumns_data()
    {
        QTest::addColumn<QStringList>("stored");   // KopfIndexAnzahl, then KopfIndex1..
        QTest::addColumn<QList<int>>("index");
        QTest::addColumn<QList<int>>("visible");
        QTest::newRow("none") << QStringList{"0"} << QList<int>{} << QList<int>{};
        QTest::newRow("order kept") << QStringList{"3", "12", "4", "16"} << QList<int>{12, 4, 16} << QList<int>{4, 12};
        QTest::newRow("missing entry left out") << QStringList{"2", "7"} << QList<int>{7} << QList<int>{7};
        QTest::newRow("out of table and repeats left out") << QStringList{"4", "19", "14", "-2", "14"} << QList<int>{14} << QList<int>{14};
        QTest::newRow("damaged count") << QStringList{"1000000", "1", "2"} << QList<int>{1, 2} << QList<int>{1, 2};
    }
    void storedColumns()
    {
        QFETCH(QStringList, stored);
        QFETCH(QList<int>, index);
        QFETCH(QList<int>, visible);
        TempData d(false);
        SaveSetting(QStringLiteral("Anna\\Optionen"), QStringLiteral("KopfIndexAnzahl"), stored.at(0));
        for (int i = 1; i < stored.size(); ++i)
            SaveSetting(QStringLiteral("Anna\\Optionen"), QStringLiteral("KopfIndex%1").arg(i), stored.at(i));
        OptionState st;
        LadeOptionen(QStringLiteral("Anna"), st);
        QCOMPARE(st.gSpaltenIndex, index);
        for (int i = 1; i <= 14; ++i)
            QCOMPARE(st.gSpalteSichtbar[i], visible.contains(i));
    }

    void oldSingleHeadKey_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("loaded");
        QTest::newRow("caption") << "Material Code" << "Material Code";
        QTest::newRow("last caption") << "Lokalisierung" << "Lokalisierung";
        QTest::newRow("unknown") << "Gewerk" << "";
        QTest::newRow("field name is no caption") << "Materialcode" << "";
        QTest::newRow("other case") << "komponente" << "";
    }
    void oldSingleHeadKey()
    {
        QFETCH(QString, stored);
        QFETCH(QString, loaded);
        TempData d(false);
        SaveSetting(QStringLiteral("Anna\\Optionen"), QStringLiteral("Kopfwechsel"), stored);
        OptionState st;
        LadeOptionen(QStringLiteral("Anna"), st);
        QCOMPARE(st.gKopfwechselAlt, loaded);
    }

    void saveAndLoadRoundTrip()
    {
        TempData d(false);
        OptionState st;
        LadeOptionen(QStringLiteral("Anna"), st);
        st.gSpaltenIndex = {18, 3, 1};
        st.gKopfwechsel = {QStringLiteral("KompBezeichnung"), {}, {}, QStringLiteral("Materialcode"), {}, {}};
        st.gKopfwechselAlt = QStringLiteral("Komponente");
        st.gAuftragsortierung = {QStringLiteral("Standort"), QStringLiteral("IdentNr")};
        st.gDruckFormat = 2;
        SpeichereOptionen(QStringLiteral("Anna"), st);

        setSettingsFile(settingsFile());   // read back from the file
        OptionState back;
        LadeOptionen(QStringLiteral("Anna"), back);
        QCOMPARE(back.gSpaltenIndex, st.gSpaltenIndex);
        QCOMPARE(back.gKopfwechsel, st.gKopfwechsel);
        QCOMPARE(back.gKopfwechselAlt, st.gKopfwechselAlt);
        QCOMPARE(back.gAuftragsortierung, st.gAuftragsortierung);
        QCOMPARE(back.gDruckFormat, 2);
        QVERIFY(back.gSpalteSichtbar[3] && back.gSpalteSichtbar[1] && !back.gSpalteSichtbar[2]);

        // A shorter list replaces the longer one.
        back.gAuftragsortierung = {QStringLiteral("Typ")};
        back.gSpaltenIndex.clear();
        SpeichereOptionen(QStringLiteral("Anna"), back);
        OptionState again;
        LadeOptionen(QStringLiteral("Anna"), again);
        QCOMPARE(again.gAuftragsortierung, QStringList{QStringLiteral("Typ")});
        QVERIFY(again.gSpaltenIndex.isEmpty());
        QVERIFY(!spaltenGeaendert(back, again));
        QVERIFY(spaltenGeaendert(st, again));
    }

    void settingsPerUserAsTyped()
    {
        TempData d(false);
        Session s(d.db());
        s.login().UserName = QStringLiteral("Anna");
        LadeOptionen(s);
        s.options().gDruckFormat = 2;
        s.options().gSpaltenIndex = {5};
        SpeichereOptionen(s);
        SaveSetting(s.section(QStringLiteral("\\env\\MainSettings")), QStringLiteral("Pfad"), QStringLiteral("\"0000000007\""));

        for (const QString &other : {QStringLiteral("Bernd"), QStringLiteral("ANNA"), QStringLiteral("anna")}) {
            OptionState st;
            LadeOptionen(other, st);
            QCOMPARE(st.gDruckFormat, 1);
            QCOMPARE(st.gSpaltenIndex.size(), 18);
            QCOMPARE(GetSetting(QStringLiteral("ZOL"), other + QStringLiteral("\\env\\MainSettings"), QStringLiteral("Pfad"), QStringLiteral("-")),
                     QStringLiteral("-"));
        }
        OptionState mine;
        LadeOptionen(QStringLiteral("Anna"), mine);
        QCOMPARE(mine.gDruckFormat, 2);
        QCOMPARE(mine.gSpaltenIndex, QList<int>{5});
    }

    void storedChoicesMapToFields()
    {
        QCOMPARE(kopfwechselWahl().size(), 6);
        QCOMPARE(kopfwechselFeld(QStringLiteral("Material Code")), QStringLiteral("Materialcode"));
        QCOMPARE(kopfwechselFeld(QStringLiteral("kompbezeichnung")), QStringLiteral("KompBezeichnung"));
        QCOMPARE(kopfwechselFeld(QStringLiteral("Text); DROP TABLE Auftrag")), QString());
        QCOMPARE(auftragsortierungFeld(QStringLiteral("Inspekteur")), QStringLiteral("WIVerantwortlicher"));
        QCOMPARE(auftragsortierungFeld(QStringLiteral("Option2")), QStringLiteral("Option2"));
        QCOMPARE(auftragsortierungFeld(QStringLiteral("FileIndex")), QString());
    }

    void headKeyBoxes_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QString>("alt");
        QTest::addColumn<QList<bool>>("boxes");
        QTest::newRow("none") << QStringList(6, QString()) << "" << QList<bool>(6, false);
        QTest::newRow("by slot") << QStringList{"KompBezeichnung", "", "", "Materialcode", "", ""} << "Komponente"
                                 << QList<bool>{true, false, false, true, false, false};
        QTest::newRow("caption in another slot") << QStringList{"Lokalisierung", "Betriebszustand", "", "", "", ""} << ""
                                                 << QList<bool>{false, false, true, false, false, true};
        QTest::newRow("older single key only") << QStringList(6, QString()) << "Laufweg"
                                               << QList<bool>{false, true, false, false, false, false};
        QTest::newRow("six keys win over the older") << QStringList{"", "", "", "", "Kostenstelle", ""} << "Laufweg"
                                                     << QList<bool>{false, false, false, false, true, false};
    }
    void headKeyBoxes()
    {
        QFETCH(QStringList, keys);
        QFETCH(QString, alt);
        QFETCH(QList<bool>, boxes);
        OptionState st;
        st.gKopfwechsel = keys;
        st.gKopfwechselAlt = alt;
        QCOMPARE(kopfwechselGewaehlt(st), boxes);

        // Saved from the boxes, the keys hold the boxes' captions slot by slot and read back the same boxes.
        setzeKopfwechsel(st, boxes);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(st.gKopfwechsel.at(i), boxes.at(i) ? kopfwechselWahl().at(i).caption : QString());
        const int first = boxes.indexOf(true);
        QCOMPARE(st.gKopfwechselAlt, first < 0 ? QString() : kopfwechselWahl().at(first).caption);
        QCOMPARE(kopfwechselGewaehlt(st), boxes);
    }

    void sortCriteriaOfTheState()
    {
        OptionState st;
        st.gAuftragsortierung = {QStringLiteral("Standort"), QStringLiteral("FileIndex"), QStringLiteral("Ident Nr."),
                                 QStringLiteral("standort"), QString(), QStringLiteral("Option2")};
        QCOMPARE(auftragsortierungGewaehlt(st), (QList<int>{3, 1, 10}));
    }

    void windowState()
    {
        TempData d(false);
        const QString sec = QStringLiteral("Anna\\env\\MainSettings");
        const WindowGeometry defaults{QRect(0, 0, 14000, 12000), 2};
        QCOMPARE(ladeFensterLage(sec, defaults, QStringLiteral("Main")).rect, defaults.rect);

        speichereFensterLage(sec, {QRect(10, 20, 300, 400), 0}, QStringLiteral("Main"));
        QCOMPARE(GetSetting(sec, QStringLiteral("MainWidth")), QStringLiteral("300"));
        // Maximised: only the state; minimised: nothing.
        speichereFensterLage(sec, {QRect(0, 0, 999, 999), 2}, QStringLiteral("Main"));
        speichereFensterLage(sec, {QRect(5, 5, 5, 5), 1}, QStringLiteral("Main"));
        const WindowGeometry g = ladeFensterLage(sec, defaults, QStringLiteral("Main"));
        QCOMPARE(g.rect, QRect(10, 20, 300, 400));
        QCOMPARE(g.windowState, 2);
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "tst_options.moc"
