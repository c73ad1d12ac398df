#pragma once
#include <QIcon>

// The images of the explorer: the top nodes, installations (closed and open),
// the two kinds of component, and the buffer commands of the tool bar.
enum class ExplorerIcon { Root, StandardsRoot, Folder, PlantComponent, StandardComponent, Cut, Copy, Paste };
QIcon explorerIcon(ExplorerIcon which);
