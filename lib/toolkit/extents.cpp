// The box round everything that shows.
#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <span>

#include "lib/toolkit/placement.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/trace_items.h"

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

// An object's points, with boxes round runs of them, and round runs of these boxes. An object that stands in many
// places is measured in each by following just the boxes that can widen the result. That loses nothing: rounding is
// monotone, so no point of a box comes out beyond the corner that bounds it.
class PointBoxes {
public:
    explicit PointBoxes(const Object& object)
    {
        for (const Primitive& primitive : object.primitives) {
            const std::vector<float>& p = primitive.positions;
            for (std::size_t i = 0; i + 2 < p.size(); i += 3)
                if (const Vec3 point{p[i], p[i + 1], p[i + 2]}; finite(widened(point))) points_.push_back(point);
        }
    }

    // Widens `box` by the points under `m`.
    void measure(const Matrix64& m, Box& box)
    {
        const bool tame = std::all_of(m.begin(), m.end(), [](double v) { return std::abs(v) < 1e200; });
        if (!used_ || !tame || points_.size() <= run) {
            used_ = true;
            for (const Vec3& point : points_) {
                const Triple out = transform(point, m);
                if (finite(out)) box.add(out);
            }
            return;
        }
        if (levels_.empty()) build();
        for (std::size_t axis = 0; axis < 3; ++axis) {
            widen<true>(m, axis, box.upper[axis]);
            widen<false>(m, axis, box.lower[axis]);
        }
    }

private:
    static constexpr std::size_t run = 16;   // points in a box
    static constexpr std::size_t fan = 8;    // boxes in a box
    static constexpr std::size_t most = 128; // open boxes: fan for each of the levels that 2^32 points have

    static Triple transform(const Vec3& p, const Matrix64& m)
    {
        const Triple at = widened(p);
        return {coordinate(at, m, 0), coordinate(at, m, 1), coordinate(at, m, 2)};
    }

    void build()
    {
        std::vector<Box> boxes;
        for (std::size_t i = 0; i < points_.size(); i += run) {
            Box& box = boxes.emplace_back();
            for (std::size_t k = i; k < std::min(i + run, points_.size()); ++k) box.add(widened(points_[k]));
        }
        levels_.push_back(std::move(boxes));
        while (levels_.back().size() > 1) {
            const std::vector<Box>& below = levels_.back();
            boxes = {};
            for (std::size_t i = 0; i < below.size(); i += fan) {
                Box& box = boxes.emplace_back();
                for (std::size_t k = i; k < std::min(i + fan, below.size()); ++k) box.add(below[k]);
            }
            levels_.push_back(std::move(boxes));
        }
    }

    // The extreme of one coordinate: the largest, or the smallest.
    template <bool Largest>
    void widen(const Matrix64& m, std::size_t axis, double& best) const
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
            if (!beats(coordinate({corner(box, 0), corner(box, 1), corner(box, 2)}, m, axis))) continue;
            if (at.level > 0) {
                const std::size_t first = at.index * fan, end = std::min(first + fan, levels_[at.level - 1].size());
                for (std::size_t k = first; k < end; ++k) open[count++] = {at.level - 1, k};
                continue;
            }
            const std::size_t first = at.index * run, end = std::min(first + run, points_.size());
            for (std::size_t k = first; k < end; ++k) {
                const double value = coordinate(widened(points_[k]), m, axis);
                if (beats(value)) best = value;
            }
        }
    }

    std::vector<Vec3> points_;             // the finite ones
    std::vector<std::vector<Box>> levels_; // from the finest to the one box round all; made for the second place
    bool used_ = false;
};

Box measure_scene()
{
    constexpr std::size_t most_places = std::size_t{1} << 22;
    const Scene& in = scene();
    std::vector<std::unique_ptr<PointBoxes>> objects(in.objects.size());
    Box box;
    const bool all = walk_places(static_cast<double>(in.time_line.current), most_places, [&](const Placement& at) {
        const Id object = in.instances[at.instance].object;
        if (object == no_id || in.objects[object].primitives.empty()) return;
        if (!objects[object]) objects[object] = std::make_unique<PointBoxes>(in.objects[object]);
        objects[object]->measure(at.world, box);
    });
    if (!all) report(3, "ERR_SCENE_TOO_LARGE", "Tv_Compute_Worldspace_Extents", {std::to_string(most_places)});
    return box;
}

// Kept until something that it depends on changes.
struct Kept {
    bool good = false;
    uint64_t revision = 0;
    Box box;
};
Kept kept;

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
        if (!kept.good || kept.revision != scene().revision) kept = {true, scene().revision, measure_scene()};
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
