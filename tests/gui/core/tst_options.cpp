#include "support/TestSupport.h"
#include "gui/core/frmOptions.h"
#include "zol/core/Options.h"
#include "zol/core/Settings.h"
#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QtTest>

using namespace zol;
using zoltest::TempData;

class TestFrmOptions : public QObject {
    Q_OBJECT

    std::unique_ptr<TempData> m_data;
    std::unique_ptr<Session> m_session;

    static QStringList lines(QListWidget *l)
    {
        QStringList out;
        for (int i = 0; i < l->count(); ++i)
            out << l->item(i)->text();
        return out;
    }
    static QStringList lines(QTreeWidget *l)
    {
        QStringList out;
        for (int i = 0; i < l->topLevelItemCount(); ++i)
            out << l->topLevelItem(i)->text(0);
        return out;
    }
    template <class T> static T *child(QWidget &w, const QString &name)
    {
        T *c = w.findChild<T *>(name);
        if (!c)
            qFatal("no control %s", qPrintable(name));
        return c;
    }
    static void click(QWidget &w, const QString &name)
    {
        QTest::mouseClick(child<QAbstractButton>(w, name), Qt::LeftButton);
    }
    void saveScreens(frmOptions &w)
    {
        if (!qEnvironmentVariableIsSet("ZOL_SCREENSHOT_DIR"))
            return;
        w.show();
        auto *tabs = child<QTabWidget>(w, "tbsOptions");
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            w.grab().save(qEnvironmentVariable("ZOL_SCREENSHOT_DIR") + QStringLiteral("/frmOptions_%1.png").arg(i));
        }
        tabs->setCurrentIndex(0);
    }

private Q_SLOTS:
    void init()
    {
        m_data = std::make_unique<TempData>(false);
        m_session = std::make_unique<Session>(m_data->db());
        m_session->login().UserName = QStringLiteral("Anna");
        LadeOptionen(*m_session);
    }
    void cleanup()
    {
        m_session.reset();
        m_data.reset();
    }

    void pagesAndCaptions()
    {
        frmOptions w(*m_session);
        QCOMPARE(w.windowTitle(), QStringLiteral("Optionen"));
        auto *tabs = child<QTabWidget>(w, "tbsOptions");
        QCOMPARE(tabs->count(), 4);
        const QStringList tabTexts{"&Stammdaten", "Auftrags-&Kopfwechsel", "A&uftrags-Sortierung", "&Druckformat"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(tabs->tabText(i), tabTexts.at(i));
            QCOMPARE(tabs->widget(i)->objectName(), QStringLiteral("picOptions_%1").arg(i));
        }
        QCOMPARE(child<QPushButton>(w, "cmdOk")->text(), QStringLiteral("&OK"));
        QCOMPARE(child<QPushButton>(w, "cmdCancel")->text(), QStringLiteral("&Abbrechen"));
        QCOMPARE(child<QPushButton>(w, "cmdApply")->text(), QStringLiteral("Über&nehmen"));
        QCOMPARE(child<QPushButton>(w, "cmdUp")->text(), QStringLiteral("hoch"));
        QCOMPARE(child<QPushButton>(w, "cmdDown")->text(), QStringLiteral("runter"));
        QCOMPARE(child<QTreeWidget>(w, "lvAuftragsortierung")->headerItem()->text(0), QStringLiteral("Sortierreihenfolge"));
        const QStringList kw{"Komponente", "Laufweg", "Betriebszustand", "Material Code", "Kostenstelle", "Lokalisierung"};
        for (int i = 0; i < 6; ++i)
            QCOMPARE(child<QCheckBox>(w, QStringLiteral("chkKopfwechsel_%1").arg(i))->text(), kw.at(i));
        QCOMPARE(child<QRadioButton>(w, "optDruckFormat_0")->text(), QStringLiteral("Hochformat"));
        QCOMPARE(child<QRadioButton>(w, "optDruckFormat_1")->text(), QStringLiteral("Querformat"));

        // Defaults: every column in table order, portrait, nothing else chosen.
        auto *lst = child<QListWidget>(w, "lstSpalten");
        QCOMPARE(lst->count(), 18);
        QCOMPARE(lst->item(3)->text(), QStringLiteral("Ident Nr."));
        for (int i = 1; i <= 18; ++i)
            QVERIFY(child<QCheckBox>(w, QStringLiteral("chkSpalten_%1").arg(i))->isChecked());
        QVERIFY(child<QRadioButton>(w, "optDruckFormat_0")->isChecked());
        QCOMPARE(child<QTreeWidget>(w, "lvAuftragsortierung")->topLevelItemCount(), 0);
        saveScreens(w);
    }

    void columnsApplyAndOk()
    {
        frmOptions w(*m_session);
        auto *lst = child<QListWidget>(w, "lstSpalten");
        for (int i = 1; i <= 18; ++i)
            child<QCheckBox>(w, QStringLiteral("chkSpalten_%1").arg(i))->setChecked(false);
        QCOMPARE(lst->count(), 0);
        click(w, "chkSpalten_12");
        click(w, "chkSpalten_3");
        click(w, "chkSpalten_16");
        click(w, "chkSpalten_4");
        QCOMPARE(lines(lst), (QStringList{"Laufweg", "Kostenstelle", "bis Woche 1", "Ident Nr."}));
        click(w, "chkSpalten_3");
        QCOMPARE(lines(lst), (QStringList{"Laufweg", "bis Woche 1", "Ident Nr."}));

        lst->setCurrentRow(2);
        click(w, "cmdUp");
        click(w, "cmdUp");
        click(w, "cmdUp");   // already on top: stays
        QCOMPARE(lines(lst), (QStringList{"Ident Nr.", "Laufweg", "bis Woche 1"}));
        lst->setCurrentRow(1);
        click(w, "cmdDown");
        click(w, "cmdDown");
        QCOMPARE(lines(lst), (QStringList{"Ident Nr.", "bis Woche 1", "Laufweg"}));

        click(w, "cmdApply");
        QVERIFY(w.OptionsUpdated());
        QCOMPARE(m_session->options().gSpaltenIndex, (QList<int>{4, 16, 12}));
        QVERIFY(m_session->options().gSpalteSichtbar[4] && m_session->options().gSpalteSichtbar[12]);
        QVERIFY(!m_session->options().gSpalteSichtbar[3]);
        QCOMPARE(GetSetting(QStringLiteral("Anna\\Optionen"), QStringLiteral("KopfIndexAnzahl")), QStringLiteral("3"));
        QCOMPARE(GetSetting(QStringLiteral("Anna\\Optionen"), QStringLiteral("KopfIndex2")), QStringLiteral("16"));

        click(w, "cmdOk");
        QCOMPARE(w.Tag(), QStringLiteral("Ok"));
        QVERIFY(!w.isVisible());

        // A new window shows what was saved.
        OptionState reloaded;
        LadeOptionen(QStringLiteral("Anna"), reloaded);
        QCOMPARE(reloaded.gSpaltenIndex, (QList<int>{4, 16, 12}));
        frmOptions again(*m_session);
        QCOMPARE(lines(child<QListWidget>(again, "lstSpalten")), (QStringList{"Ident Nr.", "bis Woche 1", "Laufweg"}));
        QVERIFY(!child<QCheckBox>(again, "chkSpalten_1")->isChecked());
    }

    void printChoicesRoundTrip()
    {
        frmOptions w(*m_session);
        click(w, "chkKopfwechsel_3");
        click(w, "chkKopfwechsel_0");
        auto *lv = child<QTreeWidget>(w, "lvAuftragsortierung");
        click(w, "chkAuftragsortierung_3");   // Standort
        click(w, "chkAuftragsortierung_1");   // Ident Nr.
        click(w, "chkAuftragsortierung_0");   // Kostenstelle
        click(w, "chkAuftragsortierung_3");
        click(w, "chkAuftragsortierung_3");
        QCOMPARE(lines(lv), (QStringList{"Ident Nr.", "Kostenstelle", "Standort"}));
        lv->setCurrentItem(lv->topLevelItem(2));
        click(w, "cmdAuftragsortierungUp");
        QCOMPARE(lines(lv), (QStringList{"Ident Nr.", "Standort", "Kostenstelle"}));
        click(w, "cmdAuftragsortierungDown");
        click(w, "cmdAuftragsortierungDown");
        QCOMPARE(lines(lv), (QStringList{"Ident Nr.", "Kostenstelle", "Standort"}));
        click(w, "optDruckFormat_1");
        click(w, "cmdOk");
        QVERIFY(!w.OptionsUpdated());

        OptionState st;
        LadeOptionen(QStringLiteral("Anna"), st);
        QCOMPARE(st.gKopfwechsel, (QStringList{"Komponente", "", "", "Material Code", "", ""}));
        QCOMPARE(st.gKopfwechselAlt, QStringLiteral("Komponente"));
        QCOMPARE(st.gAuftragsortierung, (QStringList{"IdentNr", "Kostenstelle", "Standort"}));
        QCOMPARE(st.gDruckFormat, 2);

        frmOptions again(*m_session);
        QVERIFY(child<QCheckBox>(again, "chkKopfwechsel_0")->isChecked());
        QVERIFY(child<QCheckBox>(again, "chkKopfwechsel_3")->isChecked());
        QVERIFY(!child<QCheckBox>(again, "chkKopfwechsel_1")->isChecked());
        QCOMPARE(lines(child<QTreeWidget>(again, "lvAuftragsortierung")), (QStringList{"Ident Nr.", "Kostenstelle", "Standort"}));
        QVERIFY(child<QRadioButton>(again, "optDruckFormat_1")->isChecked());
        saveScreens(again);
    }

    void cancelLeavesState()
    {
        const OptionState before = m_session->options();
        frmOptions w(*m_session);
        click(w, "chkSpalten_1");
        click(w, "chkKopfwechsel_2");
        click(w, "optDruckFormat_1");
        click(w, "cmdCancel");
        QCOMPARE(w.Tag(), QStringLiteral("Cancel"));
        QVERIFY(!w.OptionsUpdated());
        QCOMPARE(m_session->options().gSpaltenIndex, before.gSpaltenIndex);
        QCOMPARE(m_session->options().gDruckFormat, 1);
        QCOMPARE(GetSetting(QStringLiteral("ZOL"), QStringLiteral("Anna\\Optionen"), QStringLiteral("KopfIndexAnzahl"), QStringLiteral("-1")),
                 QStringLiteral("-1"));
    }
};

QTEST_MAIN(TestFrmOptions)
#include "tst_options.moc"
