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

// The displayed columns in their order; sets the flags gSpalteSichtbar of
// the fields 1 to 14 with them. Indexes outside the table and repeats are left out.
void setzeSpalten(OptionState &state, const QList<int> &index);

// Which of the six head-key boxes are checked: a box is, when one of the six
// keys names its field (or caption); settings that hold only the older single
// key check the box of that caption.
QList<bool> kopfwechselGewaehlt(const OptionState &state);
// The head keys from the six boxes: key i holds the Auftrag field of box i-1
// or is empty, so the sheets break in the order of the boxes; the older single
// key gets the caption of the first checked box.
void setzeKopfwechsel(OptionState &state, const QList<bool> &checked);

// The sort criteria of the state as positions in auftragsortierungWahl(), in
// their order, each once; unknown entries are left out.
QList<int> auftragsortierungGewaehlt(const OptionState &state);

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
