#include "export/gltf/material/layer_procedural.h"

#include <algorithm>
#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/vectors.h"
#include "lib/toolkit/units.h"

namespace gltf {
namespace {

constexpr double beyond_planes = 1e-5; // keeps a surface that lies just in a plane of the pattern on one side of it

double tame(double x, double otherwise)
{
    return std::isfinite(x) ? std::clamp(x, -1e9, 1e9) : otherwise;
}

glm::dvec3 tame(const glm::dvec3& v, double otherwise)
{
    return {tame(v.x, otherwise), tame(v.y, otherwise), tame(v.z, otherwise)};
}

uint32_t mixed(uint32_t x) // every bit of x acts on every bit of the result
{
    x ^= x >> 16;
    x *= 0x7feb352du;
    x ^= x >> 15;
    x *= 0x846ca68bu;
    return x ^ x >> 16;
}

double lattice(int64_t x, int64_t y, int64_t z)
{
    uint32_t hash = mixed(static_cast<uint32_t>(x));
    hash = mixed(hash + static_cast<uint32_t>(y));
    hash = mixed(hash + static_cast<uint32_t>(z));
    return hash * (1.0 / 4294967295.0);
}

// Value noise, 0 to 1: random values at whole coordinates, a smooth curve between.
double noise(const glm::dvec3& p)
{
    int64_t whole[3];
    double part[3];
    for (int i = 0; i < 3; i++) {
        const double floor = std::floor(p[i]);
        whole[i] = static_cast<int64_t>(floor);
        const double t = p[i] - floor;
        part[i] = t * t * (3 - 2 * t);
    }
    double sum = 0;
    for (int corner = 0; corner < 8; corner++) {
        double weight = 1;
        int64_t at[3];
        for (int i = 0; i < 3; i++) {
            const bool upper = (corner >> i & 1) != 0;
            weight *= upper ? part[i] : 1 - part[i];
            at[i] = whole[i] + (upper ? 1 : 0);
        }
        sum += weight * lattice(at[0], at[1], at[2]);
    }
    return sum;
}

double turbulence(glm::dvec3 p, double gain)
{
    double sum = 0, weight = 1, weights = 0;
    for (int octave = 0; octave < 5; octave++) {
        sum += weight * noise(p);
        weights += weight;
        weight *= gain;
        p = p * 2.0 + 17.25; // off the lattice of the octave before
    }
    return sum / weights;
}

} // namespace

std::optional<Procedural> make_procedural(const tv::Texture& texture, const tv::Layer& layer)
{
    Procedural made;
    if (texture.procedural == "checker")
        made.kind = Procedural::Kind::checker;
    else if (texture.procedural == "grid")
        made.kind = Procedural::Kind::grid;
    else if (texture.procedural == "rawturbulence")
        made.kind = Procedural::Kind::turbulence;
    else
        return std::nullopt;
    made.color1 = tame(vector_of(texture.color1), 0);
    made.color2 = tame(vector_of(texture.color2), 0);
    if (layer.placed) {
        made.scale = tame(vector_of(layer.scale), 1);
        for (int i = 0; i < 3; i++)
            if (!(std::abs(made.scale[i]) > 1e-9)) made.scale[i] = 1;
        made.translate = tame(vector_of(layer.translate), 0);
    }
    made.param1 = tame(texture.param1, 1);
    made.param2 = tame(texture.param2, 1);
    return made;
}

glm::dvec3 procedural_color(const Procedural& procedural, const glm::dvec3& point, const glm::bvec3& across)
{
    const glm::dvec3 p = tame((point - procedural.translate) / procedural.scale + beyond_planes, 0);
    switch (procedural.kind) {
    case Procedural::Kind::checker: {
        const double sum = std::floor(p[0]) + std::floor(p[1]) + std::floor(p[2]);
        return std::fmod(sum, 2) == 0 ? procedural.color1 : procedural.color2;
    }
    case Procedural::Kind::grid:
        for (int i = 0; i < 3; i++)
            if (across[i] && std::abs(p[i] - std::round(p[i])) < procedural.param1) return procedural.color2;
        return procedural.color1;
    case Procedural::Kind::turbulence: break;
    }
    const double value = turbulence(p, std::clamp(procedural.param2, 0.0, 1.0));
    const double strength = std::clamp(0.5 + (value - 0.5) * 2 * procedural.param1, 0.0, 1.0);
    return procedural.color2 + (procedural.color1 - procedural.color2) * strength;
}

FrameSurface::FrameSurface(const tv::TextureProjection& frame)
    : model_(frame.model), origin_(vector_of(frame.origin)), u_(vector_of(frame.upoint) - origin_),
      v_(vector_of(frame.vpoint) - origin_), w_(vector_of(frame.wpoint) - origin_)
{
    if (model_ != tv::ProjectionModel::cylindrical && model_ != tv::ProjectionModel::spherical) return;
    // w becomes the direction a quarter turn from u, as long as u: to the right of it, seen from outside.
    const double size = glm::length(v_);
    w_ = glm::cross(v_, u_) * (size > 0 ? 1 / size : 0);
}

glm::dvec3 FrameSurface::point(double u, double v) const
{
    double along_u = u, along_v = v, along_w = 0;
    switch (model_) {
    case tv::ProjectionModel::orthographic: break;
    case tv::ProjectionModel::box: along_w = 1; break;
    case tv::ProjectionModel::cylindrical:
        along_u = std::cos(2 * tv::pi * u);
        along_w = std::sin(2 * tv::pi * u);
        break;
    case tv::ProjectionModel::spherical: {
        const double latitude = (v - 0.5) * tv::pi;
        along_u = std::cos(latitude) * std::cos(2 * tv::pi * u);
        along_w = std::cos(latitude) * std::sin(2 * tv::pi * u);
        along_v = std::sin(latitude);
        break;
    }
    }
    return origin_ + along_u * u_ + along_v * v_ + along_w * w_;
}

} // namespace gltf
