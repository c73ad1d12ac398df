#pragma once
#include <QSet>
#include <QString>
#include <QStringList>

namespace zol {

// The four views of the main window.
namespace Ansicht {
constexpr int Struktur = 0;
constexpr int Such = 1;
constexpr int SuchOhne = 2;
constexpr int SuchNur = 3;
}

// Names of the commands the rule decides on that are not menu entries: the
// tool buttons by their key, and label editing in the tree and the list.
// A menu name stands for every entry of that name (mnuTEStrukturDruck and
// mnuFileDruckenAusgewählt each exist twice).
namespace Command {
inline const QString tbEigenschaften = QStringLiteral("tbEigenschaften");
inline const QString tbLoeschen = QStringLiteral("tbLöschen");
inline const QString tbAusschneiden = QStringLiteral("tbAusschneiden");
inline const QString tbEinfuegen = QStringLiteral("tbEinfügen");
inline const QString LabelEdit = QStringLiteral("LabelEdit");
}

// Every command the rule decides on; the main window leaves all others alone.
const QStringList &governedCommands();

// The command rule of the main window, run after each change of selection or
// view: level is the session form of the role, inStandards whether the
// selected node lies in the Standards branch, view one of Ansicht. Returns the
// governed commands that are enabled; the role rules of Auswerter and Werker
// are applied on top.
QSet<QString> enabledCommands(const QString &level, bool inStandards, int view);

// The standard check of the writing routines: true when the role may not
// write this record (a Standard for any role below Master, any record for an
// Auswerter or Werker).
bool standardCheckRefuses(const QString &level, bool isStandard);

}
