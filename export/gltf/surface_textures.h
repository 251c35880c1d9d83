// What a surface's layers become in glTF: at most one image for each slot of its material.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "export/gltf/writer.h"
#include "lib/toolkit/scene.h"

namespace gltf {

// An image as it goes into the file. Shared: the same file, treated the same way, is one of these.
struct EncodedImage {
    std::string name; // UTF-8, for people
    std::string mime; // "image/png" or "image/jpeg"
    std::vector<unsigned char> bytes;
    uint32_t width = 0, height = 0;
    bool has_alpha = false; // a pixel below 255
};

struct TextureSlot {
    std::shared_ptr<const EncodedImage> image;
    bool repeat_u = true, repeat_v = true; // else clamped
    bool mipmap = true;
    std::array<double, 2> uv_scale{1, 1}; // KHR_texture_transform; {1, 1}: none needed
    std::array<double, 2> uv_offset{0, 0};
};

struct SurfaceTextures {
    std::optional<TextureSlot> base_color; // sRGB; alpha holds the transparency layer's result when `alpha` is set
    bool base_color_replaces = false;      // the image holds the final colour: baseColorFactor's rgb must be 1
    bool alpha = false;
    std::optional<TextureSlot> emissive;
    bool emissive_replaces = false; // emissiveFactor's rgb must be 1
    std::optional<TextureSlot> normal;
    double normal_scale = 1;
    std::optional<TextureSlot> specular;             // KHR_materials_specular's specularTexture: the strength, in alpha
    std::shared_ptr<const EncodedImage> environment; // a reflection map, kept in the material's extras
    std::string environment_name;
    bool any() const { return base_color || emissive || normal || specular; }
};

// Finds, decodes, composes and encodes; keeps what it has made, so that one image file is read and embedded once.
// Loads the image libraries when the first image needs them, not before.
class SurfaceTextureMaker {
public:
    SurfaceTextureMaker(const tv::Scene& scene, const Options& options, Report& report);
    ~SurfaceTextureMaker();
    SurfaceTextureMaker(const SurfaceTextureMaker&) = delete;
    SurfaceTextureMaker& operator=(const SurfaceTextureMaker&) = delete;

    // The textures of a surface on an instance with this projection frame (null: the instance has none, and only what
    // needs no texture coordinates is given). The reference stays good while the maker lives.
    const SurfaceTextures& textures(tv::Id surface, const tv::TextureProjection* frame);

    // An image by its name alone, for the backdrop. Null, and noted in the report, when it can't be had.
    std::shared_ptr<const EncodedImage> image(const std::string& file_name);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace gltf
