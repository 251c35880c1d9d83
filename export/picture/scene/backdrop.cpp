#include "export/picture/scene/backdrop.h"

#include <algorithm>
#include <cmath>

namespace picture {

namespace {

constexpr float half_turn = 3.14159265f;

std::optional<glm::vec3> color_at(const gltf::Json& object, const char* name)
{
    const auto found = object.find(name);
    if (found == object.end() || !found->is_array() || found->size() != 3) return {};
    glm::vec3 color(0);
    for (std::size_t i = 0; i < 3; ++i) {
        if (!(*found)[i].is_number()) return {};
        color[static_cast<int>(i)] = std::clamp(gltf::file_float((*found)[i].get<double>()), 0.0f, 1e6f);
    }
    return color;
}

// Colours that the scene doesn't give take the nearest one that it does, as the exporter's dome has it.
std::optional<Backdrop> gradient(const gltf::Json& extras)
{
    static constexpr const char* names[] = {"zenith", "sky", "ground", "nadir"};
    static constexpr std::size_t order[4][4] = {{0, 1, 2, 3}, {1, 0, 2, 3}, {2, 3, 1, 0}, {3, 2, 1, 0}};
    Backdrop result;
    bool colored = false;
    for (std::size_t i = 0; i < 4; ++i)
        for (const std::size_t from : order[i])
            if (const auto color = color_at(extras, names[from])) {
                result.bands[i] = *color;
                colored = true;
                break;
            }
    if (!colored) return {};
    return result;
}

} // namespace

Backdrop plain_backdrop(const glm::vec3& color)
{
    Backdrop result;
    result.bands.fill(color);
    return result;
}

std::optional<Backdrop> make_backdrop(const gltf::Tables& tables, TextureStore& textures)
{
    const auto found = tables.scene_extras.find("backdrop");
    if (found == tables.scene_extras.end() || !found->is_object()) return {};
    const std::string scheme = found->value("scheme", "");
    if (scheme == "gradient") return gradient(*found);
    if (scheme == "color") {
        const auto color = color_at(*found, "color");
        return color ? std::optional(plain_backdrop(*color)) : std::nullopt;
    }
    const auto image = found->find("image");
    if (image == found->end() || !image->is_number_unsigned()) return {};
    const auto number = image->get<uint64_t>();
    if (number >= tables.buffer.images().size()) return {};
    Backdrop result;
    result.map = textures.reserve(static_cast<uint32_t>(number), Content::color);
    return result;
}

glm::vec3 Backdrop::seen_along(const glm::vec3& direction, const TextureStore& textures) const
{
    const float down = std::acos(std::clamp(direction.y, -1.0f, 1.0f)) / half_turn; // 0 zenith, 1 nadir
    if (map != gltf::none) {
        // All round, the middle of the picture straight ahead at -Z, as on the exporter's dome.
        const float turn = std::atan2(direction.x, -direction.z) / (2 * half_turn) + 0.5f;
        return textures.map(map).at({turn, down}, {true, false, true}, 1);
    }
    if (bands[0] == bands[1] && bands[1] == bands[2] && bands[2] == bands[3]) return bands[0];
    const std::size_t half = down < 0.5f ? 0 : 1;
    const float share = down * 2 - static_cast<float>(half);
    return bands[half * 2] * (1 - share) + bands[half * 2 + 1] * share;
}

glm::vec3 Backdrop::behind(glm::vec2 place, float spacing, const glm::vec3& direction,
                           const TextureStore& textures) const
{
    if (map == gltf::none) return seen_along(direction, textures);
    const TextureMap& image = textures.map(map);
    return image.at(place, {false, false, true}, spacing * static_cast<float>(image.width()));
}

} // namespace picture
