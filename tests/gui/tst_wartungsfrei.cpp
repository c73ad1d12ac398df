#include "gui/instructions/MaintenanceFreeModel.h"
#include "gui/instructions/frmWartungsfreieZeit.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {
void login(Session &s, const QString &level)
{
    s.login().UserName = QStringLiteral("Anna");
    s.login().Level = level;
    s.login().LoginSucceeded = true;
}

QPointer<QLineEdit> typeInto(RuledTableView *view, int row, int col, const QString &text)
{
    const QModelIndex idx = view->model()->index(row, col);
    view->setCurrentIndex(idx);
    if (view->currentIndex() != idx)
        return nullptr;
    if (!view->openEditor() && !view->edit(idx, QAbstractItemView::AllEditTriggers, nullptr))
        return nullptr;
    QPointer<QLineEdit> e = view->openEditor();
    e->selectAll();
    QTest::keyClicks(e, text);
    QTest::keyClick(e, Qt::Key_Tab);
    return e;
}
}

class TestWartungsfrei : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesARangeAndRefusesBadWeeks()
    {
        TempData d;
        exec(d.sql(), QStringLiteral("INSERT INTO WartungsfreieZeit (WocheVon, WocheBis, Kommentar) VALUES ('30', '32', 'Sommer')"));
        Session session(d.db());
        login(session, Role::Master);
        frmWartungsfreieZeit w(session);
        w.zeig();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QCOMPARE(w.windowTitle(), QStringLiteral("Wartungsfreie Zeiten"));
        QCOMPARE(w.findChild<QLabel *>(QStringLiteral("lblDBGrid1Caption"))->text(),
                 QStringLiteral("Intervalle werden erst bei einer Neuplanung berücksichtigt"));
        auto *grid = w.findChild<RuledTableView *>(QStringLiteral("DBGrid1"));
        QVERIFY(grid);
        QAbstractItemModelTester tester(grid->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("von Woche"));
        QCOMPARE(grid->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("bis Woche"));
        QCOMPARE(grid->model()->rowCount(), 2);
        ScriptedPresenter p;

        // A bad week: the cell keeps its editor and text.
        QPointer<QLineEdit> e = typeInto(grid, 1, 0, QStringLiteral("a"));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Es sind nur numerische Zeichen erlaubt")});
        QVERIFY(e);
        QCOMPARE(grid->openEditor(), e.data());
        e->selectAll();
        QTest::keyClicks(e, QStringLiteral("60"));
        QTest::keyClick(e, Qt::Key_Tab);
        p.clear();
        e = typeInto(grid, 1, 1, QStringLiteral("61"));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Die Woche muß <= 52 sein")});
        QCOMPARE(grid->currentIndex(), grid->model()->index(1, 1));
        QTest::keyClick(e, Qt::Key_Escape);
        typeInto(grid, 1, 0, QStringLiteral("7"));
        QCOMPARE(grid->model()->index(1, 0).data().toString(), QStringLiteral("07"));
        typeInto(grid, 1, 1, QStringLiteral("9"));
        typeInto(grid, 1, 2, QStringLiteral("Revision"));
        grid->setCurrentIndex(grid->model()->index(0, 0));
        QCOMPARE(countRows(d.sql(), QStringLiteral("WartungsfreieZeit"),
                           QStringLiteral("WocheVon = '07' AND WocheBis = '09' AND Kommentar = 'Revision'")), 1);
        QCOMPARE(grid->model()->rowCount(), 3);

        // A range backwards can't be written: the row stays current.
        p.clear();
        typeInto(grid, 2, 0, QStringLiteral("10"));
        typeInto(grid, 2, 1, QStringLiteral("09"));
        grid->setCurrentIndex(grid->model()->index(0, 0));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Das Wochen-Intervall ist nicht plausibel")});
        QCOMPARE(grid->currentIndex().row(), 2);

        // A range that exists keeps the window open when it closes.
        typeInto(grid, 2, 0, QStringLiteral("30"));
        typeInto(grid, 2, 1, QStringLiteral("32"));
        p.clear();
        QVERIFY(!w.close());
        QCOMPARE(p.texts(), QStringList{maintenanceFreeDuplicateText()});
        if (QLineEdit *open = grid->openEditor())
            QTest::keyClick(open, Qt::Key_Escape);   // the cell first
        QTest::keyClick(grid, Qt::Key_Escape);        // then the row
        grid->setColumnWidth(1, 80);
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS"))
            w.grab().save(QDir(qEnvironmentVariable("ZOL_SCREENSHOTS")).filePath(QStringLiteral("frmWartungsfreieZeit.png")));
        QVERIFY(w.close());
        QCOMPARE(countRows(d.sql(), QStringLiteral("WartungsfreieZeit")), 2);
        QCOMPARE(GetSetting(QStringLiteral("Anna\\env\\WartungsfreieZeiten\\Spalte01"), QStringLiteral("Width")),
                 QStringLiteral("80"));
    }

    void onlyAdministratorAndMasterWrite_data()
    {
        QTest::addColumn<QString>("level");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("Administrator") << Role::Administrator << false;
        QTest::newRow("User") << Role::User << true;
        QTest::newRow("Werker") << Role::Werker << true;
    }

    void onlyAdministratorAndMasterWrite()
    {
        QFETCH(QString, level);
        QFETCH(bool, readOnly);
        TempData d;
        Session session(d.db());
        login(session, level);
        frmWartungsfreieZeit w(session);
        w.zeig();
        auto *grid = w.findChild<RuledTableView *>(QStringLiteral("DBGrid1"));
        QCOMPARE(grid->model()->rowCount(), readOnly ? 0 : 1);
        QCOMPARE(grid->editTriggers() == QAbstractItemView::NoEditTriggers, readOnly);
    }
};

QTEST_MAIN(TestWartungsfrei)
#include "tst_wartungsfrei.moc"
