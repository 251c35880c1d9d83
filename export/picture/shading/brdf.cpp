#include "export/picture/shading/brdf.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace picture {

namespace {

constexpr float pi = 3.14159265f;
constexpr float smoothest = 0.002f; // alpha: a perfect mirror shows no lamp that has no size

float fifth_power(float x)
{
    const float square = x * x;
    return square * square * x;
}

struct Fresnel {
    glm::vec3 plain, metal;
};

Fresnel fresnel(const SurfacePoint& point, float cosine)
{
    const float grazing = fifth_power(1 - std::clamp(cosine, 0.0f, 1.0f));
    return {point.reflectance + (point.strength - point.reflectance) * grazing,
            point.base + (1.0f - point.base) * grazing};
}

float largest(const glm::vec3& v)
{
    return std::max({v.x, v.y, v.z});
}

} // namespace

glm::vec3 sent_back(const SurfacePoint& point, const glm::vec3& to_light, const glm::vec3& to_eye)
{
    const float n_l = glm::dot(point.normal, to_light);
    if (!(n_l > 0)) return glm::vec3(0);
    const float n_v = std::max(glm::dot(point.normal, to_eye), 1e-4f);
    const glm::vec3 half = glm::normalize(to_light + to_eye);
    const float n_h = std::clamp(glm::dot(point.normal, half), 0.0f, 1.0f);
    const Fresnel f = fresnel(point, glm::dot(to_eye, half));

    const float alpha = std::max(point.roughness * point.roughness, smoothest), a2 = alpha * alpha;
    const float spread = n_h * n_h * (a2 - 1) + 1;
    const float d = a2 / (pi * spread * spread);
    const float v = 0.5f / (n_l * std::sqrt(n_v * n_v * (1 - a2) + a2) + n_v * std::sqrt(n_l * n_l * (1 - a2) + a2));

    const float m = point.metallic;
    const glm::vec3 diffuse = point.base * ((1 - m) * (1 - largest(f.plain)) / pi);
    return (diffuse + (f.plain * (1 - m) + f.metal * m) * (d * v)) * n_l;
}

glm::vec3 mirrored(const SurfacePoint& point, float cosine)
{
    const Fresnel f = fresnel(point, cosine);
    return glm::mix(f.plain, f.metal, point.metallic);
}

glm::vec3 scattered(const SurfacePoint& point)
{
    return point.base * (1 - point.metallic);
}

} // namespace picture
