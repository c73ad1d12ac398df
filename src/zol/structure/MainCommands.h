#pragma once
#include "zol/core/Session.h"
#include <QSqlDatabase>
#include <QString>

namespace zol {

// The checks of the main window's commands on one entry, each with its message.

// "Stammdaten" on an existing entry: the two top nodes have none, a missing
// row shows nothing, and below Master a Standard (and for Werker and Auswerter
// any entry) is refused. True: the master-data dialog may open.
bool StammdatenErlaubt(const Login &login, const QSqlDatabase &db, const QString &key);

// "IS-Auftrag erstellen" on a component: refused for a Standard.
bool ISAuftragErlaubt(const QSqlDatabase &db, const QString &fileIndex);

}
