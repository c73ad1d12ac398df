#pragma once
#include <QString>

// Pictures of the real windows for the manual: a demo data file is made in a
// temporary folder, the administrator is logged in, and each window is opened
// through its menu entry in the main window, as a user opens it, and grabbed.
// Returns an empty string, else what went wrong.
QString takeScreenshots(const QString &outDir);
