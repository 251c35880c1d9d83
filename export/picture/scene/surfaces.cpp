#include "export/picture/scene/surfaces.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>

namespace picture {

namespace {

glm::vec3 color_of(const std::array<double, 3>& color, double factor)
{
    return {gltf::file_float(color[0] * factor), gltf::file_float(color[1] * factor),
            gltf::file_float(color[2] * factor)};
}

TextureRef reference(const gltf::TextureUse& use, Content content, const gltf::Tables& tables, TextureStore& textures)
{
    TextureRef result;
    if (use.texture >= tables.textures.size()) return result;
    const gltf::Texture& texture = tables.textures[use.texture];
    if (texture.image >= tables.buffer.images().size()) return result;
    result.map = textures.reserve(texture.image, content);
    if (texture.sampler < tables.samplers.size()) {
        const gltf::Sampler& sampler = tables.samplers[texture.sampler];
        result.wrap = {sampler.repeat_u, sampler.repeat_v, sampler.mipmap};
    }
    result.scale = {gltf::file_float(use.scale[0]), gltf::file_float(use.scale[1])};
    result.offset = {gltf::file_float(use.offset[0]), gltf::file_float(use.offset[1])};
    return result;
}

Surface surface_of(const gltf::Material& material, const gltf::Tables& tables, TextureStore& textures)
{
    Surface result;
    result.base = color_of({material.base_color[0], material.base_color[1], material.base_color[2]}, 1);
    result.alpha = std::clamp(gltf::file_float(material.base_color[3]), 0.0f, 1.0f);
    result.emission = color_of(material.emissive, material.emissive_strength);
    const double step = (material.ior - 1) / (material.ior + 1); // an index of 0 means: all of it
    result.reflectance = color_of(material.specular_color, step * step);
    result.reflectance = glm::min(result.reflectance, glm::vec3(1)) * gltf::file_float(material.specular);
    result.strength = gltf::file_float(material.specular);
    result.metallic = std::clamp(gltf::file_float(material.metallic), 0.0f, 1.0f);
    result.roughness = std::clamp(gltf::file_float(material.roughness), 0.0f, 1.0f);
    result.bumps = gltf::file_float(material.normal_texture.strength);
    result.blend = material.blend;
    result.unlit = material.unlit;
    result.base_map = reference(material.base_texture, Content::color, tables, textures);
    result.emission_map = reference(material.emissive_texture, Content::color, tables, textures);
    result.normal_map = reference(material.normal_texture, Content::numbers, tables, textures);
    result.strength_map = reference(material.specular_texture, Content::numbers, tables, textures);
    return result;
}

} // namespace

std::vector<Surface> make_surfaces(const gltf::Tables& tables, TextureStore& textures)
{
    std::vector<Surface> result;
    result.reserve(tables.materials.size() + 1);
    for (const gltf::Material& material : tables.materials) result.push_back(surface_of(material, tables, textures));
    result.push_back(surface_of(gltf::Material(), tables, textures));
    return result;
}

} // namespace picture
