#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zolbench {

// A plant for the explorer figures: installations in levels of ten (the
// first top one in Standards), components spread over them, and one
// installation of the second level with many components and lines to be copied.
struct ExplorerSpec {
    int installations = 10000;
    int components = 100000;
    int copyComponents = 1000;        // of the components, in the installation to copy
    int copyLinesPerComponent = 10;
};

struct ExplorerPlant {
    int installations = 0;
    int components = 0;
    int sourceLines = 0;
    QString copySource, copyTarget;
};

ExplorerPlant generateExplorerPlant(const QSqlDatabase &db, const ExplorerSpec &spec);
// zolbench --explorer [--installations N] [--components N]: prints the figures.
int runExplorerBench(int argc, char **argv);

}
