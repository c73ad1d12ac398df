#pragma once
#include "zol/core/Options.h"
#include <QString>
#include <QStringList>

namespace zol {

// Up to nine pictures (plant drawings, photographs) lie in the data folder as
// ZOL_B01 ... ZOL_B09 with the extension JPG, BMP or PNG.
constexpr int BildSlots = 9;

// "ZOL_B0n" for slot n (1..9).
QString bildName(int slot);
// The extensions looked for, in this order; the first found wins.
const QStringList &bildEndungen();
// The file of the slot in the folder, or empty. Each extension is tried as
// written above, then in lower case (ZOL_B01.JPG before ZOL_B01.jpg).
QString bildDatei(const QString &dir, int slot);
// The same, and when none exists the message of the missing picture (style 48).
QString BildSuchen(const QString &dir, int slot);

// The settings section of a slot's window: U & "\env\Bildanzeige0n".
QString bildSection(const QString &userName, int slot);
// The place of a slot's window when nothing is stored: Left and Top 500.
WindowGeometry bildFensterVorgabe();

}
