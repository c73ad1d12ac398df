#pragma once
#include <QString>

namespace zol {

// Passwords are kept as Argon2id hashes. A row from an older data file may
// still hold the plain text; it is accepted once and re-hashed at that login.
QString hashPassword(const QString &plain);
bool isPasswordHash(const QString &stored);

struct PasswordCheck {
    bool matches = false;
    bool needsRehash = false;   // matched a plain legacy value
};
// Exact comparison: case counts, the empty password is a password.
PasswordCheck checkPassword(const QString &stored, const QString &typed);

}
