// What stands behind everything.
#pragma once
#include <array>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <optional>

#include "export/picture/texture/texture_store.h"

namespace picture {

struct Backdrop {
    std::array<glm::vec3, 4> bands{}; // zenith, sky and ground at the horizon, nadir; linear
    uint32_t map = gltf::none;        // an image instead, of the store

    glm::vec3 seen_along(const glm::vec3& direction, const TextureStore& textures) const;
    // Behind the picture itself: an image fills it as it filled the old one's. `place`: 0 to 1 from the upper left;
    // `spacing`: the distance of two samples in the same measure.
    glm::vec3 behind(glm::vec2 place, float spacing, const glm::vec3& direction, const TextureStore& textures) const;
};

Backdrop plain_backdrop(const glm::vec3& color);

// From the scene's extras; nothing where they don't tell one.
std::optional<Backdrop> make_backdrop(const gltf::Tables& tables, TextureStore& textures);

} // namespace picture
