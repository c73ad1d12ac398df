#pragma once
#include "Session.h"
#include <QList>
#include <QString>
#include <functional>
#include <optional>

namespace zol {

// ---- Login -----------------------------------------------------------------

// The control that gets the focus after a refused try.
enum class LoginFocus { None, UserName, Password };

enum class LoginResult {
    Retry,      // refused with a message; the window stays open
    Succeeded,  // LoginSucceeded is true; hide the window
    Cancel      // too many tries or cancelled: LoginSucceeded false, hide the window in silence
};

struct LoginStep {
    LoginResult result = LoginResult::Retry;
    LoginFocus focus = LoginFocus::None;
};

// The start of the login window: not logged in, no failed try yet.
void beginLogin(Login &login);
void cancelLogin(Login &login);

// The OK button of the login window. The name is found without regard to
// case, the password must match exactly. Three refusals (wrong name and wrong
// password count together) each get a message; the fourth ends the login
// silently. A matching plain password of an older data file is re-hashed and
// written back at once. UserName keeps the case as typed.
LoginStep loginOK(Session &session, const QString &typedName, const QString &typedPassword);

// Hashes every row of User whose password is still plain text, in one
// transaction; done when the data file is opened, before the monthly copy.
// Returns the number of rows hashed.
int hashPlainPasswords(const QSqlDatabase &db);

// ---- Roles -------------------------------------------------------------------

namespace Role {
inline const QString Administrator = QStringLiteral("Administrator");
inline const QString Master = QStringLiteral("Master");
inline const QString User = QStringLiteral("User");           // session form of "Benutzer"
inline const QString Benutzer = QStringLiteral("Benutzer");
inline const QString Auswerter = QStringLiteral("Auswerter");
inline const QString Werker = QStringLiteral("Werker");
}

// True for every form the User table may hold, German and older English ones.
bool isKnownLevel(const QString &stored);

// The two user menus of the main window that depend on the role.
struct UserMenus {
    bool mnuViewUser = false;
    bool mnuViewPasswort = false;   // the menu entry "mnuViewPaßwort"
};

// Turns the stored form in login.Level into the session form ("Benutzer" and
// "User" -> "User", "Evaluator" -> "Auswerter", "Werker(<T>)"/"Worker(<T>)" ->
// "Werker" with WerkerGewerk T) and says which user menus are visible. A text
// that is no known role becomes "Auswerter", the most restricted role.
UserMenus InitUserLevel(Login &login);

// ---- User administration -------------------------------------------------------

// The roles the administration offers, in the order of its combo box.
QStringList levelChoices();

struct UserRow {
    QString Name;
    QString Level;   // as stored
};
QList<UserRow> listUsers(const QSqlDatabase &db);

// How a stored role shows in the list: the German form, a Werker with his trade.
QString displayLevel(const QString &stored);
// The combo box item for a stored role, empty for an unknown text.
QString comboLevel(const QString &stored);

// Asks the user for the trade of a Werker; nullopt when the user cancels.
using AskTrade = std::function<std::optional<QString>()>;

// What a command of the administration did.
struct UserEdit {
    bool written = false;
    bool ownEntry = false;   // the logged-in user's own row was changed or deleted
    UserMenus menus;         // after a change of the own row: the menus InitUserLevel decided
};

// "Neu": a new user with a hashed password.
UserEdit newUser(Session &session, const QString &name, const QString &password, const QString &level,
                 const AskTrade &askTrade);

// "Aktualisieren": changes the row selected in the list (selectedName). An
// empty password keeps the stored one, since no window shows a password.
UserEdit updateUser(Session &session, const QString &selectedName, const QString &name, const QString &password,
                    const QString &level, const AskTrade &askTrade);

// "Löschen": deletes the selected row after the question. The own entry may
// be deleted; the session runs on.
UserEdit deleteUser(Session &session, const QString &selectedName);

// ---- Password change -------------------------------------------------------------

enum class PasswordChange {
    Mismatch,   // the confirmation differs; the window stays open
    Done        // changed, or the row was not found; the window closes
};
PasswordChange changePassword(Session &session, const QString &password, const QString &confirm);

}
