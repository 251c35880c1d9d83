// The box round everything that shows.
#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <span>

#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/call_trace.h"
#include "lib/toolkit/scene/placement.h"

namespace tv {

namespace {

using Triple = std::array<double, 3>;

struct Box {
    Triple upper{-DBL_MAX, -DBL_MAX, -DBL_MAX}, lower{DBL_MAX, DBL_MAX, DBL_MAX};
    bool empty() const { return upper[0] < lower[0]; }
    void add(const Triple& point)
    {
        for (std::size_t i = 0; i < 3; ++i) {
            upper[i] = std::max(upper[i], point[i]);
            lower[i] = std::min(lower[i], point[i]);
        }
    }
    void add(const Box& other)
    {
        if (other.empty()) return;
        add(other.upper);
        add(other.lower);
    }
};

bool finite(const Triple& point)
{
    return std::isfinite(point[0] + point[1] + point[2]);
}

// One coordinate of a transformed point. Written once, so that a bound and what it bounds are computed, and rounded,
// alike.
double coordinate(const Triple& p, const Matrix64& m, std::size_t axis)
{
    return p[0] * m[axis] + p[1] * m[4 + axis] + p[2] * m[8 + axis] + m[12 + axis];
}

Triple widened(const Vec3& p)
{
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
}

// Boxes round runs of a primitive's points, and round runs of these boxes. A primitive that is measured a second time,
// in another place or after a change of the scene, is measured by following just the boxes that can widen the result.
// That loses nothing: rounding is monotone, so no point of a box comes out beyond the corner that bounds it.
// A primitive's points never change, so its boxes stay good as long as the scene.
class PointBoxes {
public:
    // Widens `box` by the points, always the same ones, under `m`. What isn't finite is left out.
    void measure(const std::vector<float>& points, const Matrix64& m, Box& box)
    {
        const std::size_t count = points.size() / 3;
        const bool tame = std::all_of(m.begin(), m.end(), [](double v) { return std::abs(v) < 1e200; });
        if (!used_ || !tame || count <= run) {
            used_ = true;
            for (std::size_t i = 0; i < count; ++i) {
                const Triple in = point(points, i);
                const Triple out = {coordinate(in, m, 0), coordinate(in, m, 1), coordinate(in, m, 2)};
                if (finite(in) && finite(out)) box.add(out);
            }
            return;
        }
        if (levels_.empty()) build(points);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            widen<true>(points, m, axis, box.upper[axis]);
            widen<false>(points, m, axis, box.lower[axis]);
        }
    }

private:
    static constexpr std::size_t run = 16;   // points in a box
    static constexpr std::size_t fan = 8;    // boxes in a box
    static constexpr std::size_t most = 128; // open boxes: fan for each of the levels that 2^32 points have

    static Triple point(const std::vector<float>& points, std::size_t i)
    {
        return widened({points[3 * i], points[3 * i + 1], points[3 * i + 2]});
    }

    void build(const std::vector<float>& points)
    {
        const std::size_t count = points.size() / 3;
        std::vector<Box> boxes;
        for (std::size_t i = 0; i < count; i += run) {
            Box& box = boxes.emplace_back();
            for (std::size_t k = i; k < std::min(i + run, count); ++k)
                if (const Triple p = point(points, k); finite(p)) box.add(p);
        }
        std::vector<std::vector<Box>> levels;
        levels.push_back(std::move(boxes));
        while (levels.back().size() > 1) {
            const std::vector<Box>& below = levels.back();
            boxes = {};
            for (std::size_t i = 0; i < below.size(); i += fan) {
                Box& box = boxes.emplace_back();
                for (std::size_t k = i; k < std::min(i + fan, below.size()); ++k) box.add(below[k]);
            }
            levels.push_back(std::move(boxes));
        }
        levels_ = std::move(levels); // all of them, or none where memory ran out
    }

    // The extreme of one coordinate: the largest, or the smallest.
    template <bool Largest>
    void widen(const std::vector<float>& points, const Matrix64& m, std::size_t axis, double& best) const
    {
        const auto beats = [&](double value) { return Largest ? value > best : value < best; };
        const auto corner = [&](const Box& box, std::size_t i) {
            return (m[4 * i + axis] > 0) == Largest ? box.upper[i] : box.lower[i];
        };
        struct Open {
            std::size_t level, index;
        };
        std::array<Open, most> open;
        std::size_t count = 0;
        open[count++] = {levels_.size() - 1, 0};
        while (count) {
            const Open at = open[--count];
            const Box& box = levels_[at.level][at.index];
            if (box.empty() || !beats(coordinate({corner(box, 0), corner(box, 1), corner(box, 2)}, m, axis))) continue;
            if (at.level > 0) {
                const std::size_t first = at.index * fan, end = std::min(first + fan, levels_[at.level - 1].size());
                for (std::size_t k = first; k < end; ++k) open[count++] = {at.level - 1, k};
                continue;
            }
            const std::size_t first = at.index * run, end = std::min(first + run, points.size() / 3);
            for (std::size_t k = first; k < end; ++k) {
                const Triple p = point(points, k);
                const double value = coordinate(p, m, axis);
                if (beats(value) && finite(p)) best = value;
            }
        }
    }

    std::vector<std::vector<Box>> levels_; // from the finest to the one box round all; made for the second time
    bool used_ = false;
};

// Kept until something that it depends on changes, and the boxes of points as long as the scene.
struct Kept {
    bool good = false;
    uint64_t revision = 0, generation = 0; // of the scene that was measured
    Box box;
    std::vector<std::vector<PointBoxes>> objects; // a row an object, an entry a primitive
};
Kept kept;

Box measure_scene()
{
    constexpr std::size_t most_places = std::size_t{1} << 22;
    const Scene& in = scene();
    kept.objects.resize(in.objects.size());
    Box box;
    const bool all = walk_places(in, static_cast<double>(in.time_line.current), most_places, [&](const Placement& at) {
        const Id object = in.instances[at.instance].object;
        if (object == no_id) return;
        const std::vector<Primitive>& primitives = in.objects[object].primitives;
        kept.objects[object].resize(primitives.size());
        for (std::size_t i = 0; i < primitives.size(); ++i)
            kept.objects[object][i].measure(primitives[i].positions, at.world, box);
    });
    if (!all) report(3, "ERR_SCENE_TOO_LARGE", "Tv_Compute_Worldspace_Extents", {std::to_string(most_places)});
    return box;
}

float rounded(double value)
{
    return static_cast<float>(std::clamp(value, static_cast<double>(-FLT_MAX), static_cast<double>(FLT_MAX)));
}

} // namespace

} // namespace tv

extern "C" void Tv_Compute_Worldspace_Extents(float* upper, float* lower, int32_t flag)
{
    using namespace tv;
    guarded("Tv_Compute_Worldspace_Extents", [&] {
        if (kept.good && kept.revision == scene().revision) return;
        if (kept.generation != store().generation) kept = {};
        kept.generation = store().generation;
        kept.good = false;
        kept.box = measure_scene();
        kept.revision = scene().revision;
        kept.good = true;
    });
    for (std::size_t i = 0; i < 3; ++i) {
        upper[i] = rounded(kept.box.upper[i]);
        lower[i] = rounded(kept.box.lower[i]);
    }
    if (!trace_enabled()) return;
    trace_begin("Tv_Compute_Worldspace_Extents");
    trace_floats(upper, 3);
    trace_floats(lower, 3);
    trace_integer(flag);
    trace_end();
}
