#include "export/gltf/writer.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "export/gltf/file/output.h"
#include "export/gltf/scene/backdrop.h"
#include "export/gltf/scene/camera.h"
#include "export/gltf/scene/lights.h"
#include "export/gltf/scene/nodes.h"
#include "lib/platform/atomic_file.h"

namespace gltf {

namespace {

struct Stopped {}; // thrown through the exporter's own frames where Options::progress says so

std::string lower_case(std::string text)
{
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return text;
}

Json json_extras(const tv::Scene& scene, const Options& options)
{
    Json extras = Json::object();
    if (!options.source_name.empty()) extras["source"] = options.source_name;
    if (options.scale != 1) extras["scale"] = options.scale;
    if (options.frame) extras["frame"] = *options.frame;
    if (scene.resolution[0] > 0 && scene.resolution[1] > 0) extras["resolution"] = scene.resolution;
    return extras;
}

// First stage: the scene as plain tables.
void make_tables(const tv::Scene& scene, const Options& options, Tables& tables, Report& report)
{
    if (!(options.scale > 0) || !std::isfinite(options.scale))
        throw std::runtime_error("the scale has to be a number above 0");
    tables.source_name = options.source_name;
    tables.generator = options.generator;
    tables.asset_extras = json_extras(scene, options);

    Animator animator(scene, options, tables, report);
    MaterialMaker materials(scene, options, tables, report);
    MeshMaker meshes(scene, options, materials, tables, report);
    const std::vector<tv::Placement> places = all_places(animator.start_time());
    const auto progress = [&](std::size_t done) {
        if (options.progress && options.progress(done, places.size())) throw Stopped{};
    };
    make_nodes(scene, places, options.scale, animator, meshes, tables, report, progress);
    const Measure size = measure(scene, places);
    make_lights(scene, options, size, tables, report);
    make_cameras(scene, options, animator, tables);
    make_backdrop(scene, options, size, materials, tables, report);
    meshes.finish();
    animator.finish();
    progress(places.size());

    report.nodes = tables.nodes.size();
    report.meshes = tables.meshes.size();
    report.materials = tables.materials.size();
    report.images = tables.buffer.images().size();
    report.animations = tables.animation.channels.empty() ? 0 : 1;
}

} // namespace

Report write_scene(const tv::Scene& scene, const std::filesystem::path& out, const Options& options)
{
    Report report;
    const std::string ending = lower_case(out.extension().string());
    if (ending == ".json") {
        const std::string text = dump_scene(scene);
        platform::AtomicFile file(out);
        file.write(text.data(), text.size());
        file.commit();
        return report;
    }
    if (ending != ".glb" && ending != ".gltf")
        throw std::runtime_error("can't tell what to write from the name '" + out.string() +
                                 "': it has to end in .glb, .gltf or .json");
    try {
        Tables tables;
        make_tables(scene, options, tables, report);
        if (ending == ".glb") {
            platform::AtomicFile file(out);
            write_glb(tables, [&](const void* bytes, std::size_t size) { file.write(bytes, size); });
            file.commit();
        } else {
            write_gltf_files(tables, out);
        }
    } catch (const Stopped&) {
        report.stopped = true;
    }
    return report;
}

Report write_scene(const tv::Scene& scene, const std::string& format, const Options& options,
                   std::vector<unsigned char>& bytes)
{
    Report report;
    bytes.clear();
    const auto sink = [&](const void* data, std::size_t size) {
        const auto* const from = static_cast<const unsigned char*>(data);
        bytes.insert(bytes.end(), from, from + size);
    };
    if (format == "json") {
        const std::string text = dump_scene(scene);
        sink(text.data(), text.size());
        return report;
    }
    if (format != "glb" && format != "gltf")
        throw std::runtime_error("unknown format '" + format + "': there are glb, gltf and json");
    try {
        Tables tables;
        make_tables(scene, options, tables, report);
        if (format == "glb")
            write_glb(tables, sink);
        else
            write_self_contained_gltf(tables, sink);
    } catch (const Stopped&) {
        report.stopped = true;
        bytes.clear();
    }
    return report;
}

} // namespace gltf
