#include "gui/core/frmLogin.h"
#include "gui/core/frmPasswort.h"
#include "gui/core/frmUser.h"
#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Passwords.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {

template <class T> T *child(QWidget &w, const QString &name)
{
    T *c = w.findChild<T *>(name);
    if (!c)
        qFatal("no control %s", qPrintable(name));
    return c;
}

void showActive(QWidget &w)
{
    w.show();
    w.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&w));
}

// Screenshots for a look by eye: set ZOL_GRAB_DIR to get them.
void grab(QWidget &w, const QString &name)
{
    const QString dir = qEnvironmentVariable("ZOL_GRAB_DIR");
    if (!dir.isEmpty())
        w.grab().save(dir + QLatin1Char('/') + name + QStringLiteral(".png"));
}

QString storedPassword(TempData &d, const QString &name)
{
    return scalar(d.sql(), QStringLiteral("SELECT \"Paßwort\" FROM \"User\" WHERE Name = ?"), {name}).toString();
}

}

class TestUserWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void loginByTyping()
    {
        TempData d;
        exec(d.sql(), QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES ('Alt', 'plain', 'Worker(Elektro)')"));
        Session s(d.db());
        ScriptedPresenter p;
        frmLogin w(s);
        QCOMPARE(w.windowTitle(), QStringLiteral("Anmeldung für ZOL"));
        showActive(w);
        grab(w, QStringLiteral("frmLogin"));
        auto *name = child<QLineEdit>(w, QStringLiteral("txtUserName"));
        auto *password = child<QLineEdit>(w, QStringLiteral("txtPassword"));
        QCOMPARE(password->echoMode(), QLineEdit::Password);

        name->setFocus();
        QTest::keyClicks(name, QStringLiteral("ALT"));
        QTest::keyClick(name, Qt::Key_Return);
        QVERIFY(password->hasFocus());
        QTest::keyClicks(password, QStringLiteral("Plain"));
        QTest::mouseClick(child<QPushButton>(w, QStringLiteral("cmdOK")), Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Falsches Passwort")});
        QVERIFY(w.isVisible());
        QVERIFY(password->hasFocus());
        QCOMPARE(password->selectedText(), QStringLiteral("Plain"));

        QTest::keyClicks(password, QStringLiteral("plain"));   // replaces the selection
        QTest::keyClick(password, Qt::Key_Return);
        QVERIFY(!w.isVisible());
        QCOMPARE(w.result(), int(QDialog::Accepted));
        QVERIFY(s.login().LoginSucceeded);
        QCOMPARE(s.login().UserName, QStringLiteral("ALT"));
        QCOMPARE(s.login().Level, QStringLiteral("Worker(Elektro)"));
        QVERIFY(isPasswordHash(storedPassword(d, QStringLiteral("Alt"))));
    }

    void fourthFailureClosesSilently()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        frmLogin w(s);
        showActive(w);
        auto *name = child<QLineEdit>(w, QStringLiteral("txtUserName"));
        auto *ok = child<QPushButton>(w, QStringLiteral("cmdOK"));
        QTest::keyClicks(name, QStringLiteral("Niemand"));
        for (int i = 0; i < 3; ++i) {
            QTest::mouseClick(ok, Qt::LeftButton);
            QVERIFY(w.isVisible());
            QVERIFY(name->hasFocus());
        }
        QCOMPARE(p.shown().size(), 3);
        QTest::mouseClick(ok, Qt::LeftButton);
        QCOMPARE(p.shown().size(), 3);
        QVERIFY(!w.isVisible());
        QCOMPARE(w.result(), int(QDialog::Rejected));
        QVERIFY(!s.login().LoginSucceeded);
    }

    void userAdministration()
    {
        TempData d;
        Session s(d.db());
        s.login().UserName = QStringLiteral("Admin");
        s.login().Level = QStringLiteral("Administrator");
        ScriptedPresenter p;
        frmUser w(s);
        QCOMPARE(w.windowTitle(), QStringLiteral("Benutzer"));
        showActive(w);
        auto *list = child<QTreeWidget>(w, QStringLiteral("lvListView"));
        auto *name = child<QLineEdit>(w, QStringLiteral("txtName"));
        auto *password = child<QLineEdit>(w, QStringLiteral("txtPaßwort"));
        auto *level = child<QComboBox>(w, QStringLiteral("cmbLevel"));
        QCOMPARE(list->headerItem()->text(1), QStringLiteral("Passwort"));
        QCOMPARE(list->topLevelItemCount(), 1);
        QVERIFY(!list->topLevelItem(0)->text(1).contains(QStringLiteral("admin")));
        QCOMPARE(name->text(), QStringLiteral("Admin"));
        QVERIFY(password->text().isEmpty());
        QCOMPARE(level->currentText(), QStringLiteral("Administrator"));
        QStringList notes;
        for (QLabel *l : w.findChildren<QLabel *>(QRegularExpression(QStringLiteral("^lblErlaeuterung"))))
            notes << l->text();
        QCOMPARE(notes.size(), 16);
        QVERIFY(notes.contains(QStringLiteral("- \"Massenänderung\" von Stammdaten")));

        // A new Werker: the trade comes from the scripted input box.
        w.setTradeInput([] { return std::optional<QString>(QStringLiteral("Elektro")); });
        name->clear();
        QTest::keyClicks(name, QStringLiteral("O'Neill"));
        QTest::keyClicks(password, QStringLiteral("pw"));
        level->setCurrentText(QStringLiteral("Werker"));
        QTest::mouseClick(child<QPushButton>(w, QStringLiteral("cmdNeu")), Qt::LeftButton);
        QVERIFY(p.shown().isEmpty());
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->currentItem()->text(2), QStringLiteral("Werker(Elektro)"));
        QVERIFY(checkPassword(storedPassword(d, QStringLiteral("O'Neill")), QStringLiteral("pw")).matches);
        grab(w, QStringLiteral("frmUser"));

        // Deleting it asks first.
        p.answer(Answer::Yes);
        QTest::mouseClick(child<QPushButton>(w, QStringLiteral("cmdLöschen")), Qt::LeftButton);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Diesen Benutzer wirklich löschen?")});
        QCOMPARE(countRows(d.sql(), QStringLiteral("User")), 1);
        QCOMPARE(list->topLevelItemCount(), 1);
    }

    void passwordWindow()
    {
        TempData d;
        Session s(d.db());
        s.login().UserName = QStringLiteral("admin");
        ScriptedPresenter p;
        frmPasswort w(s);
        QCOMPARE(w.objectName(), QStringLiteral("frmPaßwort"));
        QCOMPARE(w.windowTitle(), QStringLiteral("Passwort ändern"));
        showActive(w);
        grab(w, QStringLiteral("frmPasswort"));
        auto *password = child<QLineEdit>(w, QStringLiteral("txtPaßwort"));
        auto *confirm = child<QLineEdit>(w, QStringLiteral("txtConfirm"));
        QVERIFY(password->text().isEmpty());
        password->setFocus();
        QTest::keyClicks(password, QStringLiteral("neu"));
        QTest::keyClick(password, Qt::Key_Return);
        QVERIFY(confirm->hasFocus());
        QTest::keyClicks(confirm, QStringLiteral("Neu"));
        QTest::keyClick(confirm, Qt::Key_Return);
        QVERIFY(w.isVisible());
        confirm->clear();
        QTest::keyClicks(confirm, QStringLiteral("neu"));
        QTest::keyClick(confirm, Qt::Key_Return);
        QVERIFY(!w.isVisible());
        QCOMPARE(p.texts(), (QStringList{QStringLiteral("Die 'Bestätigung' entspricht nicht der ersten Eingabe des Passwortes"),
                                         QStringLiteral("Ihr Passwort wurde geändert")}));
        QVERIFY(checkPassword(storedPassword(d, QStringLiteral("Admin")), QStringLiteral("neu")).matches);
    }
};

QTEST_MAIN(TestUserWindows)
#include "tst_userwindows.moc"
