// What every in-process benchmark does the same way: start the program's
// toolkit against DISPLAY, run the event loop until idle, take the time and
// the median of several runs, and make a scratch folder.
#pragma once

#include <string>
#include <vector>

// Starts the toolkit as the program does; prints why not and returns false
// when that fails (the display must be 8-bit PseudoColor).
bool bench_start(const char* benchName);
// XSync and process events until none are pending, a few times over.
void bench_pump();
double now_ms();
double median(std::vector<double> v);
// A fresh folder under $TMPDIR (or /tmp) named after the bench; empty, with
// the reason printed, when none can be made.
std::string bench_scratch_dir(const char* benchName);
