#include "export/picture/animation/time_line.h"

#include <algorithm>
#include <cmath>

#include "export/picture/base/accessors.h"

namespace picture {

namespace {

void read(const gltf::Json& object, const char* name, double& value)
{
    const auto found = object.find(name);
    if (found == object.end() || !found->is_number()) return;
    const auto number = found->get<double>();
    if (std::isfinite(number)) value = number;
}

} // namespace

TimeLine time_line(const gltf::Tables& tables)
{
    TimeLine line;
    const auto found = tables.scene_extras.find("timeLine");
    if (found != tables.scene_extras.end() && found->is_object()) {
        read(*found, "startFrame", line.first_frame);
        read(*found, "endFrame", line.last_frame);
        read(*found, "frameRate", line.rate);
        read(*found, "frameZero", line.frame_zero);
        if (!(line.rate > 0)) line.rate = 30;
        line.last_frame = std::max(line.first_frame, line.last_frame);
        return line;
    }
    for (const gltf::AnimationSampler& sampler : tables.animation.samplers) {
        const auto times = floats_of(tables.buffer, sampler.input);
        if (!times.empty() && std::isfinite(times.back()))
            line.last_frame = std::max(line.last_frame, static_cast<double>(times.back()) * line.rate);
    }
    return line;
}

} // namespace picture
