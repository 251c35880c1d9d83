// The progress line of a run, and the user's wish to end it.
#pragma once
#include <chrono>
#include <cstddef>
#include <string>

#include "lib/services/import_io.h"

namespace host {

// From now on Ctrl-C (SIGINT) and SIGTERM set interrupted() instead of ending the program, so that a run ends in order. The
// third one ends the program at once.
void catch_interrupts();
bool interrupted();

// Bytes, objects and polygons on one line of a terminal, renewed ten times a second at most.
class Progress {
public:
    Progress(std::string name, bool shown) : name_(std::move(name)), shown_(shown) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Both return interrupted().
    bool reading(const Import_IO_Abort_Record& record);
    bool writing(std::size_t done, std::size_t total);

private:
    bool due();

    std::string name_; // UTF-8
    bool shown_;
    std::chrono::steady_clock::time_point next_{};
};

} // namespace host
