#pragma once
#include "Database.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <array>

namespace zol {

// The login object: who works in this session. UserName keeps the case as
// typed; it begins every settings section of the user.
struct Login {
    QString UserName;
    QString Level;            // the session form after InitUserLevel: Administrator, Master, User, Auswerter, Werker
    bool LoginSucceeded = false;
    int failedTries = 0;
    QString WerkerGewerk;     // the trade of a Werker, empty otherwise
};

// The option state loaded by LadeOptionen and read by the main list and the job-sheet print.
struct OptionState {
    QStringList gSpaltenFeld;              // the 18 fields of the column table, index 1..18 at 0..17
    QList<int> gSpaltenIndex;              // displayed columns in display order, values 1..18
    std::array<bool, 15> gSpalteSichtbar{}; // [1..14]: field index among the displayed columns
    QStringList gKopfwechsel;              // Kopfwechsel1..6
    QString gKopfwechselAlt;               // Kopfwechsel
    QStringList gAuftragsortierung;        // sort criteria in order
    int gDruckFormat = 1;                  // 1 portrait, 2 landscape
};

// One running session: the data file, the logged-in user and the options.
// Windows get it in their constructor; nothing reaches it through a global.
class Session {
public:
    explicit Session(Database &database) : m_database(database) {}
    Database &database() { return m_database; }
    QSqlDatabase db() const { return m_database.connection(); }
    Login &login() { return m_login; }
    const Login &login() const { return m_login; }
    OptionState &options() { return m_options; }
    const OptionState &options() const { return m_options; }
    // A settings section of this user: UserName followed by the given part, e.g. "\env\MainSettings".
    QString section(const QString &part) const { return m_login.UserName + part; }

private:
    Database &m_database;
    Login m_login;
    OptionState m_options;
};

}
