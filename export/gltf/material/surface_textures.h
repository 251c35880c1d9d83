// What a surface's layers become in glTF: at most one image for each slot of its material.
//
// Colours of the scene are those of the screen of old, and layers are mixed as they stand, as the programs of the time
// did: bytes of a colour image are sRGB. Where a slot's image comes from more than one picture unchanged, it holds the
// final value, the surface's own included, and the material's factor beside it must be neutral. The fields say so.
#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "export/gltf/base/encoded_image.h"
#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Sampled at uv_offset + uv_scale * uv (KHR_texture_transform without rotation).
struct TextureSlot {
    std::shared_ptr<const EncodedImage> image;
    bool repeat_u = true, repeat_v = true; // else clamped: the image has a border that shows the plain surface
    bool mipmap = true;                    // never with such a border, which smaller copies would lose
    std::array<double, 2> uv_scale{1, 1};  // {1, 1} and {0, 0}: no transform needed
    std::array<double, 2> uv_offset{0, 0};
};

struct SurfaceTextures {
    std::optional<TextureSlot> base_color;
    bool base_color_replaces = false; // the surface's color has no say: baseColorFactor's rgb starts from 1
    bool diffuse_replaces = false;    // nor has its diffuse coefficient: baseColorFactor's rgb must be 1
    bool alpha = false;               // nor its face coefficient: baseColorFactor's alpha must be 1. The
                                      // image's has_alpha tells whether anything is to be seen through
    std::optional<TextureSlot> emissive;
    bool emissive_replaces = false; // emissiveFactor's rgb must be 1, with no strength
    std::optional<TextureSlot> normal;
    double normal_scale = 1;
    std::optional<TextureSlot> specular;             // KHR_materials_specular's specularTexture, the final strength in
                                                     // alpha: specularFactor must be 1
    std::shared_ptr<const EncodedImage> environment; // a reflection map, kept in the material's extras
    std::string environment_name;                    // UTF-8
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
    // `inside`: the caller knows that all texture coordinates lie within 0..1, so that a picture which doesn't wrap
    // needs no border and can go in as it is.
    const SurfaceTextures& textures(tv::Id surface, const tv::TextureProjection* frame, bool inside = false);

    // An image by its name alone, for the backdrop. Null, and noted in the report, when it can't be had; null without a
    // note where the name says that there is none, such as "(none)".
    std::shared_ptr<const EncodedImage> image(const std::string& file_name);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace gltf
