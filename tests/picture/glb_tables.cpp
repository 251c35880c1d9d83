#include "tests/picture/glb_tables.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

using gltf::Json;

class GlbReader {
public:
    explicit GlbReader(const std::filesystem::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        if (bytes.size() < 20 || bytes.compare(0, 4, "glTF") != 0) throw std::runtime_error("no GLB: " + path.string());
        uint32_t length = 0;
        std::memcpy(&length, bytes.data() + 12, 4);
        json_ = Json::parse(bytes.substr(20, length));
        if (bytes.size() > 28 + length) data_ = bytes.substr(28 + length);
    }

    gltf::Tables tables()
    {
        read_materials();
        for (const Json& node : list("nodes")) result_.nodes.push_back(node_of(node));
        for (const Json& mesh : list("meshes")) result_.meshes.push_back(mesh_of(mesh));
        for (const Json& camera : list("cameras")) result_.cameras.push_back(camera_of(camera));
        if (json_.contains("extensions"))
            for (const Json& light : json_["extensions"]["KHR_lights_punctual"]["lights"])
                result_.lights.push_back(light_of(light));
        for (const Json& animation : list("animations")) read_animation(animation);
        const Json& scene = json_["scenes"][0];
        for (const Json& root : scene.value("nodes", Json::array())) result_.roots.push_back(root);
        result_.scene_extras = scene.value("extras", Json());
        result_.asset_extras = json_["asset"].value("extras", Json());
        return std::move(result_);
    }

private:
    Json list(const char* name) const { return json_.value(name, Json::array()); }

    template <typename Array>
    static void read(const Json& object, const char* name, Array& into)
    {
        if (object.contains(name))
            for (std::size_t i = 0; i < into.size(); ++i) into[i] = object[name][i];
    }

    uint32_t accessor(const Json& number, bool indices)
    {
        const Json& accessor = json_["accessors"].at(number.get<std::size_t>());
        const Json& view = json_["bufferViews"].at(accessor["bufferView"].get<std::size_t>());
        const std::string type = accessor["type"];
        const std::size_t parts = type == "SCALAR" ? 1 : static_cast<std::size_t>(type[3] - '0');
        const std::size_t count = accessor["count"].get<std::size_t>() * parts;
        const char* const from = data_.data() + view.value("byteOffset", 0u) + accessor.value("byteOffset", 0u);
        if (indices) {
            std::vector<uint32_t> values(count);
            const bool narrow = accessor["componentType"] == 5123;
            for (std::size_t i = 0; i < count; ++i)
                std::memcpy(&values[i], from + i * (narrow ? 2 : 4), narrow ? 2 : 4);
            return result_.buffer.add_indices(values);
        }
        std::vector<float> values(count);
        std::memcpy(values.data(), from, count * sizeof(float));
        return result_.buffer.add(gltf::Stretch::keys, static_cast<gltf::Element>(parts - 1), values, false);
    }

    static gltf::Node node_of(const Json& json)
    {
        gltf::Node node;
        node.name = json.value("name", "");
        for (const Json& child : json.value("children", Json::array())) node.children.push_back(child);
        read(json, "translation", node.translation);
        read(json, "rotation", node.rotation);
        read(json, "scale", node.scale);
        node.mesh = json.value("mesh", gltf::none);
        node.camera = json.value("camera", gltf::none);
        if (json.contains("extensions")) node.light = json["extensions"]["KHR_lights_punctual"]["light"];
        return node;
    }

    gltf::Mesh mesh_of(const Json& json)
    {
        gltf::Mesh mesh;
        for (const Json& from : json["primitives"]) {
            gltf::Primitive primitive;
            const auto attribute = [&](const char* name, uint32_t& into) {
                if (from["attributes"].contains(name)) into = accessor(from["attributes"][name], false);
            };
            attribute("POSITION", primitive.position);
            attribute("NORMAL", primitive.normal);
            attribute("TEXCOORD_0", primitive.uv);
            attribute("TANGENT", primitive.tangent);
            attribute("COLOR_0", primitive.color);
            primitive.indices = accessor(from["indices"], true);
            primitive.material = from.value("material", gltf::none);
            mesh.primitives.push_back(primitive);
        }
        return mesh;
    }

    static gltf::TextureUse texture_of(const Json& parent, const char* name)
    {
        gltf::TextureUse use;
        if (!parent.contains(name)) return use;
        use.texture = parent[name]["index"];
        use.strength = parent[name].value("scale", 1.0);
        if (parent[name].contains("extensions")) {
            const Json& transform = parent[name]["extensions"]["KHR_texture_transform"];
            read(transform, "scale", use.scale);
            read(transform, "offset", use.offset);
        }
        return use;
    }

    void read_materials()
    {
        for (const Json& image : list("images")) {
            const Json& view = json_["bufferViews"].at(image["bufferView"].get<std::size_t>());
            auto encoded = std::make_shared<gltf::EncodedImage>();
            encoded->mime = image["mimeType"];
            const std::string bytes = data_.substr(view.value("byteOffset", 0u), view["byteLength"]);
            encoded->bytes.assign(bytes.begin(), bytes.end());
            result_.buffer.add_image(encoded);
        }
        for (const Json& sampler : list("samplers"))
            result_.samplers.push_back(
                {sampler["wrapS"] == 10497, sampler["wrapT"] == 10497, sampler["minFilter"] != 9729});
        for (const Json& texture : list("textures"))
            result_.textures.push_back({texture["sampler"], texture["source"]});
        for (const Json& material : list("materials")) result_.materials.push_back(material_of(material));
    }

    static gltf::Material material_of(const Json& json)
    {
        gltf::Material material;
        material.metallic = 1;
        const Json pbr = json.value("pbrMetallicRoughness", Json::object());
        read(pbr, "baseColorFactor", material.base_color);
        material.metallic = pbr.value("metallicFactor", 1.0);
        material.roughness = pbr.value("roughnessFactor", 1.0);
        material.base_texture = texture_of(pbr, "baseColorTexture");
        material.normal_texture = texture_of(json, "normalTexture");
        material.emissive_texture = texture_of(json, "emissiveTexture");
        read(json, "emissiveFactor", material.emissive);
        material.blend = json.value("alphaMode", "") == "BLEND";
        const Json extensions = json.value("extensions", Json::object());
        material.unlit = extensions.contains("KHR_materials_unlit");
        const auto extension = [&](const char* name) { return extensions.value(name, Json::object()); };
        material.emissive_strength = extension("KHR_materials_emissive_strength").value("emissiveStrength", 1.0);
        material.ior = extension("KHR_materials_ior").value("ior", 1.5);
        const Json specular = extension("KHR_materials_specular");
        material.specular = specular.value("specularFactor", 1.0);
        read(specular, "specularColorFactor", material.specular_color);
        material.specular_texture = texture_of(specular, "specularTexture");
        return material;
    }

    static gltf::Camera camera_of(const Json& json)
    {
        gltf::Camera camera;
        camera.perspective = json["type"] == "perspective";
        const Json& lens = json[camera.perspective ? "perspective" : "orthographic"];
        camera.yfov = lens.value("yfov", 0.0);
        camera.aspect = lens.value("aspectRatio", 0.0);
        camera.xmag = lens.value("xmag", 0.0);
        camera.ymag = lens.value("ymag", 0.0);
        return camera;
    }

    static gltf::Light light_of(const Json& json)
    {
        gltf::Light light;
        const std::string type = json["type"];
        light.type = type == "spot"    ? gltf::Light::Type::spot
                     : type == "point" ? gltf::Light::Type::point
                                       : gltf::Light::Type::directional;
        read(json, "color", light.color);
        light.intensity = json.value("intensity", 1.0);
        if (json.contains("spot")) {
            light.inner_cone = json["spot"]["innerConeAngle"];
            light.outer_cone = json["spot"]["outerConeAngle"];
        }
        return light;
    }

    void read_animation(const Json& json)
    {
        for (const Json& sampler : json["samplers"])
            result_.animation.samplers.push_back({accessor(sampler["input"], false), accessor(sampler["output"], false),
                                                  sampler.value("interpolation", "LINEAR") == "CUBICSPLINE",
                                                  sampler.value("interpolation", "LINEAR") == "STEP"});
        using Path = gltf::AnimationChannel::Path;
        for (const Json& channel : json["channels"]) {
            const std::string path = channel["target"]["path"];
            if (path == "weights" || path == "pointer") continue; // move no node
            result_.animation.channels.push_back({path == "rotation" ? Path::rotation
                                                  : path == "scale"  ? Path::scale
                                                                     : Path::translation,
                                                  channel["sampler"],
                                                  channel["target"]["node"],
                                                  {}});
        }
    }

    Json json_;
    std::string data_;
    gltf::Tables result_;
};

} // namespace

gltf::Tables read_glb(const std::filesystem::path& path)
{
    return GlbReader(path).tables();
}
