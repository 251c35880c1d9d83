// Surfaces -> metallic-roughness materials.
#pragma once
#include <array>
#include <compare>
#include <map>
#include <tuple>
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

// What an instance adds to a surface's material.
struct Fading {
    double opacity = 1;       // times the surface's own
    tv::Id fades = tv::no_id; // the instance whose fading it follows: the material is of its own
    auto operator<=>(const Fading&) const = default;
};

class MaterialMaker {
public:
    MaterialMaker(const tv::Scene& scene, const Options& options, Tables& tables, Report& report);

    // One material for each surface, or one for each way in which its textures come out. no_id: plain pale paint.
    // `inside`: all texture coordinates lie within 0..1.
    MadeMaterial material(tv::Id surface, const tv::TextureProjection* frame, bool inside, const Fading& fading = {});

    // Materials that follow an instance's fading, with the opacity that they have where it has all of its own.
    struct Fader {
        uint32_t material = none;
        tv::Id fades = tv::no_id;
        double opacity = 1;
    };
    const std::vector<Fader>& faders() const { return faders_; }

    // The image's number in the file; the same image is embedded once.
    uint32_t image(const std::shared_ptr<const EncodedImage>& image);
    // A texture of an image, for the backdrop.
    uint32_t texture(const std::shared_ptr<const EncodedImage>& image, const Sampler& sampler);
    SurfaceTextureMaker& textures() { return textures_; }

    void finish(); // after the last material: notes

private:
    Material make(const tv::Surface& surface, const SurfaceTextures& textures);
    TextureUse use(const TextureSlot& slot);

    const tv::Scene& scene_;
    Tables& tables_;
    SurfaceTextureMaker textures_;
    void add_ambient(Material& material, const tv::Surface& surface, const SurfaceTextures& textures);

    std::map<std::tuple<tv::Id, const SurfaceTextures*, Fading>, MadeMaterial> made_;
    std::vector<Fader> faders_;
    std::size_t unlit_ = 0; // surfaces whose luminosity is a picture: ambient light finds no place beside it
    Report& report_;
    std::unordered_map<const EncodedImage*, uint32_t> images_;
    std::map<std::pair<uint32_t, uint32_t>, uint32_t> texture_numbers_; // by image and sampler
};

// The surface's own values, without its textures, as a material.
Material plain_material(const tv::Surface& surface);

// A colour as a screen takes it (0 to 1) -> as light adds up. IEC 61966-2-1.
double linear(double screen);
std::array<double, 3> linear(const tv::Vec3& screen); // limited to 0..1; what isn't a number is 0

} // namespace gltf
