#pragma once
#include "zol/core/Options.h"

class QWidget;

// Position and size of a window under a settings section, with the keys
// prefix+"Left", "Top", "Width", "Height", "WindowState". Restoring places and
// sizes the window and returns the stored state (0 normal, 2 maximised), which
// the caller applies when it shows the window. Saving follows the rules of
// speichereFensterLage: the geometry only for a normal window, nothing for a
// minimised one.
int restoreWindowState(QWidget *window, const QString &section, const zol::WindowGeometry &defaults,
                       const QString &prefix = {});
void saveWindowState(const QWidget *window, const QString &section, const QString &prefix = {});
