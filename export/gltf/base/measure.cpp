#include "export/gltf/base/measure.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>
#include <unordered_map>

#include "export/gltf/base/transform.h"
#include "export/gltf/base/vectors.h"

namespace gltf {

namespace {

struct Box {
    glm::dvec3 lower{HUGE_VAL}, upper{-HUGE_VAL};
    bool empty() const { return !(lower.x <= upper.x); }
    void add(const glm::dvec3& point)
    {
        lower = glm::min(lower, point);
        upper = glm::max(upper, point);
    }
};

Box box_of(const tv::Object& object)
{
    Box box;
    for (const tv::Primitive& primitive : object.primitives)
        for (std::size_t i = 0; i + 2 < primitive.positions.size(); i += 3) {
            const float* const p = primitive.positions.data() + i;
            const glm::dvec3 point(p[0], p[1], p[2]);
            if (is_finite(point)) box.add(point);
        }
    return box;
}

} // namespace

Measure measure(const tv::Scene& scene, const std::vector<tv::Placement>& places)
{
    Measure result;
    Box all;
    std::unordered_map<tv::Id, Box> boxes;
    for (const tv::Placement& place : places) {
        const tv::Id object = scene.instances[place.instance].object;
        if (object == tv::no_id) continue;
        const auto [entry, added] = boxes.try_emplace(object);
        if (added) entry->second = box_of(scene.objects[object]);
        const Box& own = entry->second;
        if (own.empty()) continue;
        const glm::dmat4 world = to_glm(place.world);
        Box placed;
        for (int corner = 0; corner < 8; ++corner) {
            const glm::dvec4 point((corner & 1) != 0 ? own.lower.x : own.upper.x,
                                   (corner & 2) != 0 ? own.lower.y : own.upper.y,
                                   (corner & 4) != 0 ? own.lower.z : own.upper.z, 1);
            const glm::dvec3 there(world * point);
            if (is_finite(there)) placed.add(there);
        }
        if (placed.empty()) continue;
        all.add(placed.lower);
        all.add(placed.upper);
        result.centers.push_back((placed.lower + placed.upper) * 0.5);
        result.sizes.push_back((placed.upper - placed.lower) * 0.5);
    }
    result.empty = all.empty();
    if (!result.empty) {
        result.lower = all.lower;
        result.upper = all.upper;
    }
    return result;
}

double usual_distance(const Measure& measure, const glm::dvec3& from, double otherwise)
{
    if (measure.centers.empty()) return otherwise;
    std::vector<double> distances;
    distances.reserve(measure.centers.size());
    for (const glm::dvec3& center : measure.centers) distances.push_back(glm::distance(center, from));
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    return std::isfinite(*middle) ? *middle : otherwise;
}

double middle_distance(const Measure& measure, const glm::dvec3& from, double range, double otherwise)
{
    Box within;
    for (std::size_t i = 0; i < measure.centers.size(); ++i) {
        if (!(glm::distance(measure.centers[i], from) <= range)) continue;
        within.add(measure.centers[i] - measure.sizes[i]);
        within.add(measure.centers[i] + measure.sizes[i]);
    }
    return within.empty() ? otherwise : glm::distance((within.lower + within.upper) * 0.5, from);
}

} // namespace gltf
