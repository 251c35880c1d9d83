// One run of the plug-in, timed from the entry point's call to its return: from the open file to the built scene.
#pragma once
#include <string>

namespace bench {

// CPU seconds of this process. `path` is lower-case. The scene is cleared behind the run, untimed. Throws when the run
// fails.
double import_seconds(const std::string& path);

double cpu_seconds(); // of this process, so far

// Gives freed memory back to the system: each measurement pays for its own pages, as a program that has just started
// does. Else small inputs would find the pages of the run before, and large ones not.
void forget_memory();

} // namespace bench
