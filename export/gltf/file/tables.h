// The plain tables between scene and file: glTF's own things as structures, numbered as they will stand in the file.
// All lengths are in the file's units, all colours linear, all angles radians, all times seconds.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "export/gltf/file/buffer.h"
#include "export/json_text.h"

namespace gltf {

using json_text::Json;

inline constexpr uint32_t none = 0xffffffffu;

struct Node {
    std::string name;
    std::vector<uint32_t> children;
    std::array<float, 3> translation{0, 0, 0}, scale{1, 1, 1};
    std::array<float, 4> rotation{0, 0, 0, 1}; // x, y, z, w
    uint32_t mesh = none, camera = none, light = none;
    std::vector<float> weights; // of the mesh's morph targets, instead of its own; empty: those
    Json extras;
};

struct Primitive {
    uint32_t position = none, normal = none, uv = none, tangent = none, color = none, indices = none;
    uint32_t material = none;
    std::vector<uint32_t> targets; // morph targets: what is added to each position
};

struct Mesh {
    std::string name;
    std::vector<Primitive> primitives; // at least one; all have as many morph targets
};

struct TextureUse {
    uint32_t texture = none;
    std::array<double, 2> scale{1, 1}, offset{0, 0};
    double strength = 1; // normalTexture's scale
};

struct Material {
    std::string name;
    std::array<double, 4> base_color{1, 1, 1, 1};
    double metallic = 0, roughness = 1;
    std::array<double, 3> emissive{0, 0, 0};
    double emissive_strength = 1;
    double ior = 1.5;
    double specular = 1;
    std::array<double, 3> specular_color{1, 1, 1}; // may go beyond 1
    bool blend = false, unlit = false, double_sided = false;
    TextureUse base_texture, emissive_texture, normal_texture, specular_texture;
    Json extras;
};

struct Sampler {
    bool repeat_u = true, repeat_v = true, mipmap = true;
    bool operator==(const Sampler&) const = default;
};

struct Texture {
    uint32_t sampler = none, image = none;
    bool operator==(const Texture&) const = default;
};

struct Light {
    enum class Type : uint8_t { directional, point, spot } type = Type::directional;
    std::string name;
    std::array<double, 3> color{1, 1, 1};
    double intensity = 1; // lux for directional, else candela
    double inner_cone = 0, outer_cone = 0;
    double range = 0; // where nothing is left of it; 0: it has none
    Json extras;
};

struct Camera {
    std::string name;
    bool perspective = true;
    double yfov = 0, aspect = 0; // perspective
    double xmag = 0, ymag = 0;   // else
    double znear = 0, zfar = 0;  // zfar 0: none
    Json extras;
};

struct AnimationSampler {
    uint32_t input = none, output = none;
    bool cubic = false, step = false; // else linear
};

struct AnimationChannel {
    enum class Path : uint8_t { translation, rotation, scale, weights, pointer } path = Path::translation;
    uint32_t sampler = none, node = none; // no node with a pointer
    std::string pointer;                  // KHR_animation_pointer's, a JSON pointer into the file
};

struct Animation {
    std::vector<AnimationSampler> samplers;
    std::vector<AnimationChannel> channels;
    Json extras;
};

struct Tables {
    std::vector<Node> nodes;
    std::vector<uint32_t> roots; // nodes of the scene
    std::vector<Mesh> meshes;
    std::vector<Material> materials;
    std::vector<Sampler> samplers;
    std::vector<Texture> textures;
    std::vector<Light> lights;
    std::vector<Camera> cameras;
    Animation animation; // no channels: none
    Buffer buffer;       // images too
    Json scene_extras, asset_extras;
    std::string source_name, generator;
};

// Nothing that isn't a number reaches the file, nor what a 32-bit float can't hold.
inline float file_float(double value)
{
    constexpr double largest = 3.4028234e38;
    if (!(value == value)) return 0;
    return static_cast<float>(value > largest ? largest : value < -largest ? -largest : value);
}

} // namespace gltf
