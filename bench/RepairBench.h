#pragma once

namespace zolbench {

// zolbench --repairs [--components N] [--lines M] [--orders K] [--data DIR]:
// K repair orders (100,000 by default) over the bench plant's components, one
// component with 1,000 of them; times the overview (open, filter, sort), the
// general capture (open, a step), the next running number, and the listing
// of 10,000 orders into a PDF.
int runRepairBench(int argc, char **argv);

}
