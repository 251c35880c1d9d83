#include "export/gltf/scene/lights.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/notes.h"
#include "export/gltf/base/transform.h"
#include "export/gltf/base/vectors.h"
#include "export/gltf/material/material.h"
#include "export/gltf/scene/nodes.h"
#include "lib/platform/latin1.h"

namespace gltf {

namespace {

constexpr double widest_cone = 1.5707;                      // radians; glTF allows less than a right angle
constexpr double least_distance = 0.01, empty_distance = 4; // scene units

// Where the light shines. A "shine direction" names the side that it comes from: a distant light and a spot of the same
// three angles have it and the way from shine_from to shine_at as exact opposites.
glm::dvec3 shine_of(const tv::Light& light)
{
    if (light.model == tv::LightModel::direction && light.shine_direction) return -vector_of(*light.shine_direction);
    if (light.shine_from && light.shine_at) return vector_of(*light.shine_at) - vector_of(*light.shine_from);
    if (light.shine_direction) return -vector_of(*light.shine_direction);
    return {0, 0, -1};
}

double positive(double value)
{
    return value > 0 ? std::min(value, 1e12) : 0;
}

} // namespace

void make_lights(const tv::Scene& scene, const Options& options, const Measure& measure, Tables& tables, Report& report)
{
    std::size_t dark = 0;
    for (std::size_t i = 0; i < scene.lights.size(); ++i) {
        const tv::Light& light = scene.lights[i];
        if (!light.alive) continue;
        const double intensity = light.intensity;
        if (light.model == tv::LightModel::ambient || i == 0) {
            // The scene's own ambient light is always there; it is told where it is lit.
            if (positive(intensity) > 0)
                tables.scene_extras["ambient"] = {{"color", linear(light.color)},
                                                  {"intensity", positive(intensity)},
                                                  {"name", platform::latin1_to_utf8(light.name)}};
            continue;
        }
        if (!(intensity >= 0)) ++dark;

        Light result;
        result.name = platform::latin1_to_utf8(light.name);
        result.color = linear(light.color);
        result.intensity = positive(intensity) * lux_of_intensity * options.light_scale;
        Placing placing;
        placing.rotation = look_along(shine_of(light), {0, 1, 0});
        if (light.model != tv::LightModel::direction) {
            const glm::dvec3 from = light.shine_from ? vector_of(*light.shine_from) : glm::dvec3(0);
            placing.translation = from * options.scale;
            // Old lamps shine as far as they like, glTF's fade with the square of the distance. The candelas are such
            // that the lamp is as bright as it was where the scene is: at the median distance of its objects.
            const double distance = std::max(usual_distance(measure, from, empty_distance), least_distance);
            result.intensity *= distance * distance * options.scale * options.scale;
            result.extras["intensityDistance"] = distance * options.scale;
            result.extras["decay"] = light.decay;
            result.type = Light::Type::point;
        }
        result.intensity = positive(result.intensity);
        if (light.model == tv::LightModel::spot) {
            result.type = Light::Type::spot;
            const double outer =
                std::isfinite(light.cutoff) ? std::abs(light.cutoff) * tv::radians_per_degree : widest_cone;
            result.outer_cone = std::clamp(outer, 1e-3, widest_cone);
            const double edge = std::isfinite(light.delta) ? std::abs(light.delta) * tv::radians_per_degree : 0;
            // A hard edge still needs some width: the inner angle has to be the smaller one.
            result.inner_cone = std::clamp(result.outer_cone - edge, 0.0, result.outer_cone * 0.999);
        } else if (light.model == tv::LightModel::point) {
            placing.rotation = {1, 0, 0, 0};
        }
        Node node;
        node.name = result.name;
        place_node(node, placing);
        node.light = static_cast<uint32_t>(tables.lights.size());
        tables.roots.push_back(static_cast<uint32_t>(tables.nodes.size()));
        tables.nodes.push_back(std::move(node));
        tables.lights.push_back(std::move(result));
    }
    if (dark != 0)
        note(report, Note::Level::warning,
             counted(dark, "light") + " of negative intensity: glTF has no light that darkens, written as 0");
}

} // namespace gltf
