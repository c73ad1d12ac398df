#include "Passwords.h"
#include "Fault.h"
#include <sodium.h>

namespace zol {

namespace {
void initSodium()
{
    static const bool ok = sodium_init() >= 0;
    if (!ok)
        throw Fault(FaultNo::General, QStringLiteral("Die Kryptographie-Bibliothek konnte nicht gestartet werden"));
}
}

QString hashPassword(const QString &plain)
{
    initSodium();
    const QByteArray pw = plain.toUtf8();
    char out[crypto_pwhash_STRBYTES];
    if (crypto_pwhash_str(out, pw.constData(), quint64(pw.size()), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        throw Fault(FaultNo::General, QStringLiteral("Nicht genug Speicher, um das Passwort zu sichern"));
    return QString::fromLatin1(out);
}

bool isPasswordHash(const QString &stored) { return stored.startsWith(QLatin1String("$argon2id$")); }

PasswordCheck checkPassword(const QString &stored, const QString &typed)
{
    PasswordCheck r;
    if (isPasswordHash(stored)) {
        initSodium();
        const QByteArray s = stored.toLatin1();
        const QByteArray pw = typed.toUtf8();
        r.matches = crypto_pwhash_str_verify(s.constData(), pw.constData(), quint64(pw.size())) == 0;
    } else {
        r.matches = stored == typed;
        r.needsRehash = r.matches;
    }
    return r;
}

}
