#include "export/scene_json/scene_dump.h"

#include <cmath>

#include "export/json_text.h"
#include "lib/platform/latin1.h"

namespace scene_json {

namespace {

using json_text::Json;

Json text(const std::string& latin1)
{
    return platform::latin1_to_utf8(latin1);
}

Json number(float value)
{
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    return json_text::short_number(value);
}

template <typename Range>
Json numbers(const Range& range)
{
    Json list = Json::array();
    for (const float value : range) list.push_back(number(value));
    return list;
}

Json optional_vector(const std::optional<tv::Vec3>& v)
{
    return v ? numbers(*v) : Json();
}

template <typename Things>
Json name_of(const Things& things, tv::Id id)
{
    return id < things.size() ? text(things[id].name) : Json();
}

const char* word(tv::Kind kind)
{
    static constexpr const char* words[] = {"none", "object", "instance", "surface", "texture", "light", "camera"};
    return words[static_cast<std::size_t>(kind)];
}

const char* word(tv::Extrapolation how)
{
    static constexpr const char* words[] = {"reset", "constant", "cycle"};
    return words[static_cast<std::size_t>(how)];
}

// Instances in the order of a child list, by name. A list in disorder ends with the instances there are.
Json children(const tv::Scene& scene, const tv::ChildList& list)
{
    Json names = Json::array();
    std::size_t left = scene.instances.size();
    for (tv::Id id = list.first; id < scene.instances.size() && left-- > 0; id = scene.instances[id].next_sibling)
        names.push_back(text(scene.instances[id].name));
    return names;
}

Json primitive_json(const tv::Scene& scene, const tv::Primitive& primitive)
{
    Json surfaces = Json::array();
    for (const tv::Id id : primitive.polygon_surface) surfaces.push_back(name_of(scene.surfaces, id));
    return {{"positions", numbers(primitive.positions)},
            {"sizes", primitive.sizes},
            {"corners", primitive.corners},
            {"polygonSurface", std::move(surfaces)},
            {"indexOffset", primitive.index_offset},
            {"clockwise", primitive.clockwise}};
}

Json object_json(const tv::Scene& scene, const tv::Object& object)
{
    Json primitives = Json::array();
    for (const tv::Primitive& primitive : object.primitives) primitives.push_back(primitive_json(scene, primitive));
    return {{"name", text(object.name)},
            {"alive", object.alive},
            {"primitives", std::move(primitives)},
            {"surface", name_of(scene.surfaces, object.surface)},
            {"smoothingAngle", object.smoothing_angle ? number(*object.smoothing_angle) : Json()},
            {"children", children(scene, object.children)},
            {"instanceCount", object.instance_count}};
}

Json channel_json(const tv::Channel& channel)
{
    Json keys = Json::array();
    for (const tv::Key& key : channel.keys)
        keys.push_back({{"time", key.time},
                        {"value", number(key.value)},
                        {"tension", number(key.tension)},
                        {"continuity", number(key.continuity)},
                        {"bias", number(key.bias)},
                        {"easeFrom", number(key.ease_from)},
                        {"easeTo", number(key.ease_to)},
                        {"quaternion", numbers(key.quaternion)},
                        {"id", key.id}});
    return {{"keys", std::move(keys)},      {"before", word(channel.before)},        {"after", word(channel.after)},
            {"constant", channel.constant}, {"ownerKind", word(channel.owner_kind)}, {"slot", channel.slot}};
}

Json channels_json(const std::array<tv::Channel, 3>& channels)
{
    return {channel_json(channels[0]), channel_json(channels[1]), channel_json(channels[2])};
}

Json instance_json(const tv::Scene& scene, const tv::Instance& instance)
{
    static constexpr const char* models[] = {"orthographic", "spherical", "cylindrical", "box"};
    const Tv_Local_Axes& axes = instance.axes;
    Json axes_matrix = Json::array();
    for (const auto& row : axes.axes_matrix)
        for (const float part : row) axes_matrix.push_back(number(part));
    const tv::TextureProjection& projection = instance.projection;
    Json channels;
    if (instance.channels)
        channels = {{"position", channels_json(instance.channels->position)},
                    {"scale", channels_json(instance.channels->scale)},
                    {"rotation", channels_json(instance.channels->rotation)},
                    {"eulerOrder", instance.channels->euler_order}};
    const Json parent = instance.parent_kind == tv::Kind::object ? name_of(scene.objects, instance.parent)
                                                                 : name_of(scene.instances, instance.parent);
    return {{"name", text(instance.name)},
            {"alive", instance.alive},
            {"object", name_of(scene.objects, instance.object)},
            {"parentKind", word(instance.parent_kind)},
            {"parent", parent},
            {"previousSibling", name_of(scene.instances, instance.previous_sibling)},
            {"nextSibling", name_of(scene.instances, instance.next_sibling)},
            {"children", children(scene, instance.children)},
            {"matrix", numbers(instance.matrix)},
            {"axes",
             {{"matrix", std::move(axes_matrix)},
              {"scale", number(axes.axes_scale)},
              {"flagA", axes.axes_flag_a},
              {"originEnabled", axes.origin_enabled},
              {"flagC", axes.axes_flag_c}}},
            {"projection",
             {{"enabled", projection.enabled},
              {"worldSpace", projection.world_space},
              {"origin", numbers(projection.origin)},
              {"upoint", numbers(projection.upoint)},
              {"vpoint", numbers(projection.vpoint)},
              {"wpoint", numbers(projection.wpoint)},
              {"model", models[static_cast<std::size_t>(projection.model)]}}},
            {"channels", std::move(channels)}};
}

Json layer_json(const tv::Scene& scene, const tv::Layer& layer)
{
    static constexpr const char* names[tv::layer_channel_count] = {
        "color", "diffuse", "luminouscolor", "luminous", "bump",
        "bumpu", "bumpv",   "faceopacity",   "specular", "reflectopacity"};
    Json channels = Json::object();
    for (std::size_t i = 0; i < tv::layer_channel_count; ++i) {
        const tv::Layer::Modulation& modulation = layer.channels[i];
        channels[names[i]] = {{"stated", modulation.stated},
                              {"enabled", modulation.enabled},
                              {"invert", modulation.invert},
                              {"multiplier", optional_vector(modulation.multiplier)},
                              {"blend", modulation.blend ? number(*modulation.blend) : Json()},
                              {"mix", modulation.mix ? number(*modulation.mix) : Json()}};
    }
    return {{"name", text(layer.name)},
            {"enabled", layer.enabled},
            {"texture", name_of(scene.textures, layer.texture)},
            {"textureName", text(layer.texture_name)},
            {"channels", std::move(channels)},
            {"uscale", number(layer.uscale)},
            {"vscale", number(layer.vscale)},
            {"scale", numbers(layer.scale)},
            {"translate", numbers(layer.translate)},
            {"placed", layer.placed},
            {"worldSpace", layer.world_space}};
}

Json surface_json(const tv::Scene& scene, const tv::Surface& surface)
{
    Json layers = Json::array();
    for (const tv::Layer& layer : surface.layers) layers.push_back(layer_json(scene, layer));
    return {{"name", text(surface.name)},
            {"alive", surface.alive},
            {"color", numbers(surface.color)},
            {"hasColor", surface.has_color},
            {"phong", surface.phong},
            {"shininess", surface.shininess},
            {"metal", number(surface.metal)},
            {"ambient", number(surface.ambient)},
            {"diffuse", number(surface.diffuse)},
            {"specular", number(surface.specular)},
            {"luminous", number(surface.luminous)},
            {"reflect", number(surface.reflect)},
            {"ior", number(surface.ior)},
            {"faceOpacity", number(surface.face_opacity)},
            {"edgeEnabled", surface.edge_enabled},
            {"edgeOpacity", number(surface.edge_opacity)},
            {"edgeExponent", number(surface.edge_exponent)},
            {"environmentEnabled", surface.environment_enabled},
            {"environmentReflect", number(surface.environment_reflect)},
            {"environmentYaxis", number(surface.environment_yaxis)},
            {"environment", name_of(scene.textures, surface.environment)},
            {"layers", std::move(layers)}};
}

Json texture_json(const tv::Texture& texture)
{
    static constexpr const char* kinds[] = {"none", "image", "procedural"};
    return {{"name", text(texture.name)},
            {"alive", texture.alive},
            {"kind", kinds[static_cast<std::size_t>(texture.kind)]},
            {"imageType", texture.image_type},
            {"fileName", text(texture.file_name)},
            {"mipmap", texture.mipmap},
            {"wrapU", texture.wrap_u},
            {"wrapV", texture.wrap_v},
            {"enabled", texture.enabled},
            {"procedural", text(texture.procedural)},
            {"color1", numbers(texture.color1)},
            {"color2", numbers(texture.color2)},
            {"param1", number(texture.param1)},
            {"param2", number(texture.param2)}};
}

Json light_json(const tv::Light& light)
{
    static constexpr const char* models[] = {"direction", "point", "spot", "ambient"};
    return {{"name", text(light.name)},
            {"alive", light.alive},
            {"model", models[static_cast<std::size_t>(light.model)]},
            {"color", numbers(light.color)},
            {"intensity", number(light.intensity)},
            {"cutoff", number(light.cutoff)},
            {"delta", number(light.delta)},
            {"shineDirection", optional_vector(light.shine_direction)},
            {"shineFrom", optional_vector(light.shine_from)},
            {"shineAt", optional_vector(light.shine_at)},
            {"shadowMap", light.shadow_map},
            {"shadowMapSize", light.shadow_map_size},
            {"decay", light.decay}};
}

Json camera_json(const tv::Camera& camera)
{
    return {{"name", text(camera.name)},
            {"alive", camera.alive},
            {"active", camera.active},
            {"perspective", camera.perspective},
            {"focalLength", number(camera.focal_length)},
            {"lookFrom", numbers(camera.look_from)},
            {"lookAt", numbers(camera.look_at)},
            {"lookUp", numbers(camera.look_up)},
            {"window", numbers(camera.window)},
            {"channels",
             {{"lookFrom", channels_json(camera.channels.look_from)},
              {"lookAt", channels_json(camera.channels.look_at)},
              {"roll", channel_json(camera.channels.roll)}}}};
}

Json backdrop_json(const tv::Backdrop& backdrop)
{
    static constexpr const char* schemes[] = {"none", "color", "gradient", "surface"};
    Json gradient = Json::array();
    for (const auto& color : backdrop.gradient) gradient.push_back(optional_vector(color));
    return {{"scheme", schemes[static_cast<std::size_t>(backdrop.scheme)]},
            {"color", optional_vector(backdrop.color)},
            {"gradient", std::move(gradient)},
            {"horizonTop", backdrop.horizon_top},
            {"horizonBottom", backdrop.horizon_bottom},
            {"horizonPosition", number(backdrop.horizon_position)},
            {"surface", text(backdrop.surface)}};
}

template <typename Things, typename ToJson>
void list(json_text::Object& file, const char* name, const Things& things, const ToJson& to_json)
{
    file.array(name, things.size(), [&](std::size_t i) { return to_json(things[i]); });
}

} // namespace

std::string dump_scene(const tv::Scene& scene)
{
    json_text::Object file(true);
    list(file, "objects", scene.objects, [&](const tv::Object& object) { return object_json(scene, object); });
    list(file, "instances", scene.instances,
         [&](const tv::Instance& instance) { return instance_json(scene, instance); });
    list(file, "surfaces", scene.surfaces, [&](const tv::Surface& surface) { return surface_json(scene, surface); });
    list(file, "textures", scene.textures, texture_json);
    list(file, "lights", scene.lights, light_json);
    list(file, "cameras", scene.cameras, camera_json);
    file.member("backdrop", backdrop_json(scene.backdrop));
    const tv::TimeLine& line = scene.time_line;
    file.member("timeLine", {{"length", line.length},
                             {"start", line.start},
                             {"end", line.end},
                             {"current", line.current},
                             {"framePause", line.frame_pause},
                             {"frameStep", line.frame_step},
                             {"frameRate", line.frame_rate}});
    file.member("resolution", scene.resolution);
    return file.finish();
}

} // namespace scene_json
