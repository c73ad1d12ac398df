#pragma once
#include <QIcon>

// The images of the explorer: the top nodes, installations (closed and open),
// and the two kinds of component.
enum class ExplorerIcon { Root, StandardsRoot, Folder, PlantComponent, StandardComponent };
QIcon explorerIcon(ExplorerIcon which);
