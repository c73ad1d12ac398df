#pragma once
#include "Session.h"
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

namespace zol {

// One field of the column table: the component field, its caption in the
// options window and its caption as a list column. index runs from 1 to 18.
struct SpaltenFeld {
    int index;
    QString feld;
    QString optionCaption;
    QString listCaption;
};
const QList<SpaltenFeld> &spaltenTabelle();
// The entry of a field index 1..18, nullptr outside.
const SpaltenFeld *spaltenFeld(int index);
constexpr int SpaltenAnzahl = 18;

// A choice of the options window that is stored by field name: the extra page
// breaks of the job sheet (fields of Auftrag) and the sort criteria (fields of
// ProtokollKopf).
struct FeldWahl {
    QString caption;
    QString feld;
};
// The six boxes chkKopfwechsel(0..5) in their order.
const QList<FeldWahl> &kopfwechselWahl();
// The sort criteria offered for the job sheets, in the order of their boxes.
const QList<FeldWahl> &auftragsortierungWahl();
// The Auftrag field of a stored head key: the field name itself or the caption
// of its box, in any case; empty for anything else, so that a hand-edited
// settings file never puts a foreign name into the print statement.
QString kopfwechselFeld(const QString &stored);
// The ProtokollKopf field of a stored sort criterion, empty if it is none of the offered.
QString auftragsortierungFeld(const QString &stored);

// Fills the option state from the user's section "\Optionen". Without saved
// settings every column is displayed in table order, no extra page break and
// portrait. The flags gSpalteSichtbar are only set from saved columns, as the
// main list expects.
void LadeOptionen(Session &session);
void LadeOptionen(const QString &userName, OptionState &state);

// Writes the whole section "\Optionen" from the state, as OK and Apply do.
void SpeichereOptionen(const QString &userName, const OptionState &state);
void SpeichereOptionen(Session &session);

// Whether the displayed columns differ between two states (the main list then
// has to be rebuilt).
bool spaltenGeaendert(const OptionState &before, const OptionState &after);

// Window position and state under a section, with the keys
// prefix+"Left", "Top", "Width", "Height", "WindowState" (0 normal,
// 1 minimised, 2 maximised). The geometry is written only for a normal
// window, the state not at all for a minimised one.
struct WindowGeometry {
    QRect rect;
    int windowState = 0;
};
WindowGeometry ladeFensterLage(const QString &section, const WindowGeometry &defaults,
                               const QString &prefix = {});
void speichereFensterLage(const QString &section, const WindowGeometry &lage, const QString &prefix = {});

}
