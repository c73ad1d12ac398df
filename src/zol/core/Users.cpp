#include "Users.h"
#include "Fault.h"
#include "Messages.h"
#include "Passwords.h"
#include "Schema.h"
#include "Sql.h"

namespace zol {

namespace {

struct StoredUser {
    qint64 rowid = 0;
    QString Name;
    QString Passwort;
    QString Level;
};

// The row of a user name without regard to case. The NOCASE column folds only
// ASCII letters, so a name like "MÜLLER" is looked for once more by Qt's rules.
std::optional<StoredUser> findUser(const QSqlDatabase &db, const QString &name)
{
    auto read = [](QSqlQuery &q) {
        return StoredUser{q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString()};
    };
    QSqlQuery q = exec(db, QStringLiteral("SELECT rowid, Name, \"Paßwort\", Level FROM \"User\" WHERE Name = ? "
                                          "ORDER BY rowid LIMIT 1"),
                       {name});
    if (q.next())
        return read(q);
    QSqlQuery all = exec(db, QStringLiteral("SELECT rowid, Name, \"Paßwort\", Level FROM \"User\" ORDER BY rowid"));
    while (all.next()) {
        if (all.value(1).toString().compare(name, Qt::CaseInsensitive) == 0)
            return read(all);
    }
    return std::nullopt;
}

bool sameName(const QString &a, const QString &b) { return a.compare(b, Qt::CaseInsensitive) == 0; }

const QString msgNameEmpty = QStringLiteral("Bitte Namen eintragen");

// The trade of a Werker, asked until it is given or the user cancels. The
// stored form "Werker(<trade>)" must fit the field Level.
std::optional<QString> askWerkerTrade(const AskTrade &askTrade)
{
    if (!askTrade)
        return std::nullopt;
    const int maxTrade = Schema::Size(QStringLiteral("User"), QStringLiteral("Level")) - int(qstrlen("Werker()"));
    for (;;) {
        std::optional<QString> answer = askTrade();
        if (!answer)
            return std::nullopt;
        const QString trade = answer->trimmed();
        if (trade.isEmpty())
            ZeigeMeldung(QStringLiteral("Das Gewerk muß angegeben werden"), Style::Exclamation);
        else if (trade.size() > maxTrade)
            ZeigeMeldung(QStringLiteral("Das Gewerk darf höchstens %1 Zeichen lang sein").arg(maxTrade),
                         Style::Exclamation);
        else
            return trade;
    }
}

// The form written to Level: the combo text, for a Werker with his trade.
// A row without a role would lock its user out without a word.
bool levelChosen(const QString &level)
{
    if (levelChoices().contains(level))
        return true;
    ZeigeMeldung(QStringLiteral("Bitte wählen Sie einen Status aus"), Style::Exclamation);
    return false;
}

std::optional<QString> storedLevel(const QString &level, const AskTrade &askTrade)
{
    if (level != Role::Werker)
        return level;
    const std::optional<QString> trade = askWerkerTrade(askTrade);
    if (!trade)
        return std::nullopt;
    return Role::Werker + QLatin1Char('(') + *trade + QLatin1Char(')');
}

bool isWerkerForm(const QString &stored)
{
    return stored.left(6) == QLatin1String("Werker") || stored.left(6) == QLatin1String("Worker");
}

}

// ---- Login -----------------------------------------------------------------

int hashPlainPasswords(const QSqlDatabase &db)
{
    QList<QPair<qint64, QString>> plain;
    QSqlQuery q = exec(db, QStringLiteral("SELECT rowid, \"Paßwort\" FROM \"User\""));
    while (q.next()) {
        const QString stored = q.value(1).toString();
        if (!isPasswordHash(stored))
            plain.append({q.value(0).toLongLong(), stored});
    }
    if (plain.isEmpty())
        return 0;
    Transaction tx(db);
    for (const auto &[rowid, password] : plain)
        exec(db, QStringLiteral("UPDATE \"User\" SET \"Paßwort\" = ? WHERE rowid = ?"), {hashPassword(password), rowid});
    tx.commit();
    return int(plain.size());
}

void beginLogin(Login &login)
{
    login.LoginSucceeded = false;
    login.failedTries = 0;
}

void cancelLogin(Login &login) { login.LoginSucceeded = false; }

LoginStep loginOK(Session &session, const QString &typedName, const QString &typedPassword)
{
    Login &login = session.login();
    auto refuse = [&login](const QString &text, LoginFocus focus) -> LoginStep {
        if (login.failedTries > 2) {
            cancelLogin(login);
            return {LoginResult::Cancel, LoginFocus::None};
        }
        ++login.failedTries;
        ZeigeMeldung(text, Style::Exclamation);
        return {LoginResult::Retry, focus};
    };

    try {
        const std::optional<StoredUser> row = findUser(session.db(), typedName);
        if (!row)
            return refuse(QStringLiteral("Dieser Benutzer ist nicht registriert"), LoginFocus::UserName);
        const PasswordCheck check = checkPassword(row->Passwort, typedPassword);
        if (!check.matches)
            return refuse(QStringLiteral("Falsches Passwort"), LoginFocus::Password);
        if (check.needsRehash)
            exec(session.db(), QStringLiteral("UPDATE \"User\" SET \"Paßwort\" = ? WHERE rowid = ?"),
                 {hashPassword(typedPassword), row->rowid});

        login.Level = row->Level;
        if (!isKnownLevel(row->Level)) {
            ZeigeMeldung(QStringLiteral("Der Status '%1' ist unbekannt. Sie werden als 'Auswerter' angemeldet.")
                             .arg(row->Level),
                         Style::Exclamation);
            login.Level = Role::Auswerter;
        }
        login.UserName = typedName;
        login.WerkerGewerk.clear();
        login.LoginSucceeded = true;
        return {LoginResult::Succeeded, LoginFocus::None};
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
        return {LoginResult::Retry, LoginFocus::UserName};
    }
}

// ---- Roles -------------------------------------------------------------------

bool isKnownLevel(const QString &stored)
{
    static const QStringList plain{Role::Administrator, Role::Master, Role::Benutzer, Role::User, Role::Auswerter,
                                   QStringLiteral("Evaluator")};
    return plain.contains(stored) || isWerkerForm(stored);
}

UserMenus InitUserLevel(Login &login)
{
    const QString level = login.Level;
    if (level == Role::Administrator)
        return {true, false};
    if (level == Role::Master)
        return {false, true};
    if (level == Role::Benutzer || level == Role::User) {
        login.Level = Role::User;
    } else if (level == QLatin1String("Evaluator") || level == Role::Auswerter) {
        login.Level = Role::Auswerter;
    } else if (level == Role::Werker) {
        // Already the session form: the trade was taken before.
    } else if (isWerkerForm(level)) {
        // What stands between the parentheses.
        login.WerkerGewerk = level.size() > 8 ? level.mid(7, level.size() - 8) : QString();
        login.Level = Role::Werker;
    } else {
        login.Level = Role::Auswerter;
    }
    return {false, true};
}

// ---- User administration -------------------------------------------------------

QStringList levelChoices()
{
    return {Role::Benutzer, Role::Master, Role::Administrator, Role::Auswerter, Role::Werker};
}

QList<UserRow> listUsers(const QSqlDatabase &db)
{
    QList<UserRow> rows;
    QSqlQuery q = exec(db, QStringLiteral("SELECT Name, Level FROM \"User\" ORDER BY rowid"));
    while (q.next())
        rows.append({q.value(0).toString(), q.value(1).toString()});
    return rows;
}

QString displayLevel(const QString &stored)
{
    if (stored == Role::User)
        return Role::Benutzer;
    if (stored == QLatin1String("Evaluator"))
        return Role::Auswerter;
    if (stored.startsWith(QLatin1String("Worker")))
        return Role::Werker + stored.mid(6);
    return stored;
}

QString comboLevel(const QString &stored)
{
    const QString shown = displayLevel(stored);
    if (isWerkerForm(shown))
        return Role::Werker;
    return levelChoices().contains(shown) ? shown : QString();
}

UserEdit newUser(Session &session, const QString &name, const QString &password, const QString &level,
                 const AskTrade &askTrade)
{
    UserEdit r;
    if (name.trimmed().isEmpty()) {
        ZeigeMeldung(msgNameEmpty, Style::Exclamation);
        return r;
    }
    if (!levelChosen(level))
        return r;
    try {
        for (const UserRow &row : listUsers(session.db())) {
            if (row.Name.toUpper() == name.toUpper()) {
                ZeigeMeldung(QStringLiteral("Dieser Benutzer existiert schon") + QStringLiteral(". ")
                                 + QStringLiteral("Bitte benutzen Sie einen anderen Namen!"),
                             Style::Exclamation);
                return r;
            }
        }
        const std::optional<QString> stored = storedLevel(level, askTrade);
        if (!stored)
            return r;
        exec(session.db(), QStringLiteral("INSERT INTO \"User\" (Name, \"Paßwort\", Level) VALUES (?,?,?)"),
             {name, hashPassword(password), *stored});
        r.written = true;
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
    }
    return r;
}

UserEdit updateUser(Session &session, const QString &selectedName, const QString &name, const QString &password,
                    const QString &level, const AskTrade &askTrade)
{
    UserEdit r;
    if (name.trimmed().isEmpty()) {
        ZeigeMeldung(msgNameEmpty, Style::Exclamation);
        return r;
    }
    if (!levelChosen(level))
        return r;
    Login &login = session.login();
    try {
        const std::optional<StoredUser> row = findUser(session.db(), selectedName);
        if (!row) {
            ZeigeMeldung(QStringLiteral("Dieser Benutzer ist nicht registriert"), Style::Exclamation);
            return r;
        }
        const bool own = sameName(row->Name, login.UserName);
        if (row->Level == Role::Administrator && !own) {
            ZeigeMeldung(QStringLiteral("Sie sind nicht berechtigt, Änderungen an dem Status anderer "
                                        "Administratoren durchzuführen"),
                         Style::Exclamation);
            return r;
        }
        const QString question = own
            ? QStringLiteral("Wollen Sie diese Änderungen an ihrem eigenen Status wirklich vornehmen?")
            : QStringLiteral("Änderungen an diesem Benutzer wirklich vornehmen?");
        if (ZeigeMeldung(question, Style::YesNo) == Answer::No)
            return r;
        const std::optional<QString> stored = storedLevel(level, askTrade);
        if (!stored)
            return r;
        const QString hash = password.isEmpty() ? row->Passwort : hashPassword(password);
        exec(session.db(), QStringLiteral("UPDATE \"User\" SET Name = ?, \"Paßwort\" = ?, Level = ? WHERE rowid = ?"),
             {name, hash, *stored, row->rowid});
        r.written = true;
        if (own) {
            // The change takes effect in the running session at once.
            login.UserName = name;
            login.Level = *stored;
            login.WerkerGewerk.clear();
            r.ownEntry = true;
            r.menus = InitUserLevel(login);
        }
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
    }
    return r;
}

UserEdit deleteUser(Session &session, const QString &selectedName)
{
    UserEdit r;
    try {
        const std::optional<StoredUser> row = findUser(session.db(), selectedName);
        if (!row) {
            ZeigeMeldung(QStringLiteral("Dieser Benutzer ist nicht registriert"), Style::Exclamation);
            return r;
        }
        const bool own = sameName(row->Name, session.login().UserName);
        if (row->Level == Role::Administrator && !own) {
            ZeigeMeldung(QStringLiteral("Sie sind nicht berechtigt, diesen Administrator zu löschen"),
                         Style::Exclamation);
            return r;
        }
        const QString question = own ? QStringLiteral("Wollen Sie wirklich ihre eigene Berechtigung löschen?")
                                     : QStringLiteral("Diesen Benutzer wirklich löschen?");
        if (ZeigeMeldung(question, Style::YesNo) == Answer::No)
            return r;
        exec(session.db(), QStringLiteral("DELETE FROM \"User\" WHERE rowid = ?"), {row->rowid});
        r.written = true;
        r.ownEntry = own;
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
    }
    return r;
}

// ---- Password change -------------------------------------------------------------

PasswordChange changePassword(Session &session, const QString &password, const QString &confirm)
{
    if (password != confirm) {
        ZeigeMeldung(QStringLiteral("Die 'Bestätigung' entspricht nicht der ersten Eingabe des Passwortes"),
                     Style::Exclamation);
        return PasswordChange::Mismatch;
    }
    try {
        const std::optional<StoredUser> row = findUser(session.db(), session.login().UserName);
        if (!row) {
            ZeigeMeldung(QStringLiteral("Fehler beim Ändern Ihres Passwortes"), Style::Exclamation);
            return PasswordChange::Done;
        }
        exec(session.db(), QStringLiteral("UPDATE \"User\" SET \"Paßwort\" = ? WHERE rowid = ?"),
             {hashPassword(password), row->rowid});
        ZeigeMeldung(QStringLiteral("Ihr Passwort wurde geändert"), Style::Information);
    } catch (const Fault &f) {
        ZeigeMeldung(faultText(f), Style::Critical);
    }
    return PasswordChange::Done;
}

}
