#include "host/outputs.h"

#include <algorithm>
#include <map>

#include "host/failure.h"
#include "host/path_display.h"
#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/text.h"
#include "restore/facts/file_head.h"

namespace host {

using messages::message;
namespace fs = std::filesystem;

static std::string lower_extension(const fs::path& path)
{
    return platform::lower_case(path.extension().string());
}

std::string format_of(const fs::path& path)
{
    const std::string extension = lower_extension(path);
    return extension == ".glb" || extension == ".gltf" || extension == ".json" ? extension.substr(1) : "";
}

// The Lightwave files below a directory, told by their content, in the order of their paths. Links aren't followed.
static std::vector<fs::path> files_below(const fs::path& directory)
{
    std::vector<fs::path> files;
    std::error_code error;
    fs::recursive_directory_iterator entry(directory, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored) && restore::read_head(entry->path()).kind != restore::FileKind::neither)
            files.push_back(entry->path());
    }
    if (error) throw Failure(message<"directory-unlistable">(shown_path(directory), error.message()));
    std::sort(files.begin(), files.end());
    return files;
}

// "ship" of ship.lwo; what isn't an ending of ours belongs to the name: "gate.v2".
static std::string stem_of(const fs::path& input)
{
    const auto is_one_of = [extension = lower_extension(input)](const auto& endings) {
        return std::find(endings.begin(), endings.end(), extension) != endings.end();
    };
    const bool ours = is_one_of(lw_object_extensions) || is_one_of(lw_scene_extensions);
    return ours ? input.stem().string() : input.filename().string();
}

namespace {

struct Source {
    fs::path input;
    fs::path below; // its directory, seen from the directory that was given; empty for a file that was given
};

// What `out` means.
struct Target {
    fs::path directory; // empty: beside the input
    fs::path file;
    bool standard_output = false;
    std::string ending = ".glb";
};

} // namespace

static Target target_of(const OutputOptions& options, bool single)
{
    Target target;
    if (!options.format.empty()) target.ending = "." + options.format;
    if (options.out.empty()) return target;
    std::error_code error;
    if (options.out == "-") {
        target.standard_output = true;
        if (!single) throw WrongUse(message<"output-for-one-input">("-"));
    } else if (!fs::path(options.out).has_filename() || fs::is_directory(options.out, error)) {
        target.directory = fs::absolute(options.out);
    } else {
        const std::string format = format_of(options.out);
        if (format.empty()) throw WrongUse(message<"output-kind-unknown">(shown_path(options.out)));
        if (!options.format.empty() && options.format != format)
            throw WrongUse(message<"format-contradicts-output">(shown_path(options.out), options.format));
        if (!single) throw WrongUse(message<"output-for-one-input">("FILE"));
        target.file = fs::absolute(options.out);
    }
    return target;
}

static fs::path output_of(const Source& source, const Target& target, const std::string& name)
{
    if (target.standard_output) return {};
    if (!target.file.empty()) return target.file;
    const fs::path directory =
        target.directory.empty() ? fs::absolute(source.input).parent_path() : target.directory / source.below;
    return (directory / (name + target.ending)).lexically_normal();
}

std::vector<Job> plan_jobs(const std::vector<std::string>& inputs, const OutputOptions& options)
{
    bool single = inputs.size() == 1;
    std::vector<Source> sources;
    std::vector<Job> jobs;
    for (const std::string& input : inputs) {
        std::error_code error;
        if (!fs::is_directory(input, error)) {
            sources.push_back({input, {}});
            continue;
        }
        single = false;
        if (!options.recursive) {
            jobs.push_back({input, {}, message<"input-directory-not-asked">(shown_path(input))});
            continue;
        }
        const std::vector<fs::path> files = files_below(input);
        if (files.empty()) jobs.push_back({input, {}, message<"directory-without-inputs">(shown_path(input))});
        for (const fs::path& file : files) sources.push_back({file, file.lexically_relative(input).parent_path()});
    }
    const Target target = target_of(options, single);

    std::map<fs::path, std::size_t> wanted;
    for (const Source& source : sources) ++wanted[output_of(source, target, stem_of(source.input))];
    std::map<fs::path, std::size_t> taken;
    for (const Source& source : sources) {
        fs::path output = output_of(source, target, stem_of(source.input));
        if (!single && wanted[output] > 1) output = output_of(source, target, source.input.filename().string());
        Job job{source.input, output, {}};
        std::error_code error;
        if (!output.empty() && fs::equivalent(source.input, output, error))
            job.problem = about(shown_path(source.input), message<"output-over-input">());
        else if (!output.empty() && ++taken[output] > 1)
            job.problem = about(shown_path(source.input), message<"output-taken">(shown_path(output)));
        jobs.push_back(std::move(job));
    }
    return jobs;
}

} // namespace host
