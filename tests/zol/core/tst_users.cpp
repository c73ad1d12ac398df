#include "support/TestSupport.h"
#include "zol/core/Messages.h"
#include "zol/core/Passwords.h"
#include "zol/core/Session.h"
#include "zol/core/Sql.h"
#include "zol/core/Users.h"
#include <QtTest>

using namespace zol;
using zoltest::TempData;
using zoltest::countRows;

namespace {

void addRow(TempData &d, const QString &name, const QString &password, const QString &level)
{
    exec(d.sql(), QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES (?,?,?)"),
         {name, password, level});
}

QString storedOf(TempData &d, const QString &column, const QString &name)
{
    return scalar(d.sql(), QStringLiteral("SELECT %1 FROM \"User\" WHERE Name = ?").arg(ident(column)), {name}).toString();
}

// A trade input box that gives the queued answers in turn; nullopt is Cancel.
AskTrade tradeAnswers(QList<std::optional<QString>> answers, int *asked = nullptr)
{
    auto queue = std::make_shared<QList<std::optional<QString>>>(std::move(answers));
    return [queue, asked]() -> std::optional<QString> {
        if (asked)
            ++*asked;
        return queue->isEmpty() ? std::nullopt : queue->takeFirst();
    };
}

void logIn(Session &s, const QString &name, const QString &level)
{
    s.login().UserName = name;
    s.login().Level = level;
    s.login().LoginSucceeded = true;
    InitUserLevel(s.login());
}

}

class TestUsers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void failedTriesCountTogetherAndTheFourthIsSilent()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        beginLogin(s.login());
        LoginStep st = loginOK(s, QStringLiteral("Niemand"), QStringLiteral("admin"));
        QCOMPARE(st.result, LoginResult::Retry);
        QCOMPARE(st.focus, LoginFocus::UserName);
        st = loginOK(s, QStringLiteral("Admin"), QStringLiteral("ADMIN"));
        QCOMPARE(st.focus, LoginFocus::Password);
        st = loginOK(s, QStringLiteral("Niemand"), QString());
        QCOMPARE(st.result, LoginResult::Retry);
        QCOMPARE(p.texts(), (QStringList{QStringLiteral("Dieser Benutzer ist nicht registriert"),
                                         QStringLiteral("Falsches Passwort"),
                                         QStringLiteral("Dieser Benutzer ist nicht registriert")}));
        for (const auto &m : p.shown())
            QCOMPARE(m.style, 48);
        st = loginOK(s, QStringLiteral("Admin"), QStringLiteral("falsch"));
        QCOMPARE(st.result, LoginResult::Cancel);
        QCOMPARE(p.shown().size(), 3);
        QVERIFY(!s.login().LoginSucceeded);

        // After three refusals the right password still gets in.
        beginLogin(s.login());
        for (int i = 0; i < 3; ++i)
            loginOK(s, QStringLiteral("x"), QStringLiteral("y"));
        QCOMPARE(loginOK(s, QStringLiteral("Admin"), QStringLiteral("admin")).result, LoginResult::Succeeded);
    }

    void userNameKeepsTheTypedCase()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        beginLogin(s.login());
        QCOMPARE(loginOK(s, QStringLiteral("aDMIN"), QStringLiteral("admin")).result, LoginResult::Succeeded);
        QVERIFY(p.shown().isEmpty());
        QCOMPARE(s.login().UserName, QStringLiteral("aDMIN"));
        QCOMPARE(s.login().Level, QStringLiteral("Administrator"));
        QVERIFY(s.login().LoginSucceeded);
        QCOMPARE(s.section(QStringLiteral("\\env\\")), QStringLiteral("aDMIN\\env\\"));
    }

    void nonAsciiNamesAreFoundWithoutCase()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        addRow(d, QStringLiteral("Müller"), hashPassword(QStringLiteral("x")), QStringLiteral("Master"));
        beginLogin(s.login());
        QCOMPARE(loginOK(s, QStringLiteral("MÜLLER"), QStringLiteral("x")).result, LoginResult::Succeeded);
    }

    void roleForms_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("level");
        QTest::addColumn<QString>("gewerk");
        QTest::addColumn<bool>("userMenu");
        QTest::addColumn<bool>("passwordMenu");
        QTest::addColumn<QString>("shown");
        QTest::newRow("Administrator") << "Administrator" << "Administrator" << "" << true << false << "Administrator";
        QTest::newRow("Master") << "Master" << "Master" << "" << false << true << "Master";
        QTest::newRow("Benutzer") << "Benutzer" << "User" << "" << false << true << "Benutzer";
        QTest::newRow("User") << "User" << "User" << "" << false << true << "Benutzer";
        QTest::newRow("Auswerter") << "Auswerter" << "Auswerter" << "" << false << true << "Auswerter";
        QTest::newRow("Evaluator") << "Evaluator" << "Auswerter" << "" << false << true << "Auswerter";
        QTest::newRow("Werker") << "Werker(Schlosser)" << "Werker" << "Schlosser" << false << true << "Werker(Schlosser)";
        QTest::newRow("Worker") << "Worker(Elektro)" << "Werker" << "Elektro" << false << true << "Werker(Elektro)";
        QTest::newRow("unknown") << "Chef" << "Auswerter" << "" << false << true << "Chef";
    }
    void roleForms()
    {
        QFETCH(QString, stored);
        Login login;
        login.Level = stored;
        const UserMenus menus = InitUserLevel(login);
        QTEST(login.Level, "level");
        QTEST(login.WerkerGewerk, "gewerk");
        QTEST(menus.mnuViewUser, "userMenu");
        QTEST(menus.mnuViewPasswort, "passwordMenu");
        QTEST(displayLevel(stored), "shown");
        // Running it again on the session form changes nothing.
        InitUserLevel(login);
        QTEST(login.Level, "level");
        QTEST(login.WerkerGewerk, "gewerk");
    }

    void legacyPlainPasswordIsRehashedAtLogin()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        addRow(d, QStringLiteral("Alt"), QStringLiteral("Geheim"), QStringLiteral("Benutzer"));
        beginLogin(s.login());
        QCOMPARE(loginOK(s, QStringLiteral("Alt"), QStringLiteral("geheim")).result, LoginResult::Retry);
        QCOMPARE(storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Alt")), QStringLiteral("Geheim"));
        QCOMPARE(loginOK(s, QStringLiteral("alt"), QStringLiteral("Geheim")).result, LoginResult::Succeeded);
        const QString stored = storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Alt"));
        QVERIFY(isPasswordHash(stored));
        QVERIFY(checkPassword(stored, QStringLiteral("Geheim")).matches);
    }

    void unknownRoleLogsInAsAuswerterWithAMessage()
    {
        TempData d;
        Session s(d.db());
        ScriptedPresenter p;
        addRow(d, QStringLiteral("Gast"), hashPassword(QString()), QStringLiteral("Chef"));
        beginLogin(s.login());
        QCOMPARE(loginOK(s, QStringLiteral("Gast"), QString()).result, LoginResult::Succeeded);
        QCOMPARE(p.shown().size(), 1);
        QCOMPARE(p.lastStyle(), 48);
        QVERIFY(p.lastText().contains(QStringLiteral("'Chef'")));
        QCOMPARE(s.login().Level, QStringLiteral("Auswerter"));
    }

    void newUserChecksAndQuotes()
    {
        TempData d;
        Session s(d.db());
        logIn(s, QStringLiteral("Admin"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        QVERIFY(!newUser(s, QStringLiteral("  "), QString(), QStringLiteral("Master"), {}).written);
        QVERIFY(!newUser(s, QStringLiteral("ADMIN"), QString(), QStringLiteral("Master"), {}).written);
        QVERIFY(!newUser(s, QStringLiteral("Ohne"), QString(), QString(), {}).written);
        QCOMPARE(p.texts(), (QStringList{QStringLiteral("Bitte Namen eintragen"),
                                         QStringLiteral("Dieser Benutzer existiert schon. Bitte benutzen Sie einen anderen Namen!"),
                                         QStringLiteral("Bitte wählen Sie einen Status aus")}));
        QCOMPARE(countRows(d.sql(), QStringLiteral("User")), 1);

        p.clear();
        QVERIFY(newUser(s, QStringLiteral("O'Brien"), QStringLiteral("it's"), QStringLiteral("Benutzer"), {}).written);
        QVERIFY(p.shown().isEmpty());
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("O'Brien")), QStringLiteral("Benutzer"));
        QVERIFY(isPasswordHash(storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("O'Brien"))));

        Session other(d.db());
        beginLogin(other.login());
        QCOMPARE(loginOK(other, QStringLiteral("o'brien"), QStringLiteral("it's")).result, LoginResult::Succeeded);
        InitUserLevel(other.login());
        QCOMPARE(other.login().Level, QStringLiteral("User"));
    }

    void newWerkerAsksForTheTrade()
    {
        TempData d;
        Session s(d.db());
        logIn(s, QStringLiteral("Admin"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        int asked = 0;
        QVERIFY(newUser(s, QStringLiteral("Hans"), QStringLiteral("h"), QStringLiteral("Werker"),
                        tradeAnswers({QString(), QStringLiteral("   "), QStringLiteral(" Elektro ")}, &asked)).written);
        QCOMPARE(asked, 3);
        QCOMPARE(p.texts(), QStringList(2, QStringLiteral("Das Gewerk muß angegeben werden")));
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Hans")), QStringLiteral("Werker(Elektro)"));

        // "Werker(...)" must fit the 50 characters of Level: a trade of 42 does, 43 don't.
        p.clear();
        asked = 0;
        const QString longest(42, QLatin1Char('G'));
        QVERIFY(newUser(s, QStringLiteral("Grete"), QString(), QStringLiteral("Werker"),
                        tradeAnswers({longest + QLatin1Char('G'), longest}, &asked)).written);
        QCOMPARE(asked, 2);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Das Gewerk darf höchstens 42 Zeichen lang sein")});
        QCOMPARE(p.lastStyle(), Style::Exclamation);
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Grete")), QStringLiteral("Werker(%1)").arg(longest));
        QCOMPARE(comboLevel(QStringLiteral("Werker(Elektro)")), QStringLiteral("Werker"));

        // Cancel in the input box ends the command without a row.
        QVERIFY(!newUser(s, QStringLiteral("Fritz"), QString(), QStringLiteral("Werker"), tradeAnswers({std::nullopt})).written);
        QCOMPARE(countRows(d.sql(), QStringLiteral("User"), QStringLiteral("Name = 'Fritz'")), 0);
    }

    void updateRefusesAnotherAdministrator()
    {
        TempData d;
        Session s(d.db());
        addRow(d, QStringLiteral("Chefin"), hashPassword(QStringLiteral("c")), QStringLiteral("Administrator"));
        logIn(s, QStringLiteral("admin"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        QVERIFY(!updateUser(s, QStringLiteral("Chefin"), QStringLiteral("Chefin"), QString(), QStringLiteral("Benutzer"), {}).written);
        QVERIFY(!deleteUser(s, QStringLiteral("Chefin")).written);
        QCOMPARE(p.texts(), (QStringList{
            QStringLiteral("Sie sind nicht berechtigt, Änderungen an dem Status anderer Administratoren durchzuführen"),
            QStringLiteral("Sie sind nicht berechtigt, diesen Administrator zu löschen")}));
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Chefin")), QStringLiteral("Administrator"));
    }

    void updateAsksAndKeepsAnEmptyPassword()
    {
        TempData d;
        Session s(d.db());
        addRow(d, QStringLiteral("Eva"), hashPassword(QStringLiteral("alt")), QStringLiteral("Benutzer"));
        logIn(s, QStringLiteral("Admin"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        p.answer(Answer::No).answer(Answer::Yes);
        QVERIFY(!updateUser(s, QStringLiteral("Eva"), QStringLiteral("Eva"), QString(), QStringLiteral("Master"), {}).written);
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Eva")), QStringLiteral("Benutzer"));
        const UserEdit e = updateUser(s, QStringLiteral("Eva"), QStringLiteral("Eva Maria"), QString(),
                                      QStringLiteral("Master"), {});
        QVERIFY(e.written);
        QVERIFY(!e.ownEntry);
        QCOMPARE(p.texts(), QStringList(2, QStringLiteral("Änderungen an diesem Benutzer wirklich vornehmen?")));
        QCOMPARE(p.shown().last().style, 4);
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Eva Maria")), QStringLiteral("Master"));
        QVERIFY(checkPassword(storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Eva Maria")), QStringLiteral("alt")).matches);
        QCOMPARE(s.login().UserName, QStringLiteral("Admin"));

        p.answer(Answer::Yes);
        QVERIFY(updateUser(s, QStringLiteral("Eva Maria"), QStringLiteral("Eva Maria"), QStringLiteral("neu"),
                           QStringLiteral("Master"), {}).written);
        const QString hash = storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Eva Maria"));
        QVERIFY(isPasswordHash(hash));
        QVERIFY(checkPassword(hash, QStringLiteral("neu")).matches);
    }

    void updateOwnEntryChangesTheSession()
    {
        TempData d;
        Session s(d.db());
        logIn(s, QStringLiteral("ADMIN"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        p.answer(Answer::Yes);
        const UserEdit e = updateUser(s, QStringLiteral("Admin"), QStringLiteral("Werner"), QString(),
                                      QStringLiteral("Werker"), tradeAnswers({QStringLiteral("Maler")}));
        QVERIFY(e.written);
        QVERIFY(e.ownEntry);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Wollen Sie diese Änderungen an ihrem eigenen Status wirklich vornehmen?")});
        QCOMPARE(s.login().UserName, QStringLiteral("Werner"));
        QCOMPARE(s.login().Level, QStringLiteral("Werker"));
        QCOMPARE(s.login().WerkerGewerk, QStringLiteral("Maler"));
        QVERIFY(!e.menus.mnuViewUser);
        QVERIFY(e.menus.mnuViewPasswort);
        QCOMPARE(storedOf(d, QStringLiteral("Level"), QStringLiteral("Werner")), QStringLiteral("Werker(Maler)"));
    }

    void deleteAsksAndTheSessionRunsOn()
    {
        TempData d;
        Session s(d.db());
        addRow(d, QStringLiteral("Eva"), hashPassword(QStringLiteral("e")), QStringLiteral("Auswerter"));
        logIn(s, QStringLiteral("Admin"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        p.answer(Answer::No).answer(Answer::Yes).answer(Answer::Yes);
        QVERIFY(!deleteUser(s, QStringLiteral("Eva")).written);
        QVERIFY(deleteUser(s, QStringLiteral("Eva")).written);
        const UserEdit own = deleteUser(s, QStringLiteral("admin"));
        QVERIFY(own.written);
        QVERIFY(own.ownEntry);
        QCOMPARE(p.texts(), (QStringList{QStringLiteral("Diesen Benutzer wirklich löschen?"),
                                         QStringLiteral("Diesen Benutzer wirklich löschen?"),
                                         QStringLiteral("Wollen Sie wirklich ihre eigene Berechtigung löschen?")}));
        QCOMPARE(countRows(d.sql(), QStringLiteral("User")), 0);
        QVERIFY(s.login().LoginSucceeded);
        QCOMPARE(s.login().Level, QStringLiteral("Administrator"));
    }

    void passwordChange()
    {
        TempData d;
        Session s(d.db());
        logIn(s, QStringLiteral("ADMIN"), QStringLiteral("Administrator"));
        ScriptedPresenter p;
        QCOMPARE(changePassword(s, QStringLiteral("neu'1"), QStringLiteral("Neu'1")), PasswordChange::Mismatch);
        QCOMPARE(changePassword(s, QStringLiteral("neu'1"), QStringLiteral("neu'1")), PasswordChange::Done);
        QCOMPARE(p.texts(), (QStringList{QStringLiteral("Die 'Bestätigung' entspricht nicht der ersten Eingabe des Passwortes"),
                                         QStringLiteral("Ihr Passwort wurde geändert")}));
        QVERIFY(checkPassword(storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Admin")), QStringLiteral("neu'1")).matches);
        // The empty password is allowed.
        QCOMPARE(changePassword(s, QString(), QString()), PasswordChange::Done);
        QVERIFY(checkPassword(storedOf(d, QStringLiteral("Paßwort"), QStringLiteral("Admin")), QString()).matches);

        p.clear();
        s.login().UserName = QStringLiteral("Weg");
        QCOMPARE(changePassword(s, QStringLiteral("x"), QStringLiteral("x")), PasswordChange::Done);
        QCOMPARE(p.texts(), QStringList{QStringLiteral("Fehler beim Ändern Ihres Passwortes")});
    }
};

QTEST_GUILESS_MAIN(TestUsers)
#include "tst_users.moc"
