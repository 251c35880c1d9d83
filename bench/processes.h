// What is measured in a process of its own.
#pragma once
#include <string>
#include <vector>

namespace bench {

// Runs a program with nothing on its standard output, LD_PRELOAD set where `preload` isn't empty; seconds from start to
// exit. Throws when it can't be started or fails.
double process_seconds(const std::vector<std::string>& command, const std::string& preload);

// The number that a program prints.
double printed_number(const std::vector<std::string>& command);

// The shared libraries that a program starts with, in the form of LD_PRELOAD.
std::string shared_libraries(const std::string& program);

double peak_bytes(); // the most memory that this process has held

} // namespace bench
