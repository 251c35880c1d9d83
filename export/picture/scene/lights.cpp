#include "export/picture/scene/lights.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <limits>

namespace picture {

namespace {

constexpr float brightest = 1e30f;

float square(float value)
{
    return value * value;
}

} // namespace

Incidence incidence(const LightSource& light, const glm::vec3& point)
{
    Incidence result;
    if (light.type == gltf::Light::Type::directional) {
        result.toward = -light.direction;
        result.distance = std::numeric_limits<float>::infinity();
        result.lux = light.strength;
        return result;
    }
    const glm::vec3 way = light.position - point;
    result.distance = glm::length(way);
    if (!(result.distance > 0) || !std::isfinite(result.distance)) return result;
    result.toward = way / result.distance;
    float share = 1;
    if (light.range > 0) share = std::clamp(1 - square(square(result.distance / light.range)), 0.0f, 1.0f);
    if (light.type == gltf::Light::Type::spot) {
        const float cosine = -glm::dot(result.toward, light.direction);
        share *= square(std::clamp(cosine * light.cone_scale + light.cone_offset, 0.0f, 1.0f));
    }
    if (share > 0)
        result.lux = glm::min(light.strength * (share / result.distance / result.distance), glm::vec3(brightest));
    return result;
}

std::vector<LightSource> make_lights(const gltf::Tables& tables, const Pose& pose, const glm::dvec3& eye)
{
    std::vector<LightSource> result;
    for (std::size_t i = 0; i < tables.nodes.size(); ++i) {
        const uint32_t number = tables.nodes[i].light;
        if (number >= tables.lights.size() || !pose.placed[i]) continue;
        const gltf::Light& light = tables.lights[number];
        LightSource source;
        source.type = light.type;
        const glm::dmat4& world = pose.worlds[i];
        source.position = glm::dvec3(world[3]) - eye;
        const glm::dvec3 axis = -glm::dvec3(world[2]);
        const double length = glm::length(axis);
        if (length > 0) source.direction = axis / length;
        for (int k = 0; k < 3; ++k)
            source.strength[k] = gltf::file_float(light.color[static_cast<std::size_t>(k)] * light.intensity);
        const double inner = std::cos(light.inner_cone), outer = std::cos(light.outer_cone);
        const double scale = 1 / std::max(0.001, inner - outer);
        source.cone_scale = gltf::file_float(scale);
        source.cone_offset = gltf::file_float(-outer * scale);
        const bool shines = source.strength.x > 0 || source.strength.y > 0 || source.strength.z > 0;
        const glm::vec3 sum = source.position + source.direction;
        if (shines && std::isfinite(sum.x + sum.y + sum.z)) result.push_back(source);
    }
    return result;
}

} // namespace picture
