#pragma once
#include <QIcon>

// The program's icon in all its sizes (the same pictures the desktop entry installs).
QIcon programIcon();
