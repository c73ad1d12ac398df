#include "gui/core/GuiPresenter.h"
#include "gui/instructions/ProtocolModel.h"
#include "gui/instructions/frmDBGridSuchen.h"
#include "gui/instructions/frmMDIProtokolle.h"
#include "gui/instructions/frmProtokoll.h"
#include "gui/instructions/frmProtokollPosition.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Settings.h"
#include "zol/core/Users.h"
#include "zol/core/Sql.h"
#include "zol/instructions/IntervalCodes.h"
#include "zol/instructions/RowBuffer.h"
#include "zol/structure/Node.h"
#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QTimer>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::TempData;

namespace {
const QString Comp1 = QStringLiteral("0000000001");
const QString Comp2 = QStringLiteral("0000000002");
const QString Std = QStringLiteral("0000000003");

void addComponent(const QSqlDatabase &db, const QString &key, const QString &katalog, const QString &text)
{
    Node n;
    n.FileIndex = key;
    n.FileAbove = katalog == QLatin1String("0") ? RootProtok : RootKatalo;
    n.FileTyp = FileTypFile;
    n.Katalog = katalog;
    n.Text = text;
    n.WIVerantwortlicher = QStringLiteral("Elektrik");
    saveNode(db, n);
}

void addLine(const QSqlDatabase &db, const QString &te, const QString &objekt, const QString &anweisung,
             const QString &text)
{
    exec(db, QStringLiteral("INSERT INTO ProtokollPositionen (TeNummer, Objekt, Anweisung, Text, Ausfuehrender,"
                            " Betriebszustand, AnzahlPersonen, Intervall, Planzeit, Materialmenge, Intervalltyp)"
                            " VALUES (?, ?, ?, ?, 'Mechanik', 'X', '1', '1W', '0,5', '0,0', 'L')"),
         {te, objekt, anweisung, text});
}

// Comp1: a head row and two instructions; Comp2: one line with the key of Comp1's first instruction.
void addPlant(const QSqlDatabase &db)
{
    addComponent(db, Comp1, QStringLiteral("0"), QStringLiteral("Pumpe 'Süd'"));
    addComponent(db, Comp2, QStringLiteral("0"), QStringLiteral("Lüfter"));
    addComponent(db, Std, QStringLiteral("1"), QStringLiteral("Norm-Pumpe"));
    addLine(db, Comp1, QStringLiteral("000010"), QStringLiteral("0000"), QStringLiteral("Antrieb"));
    addLine(db, Comp1, QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("Lager prüfen"));
    addLine(db, Comp1, QStringLiteral("000010"), QStringLiteral("0020"), QStringLiteral("Lager schmieren"));
    addLine(db, Comp2, QStringLiteral("000010"), QStringLiteral("0010"), QStringLiteral("Filter wechseln"));
}

void login(Session &s, const QString &level)
{
    s.login().UserName = QStringLiteral("Anna");
    s.login().Level = level;
    s.login().LoginSucceeded = true;
}

QString stored(const QSqlDatabase &db, const QString &te, const QString &objekt, const QString &anweisung,
               const QString &field)
{
    return scalar(db, QStringLiteral("SELECT %1 FROM ProtokollPositionen WHERE TeNummer = ? AND Objekt = ? AND Anweisung = ?")
                          .arg(ident(field)),
                  {te, objekt, anweisung})
        .toString();
}

RuledTableView *gridOf(QWidget *w)
{
    return w->findChild<RuledTableView *>(QStringLiteral("dbGrid"));
}

// Types into a cell of the grid and leaves it with Tab; the editor stays open on a refusal.
QPointer<QLineEdit> typeInto(RuledTableView *view, int row, int col, const QString &text)
{
    const QModelIndex idx = view->model()->index(row, col);
    view->setCurrentIndex(idx);
    if (view->currentIndex() != idx)
        return nullptr;
    if (!view->openEditor() && !view->edit(idx, QAbstractItemView::AllEditTriggers, nullptr))
        return nullptr;
    QPointer<QLineEdit> e = view->openEditor();
    if (!e)
        return nullptr;
    e->selectAll();
    QTest::keyClicks(e, text);
    QTest::keyClick(e, Qt::Key_Tab);
    return e;
}

QAction *action(QWidget *w, const QString &name)
{
    return w->findChild<QAction *>(name);
}

void shoot(QWidget *w, const QString &name)
{
    const QString dir = qEnvironmentVariable("ZOL_SCREENSHOTS");
    if (!dir.isEmpty())
        w->grab().save(QDir(dir).filePath(name));
}
}

class TestProtokoll : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void modelPassesTheTester()
    {
        TempData d;
        addPlant(d.sql());
        ScriptedPresenter p;
        ProtocolGrid grid(d.sql(), Comp1, Role::Administrator);
        QVERIFY(grid.open());
        ProtocolModel model(grid);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 4);   // three lines and the new row
        QCOMPARE(model.headerData(3, Qt::Vertical).toString(), QStringLiteral("*"));
        QCOMPARE(model.index(1, Col::Text).data().toString(), QStringLiteral("Lager prüfen"));
        QCOMPARE(model.headerData(Col::Ausfuehrender, Qt::Horizontal).toString(), QStringLiteral("Gewerk"));

        // A new line written through the row rule becomes a line, and a new row follows.
        QVERIFY(model.leaveCell(3, Col::Text, QStringLiteral("Riemen")).accepted);
        QVERIFY(model.isDirty(3));
        QVERIFY(model.writeRow(3));
        QCOMPARE(model.rowCount(), 5);
        QCOMPARE(model.index(3, Col::Anweisung).data().toString(), QStringLiteral("0030"));
        QCOMPARE(stored(d.sql(), Comp1, QStringLiteral("000010"), QStringLiteral("0030"), QStringLiteral("Ausfuehrender")),
                 QStringLiteral("Elektrik"));

        // A refused cell changes nothing; a reverted row comes back.
        QVERIFY(!model.setData(model.index(0, Col::Objekt), QStringLiteral("x")));
        QCOMPARE(p.lastText(), QStringLiteral("Nur numerische Zeichen erlaubt"));
        QVERIFY(model.setData(model.index(1, Col::Planzeit), QStringLiteral("2,5")));
        model.revertRow(1);
        QCOMPARE(model.index(1, Col::Planzeit).data().toString(), QStringLiteral("0,5"));
        model.reload();
        QCOMPARE(model.rowCount(), 5);
    }

    void typingLeavingAndSavingCells()
    {
        TempData d;
        addPlant(d.sql());
        Session session(d.db());
        login(session, Role::Administrator);
        frmProtokoll w(session);
        QVERIFY(w.zeig(QStringLiteral("\"0000000001\""), QStringLiteral("Pumpe 'Süd'")));
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QCOMPARE(w.windowTitle(), QStringLiteral("Komponente 'Pumpe 'Süd''"));
        QCOMPARE(w.Tag(), Comp1);
        RuledTableView *view = gridOf(&w);
        QVERIFY(view && view->isColumnHidden(Col::TeNummer));
        ScriptedPresenter p;

        const int newRow = 3;
        typeInto(view, newRow, Col::Objekt, QStringLiteral("12"));
        QCOMPARE(view->model()->index(newRow, Col::Objekt).data().toString(), QStringLiteral("000012"));
        QVERIFY(p.texts().isEmpty());

        // A refused cell keeps its editor, its text and the cursor.
        QPointer<QLineEdit> e = typeInto(view, newRow, Col::Anweisung, QStringLiteral("abc"));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Nur numerische Zeichen erlaubt")});
        QCOMPARE(p.lastStyle(), int(Style::Information));
        QVERIFY(e);
        QCOMPARE(e->text(), QStringLiteral("abc"));
        QCOMPARE(view->openEditor(), e.data());
        QCOMPARE(view->currentIndex(), view->model()->index(newRow, Col::Anweisung));
        // Neither another cell nor another row can be reached while it stands.
        view->setCurrentIndex(view->model()->index(0, Col::Text));
        QCOMPARE(view->currentIndex(), view->model()->index(newRow, Col::Anweisung));
        e->selectAll();
        QTest::keyClicks(e, QStringLiteral("5"));
        QTest::keyClick(e, Qt::Key_Tab);
        QCOMPARE(view->model()->index(newRow, Col::Anweisung).data().toString(), QStringLiteral("0005"));

        p.clear();
        e = typeInto(view, newRow, Col::Betriebszustand, QStringLiteral("y"));
        QCOMPARE(p.texts(), QStringList{InstructionText::betriebszustand()});
        e->selectAll();
        QTest::keyClicks(e, QStringLiteral("r"));
        QTest::keyClick(e, Qt::Key_Tab);
        QCOMPARE(view->model()->index(newRow, Col::Betriebszustand).data().toString(), QStringLiteral("R"));
        e = typeInto(view, newRow, Col::Intervall, QStringLiteral("9x"));
        QCOMPARE(p.lastText(), QStringLiteral("Dieses Intervall ist nicht definiert"));
        e->selectAll();
        QTest::keyClicks(e, QStringLiteral("4w"));
        QTest::keyClick(e, Qt::Key_Tab);
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("Objekt = '000012'")), 0);

        // Leaving the row writes it through the row rule.
        view->setCurrentIndex(view->model()->index(0, Col::Text));
        QCOMPARE(view->currentIndex().row(), 0);
        QCOMPARE(stored(d.sql(), Comp1, "000012", "0005", "Betriebszustand"), QStringLiteral("R"));
        QCOMPARE(stored(d.sql(), Comp1, "000012", "0005", "Intervall"), QStringLiteral("4W"));
        QCOMPARE(stored(d.sql(), Comp1, "000012", "0005", "Intervalltyp"), QStringLiteral("L"));
        QCOMPARE(stored(d.sql(), Comp1, "000012", "0005", "Ausfuehrender"), QStringLiteral("Elektrik"));
        QCOMPARE(view->model()->rowCount(), 5);

        // A changed existing line is written when the row is left.
        typeInto(view, 1, Col::Planzeit, QStringLiteral("1,5"));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0010", "Planzeit"), QStringLiteral("0,5"));
        view->setCurrentIndex(view->model()->index(2, Col::Text));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0010", "Planzeit"), QStringLiteral("1,5"));

        // A row whose numbers exist can't be left, nor the window closed over it.
        p.clear();
        typeInto(view, 4, Col::Objekt, QStringLiteral("10"));
        typeInto(view, 4, Col::Anweisung, QStringLiteral("20"));
        view->setCurrentIndex(view->model()->index(0, Col::Text));
        QCOMPARE(view->currentIndex().row(), 4);
        QCOMPARE(p.lastText(), ProtocolGrid::duplicateRowText());
        p.clear();
        QVERIFY(!w.close());
        QCOMPARE(p.texts(), QStringList{ProtocolGrid::duplicateRowText()});
        if (QLineEdit *open = view->openEditor())
            QTest::keyClick(open, Qt::Key_Escape);   // the cell first
        QTest::keyClick(view, Qt::Key_Escape);        // then the row
        QVERIFY(w.close());
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp1}), 4);
        QCOMPARE(GetSetting(QStringLiteral("Anna\\env\\Protokoll\\Spalte03"), QStringLiteral("Width")),
                 QString::number(view->columnWidth(Col::Text)));
    }

    // With the real message window the focus leaves the cell while the message
    // shows; the refusal is shown once and the cell keeps its editor and text.
    void refusalUnderTheMessageWindow()
    {
        TempData d;
        addPlant(d.sql());
        Session session(d.db());
        login(session, Role::Administrator);
        frmProtokoll w(session);
        QVERIFY(w.zeig(Comp1, QStringLiteral("Pumpe")));
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        RuledTableView *view = gridOf(&w);
        GuiPresenter presenter;
        QStringList shown;
        QTimer closer;
        closer.setInterval(20);
        connect(&closer, &QTimer::timeout, [&shown] {
            if (QWidget *box = QApplication::activeModalWidget()) {
                shown << box->findChild<QLabel *>(QStringLiteral("lblMessageText"))->text();
                QTest::mouseClick(box->findChild<QPushButton *>(QStringLiteral("cmdOkay")), Qt::LeftButton);
            }
        });
        closer.start();
        QPointer<QLineEdit> e = typeInto(view, 1, Col::Anweisung, QStringLiteral("1x"));
        QTest::qWait(200);
        QCOMPARE(shown, QStringList{QStringLiteral("Nur numerische Zeichen erlaubt")});
        QVERIFY(e);
        QCOMPARE(view->openEditor(), e.data());
        QCOMPARE(e->text(), QStringLiteral("1x"));
        // The test platform doesn't hand activation back after a modal window.
        w.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QTRY_VERIFY(e->hasFocus());
        // A click on another row doesn't get away from it either.
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          QPoint(view->columnViewportPosition(Col::Text) + 5, view->rowViewportPosition(0) + 3));
        QTest::qWait(200);
        QCOMPARE(view->currentIndex(), view->model()->index(1, Col::Anweisung));
        QVERIFY(shown.size() <= 2);
        closer.stop();
    }

    void columnButtonsAndRights()
    {
        TempData d;
        addPlant(d.sql());
        Session session(d.db());
        login(session, Role::Master);
        frmProtokoll w(session);
        QStringList asked;
        w.setCatalogPicker([&asked](const QString &table) {
            asked << table;
            return std::pair<QString, QString>(QStringLiteral("Dichtung tauschen"), table == QLatin1String("Texte") ? QStringLiteral("6M") : QString());
        });
        QVERIFY(w.zeig(Comp1, QStringLiteral("Pumpe")));
        w.show();
        RuledTableView *view = gridOf(&w);
        ScriptedPresenter p;
        view->setCurrentIndex(view->model()->index(1, Col::Text));
        QTest::keyClick(view, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(asked, QStringList{QStringLiteral("Texte")});
        QCOMPARE(view->model()->index(1, Col::Text).data().toString(), QStringLiteral("Dichtung tauschen"));
        QCOMPARE(view->model()->index(1, Col::Intervall).data().toString(), QStringLiteral("6M"));
        view->setCurrentIndex(view->model()->index(1, Col::Intervall));
        QTest::keyClick(view, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(p.texts(), QStringList{intervalLegend()});
        view->setCurrentIndex(view->model()->index(1, Col::Betriebszustand));
        QTest::keyClick(view, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(p.lastText(), QStringLiteral("Zulässige Werte: R=in Ruhe, L=in Lauf/Betrieb, X=egal"));
        view->setCurrentIndex(view->model()->index(2, Col::Text));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0010", "Intervall"), QStringLiteral("6M"));
        // Ctrl+K works inside an open cell as well.
        view->setCurrentIndex(view->model()->index(2, Col::Materialcode));
        QVERIFY(view->edit(view->currentIndex(), QAbstractItemView::AllEditTriggers, nullptr));
        QTest::keyClick(view->openEditor(), Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(asked.last(), QStringLiteral("Material"));
        QCOMPARE(view->model()->index(2, Col::Materialcode).data().toString(), QStringLiteral("Dichtung tauschen"));
        QCOMPARE(view->model()->index(2, Col::Intervall).data().toString(), QStringLiteral("1W"));

        // A Werker sees and searches, and changes nothing.
        Session werker(d.db());
        login(werker, Role::Werker);
        frmProtokoll ww(werker);
        QStringList werkerAsked;
        ww.setCatalogPicker([&werkerAsked](const QString &t) { werkerAsked << t; return std::pair<QString, QString>(); });
        QVERIFY(ww.zeig(Comp1, QStringLiteral("Pumpe")));
        RuledTableView *wv = gridOf(&ww);
        QCOMPARE(wv->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(wv->model()->rowCount(), 3);   // no new row
        for (const char *name : {"mnuAnweisungenImport", "mnuAnweisungenExport", "mnuAnweisungenErsetzen", "mnuPopUpEdit",
                                 "mnuPopUpKopieren", "mnuPopUpEinfügen", "mnuPopUpDelete"})
            QVERIFY2(!action(&ww, QString::fromUtf8(name))->isEnabled(), name);
        QVERIFY(action(&ww, QStringLiteral("mnuAnweisungenSuchen"))->isEnabled());
        wv->setCurrentIndex(wv->model()->index(0, Col::Text));
        QTest::keyClick(wv, Qt::Key_K, Qt::ControlModifier);
        QVERIFY(werkerAsked.isEmpty());
        action(&ww, QStringLiteral("mnuAnweisungenSuchen"))->trigger();
        QVERIFY(!ww.Suchen()->findChild<QLineEdit *>(QStringLiteral("txtErsetzen"))->isVisible());
        QVERIFY(!ww.Suchen()->findChild<QPushButton *>(QStringLiteral("cmdErsetzen"))->isVisible());

        // A user may not change a Standard: the row menu is off.
        Session user(d.db());
        login(user, Role::User);
        frmProtokoll uw(user);
        QVERIFY(uw.zeig(Std, QStringLiteral("Norm-Pumpe")));
        QVERIFY(!uw.findChild<QMenu *>(QStringLiteral("mnuPopUp"))->menuAction()->isEnabled());
        QVERIFY(!action(&uw, QStringLiteral("mnuPopUpDelete"))->isEnabled());
        QVERIFY(action(&uw, QStringLiteral("mnuPopUpKopieren"))->isEnabled());
    }

    void selectingAndDeletingRows()
    {
        TempData d;
        addPlant(d.sql());
        for (int i = 3; i <= 30; ++i)
            addLine(d.sql(), Comp2, QStringLiteral("000020"), QString::number(i * 10).rightJustified(4, QLatin1Char('0')),
                    QStringLiteral("Schritt %1").arg(i));
        Session session(d.db());
        login(session, Role::Administrator);
        frmProtokoll w(session);
        QVERIFY(w.zeig(Comp1, QStringLiteral("Pumpe")));
        w.resize(900, 500);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        RuledTableView *view = gridOf(&w);
        ScriptedPresenter p;
        const auto rowY = [view](int row) { return QPoint(view->columnViewportPosition(Col::Text) + 5, view->rowViewportPosition(row) + 3); };

        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rowY(0));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ShiftModifier, rowY(2));
        QCOMPARE(w.selectedLines(), (QList<int>{0, 1, 2}));
        QVERIFY(p.texts().isEmpty());

        // A right click opens the row menu only outside the current cell.
        auto *popup = w.findChild<QMenu *>(QStringLiteral("mnuPopUp"));
        view->setCurrentIndex(view->model()->index(2, Col::Text));
        view->selectionModel()->select(QItemSelection(view->model()->index(0, 0), view->model()->index(2, Col::Count - 1)),
                                       QItemSelectionModel::ClearAndSelect);
        QTest::mouseClick(view->viewport(), Qt::RightButton, {}, rowY(2));
        QVERIFY(!popup->isVisible());
        // The row pointed at becomes current; a selection that holds it stays.
        QTest::mouseClick(view->viewport(), Qt::RightButton, {}, rowY(1));
        QVERIFY(popup->isVisible());
        popup->hide();
        QCOMPARE(view->currentIndex().row(), 1);
        QCOMPARE(w.selectedLines(), (QList<int>{0, 1, 2}));

        // Delete of several rows asks the plural question; No keeps them.
        p.answer(Answer::No);
        action(&w, QStringLiteral("mnuPopUpDelete"))->trigger();
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Wollen Sie die Position(en) wirklich löschen?")});
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp1}), 3);
        view->clearSelection();
        QTest::mouseClick(view->viewport(), Qt::MiddleButton, {}, rowY(0));
        QTest::mouseClick(view->viewport(), Qt::MiddleButton, {}, rowY(2));
        QCOMPARE(w.selectedLines(), (QList<int>{0, 2}));
        p.clear();
        p.answer(Answer::Yes);
        action(&w, QStringLiteral("mnuPopUpDelete"))->trigger();
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp1}), 1);
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0010", "Text"), QStringLiteral("Lager prüfen"));

        // One row: the singular question, for the current row.
        view->clearSelection();
        view->setCurrentIndex(view->model()->index(0, Col::Text));
        p.clear();
        p.answer(Answer::Yes);
        action(&w, QStringLiteral("mnuPopUpDelete"))->trigger();
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Wollen Sie die Position wirklich löschen?")});
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp1}), 0);

        // Shift over a list longer than the view: the message, and the selection stays.
        frmProtokoll w2(session);
        QVERIFY(w2.zeig(Comp2, QStringLiteral("Lüfter")));
        w2.resize(900, 250);
        w2.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w2));
        RuledTableView *v2 = gridOf(&w2);
        QVERIFY(v2->visibleRows() < 29);
        QTest::mouseClick(v2->viewport(), Qt::MiddleButton, {}, QPoint(50, v2->rowViewportPosition(1) + 3));
        p.clear();
        QTest::mouseClick(v2->viewport(), Qt::LeftButton, Qt::ShiftModifier, QPoint(50, v2->rowViewportPosition(3) + 3));
        QCOMPARE(p.texts().size(), 1);
        QVERIFY(p.lastText().startsWith(QStringLiteral("Leider ist ein Markieren mit der Shift-Taste nicht möglich")));
        QCOMPARE(w2.selectedLines(), QList<int>{1});
        action(&w2, QStringLiteral("mnuPopUpMarkieren"))->trigger();
        QCOMPARE(w2.selectedLines().size(), 29);
    }

    void copyAndPasteBetweenTwoComponents()
    {
        TempData d;
        addPlant(d.sql());
        exec(d.sql(), QStringLiteral("UPDATE ProtokollPositionen SET Text = '' WHERE TeNummer = ? AND Anweisung = '0020'"), {Comp1});
        copyToRowBuffer(d.sql(), {InstructionRow{}});   // left from before: the frame empties it
        Session session(d.db());
        login(session, Role::Administrator);
        frmMDIProtokolle frame(session);
        QCOMPARE(rowBufferCount(d.sql()), 0);
        QCOMPARE(frame.windowTitle(), QStringLiteral("Komponenten Anweisungsprotokolle"));
        frmProtokoll *a = frame.zeig(QStringLiteral("\"0000000001\""));
        frmProtokoll *b = frame.zeig(Comp2, QStringLiteral("Lüfter"));
        QCOMPARE(frame.zeig(Comp1), a);   // an open protocol is brought to the front
        QCOMPARE(frame.protocols().size(), 2);
        QCOMPARE(a->windowTitle(), QStringLiteral("Komponente 'Pumpe 'Süd''"));
        ScriptedPresenter p;

        action(a, QStringLiteral("mnuPopUpMarkieren"))->trigger();
        action(a, QStringLiteral("mnuPopUpKopieren"))->trigger();
        QVERIFY(p.texts().isEmpty());
        QCOMPARE(rowBufferCount(d.sql()), 3);
        action(b, QStringLiteral("mnuPopUpEinfügen"))->trigger();
        QCOMPARE(p.texts(), QStringList{QStringLiteral("1 von 3 Positionen wurden aufgrund falscher oder doppelter "
                                                       "Objekt/Anweisungs Nummern nicht übernommen")});
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp2}), 3);
        QCOMPARE(stored(d.sql(), Comp2, "000010", "0020", "Text"), QStringLiteral(" "));
        QCOMPARE(stored(d.sql(), Comp2, "000010", "0010", "Text"), QStringLiteral("Filter wechseln"));
        QCOMPARE(b->model()->rows().size(), 3);

        // Into an empty component every row arrives; a copy of nothing empties the buffer.
        exec(d.sql(), QStringLiteral("DELETE FROM ProtokollPositionen WHERE TeNummer = ?"), {Comp2});
        b->refresh();
        p.clear();
        action(b, QStringLiteral("mnuPopUpEinfügen"))->trigger();
        QCOMPARE(p.texts(), QStringList{QStringLiteral("3 Positionen wurden eingefügt")});
        a->grid()->clearSelection();
        action(a, QStringLiteral("mnuPopUpKopieren"))->trigger();
        p.clear();
        action(b, QStringLiteral("mnuPopUpEinfügen"))->trigger();
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Der Puffer is leer")});

        frame.resize(1000, 600);
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        action(a, QStringLiteral("mnuTile1"))->trigger();
        QCOMPARE(a->parentWidget()->geometry().top(), b->parentWidget()->geometry().top());
        QVERIFY(a->parentWidget()->geometry().left() != b->parentWidget()->geometry().left());
        shoot(&frame, QStringLiteral("frmMDIProtokolle_tiled.png"));
        action(a, QStringLiteral("mnuTile2"))->trigger();
        QCOMPARE(a->parentWidget()->geometry().left(), b->parentWidget()->geometry().left());
        QVERIFY(frame.close());
        QCOMPARE(GetSetting(QStringLiteral("Anna\\env\\MDIProtokolle"), QStringLiteral("Devider")), QStringLiteral("2"));
        QCOMPARE(GetSetting(QStringLiteral("Anna\\env\\MDIProtokolle"), QStringLiteral("Width")), QString::number(frame.width()));
    }

    void searchAndReplace()
    {
        TempData d;
        addPlant(d.sql());
        Session session(d.db());
        login(session, Role::Administrator);
        frmProtokoll w(session);
        QVERIFY(w.zeig(Comp1, QStringLiteral("Pumpe")));
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        RuledTableView *view = gridOf(&w);
        view->setCurrentIndex(view->model()->index(0, Col::Objekt));
        action(&w, QStringLiteral("mnuAnweisungenSuchen"))->trigger();
        frmDBGridSuchen *s = w.Suchen();
        QCOMPARE(s->windowTitle(), QStringLiteral("Suchen in Komponente 'Pumpe'"));
        auto *txtSuchen = s->findChild<QLineEdit *>(QStringLiteral("txtSuchen"));
        auto *txtErsetzen = s->findChild<QLineEdit *>(QStringLiteral("txtErsetzen"));
        auto *cmdSuchen = s->findChild<QPushButton *>(QStringLiteral("cmdSuchen"));
        auto *cmdErsetzen = s->findChild<QPushButton *>(QStringLiteral("cmdErsetzen"));
        auto *cmbRichtung = s->findChild<QComboBox *>(QStringLiteral("cmbRichtung"));
        QVERIFY(txtSuchen && txtErsetzen && cmdSuchen && cmdErsetzen && cmbRichtung);
        QVERIFY(s->findChild<QWidget *>(QStringLiteral("chkGroßKlein")));
        QCOMPARE(cmbRichtung->currentText(), QStringLiteral("Abwärts"));
        ScriptedPresenter p;

        txtSuchen->setText(QStringLiteral("LAGER"));
        QVERIFY(!cmdErsetzen->isEnabled());
        QTest::mouseClick(cmdSuchen, Qt::LeftButton);
        QCOMPARE(view->currentIndex(), view->model()->index(1, Col::Text));
        QVERIFY(view->openEditor());
        QCOMPARE(view->openEditor()->selectedText(), QStringLiteral("Lager"));
        QTest::mouseClick(cmdSuchen, Qt::LeftButton);
        QCOMPARE(view->currentIndex(), view->model()->index(2, Col::Text));
        // Upward from here wraps over the top to the last hit above.
        cmbRichtung->setCurrentIndex(1);
        QTest::mouseClick(cmdSuchen, Qt::LeftButton);
        QCOMPARE(view->currentIndex(), view->model()->index(1, Col::Text));
        cmbRichtung->setCurrentIndex(0);

        // Replace: the selected hit is replaced, then the next one is found.
        txtErsetzen->setText(QStringLiteral("Welle"));
        QVERIFY(cmdErsetzen->isEnabled());
        QTest::mouseClick(cmdErsetzen, Qt::LeftButton);
        QCOMPARE(view->model()->index(1, Col::Text).data().toString(), QStringLiteral("Welle prüfen"));
        QCOMPARE(view->currentIndex(), view->model()->index(2, Col::Text));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0010", "Text"), QStringLiteral("Welle prüfen"));
        QTest::mouseClick(cmdErsetzen, Qt::LeftButton);
        QCOMPARE(view->model()->index(2, Col::Text).data().toString(), QStringLiteral("Welle schmieren"));
        QCOMPARE(p.texts(), QStringList{QStringLiteral("'LAGER' nicht gefunden")});
        view->setCurrentIndex(view->model()->index(0, Col::Text));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0020", "Text"), QStringLiteral("Welle schmieren"));

        // Weitersuchen without a search text shows the dialog instead.
        txtSuchen->clear();
        s->hide();
        action(&w, QStringLiteral("mnuAnweisungenWeitersuchen"))->trigger();
        QVERIFY(s->isVisible());
    }

    void positionDialogProposesAndWrites()
    {
        TempData d;
        addPlant(d.sql());
        Session session(d.db());
        login(session, Role::Administrator);
        frmMDIProtokolle frame(session);
        frmProtokoll *w = frame.zeig(Comp1);
        frmProtokollPosition *dlg = frame.positionDialog();
        RuledTableView *view = w->grid();
        auto *txtObjekt = dlg->findChild<QLineEdit *>(QStringLiteral("txtObjekt"));
        auto *txtAnweisung = dlg->findChild<QLineEdit *>(QStringLiteral("txtAnweisung"));
        auto *txtText = dlg->findChild<QLineEdit *>(QStringLiteral("txtText"));
        auto *txtAnzahlPersonen = dlg->findChild<QLineEdit *>(QStringLiteral("txtAnzahlPersonen"));
        auto *cmdOk = dlg->findChild<QPushButton *>(QStringLiteral("cmdOk"));
        QVERIFY(txtObjekt && txtAnweisung && txtText && cmdOk && dlg->findChild<QPushButton *>(QStringLiteral("cmdAusführender")));
        QCOMPARE(dlg->windowTitle(), QStringLiteral("Auftrags-Position"));
        ScriptedPresenter p;

        view->setCurrentIndex(view->model()->index(1, Col::Text));   // 000010/0010
        QVERIFY(dlg->prepare(*w, 2));
        QCOMPARE(txtObjekt->text(), QStringLiteral("000010"));
        QCOMPARE(txtAnweisung->text(), QStringLiteral("0015"));
        QCOMPARE(dlg->findChild<QComboBox *>(QStringLiteral("dbcIntervall"))->currentText(), QStringLiteral("1W"));
        txtText->setText(QStringLiteral("Kupplung prüfen"));
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS")) {
            dlg->show();
            shoot(dlg, QStringLiteral("frmProtokollPosition.png"));
        }
        QTest::mouseClick(cmdOk, Qt::LeftButton);
        QVERIFY(p.texts().isEmpty());
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0015", "Text"), QStringLiteral("Kupplung prüfen"));
        QCOMPARE(stored(d.sql(), Comp1, "000010", "0015", "Intervalltyp"), QStringLiteral("L"));
        QCOMPARE(w->model()->rows().at(w->currentLine()).Anweisung, QStringLiteral("0015"));

        // After the last row: its number + 10. Before the first instruction: the midpoint to the head row.
        view->setCurrentIndex(view->model()->index(3, Col::Text));
        QVERIFY(dlg->prepare(*w, 2));
        QCOMPARE(txtAnweisung->text(), QStringLiteral("0030"));
        view->setCurrentIndex(view->model()->index(1, Col::Text));
        QVERIFY(dlg->prepare(*w, 1));
        QCOMPARE(txtObjekt->text(), QStringLiteral("000010"));
        QCOMPARE(txtAnweisung->text(), QStringLiteral("0005"));

        // The dialog's own checks: persons expected; an existing pair refused.
        txtAnzahlPersonen->clear();
        QTest::mouseClick(cmdOk, Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Es wird eine Personen-Anzahl erwartet")});
        txtAnzahlPersonen->setText(QStringLiteral("2"));
        txtAnweisung->setText(QStringLiteral("0010"));
        QTest::mouseClick(cmdOk, Qt::LeftButton);
        QCOMPARE(p.lastText(), QStringLiteral("Ein Eintrag mit diesem Objekt/Anweisungs-Paar existiert schon"));
        QCOMPARE(countRows(d.sql(), TabPositionen, QStringLiteral("TeNummer = ?"), {Comp1}), 4);
    }

    void openingALongProtocol()
    {
        TempData d;
        addComponent(d.sql(), Comp1, QStringLiteral("0"), QStringLiteral("Groß"));
        {
            Transaction tx(d.sql());
            for (int o = 1; o <= 100; ++o)
                for (int a = 0; a < 20; ++a)
                    addLine(d.sql(), Comp1, QString::number(o * 10).rightJustified(6, QLatin1Char('0')),
                            QString::number(a * 10).rightJustified(4, QLatin1Char('0')), QStringLiteral("Anweisung %1").arg(a));
            tx.commit();
        }
        Session session(d.db());
        login(session, Role::Administrator);
        frmMDIProtokolle frame(session);
        frame.resize(1200, 800);
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        QElapsedTimer t;
        t.start();
        frmProtokoll *w = frame.zeig(Comp1);
        QCoreApplication::processEvents();
        w->grid()->viewport()->repaint();
        const qint64 openMs = t.elapsed();
        QCOMPARE(w->model()->rows().size(), 2000);
        QScrollBar *bar = w->grid()->verticalScrollBar();
        t.restart();
        int steps = 0;
        for (int v = 0; v <= bar->maximum(); v += 10, ++steps) {
            bar->setValue(v);
            w->grid()->viewport()->repaint();
        }
        const double perStep = steps ? double(t.elapsed()) / steps : 0;
        std::printf("protocol_open_2000_ms %lld ms\nprotocol_scroll_step_ms %.2f ms\n", openMs, perStep);
    }
};

QTEST_MAIN(TestProtokoll)
#include "tst_protokoll.moc"
