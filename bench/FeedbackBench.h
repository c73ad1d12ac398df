#pragma once

namespace zolbench {

// zolbench --feedback [--components N] [--lines M] [--data DIR]: plans five
// long-term weeks and week 00 on the bench plant, then times the feedback
// window (opening with each view, a node's list, a save) and posting and
// deleting a week; prints the figures and the peak memory.
int runFeedbackBench(int argc, char **argv);

}
