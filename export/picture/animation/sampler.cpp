#include "export/picture/animation/sampler.h"

#include <algorithm>
#include <cmath>

#include "export/picture/base/accessors.h"

namespace picture {

namespace {

void normalise(std::span<double> q)
{
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 0)) return;
    for (double& part : q) part /= length;
}

// From a to b by the shorter arc, as the format's own text has it for linear rotations.
void slerp(const float* a, const float* b, double share, std::span<double> out)
{
    double cosine = 0;
    for (std::size_t i = 0; i < 4; ++i) cosine += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    const double side = cosine < 0 ? -1 : 1;
    cosine = std::min(std::abs(cosine), 1.0);
    double from = 1 - share, to = share;
    constexpr double nearly_one = 1 - 1e-9; // there the sine says nothing, and the straight line is as good
    if (cosine < nearly_one) {
        const double angle = std::acos(cosine), sine = std::sin(angle);
        from = std::sin(from * angle) / sine;
        to = std::sin(to * angle) / sine;
    }
    for (std::size_t i = 0; i < 4; ++i)
        out[i] = from * static_cast<double>(a[i]) + side * to * static_cast<double>(b[i]);
    normalise(out);
}

} // namespace

Keys keys_of(const gltf::Tables& tables, const gltf::AnimationSampler& sampler)
{
    Keys keys;
    const auto& accessors = tables.buffer.accessors();
    if (sampler.input >= accessors.size() || sampler.output >= accessors.size()) return keys;
    keys.interpolation = sampler.cubic ? Interpolation::cubic : Interpolation::linear;
    keys.times = floats_of(tables.buffer, sampler.input);
    keys.values = floats_of(tables.buffer, sampler.output);
    keys.width = static_cast<std::size_t>(accessors[sampler.output].element) + 1;
    const std::size_t a_key = keys.width * (keys.interpolation == Interpolation::cubic ? 3 : 1);
    if (keys.values.size() != keys.times.size() * a_key) return {};
    return keys;
}

bool value_at(const Keys& keys, double time, bool rotation, std::span<double> out)
{
    if (keys.times.empty() || !(time == time) || (rotation && keys.width != 4)) return false;
    const bool cubic = keys.interpolation == Interpolation::cubic;
    const std::size_t a_key = keys.width * (cubic ? 3 : 1), middle = cubic ? keys.width : 0;
    const auto after =
        static_cast<std::size_t>(std::upper_bound(keys.times.begin(), keys.times.end(), time,
                                                  [](double t, float key) { return t < static_cast<double>(key); }) -
                                 keys.times.begin());
    const auto key = [&](std::size_t number) { return keys.values.data() + number * a_key; };
    const std::size_t from = after == 0 ? 0 : after - 1;
    const double start = keys.times[from];
    if (after == 0 || after == keys.times.size() || keys.interpolation == Interpolation::step || time == start) {
        for (std::size_t i = 0; i < keys.width; ++i) out[i] = key(from)[middle + i];
        if (rotation) normalise(out);
        return true;
    }
    const double length = keys.times[after] - start, share = (time - start) / length;
    if (rotation && !cubic) {
        slerp(key(from), key(after), share, out);
        return true;
    }
    if (!cubic) {
        for (std::size_t i = 0; i < keys.width; ++i) out[i] = key(from)[i] * (1 - share) + key(after)[i] * share;
        return true;
    }
    // Hermite's four weights; slopes are per second.
    const double s2 = share * share, s3 = s2 * share;
    for (std::size_t i = 0; i < keys.width; ++i)
        out[i] = (2 * s3 - 3 * s2 + 1) * key(from)[middle + i] +
                 length * (s3 - 2 * s2 + share) * key(from)[2 * keys.width + i] +
                 (3 * s2 - 2 * s3) * key(after)[middle + i] + length * (s3 - s2) * key(after)[i];
    if (rotation) normalise(out);
    return true;
}

} // namespace picture
