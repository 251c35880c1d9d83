// Where the files that a scene or object names may lie: its own directory, the content directory its stored paths are
// relative to, and their sub-directories by usual names. All directories are absolute, in the system's spelling, and
// outside the allowed roots of lib/platform/files.h nothing is found.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "restore/facts/references.h"

namespace host {

inline constexpr std::size_t max_levels_up = 12;           // from the input's directory
inline constexpr std::size_t max_references_tried = 200;   // when the content directory is worked out
inline constexpr std::size_t max_usual_directories = 64;   // below one directory
inline constexpr std::size_t max_stored_directories = 256; // that stored paths lead to

struct ContentDirectory {
    std::string directory;
    bool resolves = false; // stored paths were found below it; else it is where habit puts it
};

// The nearest directory at or above `start` below which most stored paths are found. Drive letters and Amiga volume
// names are left out of account, leading elements too where the rest is found. A name is also tried with the extensions
// of object files, and one that has such an extension without.
ContentDirectory find_content_directory(const std::string& start, const std::vector<restore::Reference>& references);

// Directories to look in, in order and without doubles: the input's own, the content directory, those that stored paths
// lead to below it, both directories' sub-directories by usual names, then `further`.
std::vector<std::string> search_directories(const std::string& start, const std::string& content,
                                            const std::vector<restore::Reference>& references,
                                            const std::vector<std::string>& further);

// `directory`/`name`, for display and for the system.
std::string joined(const std::string& directory, std::string_view name);

} // namespace host
