// What is put back round the plug-in: which restorations a command line wants, and what they did.
#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/finding/named_files.h"
#include "restore/after/put_back.h"
#include "restore/facts/file_head.h"
#include "restore/restorations.h"

namespace host {

struct RestoreOptions {
    bool as_is = false;                  // nothing is restored
    std::vector<std::string> no_restore; // names
    std::string range;                   // "keys": the clip spans all keys; empty: the file's frames
    bool first_key_only = false, keep_names = false;

    // Throws WrongUse for a name that is none.
    restore::Wanted wanted() const;
};

void add_restore_options(CommandLine& line, RestoreOptions& options);

// After an import, from the input's directory: the scene gets back what the file says and the plug-in left out. What was
// done and what is lost is told; returns how many warnings that took.
std::size_t restore_scene(const std::filesystem::path& input, restore::FileKind kind,
                          const std::vector<FileReference>& objects, const RestoreOptions& options);

} // namespace host
