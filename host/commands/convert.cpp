// lwimport convert: files through the plug-in and the exporter, one after the other.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <new>

#include "export/gltf/writer.h"
#include "export/scene_json/scene_dump.h"
#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/failure.h"
#include "host/import_run.h"
#include "host/outputs.h"
#include "host/path_display.h"
#include "host/progress.h"
#include "host/say.h"
#include "lib/platform/atomic_file.h"
#include "lib/platform/console.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/scene/scene.h"

namespace host {

using messages::message;
using messages::Message;
namespace fs = std::filesystem;

namespace {

struct ConvertOptions {
    ImportOptions import;
    OutputOptions output;
    std::optional<double> scale, light_scale, frame;
    std::optional<int64_t> max_texture;
    bool backdrop_dome = false, strict = false, no_clobber = false, keep_partial = false;
};

struct Totals {
    std::size_t converted = 0, left_alone = 0, failed = 0;
    std::size_t objects = 0, missing_objects = 0, images = 0, missing_images = 0;
};

} // namespace

static CommandLine convert_line(ConvertOptions& options, std::vector<std::string>& inputs)
{
    CommandLine line("  lwimport [convert] IN… [-o OUT.glb|OUT.gltf|OUT.json|DIR/|-]\n",
                     "Converts Lightwave objects (LWOB) and scenes (LWSC) to glTF 2.0. OUT defaults to IN with .glb.",
                     {"lwimport harbour.lws", "writes harbour.glb, with everything inside",
                      "lwimport harbour.lws --content-dir /archive/content -o out/harbour.gltf",
                      "says where stored paths begin, and writes JSON with its files beside it",
                      "lwimport -r archive/ -o converted/",
                      "every scene and object in a directory, and on after a failure"});
    line.inputs("input", inputs, 1, 1'000'000);
    line.heading("Output");
    line.text("-o,--output", "OUT", options.output.out,
              "a file, a directory (with / at its end), or - for standard output");
    line.text("--format", "KIND", options.output.format, "glb, gltf or json, where OUT doesn't say");
    line.flag("-r,--recursive", options.output.recursive, "inputs may be directories");
    line.flag("-n,--no-clobber", options.no_clobber, "leave existing outputs alone");
    line.flag("--strict", options.strict, "warnings and missing files fail, and nothing is written then");
    line.flag("--keep-partial", options.keep_partial, "write what was read of a file that failed");
    line.heading("The result");
    line.number("--scale", "F", options.scale, 1e-9, 1e9, "multiply lengths, in the data itself; 1");
    line.number("--light-scale", "F", options.light_scale, 0, 1e9, "multiply the strength of lights; 1");
    line.whole("--max-texture", "N", options.max_texture, 1, 16384, "longest side of an image in pixels; 4096");
    line.flag("--backdrop-dome", options.backdrop_dome, "a dome round everything that shows the backdrop");
    line.number("--frame", "N", options.frame, -1e6, 1e6, "a still of this frame instead of the animation");
    add_import_options(line, options.import, true);
    return line;
}

static gltf::Options export_options(const ConvertOptions& options, const ImportRun& run, const fs::path& input)
{
    gltf::Options out;
    out.scale = options.scale.value_or(1);
    out.light_scale = options.light_scale.value_or(1);
    out.max_texture = static_cast<uint32_t>(options.max_texture.value_or(4096));
    out.backdrop_dome = options.backdrop_dome;
    out.frame = options.frame;
    const restore::Wanted wanted = options.import.restore.wanted();
    out.fine_rotations = wanted[restore::Restoration::fine_rotations];
    out.fit_depth = wanted[restore::Restoration::depth_range];
    out.image_directories = run.image_directories;
    out.source_name = shown_path(input.filename());
    return out;
}

// ---- what is told --------------------------------------------------------------------------------------------------

static void tell_missing_images(const gltf::Report& report, const ImportRun& run)
{
    for (const gltf::MissingImage& image : report.missing_images) {
        std::string stored = image.name;
        messages::Where asked_by{image.surface, 0, std::nullopt};
        const std::vector<FileReference>& named = run.files.images;
        const auto known = std::find_if(named.begin(), named.end(), [&image](const FileReference& file) {
            return restore::is_called(file.reference.stored, image.name);
        });
        if (known != named.end()) {
            stored = known->reference.stored;
            asked_by = known->asked_by;
        }
        PlaceLines places = place_lines(image.tried, places_told);
        Message told =
            image.unreadable.empty()
                ? message<"image-missing">(platform::latin1_to_utf8(stored), std::move(places.lines), places.more)
                : message<"image-unreadable">(shown_path(image.tried.empty() ? stored : image.tried.back()),
                                              image.unreadable);
        told.where = std::move(asked_by);
        say(told);
    }
}

static void tell_notes(const gltf::Report& report, const std::string& name)
{
    for (const Message& note : report.notes) say(about(name, note));
}

static void tell_summary(const Job& job, double seconds)
{
    const tv::Scene& scene = tv::scene();
    std::size_t objects = 0, polygons = 0, lights = 0;
    for (const tv::Object& object : scene.objects) {
        if (!object.alive || object.primitives.empty()) continue;
        ++objects;
        for (const tv::Primitive& primitive : object.primitives) polygons += primitive.sizes.size();
    }
    for (const tv::Light& light : scene.lights)
        if (light.alive && light.model != tv::LightModel::ambient) ++lights;
    if (const tv::Id ambient = scene.find(tv::Kind::light, "defaultambient");
        ambient != tv::no_id && scene.lights[ambient].model != tv::LightModel::ambient)
        --lights; // it is there from the start, and no file made it
    const std::string out = job.output.empty() ? "standard output" : shown_path(job.output.filename());
    say(message<"converted">(shown_path(job.input), out, objects, polygons, lights, seconds));
}

static std::vector<Message> missing_files(const Totals& totals)
{
    std::vector<Message> missing;
    if (totals.missing_objects > 0)
        missing.push_back(message<"objects-missing">(totals.missing_objects, totals.objects));
    if (totals.missing_images > 0) missing.push_back(message<"images-missing">(totals.missing_images, totals.images));
    return missing;
}

static void tell_totals(const Totals& totals, std::size_t files)
{
    std::vector<Message> missing = missing_files(totals);
    if (files <= 1) {
        if (!missing.empty()) say(message<"files-missing">(std::move(missing)));
    } else if (interrupted()) {
        say(message<"files-stopped">(files, totals.converted, totals.left_alone, totals.failed, std::move(missing)));
    } else {
        say(message<"files-done">(files, totals.converted, totals.left_alone, totals.failed, std::move(missing)));
    }
}

// ---- one file ------------------------------------------------------------------------------------------------------

static void write_to_standard_output(const void* bytes, std::size_t size)
{
    if (std::fwrite(bytes, 1, size, stdout) != size || std::fflush(stdout) != 0)
        throw Failure(message<"standard-output-failed">(std::strerror(errno)));
}

static bool has_warnings(const gltf::Report& report)
{
    return !report.missing_images.empty() ||
           std::any_of(report.notes.begin(), report.notes.end(),
                       [](const Message& note) { return note.row->level > messages::Level::info; });
}

static void make_directory_of(const fs::path& output)
{
    std::error_code error;
    fs::create_directories(output.parent_path(), error);
    if (error) throw Failure(message<"directory-not-made">(shown_path(output.parent_path()), error.message()));
}

static gltf::Report export_scene(const Job& job, const ConvertOptions& options, const gltf::Options& how)
{
    const bool to_file = !job.output.empty();
    const std::string format = to_file                          ? format_of(job.output)
                               : !options.output.format.empty() ? options.output.format
                                                                : "glb";
    if (format == "json") {
        const std::string text = scene_json::dump_scene(tv::scene());
        if (to_file) {
            make_directory_of(job.output);
            platform::AtomicFile file(job.output);
            file.write(text.data(), text.size());
            file.commit();
        } else {
            write_to_standard_output(text.data(), text.size());
        }
        return {};
    }
    gltf::MadeTables made = gltf::make_tables(tv::scene(), how);
    if (made.report.stopped || (options.strict && has_warnings(made.report))) return made.report;
    if (to_file) {
        make_directory_of(job.output);
        gltf::write_file(made.tables, job.output);
    } else {
        const std::vector<unsigned char> bytes = gltf::file_bytes(made.tables, format);
        write_to_standard_output(bytes.data(), bytes.size());
    }
    return std::move(made.report);
}

// Throws Failure unless the file was read and written whole.
static void convert_one(const Job& job, const ConvertOptions& options, Totals& totals)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string name = shown_path(job.input);
    const ImportRun run = import_file(job.input, options.import);
    totals.objects += run.files.distinct_objects;
    totals.missing_objects += run.files.missing_objects;
    if (run.stopped) throw Failure(about(name, message<"stopped">()));
    if (!run.imported && !options.keep_partial) throw Failure(about(name, message<"not-converted">()));
    if (options.strict && (run.warnings + run.errors + run.files.missing_objects > 0))
        throw Failure(about(name, message<"not-converted-strictly">()));

    gltf::Options how = export_options(options, run, job.input);
    gltf::Report report;
    {
        Progress progress(shown_path(job.input.filename()), !options.import.no_progress && !options.import.quiet);
        how.progress = [&progress](std::size_t done, std::size_t total) { return progress.writing(done, total); };
        report = export_scene(job, options, how);
    }
    if (report.stopped) throw Failure(about(name, message<"stopped">()));
    tell_missing_images(report, run);
    tell_notes(report, name);
    totals.images += report.images_found + report.missing_images.size();
    totals.missing_images += report.missing_images.size();
    if (options.strict && has_warnings(report)) throw Failure(about(name, message<"not-converted-strictly">()));
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    tell_summary(job, seconds.count());
    if (!run.imported) throw Failure(about(name, message<"converted-partly">()));
}

// ---- the command ---------------------------------------------------------------------------------------------------

static void check_options(const ConvertOptions& options)
{
    const std::string& format = options.output.format;
    if (!format.empty() && format_of("x." + format) != format) throw WrongUse(message<"format-unknown">(format));
    if (options.output.out == "-" && (format.empty() || format == "glb") && platform::is_terminal(stdout))
        throw WrongUse(message<"output-is-terminal">());
}

int convert_command(Arguments arguments)
{
    ConvertOptions options;
    std::vector<std::string> inputs;
    if (!convert_line(options, inputs).parse(arguments)) return status_done;
    check_options(options);
    const std::vector<Job> jobs = plan_jobs(inputs, options.output);
    catch_interrupts();
    prepare_imports(options.import);

    Totals totals;
    for (const Job& job : jobs) {
        if (interrupted()) break;
        try {
            std::error_code error;
            if (job.problem) throw Failure(*job.problem);
            if (options.no_clobber && !job.output.empty() && fs::exists(job.output, error)) {
                say(message<"output-left-alone">(shown_path(job.output)));
                ++totals.left_alone;
                continue;
            }
            forget_memory_short();
            convert_one(job, options, totals);
            ++totals.converted;
        } catch (const std::bad_alloc&) {
            say_memory_short(job.input.string());
            ++totals.failed;
        } catch (const std::exception& error) {
            say(message_of(error));
            ++totals.failed;
        }
    }
    tell_totals(totals, jobs.size());
    return totals.failed > 0 || interrupted() ? status_failed : status_done;
}

} // namespace host
