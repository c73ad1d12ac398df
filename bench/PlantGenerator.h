#pragma once
#include <QSqlDatabase>
#include <QString>

namespace zolbench {

// A synthetic plant for benchmarks: components under a few installations,
// each with objects (a head row and instruction rows). About a fifth of the
// instructions are short-term, the rest spread over the long-term codes 1W..10J
// (4M through its IVA calendar); some components have maintenance-free ranges,
// a few lie in the Standards branch.
struct PlantSpec {
    int components = 100000;
    int lines = 1000000;        // rows of ProtokollPositionen, head rows included
    unsigned seed = 20160101;
    int firstBezugsjahr = 2015; // reference years run from here ...
    int lastBezugsjahr = 2024;  // ... to here
};

struct PlantStats {
    int components = 0;   // rows of FileTyp "F"
    int standards = 0;    // of these in the Standards branch
    int lines = 0;
    int shortTerm = 0;
    int longTerm = 0;
};

// Fills a new, seeded data file in one transaction with bulk inserts.
PlantStats generatePlant(const QSqlDatabase &db, const PlantSpec &spec);

}
