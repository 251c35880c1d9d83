#include "export/gltf/writer.h"

#include <algorithm>
#include <cmath>

#include "export/gltf/file/output.h"
#include "export/gltf/scene/backdrop.h"
#include "export/gltf/scene/camera.h"
#include "export/gltf/scene/lights.h"
#include "export/gltf/scene/nodes.h"
#include "export/gltf/scene/visibility.h"
#include "lib/platform/atomic_file.h"
#include "lib/platform/text.h"

namespace gltf {

namespace {

struct Stopped {}; // thrown through the exporter's own frames where Options::progress says so

Json json_extras(const tv::Scene& scene, const Options& options)
{
    Json extras = Json::object();
    if (!options.source_name.empty()) extras["source"] = options.source_name;
    if (options.scale != 1) extras["scale"] = options.scale;
    if (options.frame) extras["frame"] = *options.frame;
    if (scene.resolution[0] > 0 && scene.resolution[1] > 0) extras["resolution"] = scene.resolution;
    return extras;
}

void fill_tables(const tv::Scene& scene, const Options& options, Tables& tables, Report& report)
{
    if (!(options.scale > 0) || !std::isfinite(options.scale))
        throw messages::Error(messages::message<"scale-wrong">());
    tables.source_name = options.source_name;
    tables.generator = options.generator;
    tables.asset_extras = json_extras(scene, options);

    Animator animator(scene, options, tables, report);
    MaterialMaker materials(scene, options, tables, report);
    Stage stage(scene, animator);
    const std::vector<tv::Placement> places = all_places(scene, animator.start_time(), stage);
    std::size_t places_done = 0;
    const auto poll = [&] {
        if (options.progress && options.progress(places_done, places.size())) throw Stopped{};
    };
    const auto progress = [&](std::size_t done) {
        places_done = done;
        poll();
    };
    MeshMaker meshes(scene, options, materials, tables, report, poll);
    const std::vector<uint32_t> holders =
        make_nodes({scene, options.scale, animator, stage, meshes, tables, report}, places, progress);
    const Measure size = measure(scene, places);
    const RigParts rigs{holders, options.scale, animator, stage, tables};
    make_lights(scene, options, size, rigs, report);
    make_cameras(scene, options, rigs);
    make_backdrop(scene, options, size, materials, tables, report);
    for (const tv::Extra& extra : scene.extras) tables.scene_extras[extra.name] = extra.values;
    animate_fading(scene, materials.faders(), animator, tables);
    meshes.finish();
    materials.finish();
    animator.finish();
    progress(places.size());

    report.nodes = tables.nodes.size();
    report.meshes = tables.meshes.size();
    report.materials = tables.materials.size();
    report.images = tables.buffer.images().size();
    report.animations = tables.animation.channels.empty() ? 0 : 1;
}

} // namespace

MadeTables make_tables(const tv::Scene& scene, const Options& options)
{
    MadeTables made;
    try {
        fill_tables(scene, options, made.tables, made.report);
    } catch (const Stopped&) {
        made.report.stopped = true;
    }
    return made;
}

void write_file(const Tables& tables, const std::filesystem::path& out)
{
    const std::string name = out.string();
    if (platform::ends_in_any_case(name, ".glb")) {
        platform::AtomicFile file(out);
        write_glb(tables, [&](const void* bytes, std::size_t size) { file.write(bytes, size); });
        file.commit();
    } else if (platform::ends_in_any_case(name, ".gltf")) {
        write_gltf_files(tables, out);
    } else {
        throw messages::Error(messages::message<"ending-unknown">(name));
    }
}

std::vector<unsigned char> file_bytes(const Tables& tables, const std::string& format)
{
    std::vector<unsigned char> bytes;
    const auto sink = [&](const void* data, std::size_t size) {
        const auto* const from = static_cast<const unsigned char*>(data);
        bytes.insert(bytes.end(), from, from + size);
    };
    if (format == "glb")
        write_glb(tables, sink);
    else if (format == "gltf")
        write_self_contained_gltf(tables, sink);
    else
        throw messages::Error(messages::message<"kind-unknown">(format));
    return bytes;
}

} // namespace gltf
