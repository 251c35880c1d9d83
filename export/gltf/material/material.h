// Surfaces -> metallic-roughness materials.
#pragma once
#include <array>
#include <map>
#include <unordered_map>
#include <utility>

#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/material/surface_textures.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct MadeMaterial {
    uint32_t material = none;
    bool textured = false; // wants texture coordinates
    bool tangents = false; // wants tangents: it has a normal map
};

class MaterialMaker {
public:
    MaterialMaker(const tv::Scene& scene, const Options& options, Tables& tables, Report& report);

    // One material a surface, or one for each way in which its textures come out. no_id: plain pale paint.
    // `inside`: all texture coordinates lie within 0..1.
    MadeMaterial material(tv::Id surface, const tv::TextureProjection* frame, bool inside);

    // The image's number in the file; the same image is embedded once.
    uint32_t image(const std::shared_ptr<const EncodedImage>& image);
    // A texture of an image, for the backdrop.
    uint32_t texture(const std::shared_ptr<const EncodedImage>& image, const Sampler& sampler);
    SurfaceTextureMaker& textures() { return textures_; }

private:
    Material make(const tv::Surface& surface, const SurfaceTextures& textures);
    TextureUse use(const TextureSlot& slot);

    const tv::Scene& scene_;
    Tables& tables_;
    SurfaceTextureMaker textures_;
    std::map<std::pair<tv::Id, const SurfaceTextures*>, MadeMaterial> made_;
    std::unordered_map<const EncodedImage*, uint32_t> images_;
    std::map<std::pair<uint32_t, uint32_t>, uint32_t> texture_numbers_; // by image and sampler
};

// The surface's own values, without its textures, as a material.
Material plain_material(const tv::Surface& surface);

// A colour as a screen takes it (0 to 1) -> as light adds up. IEC 61966-2-1.
double linear(double screen);
std::array<double, 3> linear(const tv::Vec3& screen); // limited to 0..1; what isn't a number is 0

} // namespace gltf
