// lwimport info: what is inside, as tables for people or as JSON for programs.
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "host/command_line.h"
#include "host/commands/commands.h"
#include "host/commands/inspection.h"
#include "host/import_run.h"
#include "host/path_display.h"
#include "lib/messages/numbers.h"
#include "lib/platform/latin1.h"
#include "lib/toolkit/scene/scene.h"

namespace host {

using messages::counted;
using messages::grouped;

using Json = nlohmann::ordered_json;

static constexpr double time_units = 4800; // a second

static std::string utf8(const std::string& name)
{
    return platform::latin1_to_utf8(name);
}

// A number for JSON: what isn't finite has no place there.
static Json number(double value)
{
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

static Json vector_json(const tv::Vec3& v)
{
    return Json::array({number(v[0]), number(v[1]), number(v[2])});
}

template <typename Table>
static std::string name_at(const Table& table, tv::Id id)
{
    return id < table.size() ? utf8(table[id].name) : "";
}

// ---- the parts, as JSON: the text form prints these ----------------------------------------------------------------

static Json objects_json(const tv::Scene& scene)
{
    Json list = Json::array();
    for (const tv::Object& object : scene.objects) {
        if (!object.alive || object.primitives.empty()) continue;
        std::size_t points = 0, polygons = 0;
        for (const tv::Primitive& primitive : object.primitives) {
            points += primitive.positions.size() / 3;
            polygons += primitive.sizes.size();
        }
        list.push_back({{"name", utf8(object.name)},
                        {"points", points},
                        {"polygons", polygons},
                        {"instances", object.instance_count},
                        {"surface", name_at(scene.surfaces, object.surface)}});
    }
    return list;
}

static Json surfaces_json(const tv::Scene& scene)
{
    Json list = Json::array();
    for (const tv::Surface& surface : scene.surfaces) {
        if (!surface.alive) continue;
        Json layers = Json::array();
        for (const tv::Layer& layer : surface.layers)
            layers.push_back(layer.texture < scene.textures.size() ? name_at(scene.textures, layer.texture)
                                                                   : utf8(layer.texture_name));
        list.push_back({{"name", utf8(surface.name)},
                        {"color", vector_json(surface.color)},
                        {"diffuse", number(surface.diffuse)},
                        {"luminosity", number(surface.luminous)},
                        {"specular", number(surface.specular)},
                        {"reflection", number(surface.reflect)},
                        {"opacity", number(surface.face_opacity)},
                        {"textures", std::move(layers)}});
    }
    return list;
}

static Json textures_json(const tv::Scene& scene)
{
    Json list = Json::array();
    for (const tv::Texture& texture : scene.textures) {
        if (!texture.alive) continue;
        const bool image = texture.kind == tv::TextureKind::image;
        const char* const kind = image ? "image" : texture.kind == tv::TextureKind::procedural ? "procedural" : "none";
        list.push_back({{"name", utf8(texture.name)},
                        {"kind", kind},
                        {image ? "file" : "pattern", utf8(image ? texture.file_name : texture.procedural)}});
    }
    return list;
}

static Json lights_json(const tv::Scene& scene)
{
    static constexpr const char* models[] = {"distant", "point", "spot", "ambient"};
    Json list = Json::array();
    for (const tv::Light& light : scene.lights)
        if (light.alive)
            list.push_back({{"name", utf8(light.name)},
                            {"kind", models[static_cast<std::size_t>(light.model)]},
                            {"color", vector_json(light.color)},
                            {"intensity", number(light.intensity)}});
    return list;
}

static std::size_t key_count(const std::array<tv::Channel, 3>& channels)
{
    std::size_t most = 0;
    for (const tv::Channel& channel : channels) most = std::max(most, channel.keys.size());
    return most;
}

static Json cameras_json(const tv::Scene& scene)
{
    Json list = Json::array();
    for (const tv::Camera& camera : scene.cameras)
        if (camera.alive)
            list.push_back(
                {{"name", utf8(camera.name)},
                 {"from", vector_json(camera.look_from)},
                 {"at", vector_json(camera.look_at)},
                 {"focal_length", number(camera.focal_length)},
                 {"keys", std::max(key_count(camera.channels.look_from), key_count(camera.channels.look_at))}});
    return list;
}

static Json time_line_json(const tv::Scene& scene)
{
    const tv::TimeLine& line = scene.time_line;
    return {{"seconds", number(line.length / time_units)},
            {"start", number(line.start / time_units)},
            {"end", number(line.end / time_units)},
            {"frames_per_second", line.frame_rate}};
}

static std::size_t key_count(const tv::Instance& instance)
{
    if (!instance.channels) return 0;
    const tv::InstanceChannels& channels = *instance.channels;
    return std::max({key_count(channels.position), key_count(channels.scale), key_count(channels.rotation)});
}

// A line an instance, parents before children. What hangs in an object shows in each of its instances; it is listed
// below the first.
static Json tree_json(const tv::Scene& scene)
{
    struct Open {
        tv::Id instance;
        std::size_t depth;
    };
    Json list = Json::array();
    std::unordered_set<tv::Id> opened; // objects whose children have been listed
    std::vector<Open> stack{{0, 0}};
    std::vector<bool> seen(scene.instances.size());
    while (!stack.empty()) {
        const Open now = stack.back();
        stack.pop_back();
        if (now.instance >= scene.instances.size() || seen[now.instance]) continue;
        seen[now.instance] = true;
        const tv::Instance& instance = scene.instances[now.instance];
        const bool has_object = instance.object < scene.objects.size();
        const bool mesh = has_object && !scene.objects[instance.object].primitives.empty();
        list.push_back({{"depth", now.depth},
                        {"name", utf8(instance.name)},
                        {"object", mesh ? Json(utf8(scene.objects[instance.object].name)) : Json(nullptr)},
                        {"keys", key_count(instance)}});
        std::vector<tv::Id> children;
        const auto add = [&](const tv::ChildList& below) {
            for (tv::Id child = below.first; child < scene.instances.size() && children.size() <= below.count;
                 child = scene.instances[child].next_sibling)
                children.push_back(child);
        };
        add(instance.children);
        if (has_object && opened.insert(instance.object).second) {
            std::vector<tv::Id> own;
            own.swap(children);
            add(scene.objects[instance.object].children);
            children.insert(children.end(), own.begin(), own.end());
        }
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            stack.push_back({*child, now.depth + 1});
    }
    return list;
}

static Json missing_json(const ImportRun& run)
{
    Json list = Json::array();
    std::unordered_set<std::string> known;
    for (const std::vector<FileReference>* const files : {&run.files.objects, &run.files.images})
        for (const FileReference& file : *files)
            if (file.is_missing() && known.insert(file.reference.stored).second)
                list.push_back({{"kind", file.reference.kind == restore::ReferenceKind::object ? "object" : "image"},
                                {"stored", utf8(file.reference.stored)},
                                {"asked_by", file.asked_by.text()}});
    return list;
}

static Json info_json(const std::string& input, const ImportRun& run)
{
    const tv::Scene& scene = tv::scene();
    Json all = {{"file", shown_path(input)}, {"bytes", run.head.size}};
    all["format"] = run.head.kind == restore::FileKind::scene ? "scene" : "object";
    if (run.head.kind == restore::FileKind::scene) all["version"] = run.head.scene_version;
    all["read"] = run.imported;
    all["warnings"] = run.warnings;
    all["errors"] = run.errors;
    all["content_directory"] = shown_path(run.content_directory);
    all["objects"] = objects_json(scene);
    all["surfaces"] = surfaces_json(scene);
    all["textures"] = textures_json(scene);
    all["lights"] = lights_json(scene);
    all["cameras"] = cameras_json(scene);
    all["time_line"] = time_line_json(scene);
    all["tree"] = tree_json(scene);
    all["missing"] = missing_json(run);
    return all;
}

// ---- text ----------------------------------------------------------------------------------------------------------

static std::string cell(const Json& value)
{
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number_integer()) return grouped(value.get<std::size_t>());
    if (value.is_number()) {
        char text[32];
        std::snprintf(text, sizeof text, "%.4g", value.get<double>());
        return text;
    }
    std::string text;
    if (value.is_array())
        for (const Json& part : value) text += (text.empty() ? "" : " ") + cell(part);
    return text;
}

static std::size_t width_of(const std::string& text) // characters
{
    std::size_t n = 0;
    for (const char c : text) n += (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    return n;
}

// A table with a title, a column a key; nothing for an empty list.
static void print_table(const char* title, const Json& list)
{
    if (list.empty()) return;
    std::vector<std::vector<std::string>> rows(1);
    for (const auto& [key, value] : list.front().items()) rows[0].push_back(key == "pattern" ? "file" : key);
    for (const Json& entry : list) {
        std::vector<std::string>& row = rows.emplace_back();
        for (const auto& [key, value] : entry.items()) row.push_back(cell(value));
    }
    std::vector<std::size_t> widths(rows[0].size());
    for (const std::vector<std::string>& row : rows)
        for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], width_of(row[i]));
    std::printf("\n%s: %s\n", title, grouped(list.size()).c_str());
    for (const std::vector<std::string>& row : rows) {
        std::string text = "  ";
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += row[i];
            if (i + 1 < row.size()) text += std::string(widths[i] - width_of(row[i]) + 2, ' ');
        }
        std::printf("%s\n", text.substr(0, text.find_last_not_of(' ') + 1).c_str());
    }
}

static void print_tree(const Json& tree)
{
    constexpr std::size_t deepest_indent = 30;
    std::printf("\ntree: %s\n", counted(tree.size(), "instance", "instances").c_str());
    for (const Json& entry : tree) {
        const std::size_t depth = entry["depth"].get<std::size_t>();
        std::string text(2 * (std::min(depth, deepest_indent) + 1), ' ');
        text += entry["name"].get<std::string>();
        if (entry["object"].is_string()) text += "  (object " + entry["object"].get<std::string>() + ")";
        if (const auto keys = entry["keys"].get<std::size_t>(); keys > 0) text += "  " + counted(keys, "key", "keys");
        std::printf("%s\n", text.c_str());
    }
}

static void print_text(const Json& all)
{
    std::string head = all["file"].get<std::string>() + ": Lightwave " + all["format"].get<std::string>();
    if (all.contains("version")) head += ", version " + std::to_string(all["version"].get<long>());
    head += ", " + counted(all["bytes"].get<std::size_t>(), "byte", "bytes");
    if (!all["read"].get<bool>()) head += ", only a part could be read";
    std::printf("%s\ncontent directory: %s\n", head.c_str(), all["content_directory"].get<std::string>().c_str());
    const Json& line = all["time_line"];
    std::printf("time line: %s s to %s s, %s frames a second\n", cell(line["start"]).c_str(), cell(line["end"]).c_str(),
                cell(line["frames_per_second"]).c_str());
    for (const char* const part : {"objects", "surfaces", "textures", "lights", "cameras"})
        print_table(part, all[part]);
    print_tree(all["tree"]);
    print_table("missing", all["missing"]);
}

int info_command(Arguments arguments)
{
    CommandLine line("  lwimport info IN [--json]\n",
                     "Tells what a scene or object holds, and which of its files are missing.",
                     {"lwimport info harbour.lws", "tables of objects, surfaces, textures, lights and more",
                      "lwimport info harbour.lws --json", "the same for programs"});
    const std::optional<Inspection> inspection = inspect(line, arguments);
    if (!inspection) return status_done;
    const ImportRun& run = inspection->run;
    const Json all = info_json(inspection->input, run);
    if (inspection->json)
        std::printf("%s\n", all.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    else
        print_text(all);
    return run.imported ? status_done : status_failed;
}

} // namespace host
