#include "export/picture/shading/tracer.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "export/picture/shading/brdf.h"

namespace picture {

namespace {

constexpr unsigned deepest_mirror = 6, most_layers = 64;
constexpr float invisible = 1.0f / 512; // a share of light below this changes no byte
// Varnish, which reflects 4 hundredths, shows highlights but mirrors nothing: so did the old surfaces without the
// coefficient that the exporter turns into more.
constexpr float least_mirror = 0.045f;

float largest(const glm::vec3& v)
{
    return std::max({v.x, v.y, v.z});
}

} // namespace

glm::vec4 Tracer::seen(Ray ray, Hit hit, unsigned depth, float weight) const
{
    glm::vec3 sum(0);
    float open = 1;
    for (unsigned layer = 0; hit && layer < most_layers; ++layer) {
        const SurfacePoint point = surface_point(stage_, ray, hit);
        const float share = open * point.alpha;
        if (weight * share > invisible) sum += share * shade(point, ray, depth, weight * share);
        open -= share;
        if (!(weight * open > invisible)) return {sum, 1};
        ray.origin = point.position - point.face * point.leave;
        ray.width = point.width;
        hit = stage_.closest(ray);
    }
    return {sum, 1 - open};
}

glm::vec3 Tracer::lit_by(const LightSource& light, const SurfacePoint& point, const glm::vec3& to_eye,
                         bool shadow) const
{
    const Incidence in = incidence(light, point.position);
    if (!(largest(in.lux) > 0)) return glm::vec3(0);
    const glm::vec3 sent = in.lux * sent_back(point, in.toward, to_eye);
    if (!shadow || !(largest(sent) > 0)) return sent;
    // Through a surface that bumps or smooth normals turn to the light, though its triangle turns away: the side on
    // which the ray starts is the light's.
    const glm::vec3 start = point.lifted + point.face * point.leave;
    const float distance = std::isfinite(in.distance) ? std::max(in.distance - 2 * point.leave, 0.0f) : in.distance;
    return sent * stage_.passing(start, in.toward, distance);
}

glm::vec3 Tracer::shade(const SurfacePoint& point, const Ray& ray, unsigned depth, float weight) const
{
    if (point.unlit) return point.base;
    const glm::vec3 to_eye = -ray.direction;
    const glm::vec3 around = glm::mix(lighting_.below, lighting_.above, 0.5f + 0.5f * point.normal.y);
    glm::vec3 sum = point.emission + scattered(point) * around;
    if (lighting_.own_lights)
        for (const LightSource& light : stage_.lights()) sum += lit_by(light, point, to_eye, true);
    for (const LightSource& lamp : lighting_.lamps) sum += lit_by(lamp, point, to_eye, false);
    return sum + in_mirror(point, ray, depth, weight);
}

glm::vec3 Tracer::in_mirror(const SurfacePoint& point, const Ray& ray, unsigned depth, float weight) const
{
    if (depth == deepest_mirror) return glm::vec3(0);
    const glm::vec3 head_on = glm::mix(point.reflectance, point.base, point.metallic);
    if (!(largest(head_on) > least_mirror)) return glm::vec3(0);
    const float cosine = -glm::dot(point.normal, ray.direction);
    const glm::vec3 share = mirrored(point, cosine);
    if (!(weight * largest(share) > invisible)) return glm::vec3(0);

    Ray next;
    next.direction = ray.direction + point.normal * (2 * cosine);
    // A bumpy surface may send it into the triangle; it then goes along it.
    constexpr float flattest = 1e-3f;
    const float up = glm::dot(next.direction, point.face);
    if (up < flattest) next.direction += point.face * (flattest - up);
    next.direction = glm::normalize(next.direction);
    next.origin = point.position + point.face * point.leave;
    next.width = point.width;
    next.spread = ray.spread;
    const glm::vec4 met = seen(next, stage_.closest(next), depth + 1, weight * largest(share));
    glm::vec3 light(met);
    if (met.w < 1) light += (1 - met.w) * lighting_.surroundings.seen_along(next.direction, stage_.model().textures);
    return share * light;
}

} // namespace picture
