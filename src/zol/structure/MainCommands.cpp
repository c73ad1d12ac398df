#include "MainCommands.h"
#include "Explorer.h"
#include "Node.h"
#include "zol/core/Messages.h"
#include "zol/core/Rights.h"

namespace zol {

bool StammdatenErlaubt(const Login &login, const QSqlDatabase &db, const QString &key)
{
    if (key.isEmpty())
        return false;
    if (ExplorerTree::isRootKey(key)) {
        ZeigeMeldung(QStringLiteral("'") + gStrWIRundgang + QStringLiteral("' und '") + gStrStandards
                         + QStringLiteral("' besitzen keine Stammdaten "),
                     Style::Exclamation);
        return false;
    }
    const std::optional<Node> node = loadNode(db, key);
    if (!node)
        return false;
    if (standardCheckRefuses(login.Level, node->Katalog != QLatin1String("0"))) {
        ZeigeMeldung(QStringLiteral("Sie sind nicht berechtigt, Änderungen an den Stammdaten eines Standards durchzuführen"),
                     Style::Exclamation);
        return false;
    }
    return true;
}

bool ISAuftragErlaubt(const QSqlDatabase &db, const QString &fileIndex)
{
    if (IsStandard(db, fileIndex)) {
        ZeigeMeldung(QStringLiteral("Sie können für Standards keine IS-Aufträge erstellen"), Style::Exclamation);
        return false;
    }
    return true;
}

}
