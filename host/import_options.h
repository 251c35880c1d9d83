// How a file is read and where what it names is looked for, from a command line to the plug-in's words.
#pragma once
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/plugin_loader.h"
#include "host/restoration.h"

namespace host {

struct ImportOptions {
    bool no_normals = false, no_split = false, first_key_only = false, keep_names = false;
    bool warnings = false, stats = false, debug_info = false;
    std::optional<double> smoothing_angle; // degrees
    std::string content_dir;
    std::vector<std::string> search_path;
    bool inside_only = false;
    std::string trace;
    bool no_progress = false, quiet = false;
    bool tell_missing = true; // a message for each missing object
    RestoreOptions restore;
};

// The options of a command line that fill them; those on how meshes are made only with `conversion`.
void add_import_options(CommandLine& line, ImportOptions& options, bool conversion);

// Makes directories absolute, opens the trace, reads the plug-in's options file. Once, before the first import_file().
// Throws WrongUse for a directory that isn't one, Failure for a trace that can't be written.
void prepare_imports(ImportOptions& options);

// The words of one conversion. `root` is the content directory with a slash at its end; of `input` only the file's
// name counts, since the plug-in runs in its directory.
std::vector<Word> conversion_words(const ImportOptions& options, const std::string& root,
                                   const std::filesystem::path& input);

} // namespace host
