// From Phong's coefficients to metal and roughness.
//
// The old renderer adds up: color * (diffuse * light + luminosity) + specular * light * cos^n + reflect * surroundings.
// Both glTF kinds of matter do the first and the last of these, with other weights:
//
//   share     = reflect / (diffuse + reflect)                how much of what comes back is a mirror's
//   metallic  = 0 up to a share of 0.3, 1 from 0.7 on        lacquered paint is not metal, chrome is
//   baseColor = color * diffuse + tint * reflect * metallic  tint: white, as mirrors were; the color with "metal" set
//   roughness = of the highlight's width, nearer to 0.05 the larger the share: old mirrors were perfect ones
//   F0        = 0.04 * specular + reflect * (1 - metallic)   what paint mirrors head-on, by KHR_materials_specular
//
// The exponent n of Phong's cosine between mirror and eye stands for 4 n of Blinn's between normal and half vector, and
// that for a width of alpha = sqrt(2 / (4 n + 2)): B. Walter et al., Microfacet Models for Refraction through Rough
// Surfaces, 2007. glTF's roughness is the root of alpha.
#include "export/gltf/material/material.h"

#include "export/gltf/base/notes.h"

#include <algorithm>
#include <cmath>

#include "lib/platform/latin1.h"

namespace gltf {

namespace {

constexpr double paint_share = 0.3, mirror_share = 0.7;
constexpr double mirror_roughness = 0.05;
constexpr double plain_specular = 0.04;        // what glTF's index of 1.5 reflects head-on
constexpr double opaque_from = 1 - 1.0 / 1024; // a coefficient in 256 steps below 1 is meant; a rounding isn't
constexpr double strongest_emission = 1000;

// Into the range, and a number in any case.
double limited(double value, double least, double most)
{
    return value >= least ? std::min(value, most) : least;
}

std::array<double, 3> scaled(const std::array<double, 3>& color, double factor)
{
    return {color[0] * factor, color[1] * factor, color[2] * factor};
}

} // namespace

double linear(double screen)
{
    const double value = limited(screen, 0, 1);
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

std::array<double, 3> linear(const tv::Vec3& screen)
{
    return {linear(static_cast<double>(screen[0])), linear(static_cast<double>(screen[1])),
            linear(static_cast<double>(screen[2]))};
}

namespace {

// `color` stands for the surface's: white where an image replaces it. Likewise the diffuse coefficient. Emission always
// has the surface's own.
Material phong_material(const tv::Surface& surface, const std::array<double, 3>& color, double diffuse)
{
    Material result;
    result.name = platform::latin1_to_utf8(surface.name);
    const double reflect = limited(surface.reflect, 0, 1);
    const double specular = limited(surface.specular, 0, 1);
    const double share = reflect > 0 ? reflect / (diffuse + reflect) : 0;
    result.metallic = limited((share - paint_share) / (mirror_share - paint_share), 0, 1);

    const bool tinted = surface.metal > 0;
    for (std::size_t i = 0; i < 3; ++i)
        result.base_color[i] = limited(color[i] * diffuse + (tinted ? color[i] : 1) * reflect * result.metallic, 0, 1);
    result.base_color[3] = limited(surface.face_opacity, 0, 1);
    if (result.base_color[3] >= opaque_from) result.base_color[3] = 1;
    result.blend = result.base_color[3] < 1;

    if (specular > 0 || reflect > 0) {
        const double exponent = limited(surface.shininess, 1, 10000);
        const double highlight = std::pow(2 / (4 * exponent + 2), 0.25);
        result.roughness = highlight * (1 - share) + mirror_roughness * share;
    }

    // An index of 1 was written for everything that isn't glass, and would take the highlight away.
    if (surface.ior > 1.001f && std::isfinite(surface.ior)) result.ior = limited(surface.ior, 1, 10);
    const double index_ratio = (result.ior - 1) / (result.ior + 1);
    const double wanted = plain_specular * specular + reflect * (1 - result.metallic);
    const double strength = limited(wanted / (index_ratio * index_ratio), 0, 1000);
    result.specular = std::min(strength, 1.0);
    const double excess = std::max(strength, 1.0);
    result.specular_color = scaled(tinted ? color : std::array<double, 3>{1, 1, 1}, excess);

    const double luminous = limited(surface.luminous, 0, strongest_emission);
    result.emissive = scaled(linear(surface.color), std::min(luminous, 1.0));
    if (luminous > 1 && result.emissive != std::array<double, 3>{0, 0, 0}) result.emissive_strength = luminous;
    return result;
}

} // namespace

Material plain_material(const tv::Surface& surface)
{
    return phong_material(surface, linear(surface.color), limited(surface.diffuse, 0, 1));
}

MaterialMaker::MaterialMaker(const tv::Scene& scene, const Options& options, Tables& tables, Report& report)
    : scene_(scene), tables_(tables), textures_(scene, options, report), report_(report)
{
}

uint32_t MaterialMaker::image(const std::shared_ptr<const EncodedImage>& image)
{
    const auto [entry, added] = images_.try_emplace(image.get(), 0);
    if (added) entry->second = tables_.buffer.add_image(image);
    return entry->second;
}

uint32_t MaterialMaker::texture(const std::shared_ptr<const EncodedImage>& picture, const Sampler& sampler)
{
    const auto found = std::find(tables_.samplers.begin(), tables_.samplers.end(), sampler);
    const auto number = static_cast<uint32_t>(found - tables_.samplers.begin());
    if (found == tables_.samplers.end()) tables_.samplers.push_back(sampler);
    const auto [entry, added] = texture_numbers_.try_emplace({image(picture), number}, 0);
    if (added) {
        entry->second = static_cast<uint32_t>(tables_.textures.size());
        tables_.textures.push_back({number, entry->first.first});
    }
    return entry->second;
}

TextureUse MaterialMaker::use(const TextureSlot& slot)
{
    TextureUse result;
    result.texture = texture(slot.image, {slot.repeat_u, slot.repeat_v, slot.mipmap});
    result.scale = slot.uv_scale;
    result.offset = slot.uv_offset;
    return result;
}

Material MaterialMaker::make(const tv::Surface& surface, const SurfaceTextures& textures)
{
    const bool pictured = textures.base_color.has_value();
    const bool own_color = !pictured || !textures.base_color_replaces;
    const std::array<double, 3> color = own_color ? linear(surface.color) : std::array<double, 3>{1, 1, 1};
    const double diffuse = pictured && textures.diffuse_replaces ? 1 : limited(surface.diffuse, 0, 1);
    Material result = phong_material(surface, color, diffuse);
    if (pictured) {
        result.base_texture = use(*textures.base_color);
        if (textures.diffuse_replaces)
            for (std::size_t i = 0; i < 3; ++i) result.base_color[i] = 1;
        if (textures.alpha) {
            result.base_color[3] = 1;
            result.blend = textures.base_color->image->has_alpha;
        }
    }
    if (!own_color && !textures.emissive && result.emissive != std::array<double, 3>{0, 0, 0}) {
        // Self-lit signs: what shines is the picture, as bright as the surface's own colour would have been.
        result.emissive_texture = result.base_texture;
        result.emissive = scaled({1, 1, 1}, limited(surface.luminous, 0, 1));
    }
    if (textures.emissive) {
        result.emissive_texture = use(*textures.emissive);
        if (textures.emissive_replaces) {
            result.emissive = {1, 1, 1};
            result.emissive_strength = 1;
        }
    }
    if (textures.normal) {
        result.normal_texture = use(*textures.normal);
        result.normal_texture.strength = limited(textures.normal_scale, -100, 100);
    }
    if (textures.specular) {
        result.specular_texture = use(*textures.specular);
        result.specular = 1;
        if (result.roughness == 1)
            result.roughness = std::pow(2 / (4 * limited(surface.shininess, 1, 10000) + 2), 0.25);
    }
    if (textures.environment) {
        Json& map = result.extras["reflectionMap"];
        map["name"] = textures.environment_name;
        map["image"] = image(textures.environment);
        map["reflect"] = file_float(surface.environment_reflect);
        map["seamAngle"] = file_float(surface.environment_yaxis);
    }
    if (surface.edge_enabled) {
        result.extras["edgeOpacity"] = limited(surface.edge_opacity, 0, 1);
        result.extras["edgeExponent"] = file_float(surface.edge_exponent);
    }
    return result;
}

// Light from everywhere shows as light that the surface sends, in its own colour and picture.
void MaterialMaker::add_ambient(Material& material, const tv::Surface& surface, const SurfaceTextures& textures)
{
    const tv::Ambient& ambient = *scene_.ambient;
    if (textures.emissive) {
        ++unlit_;
        return;
    }
    const bool pictured = textures.base_color.has_value();
    const bool own_color = !pictured || !textures.base_color_replaces;
    const std::array<double, 3> color = own_color ? linear(surface.color) : std::array<double, 3>{1, 1, 1};
    const bool whole = pictured && textures.diffuse_replaces; // the picture holds all of it
    const std::array<double, 3> share =
        whole ? std::array<double, 3>{1, 1, 1} : scaled(color, limited(surface.diffuse, 0, 1));
    const std::array<double, 3> light = linear(ambient.color);
    std::array<double, 3> sent{};
    double strongest = 1;
    for (std::size_t i = 0; i < 3; ++i) {
        sent[i] = material.emissive[i] * material.emissive_strength + ambient.intensity * light[i] * share[i];
        sent[i] = limited(sent[i], 0, strongest_emission);
        strongest = std::max(strongest, sent[i]);
    }
    for (std::size_t i = 0; i < 3; ++i) material.emissive[i] = sent[i] / strongest;
    material.emissive_strength = strongest;
    if (pictured) material.emissive_texture = material.base_texture;
}

void MaterialMaker::finish()
{
    if (unlit_ != 0) report_.notes.push_back(message<"surfaces-without-ambient">(unlit_));
}

MadeMaterial MaterialMaker::material(tv::Id id, const tv::TextureProjection* frame, bool inside, const Fading& fading)
{
    const bool known = id < scene_.surfaces.size() && scene_.surfaces[id].alive;
    const SurfaceTextures* const textures = known ? &textures_.textures(id, frame, inside) : nullptr;
    // Where no image comes out of it, the frame makes no difference.
    const bool distinct = textures && (textures->any() || textures->environment);
    const auto [entry, added] = made_.try_emplace({known ? id : tv::no_id, distinct ? textures : nullptr, fading});
    if (!added) return entry->second;
    Material material;
    if (known) {
        const tv::Surface& surface = scene_.surfaces[id];
        material = make(surface, *textures);
        material.double_sided = surface.double_sided;
        if (scene_.ambient) add_ambient(material, surface, *textures);
        entry->second.textured = textures->any();
        entry->second.tangents = textures->normal.has_value();
    } else {
        material.name = "default";
        material.base_color = {linear(0.8), linear(0.8), linear(0.8), 1};
    }
    entry->second.material = static_cast<uint32_t>(tables_.materials.size());
    if (fading.fades != tv::no_id) faders_.push_back({entry->second.material, fading.fades, material.base_color[3]});
    if (fading.opacity < 1 || fading.fades != tv::no_id) {
        material.base_color[3] *= fading.opacity;
        material.blend = true;
    }
    tables_.materials.push_back(std::move(material));
    return entry->second;
}

} // namespace gltf
