#pragma once
#include <QList>
#include <QSqlDatabase>
#include <QString>

namespace zol {

// The users of the demo data file, one a role.
struct DemoUser {
    QString name;
    QString password;
    QString level;   // as stored in User.Level
};
const QList<DemoUser> &demoUsers();

// Fills a new data file with a plant to try the program on: installations and
// components with master data and instruction lines under WI-Rundgang, model
// components under Standards, all eleven catalogs, and one user per role
// (a user whose name exists already is left as it is). One transaction.
void addDemoPlant(const QSqlDatabase &db, int bezugsJahr = 2026);

}
