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
#include "lib/toolkit/units.h"

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

constexpr double strongest = 1e12; // without an envelope or range of the file's own

double positive(double value, double most = strongest)
{
    return value > 0 ? std::min(value, most) : 0;
}

// Of the light: at the start, and what the file's units make of an intensity of 1.
struct Strength {
    double distance = 0; // at which the lamp is as bright as it was; 0 for a distant light
    double factor = 1;   // candela or lux of an intensity of 1
};

class LightMaker {
public:
    LightMaker(const Options& options, const Measure& measure, const RigParts& parts)
        : options_(options), measure_(measure), parts_(parts)
    {
    }

    void add(const tv::Light& light)
    {
        const double rest = light.intensity_curve ? light.intensity_curve->rest : light.intensity;
        // Restored to be dark at all times: a lens flare and no lamp.
        if (light.intensity_curve && !light.intensity_curve->moves() && rest == 0) return;
        if (!(rest >= 0)) ++dark_;
        Light result;
        result.name = platform::latin1_to_utf8(light.shown_name.empty() ? light.name : light.shown_name);
        result.color = linear(light.color_curve ? at_rest(*light.color_curve) : light.color);
        for (const tv::Extra& extra : light.extras) result.extras[extra.name] = extra.values;

        const uint32_t node = add_node(light, result.name);
        const glm::dvec3 from = start_of(light);
        const Strength strength = strength_of(light, from, result);
        const double most = light.range || light.rig || light.intensity_curve ? 1e38 : strongest;
        result.intensity = positive(positive(rest) * strength.factor, most);
        const auto number = static_cast<uint32_t>(parts_.tables.lights.size());
        if (light.model == tv::LightModel::spot) cone(light, result);
        parts_.tables.nodes[node].light = number;
        parts_.tables.lights.push_back(std::move(result));
        animate(light, number, strength.factor);
    }

    std::size_t dark() const { return dark_; }

private:
    static tv::Vec3 at_rest(const std::array<tv::Curve, 3>& curves)
    {
        return {static_cast<float>(curves[0].rest), static_cast<float>(curves[1].rest),
                static_cast<float>(curves[2].rest)};
    }

    uint32_t add_node(const tv::Light& light, const std::string& name)
    {
        if (light.rig) return add_rig(parts_.stage.mover(*light.rig), name, parts_);
        Placing placing;
        if (light.model != tv::LightModel::point) placing.rotation = look_along(shine_of(light), {0, 1, 0});
        if (light.model != tv::LightModel::direction && light.shine_from)
            placing.translation = vector_of(*light.shine_from) * options_.scale;
        Node node;
        node.name = name;
        place_node(node, placing);
        const auto number = static_cast<uint32_t>(parts_.tables.nodes.size());
        parts_.tables.roots.push_back(number);
        parts_.tables.nodes.push_back(std::move(node));
        return number;
    }

    // In the world, when the file starts; the scene's units.
    glm::dvec3 start_of(const tv::Light& light)
    {
        if (light.rig) return parts_.stage.place(parts_.stage.mover(*light.rig), parts_.animator.start_time());
        return light.shine_from ? vector_of(*light.shine_from) : glm::dvec3(0);
    }

    Strength strength_of(const tv::Light& light, const glm::dvec3& from, Light& result)
    {
        Strength strength;
        strength.factor = lux_of_intensity * options_.light_scale;
        if (light.model == tv::LightModel::direction) return strength;
        result.type = light.model == tv::LightModel::spot ? Light::Type::spot : Light::Type::point;
        double share = 1;
        if (light.range) {
            // The old lamp fades on a straight line, glTF's with the square of the distance times 1 - (d / range)^4. At
            // the distance d of what it lights they are alike.
            const double range = *light.range;
            strength.distance = std::clamp(middle_distance(measure_, from, range, range / 2), range / 100, range);
            const double x = strength.distance / range;
            share = 1 / ((1 + x) * (1 + x * x)); // (1 - x) / (1 - x^4)
            result.range = range * options_.scale;
        } else {
            // Old lamps shine as far as they like, glTF's fade with the square of the distance. The candelas are such
            // that the lamp is as bright as it was where the scene is: at the median distance of its objects.
            strength.distance = std::max(usual_distance(measure_, from, empty_distance), least_distance);
        }
        const double distance = strength.distance * options_.scale;
        strength.factor *= share * distance * distance;
        result.extras["intensityDistance"] = distance;
        result.extras["decay"] = light.decay;
        return strength;
    }

    static double outer_cone(double cutoff)
    {
        const double outer = std::isfinite(cutoff) ? std::abs(cutoff) * tv::radians_per_degree : widest_cone;
        return std::clamp(outer, 1e-3, widest_cone);
    }
    static double inner_cone(double outer, double delta)
    {
        const double edge = std::isfinite(delta) ? std::abs(delta) * tv::radians_per_degree : 0;
        // A hard edge still needs some width: the inner angle has to be the smaller one.
        return std::clamp(outer - edge, 0.0, outer * 0.999);
    }

    void cone(const tv::Light& light, Light& result)
    {
        result.outer_cone = outer_cone(light.cutoff_curve ? light.cutoff_curve->rest : light.cutoff);
        result.inner_cone = inner_cone(result.outer_cone, light.delta_curve ? light.delta_curve->rest : light.delta);
    }

    void animate(const tv::Light& light, uint32_t number, double factor)
    {
        Animator& animator = parts_.animator;
        const std::string path = "/extensions/KHR_lights_punctual/lights/" + std::to_string(number);
        if (light.intensity_curve) {
            const Track track = animator.track(light.intensity_curve->channel, light.intensity_curve->rest);
            animator.add_pointer(
                path + "/intensity",
                animator.value_sampler(std::span(&track, 1), Element::scalar, [&](double time, std::span<double> out) {
                    out[0] = positive(value_at(track, time) * factor, 1e38);
                }));
        }
        if (light.color_curve) {
            std::array<Track, 3> tracks;
            for (std::size_t i = 0; i < 3; ++i)
                tracks[i] = animator.track((*light.color_curve)[i].channel, (*light.color_curve)[i].rest);
            animator.add_pointer(path + "/color",
                                 animator.value_sampler(tracks, Element::vec3, [&](double time, std::span<double> out) {
                                     tv::Vec3 screen;
                                     for (std::size_t i = 0; i < 3; ++i)
                                         screen[i] = static_cast<float>(value_at(tracks[i], time));
                                     std::ranges::copy(linear(screen), out.begin());
                                 }));
        }
        if (light.model != tv::LightModel::spot || !(light.cutoff_curve || light.delta_curve)) return;
        const auto track_of = [&](const std::optional<tv::Curve>& curve, double fixed) {
            return curve ? animator.track(curve->channel, curve->rest) : Track{Knot{0, fixed, fixed, 0, 0, false}};
        };
        const std::array<Track, 2> tracks = {track_of(light.cutoff_curve, light.cutoff),
                                             track_of(light.delta_curve, light.delta)};
        animator.add_pointer(path + "/spot/outerConeAngle",
                             animator.value_sampler(tracks, Element::scalar, [&](double time, std::span<double> out) {
                                 out[0] = outer_cone(value_at(tracks[0], time));
                             }));
        animator.add_pointer(path + "/spot/innerConeAngle",
                             animator.value_sampler(tracks, Element::scalar, [&](double time, std::span<double> out) {
                                 out[0] = inner_cone(outer_cone(value_at(tracks[0], time)), value_at(tracks[1], time));
                             }));
    }

    const Options& options_;
    const Measure& measure_;
    const RigParts& parts_;
    std::size_t dark_ = 0;
};

} // namespace

void make_lights(const tv::Scene& scene, const Options& options, const Measure& measure, const RigParts& parts,
                 Report& report)
{
    LightMaker maker(options, measure, parts);
    for (std::size_t i = 0; i < scene.lights.size(); ++i) {
        const tv::Light& light = scene.lights[i];
        if (!light.alive) continue;
        const double intensity = light.intensity;
        if (light.model != tv::LightModel::ambient && i != 0) {
            maker.add(light);
        } else if (positive(intensity) > 0) {
            // The scene's own ambient light is always there; it is told where it is lit.
            parts.tables.scene_extras["ambient"] = {{"color", linear(light.color)},
                                                    {"intensity", positive(intensity)},
                                                    {"name", platform::latin1_to_utf8(light.name)}};
        }
    }
    if (maker.dark() != 0) report.notes.push_back(message<"lights-negative">(maker.dark()));
}

} // namespace gltf
