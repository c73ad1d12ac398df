#include "gui/feedback/frmRueckmeldung.h"
#include "gui/repair/ISAuftraegeModel.h"
#include "gui/repair/frmISAuftraege.h"
#include "support/GuiSession.h"
#include "zol/core/Clock.h"
#include "zol/core/Messages.h"
#include "zol/core/Sql.h"
#include "zol/planning/PlanningRun.h"
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTreeView>
#include <QtTest>

using namespace zol;
using zoltest::countRows;
using zoltest::GuiSession;

namespace {

template <typename T> T *child(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromUtf8(name));
    if (!c)
        qWarning("missing %s", name);
    return c;
}

int orders(GuiSession &s, const QString &where = {}) { return countRows(s.sql(), QStringLiteral("Erfassung"), where); }

QString heute(int tage = 0) { return Heute().addDays(tage).toString(QStringLiteral("yyyy.MM.dd")); }

}   // namespace

class TestRepairWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // From a component of the list: a new order is written at once, abandoning
    // it leaves no row, and a second one is filled by keys and saved.
    void newOrderFromComponent()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        const int before = orders(s);
        QVERIFY(before > 0);
        QVERIFY(!s.pointAtComponent().isEmpty());

        bool seen = false;
        GuiSession::Opened abandoned = s.trigger(QStringLiteral("mnuAufträgeISAuftragErstellen"), [&](QWidget *w) {
            if (w->objectName() != u"frmErfassungAllgemein")
                return;
            seen = true;
            QCOMPARE(orders(s), before + 1);   // written before anything is typed
            for (const char *name : {"cmdMoveNext", "dbcName", "optAlleAufträge", "cmdÜbernehmen", "cmdDelete"})
                QVERIFY2(!child<QWidget>(w, name)->isEnabled(), name);
            ScriptedPresenter p;
            p.answer(Answer::No).answer(Answer::Yes);
            QTest::mouseClick(child<QPushButton>(w, "cmdAbbruch"), Qt::LeftButton);
            QCOMPARE(p.texts().size(), 1);
            QVERIFY(w->isVisible());   // No stays
            QTest::mouseClick(child<QPushButton>(w, "cmdAbbruch"), Qt::LeftButton);
            QTRY_COMPARE(p.texts(), QStringList(2, QStringLiteral("Diese IS-Auftrags-Neuanlage wirklich abbrechen?")));
        });
        QVERIFY(seen);
        QVERIFY(!abandoned.forced);
        QCOMPARE(orders(s), before);
        // Closed by its frame, a new order never saved goes as well.
        const GuiSession::Opened closed = s.trigger(QStringLiteral("mnuAufträgeISAuftragErstellen"));
        QCOMPARE(closed.modals, QStringList{QStringLiteral("frmErfassungAllgemein")});
        QCOMPARE(orders(s), before);

        s.trigger(QStringLiteral("mnuPopUpLv1ISAuftrag"), [&](QWidget *w) {
            if (w->objectName() != u"frmErfassungAllgemein")
                return;
            QCOMPARE(child<QComboBox>(w, "dbcLaufendeNummer")->currentText().size(), 5);
            auto *stunden = child<QLineEdit>(w, "txtStunden");
            stunden->selectAll();
            QTest::keyClicks(stunden, QStringLiteral("2h"));   // the letter is swallowed
            QCOMPARE(stunden->text(), QStringLiteral("2"));
            auto *minuten = child<QLineEdit>(w, "txtMinuten");
            minuten->selectAll();
            QTest::keyClicks(minuten, QStringLiteral("30"));
            auto *lohn = child<QLineEdit>(w, "txtLohnkosten");
            lohn->selectAll();
            QTest::keyClicks(lohn, QStringLiteral("120,50"));
            auto *prio = child<QComboBox>(w, "cmbPrioritaet");
            prio->setCurrentIndex(1);
            emit prio->textActivated(prio->currentText());
            child<QComboBox>(w, "cmbSchadenart")->setCurrentIndex(14);
            child<QPlainTextEdit>(w, "txtBeschreibung")->setPlainText(QStringLiteral("Dichtung tropft"));
            {
                // Letters in the labour costs stop the save with their message; the window stays.
                ScriptedPresenter p;
                lohn->setText(QStringLiteral("12x"));
                QTest::mouseClick(child<QPushButton>(w, "cmdOk"), Qt::LeftButton);
                QCOMPARE(p.texts(), QStringList{QStringLiteral("Der Wert muß numerisch sein")});
                QVERIFY(w->isVisible());
                QCOMPARE(orders(s, QStringLiteral("Bemerkung = 'Dichtung tropft'")), 0);
                lohn->setText(QStringLiteral("120,50"));
            }
            QTest::mouseClick(child<QPushButton>(w, "cmdOk"), Qt::LeftButton);
        });
        QCOMPARE(orders(s), before + 1);
        QCOMPARE(orders(s, QStringLiteral("Stunden = 2 AND Minuten = 30 AND Lohnkosten = 120.5 AND Prioritaet = '1' "
                                          "AND ZuErledigenBis = '%1' AND Schadensart = 14 AND ErledigtJN = 0 "
                                          "AND Bemerkung = 'Dichtung tropft'")
                               .arg(heute(2))),
                 1);
    }

    // Browsing: moves, a name no order has falls back to the first row,
    // the status options narrow, a done order locks its fields, deleting asks.
    void browseFilterAndDelete()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Admin")));
        const int before = orders(s);
        s.trigger(QStringLiteral("mnuAufträgeISAuftragBearbeiten"), [&](QWidget *w) {
            if (w->objectName() != u"frmErfassungAllgemein")
                return;
            auto *name = child<QComboBox>(w, "dbcName");
            auto *lfd = child<QComboBox>(w, "dbcLaufendeNummer");
            const QString first = name->currentText() + lfd->currentText();
            QTest::mouseClick(child<QPushButton>(w, "cmdMoveNext"), Qt::LeftButton);
            QVERIFY(name->currentText() + lfd->currentText() != first);
            QTest::mouseClick(child<QPushButton>(w, "cmdMoveLast"), Qt::LeftButton);
            const QString last = name->currentText() + lfd->currentText();
            QTest::mouseClick(child<QPushButton>(w, "cmdMoveNext"), Qt::LeftButton);
            QCOMPARE(name->currentText() + lfd->currentText(), last);   // stays on the last row

            name->setEditText(QStringLiteral("Gibt es nicht"));
            QTRY_COMPARE(name->currentText() + lfd->currentText(), first);

            QTest::mouseClick(child<QRadioButton>(w, "optZurückgemeldet"), Qt::LeftButton);
            QVERIFY(child<QCheckBox>(w, "chkErledigtJN")->isChecked());
            for (const char *locked : {"txtErledigtAm", "chkErledigtJN", "txtZuErledigenBis", "cmbPrioritaet"})
                QVERIFY2(!child<QWidget>(w, locked)->isEnabled(), locked);
            QTest::mouseClick(child<QRadioButton>(w, "optNichtZurückgemeldet"), Qt::LeftButton);
            QVERIFY(!child<QCheckBox>(w, "chkErledigtJN")->isChecked());
            QVERIFY(child<QWidget>(w, "cmbPrioritaet")->isEnabled());

            // Done and saved: locked at once.
            child<QCheckBox>(w, "chkErledigtJN")->click();
            QCOMPARE(child<QLineEdit>(w, "txtErledigtAm")->text(), Heute().toString(QStringLiteral("dd.MM.yyyy")));
            QTest::mouseClick(child<QPushButton>(w, "cmdÜbernehmen"), Qt::LeftButton);
            QVERIFY(!child<QWidget>(w, "cmbPrioritaet")->isEnabled());

            ScriptedPresenter p;
            p.answer(Answer::No).answer(Answer::Yes);
            QTest::mouseClick(child<QPushButton>(w, "cmdDelete"), Qt::LeftButton);
            QCOMPARE(orders(s), before);
            QTest::mouseClick(child<QPushButton>(w, "cmdDelete"), Qt::LeftButton);
            QCOMPARE(p.texts(), QStringList(2, QStringLiteral("Diesen IS-Auftrag wirklich löschen?")));
            QCOMPARE(orders(s), before - 1);
            QTest::mouseClick(child<QPushButton>(w, "cmdAbbruch"), Qt::LeftButton);
        });
        // The first answer (No) showed the open orders again: the second deleted the first of them.
        QCOMPARE(orders(s, QStringLiteral("erledigtam = '%1'").arg(heute())), 1);
    }

    // A Werker's new order carries his trade, which he cannot change.
    void werkerOrderCarriesTrade()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Werker")));
        QVERIFY(!s.pointAtComponent().isEmpty());
        const int before = orders(s);
        s.trigger(QStringLiteral("mnuAufträgeISAuftragErstellen"), [&](QWidget *w) {
            if (w->objectName() != u"frmErfassungAllgemein")
                return;
            QCOMPARE(child<QComboBox>(w, "dbcGewerk")->currentText(), QStringLiteral("Elektro"));
            QVERIFY(!child<QComboBox>(w, "dbcGewerk")->isEnabled());
            QVERIFY(!child<QPushButton>(w, "cmdGewerk")->isEnabled());
            QTest::mouseClick(child<QPushButton>(w, "cmdOk"), Qt::LeftButton);
        });
        QCOMPARE(orders(s), before + 1);
        QCOMPARE(orders(s, QStringLiteral("Gewerk = 'Elektro' AND Datum = ''")), 1);
    }

    // The overview: all orders, a filter by name, sorting, a cell edited by
    // keys, the single capture by double click, deleting with its question.
    void overview()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        const int all = orders(s);
        const GuiSession::Opened opened = s.trigger(QStringLiteral("mnuAuftragstabelle"));
        auto *w = qobject_cast<frmISAuftraege *>(opened.window());
        QVERIFY(w);
        QCOMPARE(w->objectName(), QStringLiteral("frmISAufträge"));
        auto *grid = child<QTableView>(w, "DBGridAufträge");
        QAbstractItemModelTester tester(grid->model());
        QCOMPARE(grid->model()->rowCount(), all);
        QCOMPARE(grid->model()->headerData(6, Qt::Horizontal).toString(), QStringLiteral("Std"));

        const QString name = grid->model()->index(0, 0).data().toString();
        const int ofName = orders(s, QStringLiteral("Name = ?").replace(u'?', u'\'' + name + u'\''));
        auto *txtName = child<QLineEdit>(w, "txtName");
        QTest::keyClicks(txtName, name.left(4) + u'*');
        QTest::keyClick(txtName, Qt::Key_Return);
        QVERIFY(grid->model()->rowCount() >= ofName && grid->model()->rowCount() < all);
        txtName->clear();
        QTest::mouseClick(child<QRadioButton>(w, "optZurückgemeldet"), Qt::LeftButton);
        QCOMPARE(grid->model()->rowCount(), orders(s, QStringLiteral("ErledigtJN <> 0")));
        QTest::mouseClick(child<QRadioButton>(w, "optAlleAufträge"), Qt::LeftButton);

        // "Std" sorts descending first, then "Min" ascending: one flag for both.
        QHeaderView *head = grid->horizontalHeader();
        QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(head->sectionViewportPosition(6) + 5, 5));
        const double top = grid->model()->index(0, 6).data().toString().replace(u',', u'.').toDouble();
        QCOMPARE(top, scalar(s.sql(), QStringLiteral("SELECT max(Stunden) FROM Erfassung")).toDouble());
        QTest::mouseClick(head->viewport(), Qt::LeftButton, {}, QPoint(head->sectionViewportPosition(7) + 5, 5));
        QCOMPARE(grid->model()->index(0, 6).data().toString().replace(u',', u'.').toDouble(),
                 scalar(s.sql(), QStringLiteral("SELECT min(Stunden) FROM Erfassung")).toDouble());

        // Minutes typed into their cell; a refused value leaves the row.
        const qint64 id = w->model()->rowId(0);
        const auto editCell = [grid](int column, const QString &text) {
            grid->setCurrentIndex(grid->model()->index(0, column));
            QTest::keyClick(grid, Qt::Key_F2);
            auto *editor = grid->viewport()->findChild<QLineEdit *>();
            QVERIFY(editor);
            QTest::keyClicks(editor, text);
            QTest::keyClick(editor, Qt::Key_Return);
            // The view commits a moment after Return.
            QTRY_VERIFY(!grid->viewport()->findChild<QLineEdit *>());
        };
        editCell(7, QStringLiteral("42"));
        QTRY_COMPARE(scalar(s.sql(), QStringLiteral("SELECT Minuten FROM Erfassung WHERE rowid = ?"), {id}).toInt(), 42);
        {
            ScriptedPresenter p;
            grid->setCurrentIndex(grid->model()->index(0, 0));
            QTest::keyClick(grid, Qt::Key_F2);
            QCOMPARE(p.lastText(), QStringLiteral("Das Feld ist nicht editierbar"));
            editCell(5, QStringLiteral("01.12.2030"));
            QTRY_COMPARE(p.lastText(), QStringLiteral("Es sind nur numerische Zeichen erlaubt"));
        }

        // Double click: the single capture; its OK writes and the row shows it.
        zoltest::ModalWatcher einzel([&](QWidget *m) {
            if (m->objectName() != u"frmErfassungAllgemeinEinzel")
                return;
            QCOMPARE(m->windowTitle(), QStringLiteral("IS-Auftrag"));
            child<QLineEdit>(m, "txtStunden")->setText(QStringLiteral("7"));
            child<QComboBox>(m, "cmbPrioritaet")->setEditText(QStringLiteral("2"));
            child<QLineEdit>(m, "txtZuErledigenBis")->setText(QStringLiteral("01.01.2020"));   // a past date stands
            QTest::mouseClick(child<QPushButton>(m, "cmdOk"), Qt::LeftButton);
        });
        const QRect r = grid->visualRect(grid->model()->index(0, 0));
        // As the window system delivers it: a press, then the double click, then the release.
        QTest::mousePress(grid->viewport(), Qt::LeftButton, {}, r.center());
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, r.center());
        QTest::mouseRelease(grid->viewport(), Qt::LeftButton, {}, r.center());
        QVERIFY2(einzel.modals.contains(QStringLiteral("frmErfassungAllgemeinEinzel")),
                 qPrintable(einzel.modals.join(u',') + u'|' + einzel.messages.join(u',')));
        QCOMPARE(grid->model()->index(0, 6).data().toString(), QStringLiteral("7"));
        QCOMPARE(scalar(s.sql(), QStringLiteral("SELECT ZuErledigenBis FROM Erfassung WHERE rowid = ?"), {id}).toString(),
                 QStringLiteral("2020.01.01"));

        ScriptedPresenter p;
        p.answer(Answer::Yes);
        grid->setCurrentIndex(grid->model()->index(0, 0));
        grid->selectRow(0);
        QTest::keyClick(grid, Qt::Key_Delete);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Möchten Sie die markierten Aufträge wirklich löschen?")});
        QCOMPARE(orders(s), all - 1);
        QCOMPARE(grid->model()->rowCount(), all - 1);
        w->close();
    }

    // The feedback window's button makes an order of the row's component with its text.
    void orderFromFinding()
    {
        GuiSession s;
        QVERIFY(s.login(QStringLiteral("Meister")));
        {
            ScriptedPresenter p;
            for (int i = 0; i < 6; ++i)
                p.answer(Answer::Yes);
            PlanningRun(s.session()).run(QStringLiteral("2026"), QStringLiteral("05"));
        }
        const GuiSession::Opened opened = s.trigger(QStringLiteral("mnuAufträgeRückmeldungen"));
        auto *f = qobject_cast<frmRueckmeldung *>(opened.window());
        QVERIFY(f);
        auto *list = child<QTreeView>(f, "lvListView");
        QTRY_VERIFY(list->model()->rowCount() > 0);
        list->setCurrentIndex(list->model()->index(0, 0));
        const int before = orders(s);
        zoltest::ModalWatcher capture([&](QWidget *m) {
            if (m->objectName() != u"frmErfassungAllgemein")
                return;
            QCOMPARE(child<QLineEdit>(m, "txtMeldeDatum")->text(), Heute().toString(QStringLiteral("dd.MM.yyyy")));
            QVERIFY(!child<QPlainTextEdit>(m, "txtBeschreibung")->toPlainText().isEmpty());
            QTest::mouseClick(child<QPushButton>(m, "cmdOk"), Qt::LeftButton);
        });
        QTest::mouseClick(child<QPushButton>(f, "cmdISAuftrag"), Qt::LeftButton);
        QCOMPARE(capture.modals.count(QStringLiteral("frmErfassungAllgemein")), 1);
        QCOMPARE(orders(s), before + 1);
        QCOMPARE(orders(s, QStringLiteral("Datum = '%1' AND Bemerkung <> ''").arg(heute())), 1);
        f->close();
    }
};

QTEST_MAIN(TestRepairWindows)
#include "tst_repairorders.moc"
