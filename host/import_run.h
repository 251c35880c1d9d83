// One file through the plug-in into the toolkit's scene, and what became of the files that it names: what convert, info
// and find have in common.
#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "host/finding/named_files.h"
#include "host/import_options.h"
#include "restore/facts/file_head.h"

namespace host {

struct ImportRun {
    restore::FileHead head;
    bool imported = false, stopped = false;
    std::string directory, content_directory;   // absolute
    std::vector<std::string> image_directories; // where images are looked for, in order
    NamedFiles files;                           // images: not yet looked for
    std::size_t warnings = 0, errors = 0;       // told by the plug-in and the libraries
};

// Imports into an empty scene. Messages have been shown when it returns. Throws Failure with a line that names the file
// when it isn't one of ours.
ImportRun import_file(const std::filesystem::path& input, const ImportOptions& options);

} // namespace host
