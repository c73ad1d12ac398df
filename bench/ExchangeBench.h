#pragma once

namespace zolbench {

// zolbench --exchange [--components N] [--lines M]: an installation branch of
// N components with M instruction lines (10,000 and 100,000 by default) is
// exported with its lines to .db and to .xlsx and each file imported back
// under a new installation; prints the seconds of each and the peak memory.
int runExchangeBench(int argc, char **argv);

}
