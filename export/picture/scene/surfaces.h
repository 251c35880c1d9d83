// Materials as the shading wants them: plain numbers, and numbers of texture maps.
#pragma once
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <vector>

#include "export/gltf/file/tables.h"
#include "export/picture/texture/texture_store.h"

namespace picture {

struct TextureRef {
    uint32_t map = gltf::none; // of the store
    Wrap wrap;
    glm::vec2 scale{1, 1}, offset{0, 0};
};

struct Surface {
    glm::vec3 base{1};        // linear, before its texture
    float alpha = 1;          // times the base texture's, where `blend` says so
    glm::vec3 emission{0};    // strength multiplied in
    glm::vec3 reflectance{0}; // of what isn't metal, seen head-on: index, colour and strength; the strength's map apart
    float strength = 1;       // KHR_materials_specular's factor: what is reflected at grazing angles
    float metallic = 0, roughness = 1;
    float bumps = 1; // normal map's scale
    bool blend = false, unlit = false, two_sided = false;
    TextureRef base_map, emission_map, normal_map, strength_map;
};

// By the tables' numbers; one more at the end for what has no material. Reserves the maps that are used.
std::vector<Surface> make_surfaces(const gltf::Tables& tables, TextureStore& textures);

} // namespace picture
