#include "gui/feedback/FeedbackTreeModel.h"
#include "gui/feedback/frmRueckmeldung.h"
#include "support/GuiSession.h"
#include "zol/core/Messages.h"
#include "zol/core/Schema.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanningRun.h"
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeView>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::GuiSession;

namespace {

// Plans a long-term week and the short-term orders of 2026 on the demo plant.
void plan(GuiSession &s)
{
    ScriptedPresenter p;
    for (int i = 0; i < 6; ++i)
        p.answer(Answer::Yes);
    PlanningRun run(s.session());
    run.run(QStringLiteral("2026"), QStringLiteral("05"));
    run.run(QStringLiteral("2026"), QStringLiteral("00"));
}

// Every node of a view read at once, as paths of node texts.
void alleKnoten(Session &s, int view, const KnotenFilter &oben, const QString &pfad, QStringList &out)
{
    for (const AnsichtKnoten &k : ansichtKinder(s, view, oben)) {
        out << pfad + k.text;
        if (!k.blatt)
            alleKnoten(s, view, k.filter, pfad + k.text + QLatin1Char('/'), out);
    }
}

// Every node the model shows when the view scrolls to the end and every node is expanded.
void ausgeklappt(QAbstractItemModel &m, const QModelIndex &parent, const QString &pfad, QStringList &out)
{
    while (m.canFetchMore(parent))
        m.fetchMore(parent);
    for (int r = 0; r < m.rowCount(parent); ++r) {
        const QModelIndex i = m.index(r, 0, parent);
        out << pfad + i.data().toString();
        if (m.hasChildren(i))
            ausgeklappt(m, i, pfad + i.data().toString() + QLatin1Char('/'), out);
    }
}

template <typename T> T *child(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromUtf8(name));
    if (!c)
        qWarning("missing %s", name);
    return c;
}

}   // namespace

class TestRueckmeldung : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // A Meister reports rows by keys alone, switches views, posts and deletes a week.
    void reportsByKeyboard()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        plan(s);
        const int week05 = countRows(s.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '05' AND KeineWartung = 'N'"));
        QVERIFY(week05 >= 2);

        const GuiSession::Opened opened = s.trigger(QStringLiteral("mnuAufträgeRückmeldungen"));
        auto *w = qobject_cast<frmRueckmeldung *>(opened.window());
        QVERIFY(w);
        QVERIFY(QTest::qWaitForWindowExposed(w));
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        auto *list = child<QTreeView>(w, "lvListView");
        auto *tree = child<QTreeView>(w, "tvTreeView");
        auto *cmbView = child<QComboBox>(w, "cmbView");
        auto *txtZeit = child<QLineEdit>(w, "txtZeit");
        auto *txtWoche = child<QLineEdit>(w, "txtWoche");
        auto *lblStatus = child<QLabel>(w, "lblStatus");
        QVERIFY(list && tree && cmbView && txtZeit && txtWoche && lblStatus);
        QCOMPARE(cmbView->count(), 8);
        QCOMPARE(child<QLabel>(w, "lblTreeView")->text(), QStringLiteral("Komponenten"));

        // View 1 lists weeks first: 2026/00, then 2026/05.
        cmbView->setCurrentIndex(1);
        QCOMPARE(child<QLabel>(w, "lblTreeView")->text(), QStringLiteral("Wochen"));
        QCOMPARE(tree->model()->index(0, 0).data().toString(), QStringLiteral("2026/00"));
        QCOMPARE(tree->model()->index(1, 0).data().toString(), QStringLiteral("2026/05"));
        tree->setCurrentIndex(tree->model()->index(1, 0));
        QCOMPARE(list->model()->rowCount(), week05);
        QCOMPARE(txtWoche->text(), QStringLiteral("05"));
        QCOMPARE(lblStatus->text(), QStringLiteral(" nicht zurückgemeldet "));

        // Row 1: Tab into the time, type it, Alt+D reports and returns to the list.
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Tab);
        QVERIFY(txtZeit->hasFocus());
        txtZeit->selectAll();
        QTest::keyClicks(txtZeit, QStringLiteral("2x,5"));   // the letter is swallowed
        QCOMPARE(txtZeit->text(), QStringLiteral("2,5"));
        // A button's access key clicks it a moment later, as the user sees it pressed.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_D, Qt::AltModifier);
        QTRY_VERIFY(list->hasFocus());
        QCOMPARE(lblStatus->text(), QStringLiteral(" zurückgemeldet "));
        QCOMPARE(list->model()->index(0, 5).data().toString(), QStringLiteral("J"));
        // Down goes on to the next row; Alt+D reports the plan as it stands.
        QTest::keyClick(list, Qt::Key_Down);
        QCOMPARE(list->currentIndex().row(), 1);
        QCOMPARE(lblStatus->text(), QStringLiteral(" nicht zurückgemeldet "));
        QTest::keyClick(list, Qt::Key_D, Qt::AltModifier);
        QTRY_COMPARE(countRows(s.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '05' AND \"Rückmeldung\" = 'J'")), 2);
        QCOMPARE(countRows(s.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '05' AND PlanZeit = 2.5")), 1);

        // A changed row asks before it is left; No keeps it.
        QTest::keyClick(list, Qt::Key_Tab);
        QTest::keyClicks(txtZeit, QStringLiteral("7"));
        {
            ScriptedPresenter p;
            p.answer(Answer::No);
            list->setFocus();
            QTest::keyClick(list, Qt::Key_Up);
            QCOMPARE(p.texts(), QStringList{QStringLiteral("Satz ohne Rückmeldung verlassen?")});
            QCOMPARE(list->currentIndex().row(), 1);
        }

        // Quick cancel: a click reports the row as "Storniert".
        child<QCheckBox>(w, "CheckStorno")->setChecked(true);
        const QRect r0 = list->visualRect(list->model()->index(0, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, r0.center());
        QCOMPARE(countRows(s.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '05' AND Befund = 'S'")), 1);
        child<QCheckBox>(w, "CheckStorno")->setChecked(false);

        // Posting the week with its deletion, then the short-term week deleted.
        {
            ScriptedPresenter p;
            p.answer(Answer::Yes).answer(Answer::Yes);
            QTest::keyClick(list, Qt::Key_W, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), (QStringList{QStringLiteral("Wollen Sie die Auftragswoche 2026/05 jetzt wirklich verbuchen?"),
                                             QStringLiteral("Die Auftragswoche nach der Verbuchung löschen?")}));
        }
        QCOMPARE(countRows(s.sql(), QStringLiteral("Auftrag"), QStringLiteral("Woche = '05'")), 0);
        QVERIFY(countRows(s.sql(), QStringLiteral("Rückmeldungen2026"), QStringLiteral("Befund = 'S'")) == 1);
        QCOMPARE(tree->model()->rowCount(), 1);   // the view was built anew: only 2026/00 is left
        QCOMPARE(txtWoche->text(), QStringLiteral("00"));
        {
            ScriptedPresenter p;
            p.answer(Answer::Yes);
            QTest::keyClick(list, Qt::Key_Odiaeresis, Qt::AltModifier);
            QTRY_COMPARE(p.texts(), QStringList{QStringLiteral("Wirklich alle Aufträge der Woche 2026/00 löschen?")});
        }
        QCOMPARE(countRows(s.sql(), QStringLiteral("Auftrag")), 0);
        QCOMPARE(tree->model()->rowCount(), 0);
        QCOMPARE(txtWoche->text(), QString());
        w->close();
    }

    // The tree reads its top level a page at a time and a node's children on
    // expanding; scrolled to the end and expanded, every view shows every node.
    void lazyTreeShowsEveryNode()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        plan(s);
        FeedbackTreeModel model(s.session(), nullptr, 2);
        for (int view = 0; view < 8; ++view) {
            model.setAnsicht(view);
            QCOMPARE(model.rowCount(), 2);
            QVERIFY(model.canFetchMore({}));
            // Made after the reset: the tester fetches more while it checks a reset.
            QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
            QStringList expected, shown;
            alleKnoten(s.session(), view, {}, {}, expected);
            ausgeklappt(model, {}, {}, shown);
            QVERIFY(expected.size() > 10);
            QCOMPARE(shown, expected);
        }
    }

    // An Auswerter sees the orders but can report, post and delete nothing.
    void auswerterRights()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        plan(s);
        s.logout();
        QVERIFY(s.login(QStringLiteral("Auswerter")));
        const GuiSession::Opened opened = s.trigger(QStringLiteral("Rückmeldungen"));
        auto *w = qobject_cast<frmRueckmeldung *>(opened.window());
        QVERIFY(w);
        QVERIFY(child<QTreeView>(w, "lvListView")->model()->rowCount() > 0);
        for (const char *name : {"cmdRückmeldung", "cmdVerbuchen", "cmdLöschen", "cmdISAuftrag", "CheckStorno"})
            QVERIFY2(!child<QWidget>(w, name)->isEnabled(), name);
        QVERIFY(child<QWidget>(w, "cmdDrucken")->isEnabled());
        w->close();
    }
};

QTEST_MAIN(TestRueckmeldung)
#include "tst_rueckmeldung.moc"
