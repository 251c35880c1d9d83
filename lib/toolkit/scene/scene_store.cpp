#include "lib/toolkit/scene/scene_store.h"

#include <memory>
#include <utility>

#include "lib/toolkit/report.h"
#include "lib/toolkit/words/trace.h"

namespace tv {

namespace {

constexpr std::array<word::Token, kind_count> kind_words = {
    word::before_first, word::object, word::instance, word::surface, word::texture, word::light, word::camera};

constexpr std::size_t index_of(Kind kind)
{
    return static_cast<std::size_t>(kind);
}

// Room for one entry more: the next push_back takes no memory.
template <class Entry>
void make_room(std::vector<Entry>& table)
{
    if (table.size() == table.capacity()) table.reserve(table.empty() ? 8 : 2 * table.size());
}

// The thing of this name in `things`, appended where it doesn't stand yet. Where memory runs out nothing has changed:
// the index gets its room first, and the thing comes last.
template <class Thing>
Id make(Store& in, Kind kind, std::deque<Thing>& things, const char* name)
{
    const Id found = in.scene.find(kind, name);
    if (found != no_id) return found;
    const Id id = static_cast<Id>(things.size());
    in.scene.names[index_of(kind)].make_room();
    Thing thing;
    thing.name = name;
    things.push_back(std::move(thing));
    in.scene.names[index_of(kind)].add(things.back().name, id);
    return id;
}

Id make_instance_in(Store& in, const char* name)
{
    make_room(in.sharers);
    const Id id = make(in, Kind::instance, in.scene.instances, name);
    if (id < in.sharers.size()) return id;
    in.sharers.emplace_back();
    Tv_Local_Axes& axes = in.scene.instances[id].axes;
    axes = {};
    for (std::size_t i = 0; i < 4; ++i) axes.axes_matrix[i][i] = 1;
    axes.axes_scale = 1;
    return id;
}

// "world" and "defaultambient" stand in every scene.
Store new_store()
{
    Store in;
    make_instance_in(in, "world");
    in.scene.lights[make(in, Kind::light, in.scene.lights, "defaultambient")].model = LightModel::ambient;
    return in;
}

} // namespace

Store& store()
{
    static Store kept = new_store();
    return kept;
}

const Scene& scene()
{
    return store().scene;
}

Scene& scene_to_restore()
{
    return store().scene;
}

void clear_scene()
{
    trace_flush();
    // What was computed of the old scene is no good for the new one.
    Store next = new_store();
    next.scene.revision = store().scene.revision + 1;
    next.generation = store().generation + 1;
    next.first_channel_set = store().first_channel_set + store().channel_sets.size();
    store() = std::move(next);
}

Id Scene::find(Kind kind, std::string_view name) const
{
    const auto find_in = [&](const auto& things) {
        return names[index_of(kind)].find(name, [&](Id id) { return std::string_view(things[id].name); });
    };
    switch (kind) {
    case Kind::object: return find_in(objects);
    case Kind::instance: return find_in(instances);
    case Kind::surface: return find_in(surfaces);
    case Kind::texture: return find_in(textures);
    case Kind::light: return find_in(lights);
    case Kind::camera: return find_in(cameras);
    case Kind::none: break;
    }
    return no_id;
}

Kind kind_of(int32_t token)
{
    for (std::size_t i = 1; i < kind_count; ++i)
        if (kind_words[i] == token) return static_cast<Kind>(i);
    return Kind::none;
}

int32_t token_of(Kind kind)
{
    return kind == Kind::none ? 0 : kind_words[index_of(kind)];
}

const char* kind_name(Kind kind)
{
    return kind == Kind::none ? "thing" : word_text(token_of(kind));
}

Object& make_object(const char* name)
{
    Store& in = store();
    make_room(in.first_instance);
    const Id id = make(in, Kind::object, in.scene.objects, name);
    if (id == in.first_instance.size()) in.first_instance.push_back(no_id);
    return in.scene.objects[id];
}

Id make_instance(const char* name)
{
    return make_instance_in(store(), name);
}

Id make_surface(const char* name)
{
    Store& in = store();
    make_room(in.layer_numbers);
    const Id id = make(in, Kind::surface, in.scene.surfaces, name);
    if (id == in.layer_numbers.size()) in.layer_numbers.emplace_back();
    return id;
}

Layer& make_layer(Id surface, const char* name)
{
    std::vector<Layer>& layers = store().scene.surfaces[surface].layers;
    make_room(layers);
    Layer layer;
    layer.name = name;
    const auto [at, first] = store().layer_numbers[surface].try_emplace(name, static_cast<Id>(layers.size()));
    if (first) layers.push_back(std::move(layer));
    return layers[at->second];
}

Texture& make_texture(const char* name)
{
    std::deque<Texture>& textures = store().scene.textures;
    return textures[make(store(), Kind::texture, textures, name)];
}

Light& make_light(const char* name)
{
    std::deque<Light>& lights = store().scene.lights;
    return lights[make(store(), Kind::light, lights, name)];
}

Camera& make_camera(const char* name)
{
    make_room(store().channel_sets); // a new camera has channels from the start
    std::deque<Camera>& cameras = store().scene.cameras;
    return cameras[make(store(), Kind::camera, cameras, name)];
}

void make_room_to_remove(Kind kind)
{
    make_room(store().scene.removed[index_of(kind)]);
}

void bury(Kind kind, Id id)
{
    Scene& in = store().scene;
    const auto bury_in = [&](auto& things) {
        things[id].alive = false;
        in.names[index_of(kind)].erase(things[id].name, id);
    };
    switch (kind) {
    case Kind::object: bury_in(in.objects); break;
    case Kind::instance: bury_in(in.instances); break;
    case Kind::surface: bury_in(in.surfaces); break;
    case Kind::texture: bury_in(in.textures); break;
    case Kind::light: bury_in(in.lights); break;
    case Kind::camera: bury_in(in.cameras); break;
    case Kind::none: return;
    }
    in.removed[index_of(kind)].push_back(id); // has its room by make_room_to_remove()
    touch();
}

bool expect_name(Kind kind, const char* name, Function function)
{
    if (!name) report(4, "ERR_SCENE_UNKNOWN_NAME", function_name(function), {kind_name(kind), ""});
    return name;
}

Id find_or_report(Kind kind, const char* name, Function function)
{
    const Id id = name ? scene().find(kind, name) : no_id;
    if (id == no_id) report(4, "ERR_SCENE_UNKNOWN_NAME", function_name(function), {kind_name(kind), name ? name : ""});
    return id;
}

} // namespace tv
