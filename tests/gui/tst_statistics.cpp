#include "gui/statistics/StatisticsGui.h"
#include "gui/statistics/frmAufwandsverteilung.h"
#include "gui/statistics/frmRohdatenexport.h"
#include "gui/statistics/frmStatistik.h"
#include "gui/statistics/frmStatistikGeplant.h"
#include "gui/statistics/frmStatistikRueckgemeldet.h"
#include "gui/structure/frmMain.h"
#include "support/GuiSession.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/feedback/Posting.h"
#include "zol/planning/PlanningRun.h"
#include "zol/statistics/StatisticsInput.h"
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

using namespace zol;
using zoltest::GuiSession;

namespace {

// Plans week 05 and the short-term orders of 2026 on the demo plant, reports
// one row as a defect and posts week 05.
void postWeek(GuiSession &s)
{
    ScriptedPresenter p;
    for (int i = 0; i < 8; ++i)
        p.answer(Answer::Yes);
    PlanningRun run(s.session());
    run.run(QStringLiteral("2026"), QStringLiteral("05"));
    run.run(QStringLiteral("2026"), QStringLiteral("00"));
    exec(s.sql(), QStringLiteral("UPDATE Auftrag SET Befund = 'F', PlanZeit = 90 WHERE rowid = (SELECT MIN(rowid) FROM Auftrag WHERE Woche = '05')"));
    p.clear();
    p.answer(Answer::Yes).answer(Answer::No);
    QCOMPARE(AuftragswocheVerbuchen(s.session(), QStringLiteral("2026"), QStringLiteral("05")).status,
             VerbuchenErgebnis::Status::Verbucht);
}

template <typename T> T *child(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromUtf8(name));
    if (!c)
        qWarning("missing %s", name);
    return c;
}

template <typename W> W *open(GuiSession &s, const char *action)
{
    const GuiSession::Opened opened = s.trigger(QString::fromUtf8(action));
    auto *w = qobject_cast<W *>(opened.window());
    if (w) {
        w->activateWindow();
        QTest::qWaitForWindowActive(w);
    }
    return w;
}

// Types into a line edit as a user does: the box entered, its text replaced.
void typeInto(QLineEdit *e, const QString &text)
{
    e->setFocus();
    e->selectAll();
    QTest::keyClicks(e, text);
}


}   // namespace

class TestStatisticsWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { statgui::setFileChooser({}); }

    // The statistics of the selected component, then its workbook.
    void selectedEntries()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        postWeek(s);
        s.logout();
        QVERIFY(s.login(QStringLiteral("Auswerter")));
        const QString teIndex = s.pointAtComponent();
        QVERIFY(!teIndex.isEmpty());
        // The user goes from the tree to the list, where the component is selected.
        s.main().findChild<QWidget *>(QStringLiteral("tvTreeView"))->setFocus();
        s.main().findChild<QWidget *>(QStringLiteral("lvListView"))->setFocus();
        const auto count = [&](const char *sql) {
            return QString::number(scalar(s.sql(), QString::fromUtf8(sql), {teIndex}).toLongLong());
        };
        const QString a = count("SELECT COUNT(*) FROM Auftrag WHERE TeIndex = ? AND Jahr = '2026' AND Woche >= '01'");
        const QString b = count("SELECT COUNT(*) FROM \"Rückmeldungen2026\" WHERE TeIndex = ?");
        const QString d = count("SELECT COUNT(*) FROM \"Rückmeldungen2026\" WHERE TeIndex = ? AND Befund = 'F'");
        QVERIFY(a.toInt() + b.toInt() > 0);

        auto *w = open<frmStatistik>(s, "mnuStatistikAusgewählt");
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Statistik für ausgewählte Einträge"));
        auto *list = child<QTreeWidget>(w, "lvStatistik");
        // The window opens with the sums shown, path and ratios hidden.
        QVERIFY(list->isColumnHidden(1));
        QVERIFY(!list->isColumnHidden(2));
        QVERIFY(list->isColumnHidden(8) && list->isColumnHidden(19));

        // Week 53 is refused with the focus on it.
        {
            ScriptedPresenter p;
            typeInto(child<QLineEdit>(w, "txtJahr"), QStringLiteral("2026"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("1"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("53"));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QCOMPARE(p.texts(), QStringList{MsgNurWochen});
            QCOMPARE(QApplication::focusWidget(), child<QWidget>(w, "txtWocheBis"));
            QCOMPARE(child<QLineEdit>(w, "txtWocheVon")->text(), QStringLiteral("01"));
        }
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("52"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::AltModifier);
        QTRY_COMPARE(list->topLevelItemCount(), 2);
        QTreeWidgetItem *row = list->topLevelItem(0);
        QCOMPARE(row->text(2), a);
        QCOMPARE(row->text(3), b);
        QCOMPARE(row->text(5), d);
        QCOMPARE(list->topLevelItem(1)->text(0), QStringLiteral("   *** Summe aller ausgew. Komponenten ***"));
        QVERIFY(list->isColumnHidden(1) && list->isColumnHidden(8));   // a run keeps the view

        // The ratios to A come into view through the menu.
        QAction *geplant = w->findChild<QAction *>(QStringLiteral("mnuAnsichtGeplant"));
        geplant->trigger();
        QVERIFY(!list->isColumnHidden(8));
        QCOMPARE(row->text(8), a == QLatin1String("0") ? QStringLiteral("-") : mask000(d.toDouble() / a.toDouble()));

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("stat.xlsx"));
        statgui::setFileChooser([&](const QString &proposed) {
            return proposed == QStringLiteral("ZOL_Statistik_AusgewählteEinträge.xlsx") ? path : QString();
        });
        {
            ScriptedPresenter p;
            p.answer(Answer::Yes).answer(Answer::No);
            QTest::keyClick(w, Qt::Key_X, Qt::AltModifier);
            QTRY_COMPARE(p.texts().size(), 3);
            QCOMPARE(p.texts(), (QStringList{MsgKopfzeilen, MsgExportiert, MsgJetztAufrufen}));
        }
        const QString sheet = zoltest::zipMember(path, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY(sheet.contains(QStringLiteral("Anz. gepl. WI (A)")));
        QVERIFY(sheet.contains(QStringLiteral("<c r=\"D3\"><v>%1</v>").arg(b)));
        QVERIFY(zoltest::zipMember(path, QStringLiteral("xl/workbook.xml")).contains(QStringLiteral("name=\"Statistik\"")));
        // The same file again is refused.
        {
            ScriptedPresenter p;
            QTest::keyClick(w, Qt::Key_X, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), (QStringList{MsgDateiExistiert, MsgKeinExport}));
        }
        w->close();
    }

    // Planned effort by trade, then reported effort of a year never posted and of the posted one.
    void plannedAndReported()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        postWeek(s);
        auto *w = open<frmStatistikGeplant>(s, "mnuStatistikenPlan");
        QVERIFY(w);
        auto *quelle = child<QListWidget>(w, "lvQuelle");
        auto *ziel = child<QListWidget>(w, "lvZiel");
        auto *list = child<QTreeWidget>(w, "lvStatistik");
        QCOMPARE(quelle->count(), 5);
        quelle->setFocus();
        quelle->setCurrentRow(1);   // Gewerk
        QTest::mouseClick(child<QPushButton>(w, "cmdRight"), Qt::LeftButton);
        QCOMPARE(ziel->item(0)->text(), QStringLiteral("Gewerk"));
        QCOMPARE(list->headerItem()->text(1), QStringLiteral("Zeitaufwand"));
        {
            ScriptedPresenter p;
            QTest::keyClick(w, Qt::Key_S, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), QStringList{QStringLiteral("Die Statistik wurde erstellt")});
        }
        QVERIFY(list->topLevelItemCount() >= 1);
        double total = 0;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            total += list->topLevelItem(i)->text(1).toDouble();
        QVERIFY(total > 0);
        // The selected components bind "Komponente" to the head of the keys.
        child<QWidget>(w, "optAusgewählt")->setFocus();
        QTest::keyClick(w, Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(ziel->item(0)->text(), QStringLiteral("Komponente"));
        w->close();

        auto *r = open<frmStatistikRueckgemeldet>(s, "mnuStatistikGemeldet");
        QVERIFY(r);
        QCOMPARE(r->objectName(), QStringLiteral("frmStatistikRückgemeldet"));
        QCOMPARE(child<QListWidget>(r, "lvQuelle")->count(), 6);
        typeInto(child<QLineEdit>(r, "txtJahr"), QStringLiteral("2025"));
        {
            ScriptedPresenter p;
            QTest::keyClick(r, Qt::Key_S, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), QStringList{MsgKeineVerbuchten});
        }
        typeInto(child<QLineEdit>(r, "txtJahr"), QStringLiteral("2026"));
        {
            ScriptedPresenter p;
            QTest::keyClick(r, Qt::Key_S, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), QStringList{QStringLiteral("Statistik wurde erstellt")});
        }
        auto *rl = child<QTreeWidget>(r, "lvStatistik");
        QCOMPARE(rl->topLevelItemCount(), 1);   // no key: the grand total
        QVERIFY(rl->topLevelItem(0)->text(0).toDouble() > 0);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("r.db"));
        statgui::setFileChooser([&](const QString &) { return path; });
        {
            ScriptedPresenter p;
            QTest::keyClick(r, Qt::Key_D, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), QStringList{MsgExportiert});
        }
        QVERIFY(QFile::exists(path));
        r->close();
    }

    // The distribution of all trades: chart, preview sheet, no workbook.
    void distribution()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Auswerter")));
        auto *w = open<frmAufwandsverteilung>(s, "mnuStatistikAufwandsverteilung");
        QVERIFY(w);
        {
            ScriptedPresenter p;
            QTest::keyClick(w, Qt::Key_Z, Qt::AltModifier);
            QTRY_COMPARE(p.lastText(), MsgGewerkAuswaehlen);
        }
        auto *gewerk = child<QComboBox>(w, "dbcAusführender");
        QVERIFY(gewerk->count() > 0);
        gewerk->setFocus();
        QTest::keyClicks(gewerk, QStringLiteral("*"));
        auto *jahr = child<QLineEdit>(w, "txtJahr");
        typeInto(jahr, QStringLiteral("20x26"));   // the letter is swallowed
        QCOMPARE(jahr->text(), QStringLiteral("2026"));
        zoltest::RecordingPreview preview;
        ScriptedPresenter p;
        p.answer(Answer::No);
        QTest::keyClick(w, Qt::Key_Z, Qt::AltModifier);
        QTRY_COMPARE(p.texts(), QStringList{QStringLiteral("Daten im Excel-Format exportieren?")});
        QCOMPARE(preview.calls, 1);
        QVERIFY(preview.contains(QStringLiteral(" für Gewerk ")));
        const QList<double> hours = w->chartHours();
        QCOMPARE(hours.size(), 52);
        QVERIFY(std::accumulate(hours.begin(), hours.end(), 0.0) > 0);
        w->close();
    }

    // The raw rows of the posted year into a workbook; the window closes after it.
    void rawData()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        postWeek(s);
        QPointer<frmRohdatenexport> w = open<frmRohdatenexport>(s, "mnuRohdatenExport");
        QVERIFY(w);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("roh.xlsx"));
        statgui::setFileChooser([&](const QString &) { return path; });
        typeInto(child<QLineEdit>(w, "txtJahr"), QStringLiteral("2026"));
        ScriptedPresenter p;
        p.answer(Answer::No).answer(Answer::No);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_COMPARE(p.texts(), (QStringList{MsgKopfzeilen, MsgExportiert, MsgJetztAufrufen}));
        QTRY_VERIFY(!w);
        const QString sheet = zoltest::zipMember(path, QStringLiteral("xl/worksheets/sheet1.xml"));
        QVERIFY(sheet.contains(QStringLiteral("<row r=\"1\"")));
        QVERIFY(!sheet.contains(QStringLiteral("Interne_Komponenten-Nr")));
    }

    // A Werker has no statistics.
    void werkerHasNone()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Werker")));
        for (const char *name : {"mnuStatistikenPlan", "mnuStatistikGemeldet", "mnuStatistikAusgewählt",
                                 "mnuStatistikAufwandsverteilung", "mnuRohdatenExport"})
            QVERIFY2(!s.main().findChild<QAction *>(QString::fromUtf8(name))->isEnabled(), name);
    }
};

QTEST_MAIN(TestStatisticsWindows)
#include "tst_statistics.moc"
