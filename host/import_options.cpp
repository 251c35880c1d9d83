#include "host/import_options.h"

#include <cerrno>
#include <cstring>

#include "host/failure.h"
#include "host/options_file.h"
#include "host/path_display.h"
#include "host/say.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/calls/environment.h"
#include "lib/toolkit/words/trace.h"

namespace host {

using messages::message;
namespace fs = std::filesystem;

void add_import_options(CommandLine& line, ImportOptions& options, bool conversion)
{
    if (conversion) {
        line.heading("What is read");
        line.flag("--no-normals", options.no_normals, "no smoothed normals, whatever the surfaces ask for");
        const lw_option& angle = lw_options[LW_SMOOTHING_ANGLE];
        line.number("--smoothing-angle", "DEG", options.smoothing_angle, angle.lowest, angle.highest,
                    "for surfaces that smooth but state no angle; " + standard_value(angle));
        line.flag("--no-split", options.no_split, "an object with several surfaces stays one mesh");
        line.flag("--first-key-only", options.first_key_only, "no animation: everything stands as at its first key");
        line.flag("--keep-names", options.keep_names,
                  "surfaces of one name are one surface, the last one read, instead of\n\"NAME #2\"");
        line.flag("--warnings", options.warnings, "tell of unknown chunks and detail polygons too");
        line.flag("--stats", options.stats, "print the counters of each file");
        line.flag("--debug-info", options.debug_info, "write what is parsed to debuglw.txt in this directory");
    }
    add_restore_options(line, options.restore);
    line.heading("Where files are looked for");
    line.text("--content-dir", "DIR", options.content_dir,
              "the directory that stored paths are relative to; otherwise it is\nworked out from them");
    line.texts("--search-path", "DIR", options.search_path, "one more place to look in; may be given several times");
    line.flag("--inside-only", options.inside_only,
              "read nothing outside the input's directory and those two (for servers)");
    line.heading("Messages");
    line.text("--trace", "FILE", options.trace, "write every call that the plug-in makes, a JSON array a line");
    line.flag("--quiet", options.quiet, "only warnings and errors");
    line.flag("--no-progress", options.no_progress, "no progress line on a terminal");
}

static std::string absolute_directory(const std::string& directory, const char* option)
{
    std::error_code error;
    if (!fs::is_directory(directory, error)) throw WrongUse(message<"directory-wrong">(option, shown_path(directory)));
    fs::path path = fs::absolute(directory).lexically_normal();
    if (!path.has_filename() && path.has_relative_path()) path = path.parent_path(); // a slash at the end
    return path.string();
}

void prepare_imports(ImportOptions& options)
{
    set_quiet(options.quiet);
    options.restore.first_key_only = options.first_key_only;
    options.restore.keep_names = options.keep_names;
    options.restore.wanted(); // a wrong name is told before anything is read
    if (!options.content_dir.empty()) options.content_dir = absolute_directory(options.content_dir, "--content-dir");
    for (std::string& directory : options.search_path) directory = absolute_directory(directory, "--search-path");
    if (!options.trace.empty() && !tv::set_trace_file(options.trace.c_str()))
        throw Failure(message<"trace-unwritable">(shown_path(options.trace), std::strerror(errno)));
    if (options.debug_info) tv::set_environment("TV_WORKING_DIR", fs::current_path().string());
    if (const std::string directory = options_directory(); !directory.empty())
        call_plugin({{"initialize", directory, {}}});
}

std::vector<Word> conversion_words(const ImportOptions& options, const std::string& root, const fs::path& input)
{
    std::vector<Word> words = {{"execute_geometry_converter"}};
    const auto flag = [&words](lw_option_number option, bool on) {
        words.push_back({lw_options[option].word, {}, on ? 1 : 0});
    };
    const auto text = [&words](lw_option_number option, std::string value) {
        words.push_back({lw_options[option].word, std::move(value), {}});
    };
    if (options.no_normals) flag(LW_COMPUTE_NORMALS, false);
    if (options.no_split) flag(LW_EXPLODE_OBJ_BY_SURF_NAMES, false);
    if (options.first_key_only) flag(LW_IMPORT_KEYFRAME0_ONLY, true);
    if (options.keep_names) flag(LW_MAKE_SURFACE_NAMES_UNIQUE, false);
    if (options.warnings) flag(LW_PRINT_WARNINGS, true);
    flag(LW_PRINT_STATISTICS, options.stats);
    if (options.debug_info) flag(LW_OUTPUT_DEBUG_INFO, true);
    if (options.smoothing_angle) text(LW_SMOOTHING_ANGLE, std::to_string(*options.smoothing_angle));
    text(LW_NEWTEK_ROOT_DIRECTORY, root);
    words.push_back({"filename", platform::utf8_to_latin1(input.filename().string()), {}});
    return words;
}

} // namespace host
