#include "host/import_run.h"

#include <algorithm>

#include "host/failure.h"
#include "host/finding/open_watch.h"
#include "host/finding/search_path.h"
#include "host/options_file.h"
#include "host/path_display.h"
#include "host/plugin_loader.h"
#include "host/progress.h"
#include "host/run_messages.h"
#include "host/say.h"
#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/files.h"
#include "lib/platform/memory.h"
#include "lib/services/host.h"
#include "lib/toolkit/calls/environment.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/scene.h"

namespace host {

using messages::message;
namespace fs = std::filesystem;

namespace {

// Into the input's directory, and back whatever happens.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& directory)
    {
        std::error_code error;
        before_ = fs::current_path(error);
        fs::current_path(directory, error);
        if (error) throw Failure(message<"directory-not-entered">(shown_path(directory), error.message()));
    }
    ~WorkingDirectory()
    {
        if (before_.empty()) return; // nobody knows where that was
        std::error_code error;
        fs::current_path(before_, error);
        if (error) say(message<"directory-not-left">(error.message()));
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    fs::path before_;
};

// Who hears the plug-in, for as long as a call of it lasts, however that ends.
class Hearing {
public:
    Hearing(services::Host host, RunMessages& messages)
    {
        services::set_host(std::move(host));
        tv::set_report_sink(
            [](void* self, int32_t level, const char* text) {
                platform::noting_short_memory([&] { static_cast<RunMessages*>(self)->take(level, text); });
            },
            &messages);
    }
    ~Hearing()
    {
        tv::set_report_sink(nullptr, nullptr);
        services::set_host({});
    }
    Hearing(const Hearing&) = delete;
    Hearing& operator=(const Hearing&) = delete;
};

} // namespace

// The way to a directory from the current one, `from`, where that is shorter: the plug-in keeps whole paths in 300 bytes,
// and each element of a path is looked up.
static std::string shortest(const std::string& directory, const std::string& from)
{
    const std::string relative = fs::path(directory).lexically_relative(from).string();
    std::error_code error; // ".." behind a link leads elsewhere
    const bool better = !relative.empty() && relative.size() < directory.size();
    return better && fs::equivalent(relative, directory, error) ? relative : directory;
}

static std::vector<std::string> image_directories(const ImportRun& run, const ImportOptions& options)
{
    std::vector<restore::Reference> references;
    std::vector<std::string> further;
    for (const FileReference& image : run.files.images) references.push_back(image.reference);
    for (const FileReference& object : run.files.objects) {
        const std::string directory = fs::path(object.found).parent_path().string();
        if (!directory.empty() && std::find(further.begin(), further.end(), directory) == further.end() &&
            further.size() < max_stored_directories)
            further.push_back(directory);
    }
    further.insert(further.end(), options.search_path.begin(), options.search_path.end());
    return search_directories(run.directory, run.content_directory, references, further);
}

static std::string content_directory(const ImportOptions& options, const std::string& start,
                                     const std::vector<restore::Reference>& references)
{
    if (!options.content_dir.empty()) return options.content_dir;
    const ContentDirectory worked_out = find_content_directory(start, references);
    if (worked_out.resolves) return worked_out.directory;
    const std::string kept = options_file_value(LW_NEWTEK_ROOT_DIRECTORY).value_or("");
    if (const std::string place = platform::resolve(kept); place.size() > 1 && platform::is_directory(place))
        return place;
    return worked_out.directory;
}

// With --inside-only nothing else is read.
static void set_allowed_roots(const ImportOptions& options, const std::string& directory)
{
    if (!options.inside_only) return;
    std::vector<std::string> roots = options.search_path;
    roots.push_back(directory);
    if (!options.content_dir.empty()) roots.push_back(options.content_dir);
    platform::set_allowed_roots(std::move(roots));
}

// The plug-in finds objects by the toolkit's search path.
static void set_search_path(const ImportOptions& options, const ImportRun& run,
                            const std::vector<restore::Reference>& references)
{
    std::vector<std::string> search;
    for (const std::string& directory :
         search_directories(run.directory, run.content_directory, references, options.search_path))
        search.push_back(shortest(directory, run.directory));
    tv::set_search_path(std::move(search), {lw_object_extensions.begin(), lw_object_extensions.end()});
}

// One call of the plug-in on an empty scene, from the current directory; true when it read the file to its end.
static bool convert(const fs::path& whole, const ImportOptions& options, ImportRun& run, RunMessages& messages)
{
    tv::clear_scene();
    services::clear();
    Progress progress(shown_path(whole.filename()), !options.no_progress && !options.quiet);
    services::Host host;
    // These stand in the reader's calls, which know no exceptions. What runs out of memory is stopped at once.
    host.report = [&messages](int32_t level, std::string_view text) {
        platform::noting_short_memory([&] { messages.take(level, text); });
    };
    host.print = print_latin1;
    host.poll = [&progress](const Import_IO_Abort_Record& record) {
        bool stop = false;
        return !platform::noting_short_memory([&] { stop = progress.reading(record); }) || stop ||
               platform::memory_ran_short();
    };
    const Hearing hearing(std::move(host), messages);
    const OpenWatch watch(run.files.objects, run.directory);
    const std::string root = joined(shortest(run.content_directory, run.directory), "");
    return call_plugin(conversion_words(options, root, whole)) == 0;
}

ImportRun import_file(const fs::path& input, const ImportOptions& options)
{
    ImportRun run;
    const std::string name = shown_path(input);
    run.head = restore::read_head(input);
    if (run.head.problem) throw Failure(*run.head.problem);

    std::error_code error;
    const fs::path whole = fs::absolute(input, error).lexically_normal();
    if (error) throw Failure(about(name, message<"input-path-wrong">(error.message())));
    run.directory = whole.parent_path().string();
    const WorkingDirectory here(run.directory);

    platform::forget_directories();
    set_allowed_roots(options, run.directory);
    const std::vector<restore::Reference> references = run.head.kind == restore::FileKind::scene
                                                           ? restore::references_of_scene(whole)
                                                           : restore::references_of_object(whole);
    run.content_directory = content_directory(options, run.directory, references);
    set_search_path(options, run, references);
    run.files.objects = named_objects(input, references);

    RunMessages messages(name);
    if (run.head.scene_version >= 3) messages.take(message<"scene-of-later-version">());
    run.imported = convert(whole, options, run, messages);
    platform::throw_if_memory_ran_short();
    run.stopped = interrupted();
    if (run.stopped) run.imported = false;
    messages.finish();
    run.warnings = messages.warnings;
    run.errors = messages.errors;
    follow_repetitions(run.files, run.imported);
    if (!run.stopped) run.warnings += restore_scene(whole, run.head.kind, run.files.objects, options.restore);
    if (options.tell_missing) tell_missing_objects(run.files.objects);
    collect_images(run.files, input, references);
    run.image_directories = image_directories(run, options);
    return run;
}

} // namespace host
