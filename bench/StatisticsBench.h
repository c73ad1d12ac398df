#pragma once

namespace zolbench {

// zolbench --statistics [--components N] [--lines M] [--data DIR] [--year JJJJ]:
// the bench plant with a posted year (about a tenth of the instructions in
// each of the 52 weeks, written straight into the yearly table), then the
// statistics' figures: planned effort of all components by trade and interval
// type, the measures of the whole plant, the distribution of one trade, the
// reported effort, and the raw data export with its rows per second and its
// own peak memory.
int runStatisticsBench(int argc, char **argv);

}
