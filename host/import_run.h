// One file through the plug-in into the toolkit's scene, and what became of the files that it names: what convert, info
// and find have in common.
#pragma once
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/command_line.h"
#include "host/references.h"

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
};

// The options of a command line that fill them; those on how meshes are made only with `conversion`.
void add_import_options(CommandLine& line, ImportOptions& options, bool conversion);

// Makes directories absolute, opens the trace, reads the plug-in's options file. Once, before the first import_file().
// Throws WrongUse for a directory that isn't one, Failure for a trace that can't be written.
void prepare_imports(ImportOptions& options);

struct FileReference {
    Reference reference;
    std::string asked_by;           // UTF-8: "harbour.lws, line 12" or "ship.lwo, surface hull"
    std::string found;              // the system's path; empty: not found
    std::vector<std::string> tried; // the places, in order, the one that succeeded last; empty where a file of the same
                                    // name had been read before
    bool reached = false;           // false: the run ended before it was looked for
};

struct ImportRun {
    FileHead head;
    bool imported = false, stopped = false;
    std::string directory, content_directory;   // absolute
    std::vector<std::string> image_directories; // where images are looked for, in order
    std::vector<FileReference> objects, images; // images: not yet looked for
    std::size_t warnings = 0, errors = 0;       // told by the plug-in and the libraries

    std::size_t distinct_objects = 0, missing_objects = 0; // files, not references
};

// Imports into an empty scene. Messages have been shown when it returns. Throws Failure with a line that names the file
// when it isn't one of ours.
ImportRun import_file(const std::filesystem::path& input, const ImportOptions& options);

// Looks for the images of a run just made, where an exporter would: fills `found` and `tried` of each.
void locate_images(ImportRun& run);

// A path for the user, UTF-8.
std::string shown_path(const std::filesystem::path& path);

// "looked for:" and the places, indented, each on its line; the first `most` of them.
std::string places_text(const std::vector<std::string>& tried, std::size_t most);

} // namespace host
