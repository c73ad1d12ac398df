#pragma once
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>

namespace zol {

// Keys and labels of the two top nodes of the plant tree. They are not rows
// of ProtokollKopf; their keys are ten characters long like a FileIndex.
inline const QString RootProtok = QStringLiteral("ROOTProtok");
inline const QString RootKatalo = QStringLiteral("ROOTKatalo");
inline const QString gStrWIRundgang = QStringLiteral("WI-Rundgang");
inline const QString gStrStandards = QStringLiteral("Standards");

inline const QString FileTypOrdner = QStringLiteral("O");
inline const QString FileTypFile = QStringLiteral("F");

// A row of ProtokollKopf: an installation ("O") or a component ("F").
struct Node {
    QString FileIndex, FileAbove, FileTyp, Katalog, Text;
    QString BezugsJahr, BezugsWoche, Kostenstelle, IdentNr, Klassifizierung, Standort, Lokalisierung,
        Hersteller, Typ, WIVerantwortlicher, AnlagenVerantwortlicher, Option1, Option2;
    QString KeineWartung, KeineWartungWocheVon1, KeineWartungWocheBis1, KeineWartungWocheVon2,
        KeineWartungWocheBis2;

    bool isComponent() const { return FileTyp == FileTypFile; }
    bool isInstallation() const { return FileTyp == FileTypOrdner; }
    bool inStandards() const { return Katalog == QLatin1String("1"); }

    // The fields in the order of the table.
    static const QStringList &fieldNames();
    QString value(const QString &field) const;
    void setValue(const QString &field, const QString &value);
};

// The node of that key, or nothing.
std::optional<Node> loadNode(const QSqlDatabase &db, const QString &fileIndex);
// Writes every field of the node (insert or replace by FileIndex).
void saveNode(const QSqlDatabase &db, const Node &node);

// False only for an existing row with Katalog "0"; an unknown key counts as a Standard.
bool IsStandard(const QSqlDatabase &db, const QString &fileIndex);

// The Katalog value of a node placed under the tree node with this full path:
// "1" below Standards, "0" otherwise.
QString katalogForPath(const QString &fullPath);

// A node's key in a tree or list is its FileIndex between double quotes.
inline QString nodeKey(const QString &fileIndex) { return QLatin1Char('"') + fileIndex + QLatin1Char('"'); }
inline QString fileIndexOfKey(const QString &key) { return key.mid(1, 10); }

}
