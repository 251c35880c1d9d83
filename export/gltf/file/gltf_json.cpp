#include "export/gltf/file/gltf_json.h"

#include <array>
#include <span>

namespace gltf {

namespace {

double number(double value)
{
    return json_text::short_number(file_float(value));
}

template <typename Range>
Json numbers(const Range& range)
{
    Json list = Json::array();
    for (const auto value : range) list.push_back(number(value));
    return list;
}

void name_and_extras(Json& object, const std::string& name, const Json& extras)
{
    if (!name.empty()) object["name"] = name;
    if (!extras.empty()) object["extras"] = extras;
}

Json node_json(const Node& node)
{
    Json object = Json::object();
    if (!node.name.empty()) object["name"] = node.name;
    if (!node.children.empty()) object["children"] = node.children;
    if (node.translation != std::array<float, 3>{0, 0, 0}) object["translation"] = numbers(node.translation);
    if (node.rotation != std::array<float, 4>{0, 0, 0, 1}) object["rotation"] = numbers(node.rotation);
    if (node.scale != std::array<float, 3>{1, 1, 1}) object["scale"] = numbers(node.scale);
    if (node.mesh != none) object["mesh"] = node.mesh;
    if (node.camera != none) object["camera"] = node.camera;
    if (!node.weights.empty()) object["weights"] = numbers(node.weights);
    if (node.light != none) object["extensions"]["KHR_lights_punctual"]["light"] = node.light;
    if (!node.extras.empty()) object["extras"] = node.extras;
    return object;
}

Json mesh_json(const Mesh& mesh)
{
    Json object = Json::object();
    if (!mesh.name.empty()) object["name"] = mesh.name;
    Json& primitives = object["primitives"] = Json::array();
    for (const Primitive& primitive : mesh.primitives) {
        Json attributes = Json::object();
        attributes["POSITION"] = primitive.position;
        if (primitive.normal != none) attributes["NORMAL"] = primitive.normal;
        if (primitive.tangent != none) attributes["TANGENT"] = primitive.tangent;
        if (primitive.uv != none) attributes["TEXCOORD_0"] = primitive.uv;
        if (primitive.color != none) attributes["COLOR_0"] = primitive.color;
        Json entry = {{"attributes", std::move(attributes)}, {"indices", primitive.indices}};
        if (primitive.material != none) entry["material"] = primitive.material;
        for (const uint32_t morphed : primitive.targets) entry["targets"].push_back({{"POSITION", morphed}});
        primitives.push_back(std::move(entry));
    }
    return object;
}

Json texture_info(const TextureUse& use)
{
    Json info = {{"index", use.texture}};
    Json transform = Json::object();
    if (use.offset != std::array<double, 2>{0, 0}) transform["offset"] = numbers(use.offset);
    if (use.scale != std::array<double, 2>{1, 1}) transform["scale"] = numbers(use.scale);
    if (!transform.empty()) info["extensions"]["KHR_texture_transform"] = std::move(transform);
    return info;
}

bool has_transform(const TextureUse& use)
{
    return use.texture != none &&
           (use.scale != std::array<double, 2>{1, 1} || use.offset != std::array<double, 2>{0, 0});
}

bool has_specular(const Material& material)
{
    return material.specular != 1 || material.specular_color != std::array<double, 3>{1, 1, 1} ||
           material.specular_texture.texture != none;
}

Json material_json(const Material& material)
{
    Json object = Json::object();
    name_and_extras(object, material.name, material.extras);
    Json pbr = Json::object();
    if (material.base_color != std::array<double, 4>{1, 1, 1, 1}) pbr["baseColorFactor"] = numbers(material.base_color);
    if (material.base_texture.texture != none) pbr["baseColorTexture"] = texture_info(material.base_texture);
    if (material.metallic != 1) pbr["metallicFactor"] = number(material.metallic);
    if (material.roughness != 1) pbr["roughnessFactor"] = number(material.roughness);
    if (!pbr.empty()) object["pbrMetallicRoughness"] = std::move(pbr);
    if (material.normal_texture.texture != none) {
        Json info = texture_info(material.normal_texture);
        if (material.normal_texture.strength != 1) info["scale"] = number(material.normal_texture.strength);
        object["normalTexture"] = std::move(info);
    }
    if (material.emissive_texture.texture != none) object["emissiveTexture"] = texture_info(material.emissive_texture);
    if (material.emissive != std::array<double, 3>{0, 0, 0}) object["emissiveFactor"] = numbers(material.emissive);
    if (material.blend) object["alphaMode"] = "BLEND";
    if (material.double_sided) object["doubleSided"] = true;
    Json extensions = Json::object();
    if (material.unlit) extensions["KHR_materials_unlit"] = Json::object();
    if (material.emissive_strength != 1)
        extensions["KHR_materials_emissive_strength"]["emissiveStrength"] = number(material.emissive_strength);
    if (material.ior != 1.5) extensions["KHR_materials_ior"]["ior"] = number(material.ior);
    if (has_specular(material)) {
        Json& specular = extensions["KHR_materials_specular"] = Json::object();
        if (material.specular != 1) specular["specularFactor"] = number(material.specular);
        if (material.specular_color != std::array<double, 3>{1, 1, 1})
            specular["specularColorFactor"] = numbers(material.specular_color);
        if (material.specular_texture.texture != none)
            specular["specularTexture"] = texture_info(material.specular_texture);
    }
    if (!extensions.empty()) object["extensions"] = std::move(extensions);
    return object;
}

Json light_json(const Light& light)
{
    static constexpr const char* types[] = {"directional", "point", "spot"};
    Json object = {{"type", types[static_cast<std::size_t>(light.type)]}};
    name_and_extras(object, light.name, light.extras);
    if (light.color != std::array<double, 3>{1, 1, 1}) object["color"] = numbers(light.color);
    if (light.intensity != 1) object["intensity"] = number(light.intensity);
    if (light.range > 0) object["range"] = number(light.range);
    if (light.type == Light::Type::spot)
        object["spot"] = {{"innerConeAngle", number(light.inner_cone)}, {"outerConeAngle", number(light.outer_cone)}};
    return object;
}

Json camera_json(const Camera& camera)
{
    Json object = Json::object();
    name_and_extras(object, camera.name, camera.extras);
    object["type"] = camera.perspective ? "perspective" : "orthographic";
    Json lens = Json::object();
    if (camera.perspective) {
        lens["yfov"] = number(camera.yfov);
        if (camera.aspect > 0) lens["aspectRatio"] = number(camera.aspect);
    } else {
        lens["xmag"] = number(camera.xmag);
        lens["ymag"] = number(camera.ymag);
    }
    lens["znear"] = number(camera.znear);
    if (camera.zfar > 0) lens["zfar"] = number(camera.zfar);
    object[camera.perspective ? "perspective" : "orthographic"] = std::move(lens);
    return object;
}

Json animation_json(const Animation& animation, const std::string& name)
{
    static constexpr const char* paths[] = {"translation", "rotation", "scale", "weights", "pointer"};
    Json object = Json::object();
    name_and_extras(object, name, animation.extras);
    Json& samplers = object["samplers"] = Json::array();
    for (const AnimationSampler& sampler : animation.samplers) {
        Json entry = {{"input", sampler.input}, {"output", sampler.output}};
        if (sampler.cubic) entry["interpolation"] = "CUBICSPLINE";
        if (sampler.step) entry["interpolation"] = "STEP";
        samplers.push_back(std::move(entry));
    }
    Json& channels = object["channels"] = Json::array();
    for (const AnimationChannel& channel : animation.channels) {
        Json target = Json::object();
        if (channel.node != none) target["node"] = channel.node;
        target["path"] = paths[static_cast<int>(channel.path)];
        if (!channel.pointer.empty()) target["extensions"]["KHR_animation_pointer"]["pointer"] = channel.pointer;
        channels.push_back({{"sampler", channel.sampler}, {"target", std::move(target)}});
    }
    return object;
}

// Views in the order in which Buffer::write hands out the bytes. Empty stretches have none.
struct Views {
    std::array<uint32_t, stretch_count> of_stretch{};
    uint32_t first_image = none;
    std::vector<Json> list;
    uint64_t size = 0;
};

Views make_views(const Buffer& buffer, bool with_images)
{
    // What a view is for, and its stride; 0: not stated.
    struct Form {
        int target, stride;
    };
    static constexpr Form forms[stretch_count] = {{34962, 12}, {34962, 8}, {34962, 16}, {34963, 0}, {34963, 0}, {0, 0}};
    Views views;
    for (std::size_t i = 0; i < stretch_count; ++i) {
        const uint64_t size = buffer.stretch_size(static_cast<Stretch>(i));
        views.of_stretch[i] = static_cast<uint32_t>(views.list.size());
        if (size == 0) continue;
        Json view = {{"buffer", 0}};
        if (views.size != 0) view["byteOffset"] = views.size;
        view["byteLength"] = size;
        if (forms[i].stride != 0) view["byteStride"] = forms[i].stride;
        if (forms[i].target != 0) view["target"] = forms[i].target;
        views.list.push_back(std::move(view));
        views.size += padded(size);
    }
    if (!with_images) return views;
    views.first_image = static_cast<uint32_t>(views.list.size());
    for (const auto& image : buffer.images()) {
        Json view = {{"buffer", 0}};
        if (views.size != 0) view["byteOffset"] = views.size;
        view["byteLength"] = image->bytes.size();
        views.list.push_back(std::move(view));
        views.size += padded(image->bytes.size());
    }
    return views;
}

Json accessor_json(const Accessor& accessor, const Views& views)
{
    static constexpr const char* types[] = {"SCALAR", "VEC2", "VEC3", "VEC4"};
    static constexpr int unsigned_short = 5123, unsigned_int = 5125, float_type = 5126;
    Json object = {{"bufferView", views.of_stretch[static_cast<std::size_t>(accessor.stretch)]}};
    if (accessor.offset != 0) object["byteOffset"] = accessor.offset;
    object["componentType"] = accessor.stretch == Stretch::index16   ? unsigned_short
                              : accessor.stretch == Stretch::index32 ? unsigned_int
                                                                     : float_type;
    object["count"] = accessor.count;
    object["type"] = types[static_cast<std::size_t>(accessor.element)];
    if (accessor.bounds) {
        const std::size_t parts = static_cast<std::size_t>(accessor.element) + 1;
        object["min"] = numbers(std::span(accessor.lower).first(parts));
        object["max"] = numbers(std::span(accessor.upper).first(parts));
    }
    return object;
}

Json extensions_used(const Tables& tables)
{
    bool ior = false, specular = false, strength = false, unlit = false, transform = false;
    for (const Material& material : tables.materials) {
        ior |= material.ior != 1.5;
        specular |= has_specular(material);
        strength |= material.emissive_strength != 1;
        unlit |= material.unlit;
        for (const TextureUse* use :
             {&material.base_texture, &material.emissive_texture, &material.normal_texture, &material.specular_texture})
            transform |= has_transform(*use);
    }
    bool pointer = false;
    for (const AnimationChannel& channel : tables.animation.channels) pointer |= !channel.pointer.empty();
    Json used = Json::array();
    if (pointer) used.push_back("KHR_animation_pointer");
    if (!tables.lights.empty()) used.push_back("KHR_lights_punctual");
    if (strength) used.push_back("KHR_materials_emissive_strength");
    if (ior) used.push_back("KHR_materials_ior");
    if (specular) used.push_back("KHR_materials_specular");
    if (unlit) used.push_back("KHR_materials_unlit");
    if (transform) used.push_back("KHR_texture_transform");
    return used;
}

} // namespace

std::string gltf_json(const Tables& tables, const JsonTarget& target)
{
    const bool images_inside = target.image_uris.empty();
    const Buffer& buffer = tables.buffer;
    const Views views = make_views(buffer, images_inside);
    json_text::Object file(target.lines);
    // glTF knows no empty arrays.
    const auto array = [&](const char* name, std::size_t count, const std::function<Json(std::size_t)>& element) {
        if (count != 0) file.array(name, count, element);
    };

    Json asset = {{"version", "2.0"}, {"generator", tables.generator}};
    if (!tables.asset_extras.empty()) asset["extras"] = tables.asset_extras;
    file.member("asset", asset);
    const Json used = extensions_used(tables);
    if (!used.empty()) file.member("extensionsUsed", used);
    file.member("scene", 0);
    Json scene = Json::object();
    if (!tables.source_name.empty()) scene["name"] = tables.source_name;
    if (!tables.roots.empty()) scene["nodes"] = tables.roots;
    if (!tables.scene_extras.empty()) scene["extras"] = tables.scene_extras;
    array("scenes", 1, [&](std::size_t) { return scene; });
    array("nodes", tables.nodes.size(), [&](std::size_t i) { return node_json(tables.nodes[i]); });
    array("meshes", tables.meshes.size(), [&](std::size_t i) { return mesh_json(tables.meshes[i]); });
    array("materials", tables.materials.size(), [&](std::size_t i) { return material_json(tables.materials[i]); });
    array("textures", tables.textures.size(), [&](std::size_t i) {
        return Json{{"sampler", tables.textures[i].sampler}, {"source", tables.textures[i].image}};
    });
    array("samplers", tables.samplers.size(), [&](std::size_t i) {
        static constexpr int repeat = 10497, clamp = 33071, linear = 9729, linear_mipmap_linear = 9987;
        const Sampler& sampler = tables.samplers[i];
        return Json{{"magFilter", linear},
                    {"minFilter", sampler.mipmap ? linear_mipmap_linear : linear},
                    {"wrapS", sampler.repeat_u ? repeat : clamp},
                    {"wrapT", sampler.repeat_v ? repeat : clamp}};
    });
    array("images", buffer.images().size(), [&](std::size_t i) {
        const EncodedImage& image = *buffer.images()[i];
        Json object = Json::object();
        if (!image.name.empty()) object["name"] = image.name;
        if (images_inside)
            object["bufferView"] = views.first_image + i;
        else
            object["uri"] = target.image_uris[i];
        object["mimeType"] = image.mime;
        return object;
    });
    array("cameras", tables.cameras.size(), [&](std::size_t i) { return camera_json(tables.cameras[i]); });
    if (!tables.lights.empty()) {
        Json lights = Json::array();
        for (const Light& light : tables.lights) lights.push_back(light_json(light));
        file.member("extensions", {{"KHR_lights_punctual", {{"lights", std::move(lights)}}}});
    }
    if (!tables.animation.channels.empty())
        array("animations", 1, [&](std::size_t) { return animation_json(tables.animation, tables.source_name); });
    array("accessors", buffer.accessors().size(),
          [&](std::size_t i) { return accessor_json(buffer.accessors()[i], views); });
    array("bufferViews", views.list.size(), [&](std::size_t i) { return views.list[i]; });
    if (views.size != 0)
        array("buffers", 1, [&](std::size_t) {
            Json object = {{"byteLength", views.size}};
            if (!target.buffer_uri.empty()) object["uri"] = target.buffer_uri;
            return object;
        });
    return file.finish();
}

} // namespace gltf
