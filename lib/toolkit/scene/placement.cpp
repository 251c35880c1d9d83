#include "lib/toolkit/scene/placement.h"

#include <algorithm>
#include <cmath>

#include "lib/toolkit/animation/animation.h"

namespace tv {

namespace {

using Triple = std::array<double, 3>;

Triple evaluate_all(const std::array<Channel, 3>& axes, double time, double fallback)
{
    return {evaluate(axes[0], time, fallback), evaluate(axes[1], time, fallback), evaluate(axes[2], time, fallback)};
}

Matrix64 identity()
{
    Matrix64 m{};
    m[0] = m[5] = m[10] = m[15] = 1;
    return m;
}

// Rz * Rx * Ry: about Z first, then X, then Y.
Matrix64 euler_rotation(const Triple& angles)
{
    Matrix64 z = identity(), x = identity(), y = identity();
    z[0] = z[5] = std::cos(angles[2]);
    z[1] = std::sin(angles[2]);
    z[4] = -z[1];
    x[5] = x[10] = std::cos(angles[0]);
    x[6] = std::sin(angles[0]);
    x[9] = -x[6];
    y[0] = y[10] = std::cos(angles[1]);
    y[8] = std::sin(angles[1]);
    y[2] = -y[8];
    return multiply(multiply(z, x), y);
}

} // namespace

bool is_animated(const Instance& instance)
{
    if (!instance.channels) return false;
    const auto any = [](const std::array<Channel, 3>& axes) {
        return std::any_of(axes.begin(), axes.end(), [](const Channel& axis) { return !axis.keys.empty(); });
    };
    return any(instance.channels->position) || any(instance.channels->scale) || any(instance.channels->rotation);
}

std::array<double, 16> local_matrix(const Instance& instance, double time)
{
    Matrix64 m;
    if (!is_animated(instance)) {
        std::copy(instance.matrix.begin(), instance.matrix.end(), m.begin());
        return m;
    }
    const InstanceChannels& channels = *instance.channels;
    const Triple position = evaluate_all(channels.position, time, 0), scale = evaluate_all(channels.scale, time, 1);
    m = euler_rotation(evaluate_all(channels.rotation, time, 0));
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column) m[4 * row + column] *= scale[row];
    for (std::size_t column = 0; column < 3; ++column) {
        m[12 + column] = position[column];
        if (!instance.axes.origin_enabled) continue;
        for (std::size_t row = 0; row < 3; ++row)
            m[12 + column] -= static_cast<double>(instance.axes.axes_matrix[3][row]) * m[4 * row + column];
    }
    return m;
}

bool place_all(const Scene& scene, double time, std::size_t limit, std::vector<Placement>& out)
{
    out.clear();
    return walk_places(scene, time, limit, [&](const Placement& at) { out.push_back(at); });
}

} // namespace tv
