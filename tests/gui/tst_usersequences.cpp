// Keys and clicks in the order a person gives them, from the real main window
// after a login, and settings carried from one session to the next.
#include "gui/core/ProgramIcon.h"
#include "gui/core/frmFirstTime.h"
#include "gui/instructions/ProtocolModel.h"
#include "gui/instructions/frmMDIProtokolle.h"
#include "gui/instructions/frmProtokoll.h"
#include "gui/structure/frmMain.h"
#include "support/GuiSession.h"
#include "zol/core/Settings.h"
#include "zol/core/Sql.h"
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QSqlQuery>
#include <QTreeView>
#include <QtTest>

using zoltest::GuiSession;

namespace {

QStringList visibleClasses()
{
    QStringList out;
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->isVisible())
            out << QString::fromLatin1(w->metaObject()->className());
    return out;
}

QString nodeText(GuiSession &s, const QString &fileIndex)
{
    QSqlQuery q = zol::exec(s.sql(), QStringLiteral("SELECT Text FROM ProtokollKopf WHERE FileIndex = ?"), {fileIndex});
    return q.next() ? q.value(0).toString() : QString();
}

// The protocol of the first component, opened from the list by Enter; with
// empty the component's lines are deleted first.
frmProtokoll *openProtocol(GuiSession &s, bool empty, QString *teNummer = nullptr)
{
    const QString key = s.pointAtComponent();
    if (key.isEmpty())
        return nullptr;
    if (empty)
        zol::exec(s.sql(), QStringLiteral("DELETE FROM ProtokollPositionen WHERE TeNummer = ?"), {key});
    if (teNummer)
        *teNummer = key;
    GuiSession::press(Qt::Key_Return);
    QApplication::processEvents();
    for (QWidget *w : QApplication::topLevelWidgets())
        if (auto *mdi = qobject_cast<frmMDIProtokolle *>(w); mdi && mdi->isVisible() && !mdi->protocols().isEmpty()) {
            frmProtokoll *p = mdi->protocols().constLast();
            mdi->activateWindow();
            if (!QTest::qWaitForWindowActive(mdi))
                return nullptr;
            p->grid()->setFocus();
            return p;
        }
    return nullptr;
}

int lines(GuiSession &s, const QString &teNummer, const QString &where = QStringLiteral("1 = 1"),
          const QVariantList &values = {})
{
    return zoltest::countRows(s.sql(), QStringLiteral("ProtokollPositionen"),
                              QStringLiteral("TeNummer = ? AND ") + where, QVariantList{teNummer} + values);
}

QString rowHeader(const RuledTableView *grid, int row)
{
    return grid->model()->headerData(row, Qt::Vertical).toString();
}

}

class TestUserSequences : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        // Keys of one test must not land in a window another left open.
        for (QWidget *w : QApplication::topLevelWidgets())
            if (w->isVisible())
                w->close();
    }

    // Qt's own dialogs and buttons speak German from the start on.
    void qtDialogsSpeakGerman()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Save);
        QCOMPARE(box.button(QDialogButtonBox::Cancel)->text().remove(QLatin1Char('&')), QStringLiteral("Abbrechen"));
        QCOMPARE(box.button(QDialogButtonBox::Save)->text().remove(QLatin1Char('&')), QStringLiteral("Speichern"));
    }

    // With week 50 planned, "5" typed into the week box is week 05: the box
    // never completes what is typed from its list, and Enter plans the week typed.
    void weekTypedIsTheWeekPlanned()
    {
        GuiSession s;
        const QString jahr = QString::number(QDate::currentDate().year());
        QVERIFY(s.login(QStringLiteral("Meister")));
        zol::exec(s.sql(), QStringLiteral("INSERT INTO Auftrag (TeIndex, Jahr, Woche, Objekt, Anweisung, Bemerkung)"
                                          " VALUES ('0000000001', ?, '50', '000010', '0010', 'erledigt')"),
                  {jahr});
        const auto opened = s.trigger(QStringLiteral("mnuAuftragGenerieren"));
        QWidget *w = opened.window();
        QVERIFY(w);
        auto *woche = w->findChild<QComboBox *>(QStringLiteral("dbcWoche"));
        QVERIFY(woche && woche->findText(QStringLiteral("50")) >= 0);
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        woche->setFocus();
        GuiSession::type(QStringLiteral("5"));
        QCOMPARE(woche->currentText(), QStringLiteral("5"));

        zoltest::ModalWatcher yes([](QWidget *m) {
            if (auto *b = m->findChild<QPushButton *>(QStringLiteral("cmdYNYes")); b && b->isVisible())
                b->click();
        });
        GuiSession::press(Qt::Key_Return);
        QCOMPARE(woche->currentText(), QStringLiteral("05"));
        QVERIFY(!yes.messages.isEmpty());
        QVERIFY2(yes.messages.first().contains(QStringLiteral("Woche 05")), qPrintable(yes.messages.first()));
        QCOMPARE(zoltest::countRows(s.sql(), QStringLiteral("Auftrag"),
                                    QStringLiteral("Jahr = ? AND Woche = '50' AND Bemerkung = 'erledigt'"), {jahr}),
                 1);
        w->close();
    }

    // The filter boxes of the search views keep what is typed as well.
    void searchFilterTypedStaysAsTyped()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        frmMain &w = s.main();
        w.findChild<QAction *>(QStringLiteral("mnuViewMode1"))->trigger();
        QApplication::processEvents();
        QComboBox *filter = nullptr;
        for (QComboBox *c : w.findChildren<QComboBox *>())
            if (c->isVisible() && c->isEditable()) {
                filter = c;
                break;
            }
        QVERIFY(filter);
        filter->showPopup();   // a filter box fills its list when it opens
        filter->hidePopup();
        QVERIFY(filter->count() > 0);
        const QString first = filter->itemText(filter->count() - 1);
        QVERIFY(first.size() > 1);
        filter->lineEdit()->clear();
        QTest::keyClicks(filter, first.left(1));
        QCOMPARE(filter->currentText(), first.left(1));
    }

    // The search print lists each filter set with its fixed caption, in the
    // fixed order, whatever the labels of the search view say.
    void searchPrintCaptions()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        frmMain &w = s.main();
        w.findChild<QAction *>(QStringLiteral("mnuViewMode1"))->trigger();
        QApplication::processEvents();
        int set = 0;
        for (int i = 0; i < 19; ++i)
            if (auto *c = w.findChild<QComboBox *>(QStringLiteral("dbcParameter%1").arg(i)); c && c->isVisible()) {
                c->setEditText(QStringLiteral("F%1").arg(i));
                ++set;
            }
        QVERIFY(set >= 3);
        zoltest::RecordingPreview preview;
        zoltest::ModalWatcher no([](QWidget *m) {
            if (auto *b = m->findChild<QPushButton *>(QStringLiteral("cmdYNNo")); b && b->isVisible())
                b->click();
        });
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("cmdSucheDrucken")), Qt::LeftButton);
        QTRY_COMPARE(preview.calls, 1);
        const QStringList fixed = {"Name:", "Bezugswoche:", "Bezugsjahr:", "Kostenstelle:", "Ident-Nr.:",
                                   "Klassifizierung:", "Standort:", "Lokalisierung:", "Hersteller:", "Typ:",
                                   "Inspekteur:", "WI-Steuerung:", "Laufweg:", "Option:", "Keine Wartung:",
                                   "Von Woche 1:", "Bis Woche 1:", "Von Woche 2:", "Bis Woche 2:"};
        QStringList captions;
        QStringList values;
        for (const zol::PrintItem &it : preview.store.page(1).items) {
            if (it.Text.endsWith(QLatin1Char(':')) && it.Text != QLatin1String("Suchfilter:")
                && it.Text != QLatin1String("Ergebnis:"))
                captions << it.Text;
            if (QRegularExpression(QStringLiteral("^F\\d+$")).match(it.Text).hasMatch())
                values << it.Text;
        }
        QCOMPARE(captions.size(), set);
        QCOMPARE(values.size(), set);
        int last = -1;
        for (int k = 0; k < captions.size(); ++k) {
            const int at = int(fixed.indexOf(captions.at(k)));
            QVERIFY2(at > last, qPrintable(captions.at(k)));
            QCOMPARE(values.at(k), QStringLiteral("F%1").arg(at));
            last = at;
        }
    }

    // The main window comes back as it was left, session after session:
    // maximised or not, the divider where it stood, nothing wider than the screen.
    void mainWindowSameAfterThreeSessions_data()
    {
        QTest::addColumn<bool>("maximised");
        QTest::newRow("maximised") << true;
        QTest::newRow("normal") << false;
    }

    void mainWindowSameAfterThreeSessions()
    {
        QFETCH(bool, maximised);
        GuiSession s;
        const QString section = QStringLiteral("Admin\\env\\MainSettings");
        zol::SaveSetting(section, QStringLiteral("MainWindowState"), maximised ? 2 : 0);
        zol::SaveSetting(section, QStringLiteral("MainLeft"), 1500);
        zol::SaveSetting(section, QStringLiteral("MainTop"), 1200);
        zol::SaveSetting(section, QStringLiteral("MainWidth"), 9000);
        zol::SaveSetting(section, QStringLiteral("MainHeight"), 6000);
        zol::SaveSetting(section, QStringLiteral("MainDevider"), 3000);
        const QRect screen = QApplication::primaryScreen()->availableGeometry();

        QRect firstGeometry;
        for (int session = 1; session <= 3; ++session) {
            const QByteArray where = "session " + QByteArray::number(session);
            QVERIFY2(s.login(QStringLiteral("Admin")), where);
            frmMain &w = s.main();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            QApplication::processEvents();
            QCOMPARE(w.isMaximized(), maximised);
            auto *splitter = w.findChild<QSplitter *>(QStringLiteral("imgSplitter"));
            auto *tree = w.findChild<QTreeView *>(QStringLiteral("tvTreeView"));
            auto *list = w.findChild<QTreeView *>(QStringLiteral("lvListView"));
            QCOMPARE(splitter->sizes().value(0), 3000 / 15);
            QVERIFY2(w.frameGeometry().width() <= screen.width() + 20, where);
            QVERIFY2(list->width() > 100, where);
            if (!maximised) {
                QCOMPARE(w.geometry(), QRect(100, 80, 600, 400));
            } else if (session == 1) {
                firstGeometry = w.geometry();
            } else {
                QCOMPARE(w.geometry(), firstGeometry);
            }
            // The title over the tree stands over the tree.
            auto *title = w.findChild<QLabel *>(QStringLiteral("lblTitle0"));
            QCOMPARE(title->width(), tree->width() + splitter->handleWidth());
            if (session == 3 && qEnvironmentVariableIsSet("ZOL_SCREENSHOTS"))
                w.grab().save(QDir(qEnvironmentVariable("ZOL_SCREENSHOTS"))
                                  .filePath(QStringLiteral("frmMain-session3-%1.png").arg(maximised ? "max" : "normal")));
            s.logout();
            QCOMPARE(zol::GetSettingInt(section, QStringLiteral("MainDevider"), 0), 3000);
            QCOMPARE(zol::GetSettingInt(section, QStringLiteral("MainWindowState"), -1), maximised ? 2 : 0);
            QCOMPARE(zol::GetSettingInt(section, QStringLiteral("MainWidth"), 0), 9000);
        }
    }

    // Enter that ends a rename in the list renames and opens nothing, whether
    // the name is taken or refused.
    void enterEndingRenameOpensNothing_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("renamed");
        QTest::newRow("taken") << QStringLiteral("Umbenannte Pumpe") << true;
        QTest::newRow("refused") << QString() << false;
    }

    void enterEndingRenameOpensNothing()
    {
        QFETCH(QString, typed);
        QFETCH(bool, renamed);
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        if (s.firstTime())
            s.firstTime()->close();
        const QString key = s.pointAtComponent();
        QVERIFY(!key.isEmpty());
        const QString before = nodeText(s, key);
        const QStringList windowsBefore = visibleClasses();

        GuiSession::press(Qt::Key_F2);
        auto *edit = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(edit);
        edit->selectAll();
        GuiSession::press(Qt::Key_Delete);
        GuiSession::type(typed);
        zoltest::ModalWatcher ok;
        GuiSession::press(Qt::Key_Return);
        QTest::qWait(50);
        QCOMPARE(nodeText(s, key), renamed ? typed : before);
        QCOMPARE(ok.messages.size(), renamed ? 0 : 1);
        QCOMPARE(visibleClasses(), windowsBefore);
    }

    // Rows entered by keys alone: leaving a row in any direction writes it,
    // and a fresh new row follows, in an empty grid and in a full one.
    void gridRowsByKeysAlone_data()
    {
        QTest::addColumn<bool>("empty");
        QTest::addColumn<int>("key");
        for (bool empty : {true, false}) {
            const char *list = empty ? "empty" : "full";
            QTest::newRow(qPrintable(QStringLiteral("%1 Down").arg(list))) << empty << int(Qt::Key_Down);
            QTest::newRow(qPrintable(QStringLiteral("%1 Tab").arg(list))) << empty << int(Qt::Key_Tab);
            QTest::newRow(qPrintable(QStringLiteral("%1 Enter").arg(list))) << empty << int(Qt::Key_Return);
        }
    }

    void gridRowsByKeysAlone()
    {
        QFETCH(bool, empty);
        QFETCH(int, key);
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        QString te;
        frmProtokoll *w = openProtocol(s, empty, &te);
        QVERIFY(w);
        RuledTableView *grid = w->grid();
        const int stored = lines(s, te);
        QCOMPARE(stored == 0, empty);

        for (int n = 1; n <= 2; ++n) {
            // To the new row, into its text column, and type.
            GuiSession::press(Qt::Key_End, Qt::ControlModifier);
            GuiSession::press(Qt::Key_Home);
            QVERIFY(w->model()->isNewRow(grid->currentIndex().row()));
            GuiSession::press(Qt::Key_Right);
            GuiSession::press(Qt::Key_Right);
            QCOMPARE(grid->currentIndex().column(), zol::Col::Text);
            GuiSession::type(QStringLiteral("Neue Pruefung %1").arg(n));
            if (key == Qt::Key_Down) {
                GuiSession::press(Qt::Key_Down);
            } else {
                // On through the row's cells, and past its last one.
                for (int col = zol::Col::Text; col < zol::Col::Count; ++col)
                    GuiSession::press(Qt::Key(key));
            }
            QApplication::processEvents();
            QCOMPARE(lines(s, te), stored + n);
            QCOMPARE(lines(s, te, QStringLiteral("Text = ?"), {QStringLiteral("Neue Pruefung %1").arg(n)}), 1);
            // The fresh new row is the current one, empty and unchanged.
            const QModelIndex cur = grid->currentIndex();
            QVERIFY(w->model()->isNewRow(cur.row()));
            QVERIFY(!w->model()->isDirty(cur.row()));
            QCOMPARE(cur.data().toString(), QString());
        }
        if (qEnvironmentVariableIsSet("ZOL_SCREENSHOTS") && !empty && key == Qt::Key_Down) {
            GuiSession::press(Qt::Key_Up);
            GuiSession::press(Qt::Key_Up);
            w->window()->grab().save(QDir(qEnvironmentVariable("ZOL_SCREENSHOTS")).filePath(QStringLiteral("frmProtokoll-current.png")));
        }
    }

    // A first protocol window shows its columns as far as the frame allows,
    // and carries the program's icon.
    void protocolWindowFirstSizeAndIcon()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        frmProtokoll *w = openProtocol(s, false);
        QVERIFY(w);
        auto *sub = qobject_cast<QMdiSubWindow *>(w->parentWidget());
        QVERIFY(sub);
        auto *mdi = qobject_cast<frmMDIProtokolle *>(sub->window());
        QVERIFY(mdi);
        const RuledTableView *grid = w->grid();
        int columns = 0;
        for (int col = 0; col < grid->model()->columnCount(); ++col)
            if (!grid->isColumnHidden(col))
                columns += grid->columnWidth(col);
        QVERIFY(sub->width() > 600);
        QVERIFY(grid->viewport()->width() >= columns || sub->width() >= mdi->mdiArea()->viewport()->width() - 1);
        QCOMPARE(sub->windowIcon().pixmap(16).toImage(), programIcon().pixmap(16).toImage());
    }

    // The maintenance-free times are a keyboard grid too, and Del asks first.
    void maintenanceFreeTimesByKeys()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        const auto opened = s.trigger(QStringLiteral("mnuWartungsfreieZeiten"));
        QWidget *w = opened.window();
        QVERIFY(w);
        auto *grid = w->findChild<RuledTableView *>(QStringLiteral("DBGrid1"));
        QVERIFY(grid);
        w->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        grid->setFocus();
        const auto ranges = [&](const QString &where = QStringLiteral("1 = 1")) {
            return zoltest::countRows(s.sql(), QStringLiteral("WartungsfreieZeit"), where);
        };
        const int before = ranges();
        GuiSession::press(Qt::Key_End, Qt::ControlModifier);
        GuiSession::press(Qt::Key_Home);
        GuiSession::type(QStringLiteral("7"));
        GuiSession::press(Qt::Key_Tab);
        GuiSession::type(QStringLiteral("9"));
        GuiSession::press(Qt::Key_Tab);
        GuiSession::type(QStringLiteral("Stillstand"));
        GuiSession::press(Qt::Key_Tab);
        QCOMPARE(ranges(QStringLiteral("WocheVon = '07' AND WocheBis = '09' AND Kommentar = 'Stillstand'")), 1);
        GuiSession::type(QStringLiteral("30"));
        GuiSession::press(Qt::Key_Tab);
        GuiSession::type(QStringLiteral("31"));
        GuiSession::press(Qt::Key_Down);
        QCOMPARE(ranges(), before + 2);

        // The first range selected by its row header, then Del: No keeps it, Yes deletes it.
        auto *header = grid->verticalHeader();
        for (const bool yes : {false, true}) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              QPoint(header->width() / 2, header->sectionViewportPosition(0) + 3));
            QVERIFY(grid->selectionModel()->isRowSelected(0, {}));
            zoltest::ModalWatcher answer([yes](QWidget *m) {
                if (auto *b = m->findChild<QPushButton *>(yes ? QStringLiteral("cmdYNYes") : QStringLiteral("cmdYNNo"));
                    b && b->isVisible())
                    b->click();
            });
            // Back in the window after the message, as the user is.
            w->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(w));
            grid->setFocus();
            GuiSession::press(Qt::Key_Delete);
            QCOMPARE(answer.messages, QStringList{QStringLiteral("Wollen Sie die Position wirklich löschen?")});
            QCOMPARE(ranges(), before + (yes ? 1 : 2));
        }
        w->close();
    }

    // A row typed into an empty list reaches the file with Aktualisieren.
    void refreshWritesTheFirstRow()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        QString te;
        frmProtokoll *w = openProtocol(s, true, &te);
        QVERIFY(w);
        GuiSession::press(Qt::Key_Right);
        GuiSession::press(Qt::Key_Right);
        GuiSession::type(QStringLiteral("Erste Zeile"));
        w->findChild<QAction *>(QStringLiteral("mnuViewRefresh"))->trigger();
        QCOMPARE(lines(s, te, QStringLiteral("Text = 'Erste Zeile'")), 1);
        QCOMPARE(w->model()->rows().size(), 1);
    }

    // The row header shows the current row; a right click makes the row under
    // the pointer current before the popup opens, so "Löschen" deletes it.
    void rightClickActsOnTheRowPointedAt()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        QString te;
        frmProtokoll *w = openProtocol(s, false, &te);
        QVERIFY(w);
        RuledTableView *grid = w->grid();
        QVERIFY(w->model()->rows().size() >= 3);
        QCOMPARE(grid->currentIndex().row(), 0);
        QCOMPARE(rowHeader(grid, 0), QStringLiteral("▶"));
        GuiSession::press(Qt::Key_Down);
        QCOMPARE(rowHeader(grid, 0), QString());
        QCOMPARE(rowHeader(grid, 1), QStringLiteral("▶"));
        GuiSession::press(Qt::Key_Up);

        const zol::InstructionRow first = w->model()->rows().at(0);
        const zol::InstructionRow pointed = w->model()->rows().at(2);
        const QRect cell = grid->visualRect(w->model()->index(2, zol::Col::Text));
        QTest::mouseClick(grid->viewport(), Qt::RightButton, {}, cell.center());
        QCOMPARE(grid->currentIndex().row(), 2);
        QCOMPARE(rowHeader(grid, 2), QStringLiteral("▶"));
        QMenu *popup = w->findChild<QMenu *>(QStringLiteral("mnuPopUp"));
        QVERIFY(popup && popup->isVisible());
        zoltest::ModalWatcher yes([](QWidget *m) {
            if (auto *b = m->findChild<QPushButton *>(QStringLiteral("cmdYNYes")); b && b->isVisible())
                b->click();
        });
        popup->hide();
        w->findChild<QAction *>(QStringLiteral("mnuPopUpDelete"))->trigger();
        QCOMPARE(yes.messages, QStringList{QStringLiteral("Wollen Sie die Position wirklich löschen?")});
        QCOMPARE(lines(s, te, QStringLiteral("Objekt = ? AND Anweisung = ?"), {pointed.Objekt, pointed.Anweisung}), 0);
        QCOMPARE(lines(s, te, QStringLiteral("Objekt = ? AND Anweisung = ?"), {first.Objekt, first.Anweisung}), 1);
    }

    // A decimal point typed in the grid or the position dialog is stored as a comma.
    void decimalPointBecomesComma()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        QString te;
        frmProtokoll *w = openProtocol(s, false, &te);
        QVERIFY(w);
        RuledTableView *grid = w->grid();
        int row = 0;
        while (w->model()->rows().at(row).Anweisung == QLatin1String("0000"))
            ++row;
        const zol::InstructionRow line = w->model()->rows().at(row);
        grid->setCurrentIndex(w->model()->index(row, zol::Col::Planzeit));
        GuiSession::type(QStringLiteral("0.5"));
        GuiSession::press(Qt::Key_Tab);
        GuiSession::press(Qt::Key_Tab);
        GuiSession::type(QStringLiteral("1.25"));
        GuiSession::press(Qt::Key_Up);
        const QString where = QStringLiteral("Objekt = ? AND Anweisung = ?");
        QCOMPARE(lines(s, te, where + QStringLiteral(" AND Planzeit = '0,5' AND Materialmenge = '1,25'"),
                       {line.Objekt, line.Anweisung}),
                 1);

        // The dialog of the row: a point typed becomes a comma there too.
        grid->setCurrentIndex(w->model()->index(row, zol::Col::Text));
        QString shown;
        zoltest::ModalWatcher dialog([&](QWidget *m) {
            auto *planzeit = m->findChild<QLineEdit *>(QStringLiteral("txtPlanzeit"));
            if (!planzeit)
                return;
            planzeit->setFocus();
            planzeit->selectAll();
            QTest::keyClicks(planzeit, QStringLiteral("2.5"));
            shown = planzeit->text();
            m->findChild<QPushButton *>(QStringLiteral("cmdOk"))->click();
        });
        w->findChild<QAction *>(QStringLiteral("mnuPopUpEdit"))->trigger();
        QTRY_COMPARE(shown, QStringLiteral("2,5"));
        QTRY_COMPARE(lines(s, te, where + QStringLiteral(" AND Planzeit = '2,5'"), {line.Objekt, line.Anweisung}), 1);
    }
};

QTEST_MAIN(TestUserSequences)
#include "tst_usersequences.moc"
