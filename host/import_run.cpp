#include "host/import_run.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "export/gltf/image/image_search.h"
#include "host/failure.h"
#include "host/messages.h"
#include "host/options_file.h"
#include "host/plugin_loader.h"
#include "host/progress.h"
#include "host/search_path.h"
#include "lib/import/lw/base/object_extensions.h"
#include "lib/platform/files.h"
#include "lib/platform/latin1.h"
#include "lib/platform/text.h"
#include "lib/services/host.h"
#include "lib/toolkit/scene/scene.h"

namespace host {

namespace fs = std::filesystem;

// ---- options -------------------------------------------------------------------------------------------------------

void add_import_options(CommandLine& line, ImportOptions& options, bool conversion)
{
    if (conversion) {
        line.heading("What is read");
        line.flag("--no-normals", options.no_normals, "no smoothed normals, whatever the surfaces ask for");
        line.number("--smoothing-angle", "DEG", options.smoothing_angle, 0, 180,
                    "for surfaces that smooth but state no angle; 89.5");
        line.flag("--no-split", options.no_split, "an object with several surfaces stays one mesh");
        line.flag("--first-key-only", options.first_key_only, "no animation: everything stands as at its first key");
        line.flag("--keep-names", options.keep_names,
                  "surfaces of one name are one surface, the last one read, instead of\n\"NAME #2\"");
        line.flag("--warnings", options.warnings, "tell of unknown chunks and detail polygons too");
        line.flag("--stats", options.stats, "print the counters of each file");
        line.flag("--debug-info", options.debug_info, "write what is parsed to debuglw.txt in this directory");
    }
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
    if (!fs::is_directory(directory, error))
        throw WrongUse(std::string(option) + ": " + shown_path(directory) + " is not a directory");
    fs::path path = fs::absolute(directory).lexically_normal();
    if (!path.has_filename() && path.has_relative_path()) path = path.parent_path(); // a slash at the end
    return path.string();
}

void prepare_imports(ImportOptions& options)
{
    set_quiet(options.quiet);
    if (!options.content_dir.empty()) options.content_dir = absolute_directory(options.content_dir, "--content-dir");
    for (std::string& directory : options.search_path) directory = absolute_directory(directory, "--search-path");
    if (!options.trace.empty() && !tv::set_trace_file(options.trace.c_str()))
        throw Failure("cannot write the trace " + shown_path(options.trace) + ": " + std::strerror(errno));
    if (options.debug_info) tv::set_environment("TV_WORKING_DIR", fs::current_path().string());
    if (const std::string directory = options_directory(); !directory.empty())
        call_plugin({{"initialize", directory, {}}});
}

// ---- messages of a run ---------------------------------------------------------------------------------------------

namespace {

constexpr std::size_t max_messages = 100; // of one file; more of them say no more

// The messages of one file: each text once, repetitions counted.
class RunMessages {
public:
    explicit RunMessages(std::string name) : name_(std::move(name)) {}

    void take(int32_t level, std::string_view latin1)
    {
        ++(level <= 3 ? warnings : errors);
        while (!latin1.empty() && latin1.back() == '\n') latin1.remove_suffix(1);
        const std::string text = platform::latin1_to_utf8(latin1);
        if (const auto known = counts_.find(text); known != counts_.end()) {
            ++known->second;
        } else if (counts_.size() < max_messages) {
            counts_.emplace(text, 1);
            order_.push_back(text);
            say(level <= 3 ? Level::warning : Level::error, name_ + ": " + text);
        } else {
            ++unshown_;
        }
    }

    void finish()
    {
        for (const std::string& text : order_)
            if (const std::size_t times = counts_[text]; times > 1)
                say(Level::note, name_ + ": " + grouped(times - 1) + " more times: " + text);
        if (unshown_ > 0) say(Level::note, name_ + ": " + counted(unshown_, "message", "messages") + " not shown");
    }

    std::size_t warnings = 0, errors = 0;

private:
    std::string name_;
    std::unordered_map<std::string, std::size_t> counts_;
    std::vector<std::string> order_;
    std::size_t unshown_ = 0;
};

// Watches which files the plug-in tries to open, and gives each try to the reference that it is made for: a search
// begins with the bare, lower-cased name, tried in the current directory, and references come in the file's order.
class OpenWatch {
public:
    OpenWatch(std::vector<FileReference>& objects, const std::string& directory)
        : objects_(objects), directory_(directory)
    {
        platform::set_open_observer([](void* self, const char* path,
                                       const char* opened) { static_cast<OpenWatch*>(self)->opened(path, opened); },
                                    this);
    }
    ~OpenWatch() { platform::set_open_observer(nullptr, nullptr); }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

private:
    void opened(std::string_view path, std::string_view place) noexcept
    {
        if (std::none_of(path.begin(), path.end(), platform::is_separator)) {
            std::size_t at = next_;
            while (at < objects_.size() && !is_called(objects_[at].reference.stored, path)) ++at;
            if (at < objects_.size()) {
                current_ = &objects_[at];
                current_->reached = true;
                next_ = at + 1;
            }
        }
        if (!current_ || !current_->found.empty()) return;
        note(place.empty() ? platform::shown_name(path) : std::string(place));
        if (!place.empty()) current_->found = absolute(place);
    }

    void note(std::string_view path)
    {
        constexpr std::size_t max_noted = 200'000;
        std::vector<std::string>& tried = current_->tried;
        std::string place = absolute(path);
        if (++noted_ > max_noted || std::find(tried.begin(), tried.end(), place) != tried.end()) return;
        tried.push_back(std::move(place));
    }

    std::string absolute(std::string_view path) const
    {
        std::string place(path);
        std::replace(place.begin(), place.end(), '\\', '/');
        const fs::path whole =
            fs::path(place).has_root_directory() ? fs::path(place) : fs::path(joined(directory_, place));
        return whole.lexically_normal().string();
    }

    std::vector<FileReference>& objects_;
    const std::string& directory_;
    FileReference* current_ = nullptr;
    std::size_t next_ = 0, noted_ = 0;
};

// Into the input's directory, and back whatever happens.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::string& directory)
    {
        std::error_code error;
        before_ = fs::current_path(error);
        fs::current_path(directory, error);
        if (error) throw Failure("cannot enter " + shown_path(directory) + ": " + error.message());
    }
    ~WorkingDirectory()
    {
        if (before_.empty()) return; // nobody knows where that was
        std::error_code error;
        fs::current_path(before_, error);
        if (error) say(Level::warning, "cannot go back: " + error.message());
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    fs::path before_;
};

} // namespace

// ---- the run -------------------------------------------------------------------------------------------------------

std::string shown_path(const fs::path& path)
{
    return platform::shown_name(path.string());
}

static std::string_view without_object_extension(std::string_view place)
{
    for (const std::string_view extension : lw_object_extensions)
        if (place.ends_with(extension)) return place.substr(0, place.size() - extension.size());
    return place;
}

std::string places_text(const std::vector<std::string>& tried, std::size_t most)
{
    std::string text = "  looked for:";
    std::size_t lines = 0;
    std::string_view stem; // of the last line
    for (const std::string& place : tried) {
        const std::string_view this_stem = without_object_extension(place);
        if (lines > 0 && this_stem == stem) { // the same place with another extension
            if (lines <= most && this_stem.size() < place.size()) text += ", " + place.substr(stem.size());
            continue;
        }
        stem = this_stem;
        if (++lines <= most) text += "\n    " + shown_path(place);
    }
    if (lines > most)
        text += "\n    and in " + counted(lines - most, "more place", "more places") + " (lwimport find lists all)";
    return text;
}

// The way to a directory from the current one, `from`, where that is shorter: the plug-in keeps whole paths in 300 bytes,
// and each element of a path is looked up.
static std::string shortest(const std::string& directory, const std::string& from)
{
    const std::string relative = fs::path(directory).lexically_relative(from).string();
    std::error_code error; // ".." behind a link leads elsewhere
    const bool better = !relative.empty() && relative.size() < directory.size();
    return better && fs::equivalent(relative, directory, error) ? relative : directory;
}

static std::vector<Word> conversion_words(const ImportOptions& options, const std::string& root, const fs::path& input)
{
    std::vector<Word> words = {{"execute_geometry_converter"}};
    const auto number = [&words](const char* name, intptr_t value) { words.push_back({name, {}, value}); };
    if (options.no_normals) number("compute_normals", 0);
    if (options.no_split) number("explode_obj_by_surf_names", 0);
    if (options.first_key_only) number("import_keyframe0_only", 1);
    if (options.keep_names) number("make_surface_names_unique", 0);
    if (options.warnings) number("print_warnings", 1);
    number("print_statistics", options.stats ? 1 : 0);
    if (options.debug_info) number("output_debug_info", 1);
    if (options.smoothing_angle) words.push_back({"smoothing_angle", std::to_string(*options.smoothing_angle), {}});
    words.push_back({"newtek_root_directory", root, {}});
    words.push_back({"filename", platform::utf8_to_latin1(input.filename().string()), {}});
    return words;
}

static std::string key_of(const Reference& reference)
{
    return platform::lower_case(platform::last_element(reference.stored));
}

// A file named again isn't looked for again: it is where it was found the first time.
static void follow_repetitions(ImportRun& run)
{
    std::unordered_map<std::string, const FileReference*> first;
    std::unordered_set<std::string> missing;
    std::size_t last_reached = 0;
    for (std::size_t i = 0; i < run.objects.size(); ++i)
        if (run.objects[i].reached) last_reached = i + 1;
    if (run.imported) last_reached = run.objects.size();
    for (std::size_t i = 0; i < run.objects.size(); ++i) {
        FileReference& object = run.objects[i];
        const auto [known, is_new] = first.try_emplace(key_of(object.reference), &object);
        if (!object.reached && i < last_reached && !is_new && known->second->reached) {
            object.reached = true;
            object.found = known->second->found;
        }
        if (object.reached && object.found.empty()) missing.insert(known->first);
    }
    run.distinct_objects = first.size();
    run.missing_objects = missing.size();
}

static void tell_missing_objects(const ImportRun& run)
{
    std::unordered_map<std::string, std::size_t> times;
    for (const FileReference& object : run.objects)
        if (object.reached && object.found.empty()) ++times[key_of(object.reference)];
    for (const FileReference& object : run.objects) {
        if (!object.reached || !object.found.empty()) continue;
        std::size_t& count = times[key_of(object.reference)];
        if (count == 0) continue; // told already
        std::string text = object.asked_by + ": missing object " + platform::latin1_to_utf8(object.reference.stored) +
                           ", a null object takes its place";
        if (count > 1) text += " (named " + grouped(count) + " times)";
        say(Level::warning, text + "\n" + places_text(object.tried, 24));
        count = 0;
    }
}

static void collect_images(ImportRun& run, const fs::path& input, const std::vector<Reference>& references)
{
    const auto add = [&run](const fs::path& file, const Reference& reference) {
        if (run.images.size() >= max_references) return;
        std::string asked_by = shown_path(file.filename());
        asked_by += reference.line > 0 ? ", line " + std::to_string(reference.line)
                                       : ", surface " + platform::latin1_to_utf8(reference.surface);
        run.images.push_back({reference, asked_by, "", {}, true});
    };
    for (const Reference& reference : references)
        if (reference.kind == ReferenceKind::image) add(input, reference);
    std::unordered_set<std::string> scanned;
    for (const FileReference& object : run.objects)
        if (!object.found.empty() && scanned.insert(object.found).second)
            for (const Reference& reference : scan_object(object.found)) add(object.found, reference);
}

void locate_images(ImportRun& run)
{
    std::unordered_map<std::string, gltf::ImagePlace> known;
    for (FileReference& image : run.images) {
        // By the name that the scene has for it, which may bear another extension.
        std::string name(platform::last_element(image.reference.stored));
        for (const tv::Texture& texture : tv::scene().textures)
            if (texture.kind == tv::TextureKind::image && is_called(image.reference.stored, texture.file_name)) {
                name = texture.file_name;
                break;
            }
        auto place = known.find(name);
        if (place == known.end()) place = known.emplace(name, gltf::find_image(name, run.image_directories)).first;
        image.found = place->second.path;
        image.tried = place->second.tried;
    }
}

static std::vector<std::string> image_directories(const ImportRun& run, const ImportOptions& options)
{
    std::vector<Reference> references;
    std::vector<std::string> further;
    for (const FileReference& image : run.images) references.push_back(image.reference);
    for (const FileReference& object : run.objects) {
        const std::string directory = fs::path(object.found).parent_path().string();
        if (!directory.empty() && std::find(further.begin(), further.end(), directory) == further.end() &&
            further.size() < max_stored_directories)
            further.push_back(directory);
    }
    further.insert(further.end(), options.search_path.begin(), options.search_path.end());
    return search_directories(run.directory, run.content_directory, references, further);
}

static std::string content_directory(const ImportOptions& options, const std::string& start,
                                     const std::vector<Reference>& references)
{
    if (!options.content_dir.empty()) return options.content_dir;
    const ContentDirectory worked_out = find_content_directory(start, references);
    if (worked_out.resolves) return worked_out.directory;
    const std::string kept = options_file_value("newtek_root_directory").value_or("");
    if (const std::string place = platform::resolve(kept); place.size() > 1 && platform::is_directory(place))
        return place;
    return worked_out.directory;
}

ImportRun import_file(const fs::path& input, const ImportOptions& options)
{
    ImportRun run;
    const std::string name = shown_path(input);
    run.head = read_head(input);
    if (run.head.kind == FileKind::neither) throw Failure(name + " " + run.head.problem);

    std::error_code error;
    const fs::path whole = fs::absolute(input, error).lexically_normal();
    if (error) throw Failure(name + ": " + error.message());
    run.directory = whole.parent_path().string();
    const WorkingDirectory here(run.directory);

    platform::forget_directories();
    if (options.inside_only) {
        std::vector<std::string> roots = options.search_path;
        roots.push_back(run.directory);
        if (!options.content_dir.empty()) roots.push_back(options.content_dir);
        platform::set_allowed_roots(std::move(roots));
    }
    const bool scene = run.head.kind == FileKind::scene;
    const std::vector<Reference> references = scene ? scan_scene(whole) : scan_object(whole);
    run.content_directory = content_directory(options, run.directory, references);
    std::vector<std::string> search;
    for (const std::string& directory :
         search_directories(run.directory, run.content_directory, references, options.search_path))
        search.push_back(shortest(directory, run.directory));
    tv::set_search_path(std::move(search));
    for (const Reference& reference : references)
        if (reference.kind == ReferenceKind::object)
            run.objects.push_back(
                {reference, shown_path(input.filename()) + ", line " + std::to_string(reference.line), "", {}, false});

    RunMessages messages(name);
    if (run.head.scene_version >= 3)
        messages.take(3, "this scene was written by version 6 or later: its motions have another layout, so that most "
                         "of what it holds is lost");
    tv::clear_scene();
    services::clear();
    {
        Progress progress(shown_path(input.filename()), !options.no_progress && !options.quiet);
        services::Host host;
        host.report = [&messages](int32_t level, std::string_view text) {
            // The one that is told better below, with the stored path and the places.
            if (!text.starts_with("Could not locate Lightwave object file '")) messages.take(level, text);
        };
        host.print = print_latin1;
        host.poll = [&progress](const Import_IO_Abort_Record& record) { return progress.reading(record); };
        services::set_host(std::move(host));
        tv::set_report_sink(
            [](void* self, int32_t level, const char* text) { static_cast<RunMessages*>(self)->take(level, text); },
            &messages);
        const OpenWatch watch(run.objects, run.directory);
        const std::string root = joined(shortest(run.content_directory, run.directory), "");
        run.imported = call_plugin(conversion_words(options, root, whole)) == 0;
        tv::set_report_sink(nullptr, nullptr);
        services::set_host({});
    }
    run.stopped = interrupted();
    if (run.stopped) run.imported = false;
    messages.finish();
    run.warnings = messages.warnings;
    run.errors = messages.errors;
    follow_repetitions(run);
    if (options.tell_missing) tell_missing_objects(run);
    collect_images(run, input, references);
    run.image_directories = image_directories(run, options);
    return run;
}

} // namespace host
