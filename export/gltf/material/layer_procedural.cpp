#include "export/gltf/material/layer_procedural.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gltf {
namespace {

using Vector = std::array<double, 3>;

constexpr double beyond_planes = 1e-5; // keeps a surface that lies just in a plane of the pattern on one side of it

double tame(double x, double otherwise)
{
    return std::isfinite(x) ? std::clamp(x, -1e9, 1e9) : otherwise;
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
double noise(const Vector& p)
{
    int64_t whole[3];
    double part[3];
    for (std::size_t i = 0; i < 3; i++) {
        const double floor = std::floor(p[i]);
        whole[i] = static_cast<int64_t>(floor);
        const double t = p[i] - floor;
        part[i] = t * t * (3 - 2 * t);
    }
    double sum = 0;
    for (int corner = 0; corner < 8; corner++) {
        double weight = 1;
        int64_t at[3];
        for (std::size_t i = 0; i < 3; i++) {
            const bool upper = (corner >> i & 1) != 0;
            weight *= upper ? part[i] : 1 - part[i];
            at[i] = whole[i] + (upper ? 1 : 0);
        }
        sum += weight * lattice(at[0], at[1], at[2]);
    }
    return sum;
}

double turbulence(Vector p, double gain)
{
    double sum = 0, weight = 1, weights = 0;
    for (int octave = 0; octave < 5; octave++) {
        sum += weight * noise(p);
        weights += weight;
        weight *= gain;
        for (double& x : p) x = x * 2 + 17.25; // off the lattice of the octave before
    }
    return sum / weights;
}

Vector lerp(const Vector& a, const Vector& b, double t)
{
    return {a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t, a[2] + (b[2] - a[2]) * t};
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
    for (std::size_t i = 0; i < 3; i++) {
        made.color1[i] = tame(texture.color1[i], 0);
        made.color2[i] = tame(texture.color2[i], 0);
        if (!layer.placed) continue;
        const double size = tame(layer.scale[i], 1);
        made.scale[i] = std::abs(size) > 1e-9 ? size : 1;
        made.translate[i] = tame(layer.translate[i], 0);
    }
    made.param1 = tame(texture.param1, 1);
    made.param2 = tame(texture.param2, 1);
    return made;
}

std::array<double, 3> procedural_color(const Procedural& procedural, const std::array<double, 3>& point,
                                       const std::array<bool, 3>& across)
{
    Vector p;
    for (std::size_t i = 0; i < 3; i++)
        p[i] = tame((point[i] - procedural.translate[i]) / procedural.scale[i] + beyond_planes, 0);
    switch (procedural.kind) {
    case Procedural::Kind::checker: {
        const double sum = std::floor(p[0]) + std::floor(p[1]) + std::floor(p[2]);
        return std::fmod(sum, 2) == 0 ? procedural.color1 : procedural.color2;
    }
    case Procedural::Kind::grid:
        for (std::size_t i = 0; i < 3; i++)
            if (across[i] && std::abs(p[i] - std::round(p[i])) < procedural.param1) return procedural.color2;
        return procedural.color1;
    case Procedural::Kind::turbulence: break;
    }
    const double value = turbulence(p, std::clamp(procedural.param2, 0.0, 1.0));
    const double strength = std::clamp(0.5 + (value - 0.5) * 2 * procedural.param1, 0.0, 1.0);
    return lerp(procedural.color2, procedural.color1, strength);
}

FrameSurface::FrameSurface(const tv::TextureProjection& frame) : model_(frame.model)
{
    for (std::size_t i = 0; i < 3; i++) {
        origin_[i] = frame.origin[i];
        u_[i] = double{frame.upoint[i]} - origin_[i];
        v_[i] = double{frame.vpoint[i]} - origin_[i];
        w_[i] = double{frame.wpoint[i]} - origin_[i];
    }
    if (model_ != tv::ProjectionModel::cylindrical && model_ != tv::ProjectionModel::spherical) return;
    // w becomes the direction a quarter turn from u, as long as u: to the right of it, seen from outside.
    const double size = std::sqrt(v_[0] * v_[0] + v_[1] * v_[1] + v_[2] * v_[2]);
    const double by = size > 0 ? 1 / size : 0;
    w_ = {(v_[1] * u_[2] - v_[2] * u_[1]) * by, (v_[2] * u_[0] - v_[0] * u_[2]) * by,
          (v_[0] * u_[1] - v_[1] * u_[0]) * by};
}

std::array<double, 3> FrameSurface::point(double u, double v) const
{
    double along_u = u, along_v = v, along_w = 0;
    switch (model_) {
    case tv::ProjectionModel::orthographic: break;
    case tv::ProjectionModel::box: along_w = 1; break;
    case tv::ProjectionModel::cylindrical:
        along_u = std::cos(2 * std::numbers::pi * u);
        along_w = std::sin(2 * std::numbers::pi * u);
        break;
    case tv::ProjectionModel::spherical: {
        const double latitude = (v - 0.5) * std::numbers::pi;
        along_u = std::cos(latitude) * std::cos(2 * std::numbers::pi * u);
        along_w = std::cos(latitude) * std::sin(2 * std::numbers::pi * u);
        along_v = std::sin(latitude);
        break;
    }
    }
    Vector p;
    for (std::size_t i = 0; i < 3; i++) p[i] = origin_[i] + along_u * u_[i] + along_v * v_[i] + along_w * w_[i];
    return p;
}

} // namespace gltf
