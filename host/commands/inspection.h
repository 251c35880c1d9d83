// What info and find begin with: one input, read and nothing written of it.
#pragma once
#include <optional>
#include <string>

#include "host/command_line.h"
#include "host/import_run.h"

namespace host {

struct Inspection {
    std::string input;
    ImportRun run; // its images located; what is missing hasn't been told
    bool json = false;
};

// Nothing when only help was asked for. Throws as import_file does, and WrongUse.
std::optional<Inspection> inspect(CommandLine& line, Arguments arguments);

} // namespace host
