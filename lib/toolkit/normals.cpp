#include "lib/toolkit/normals.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <numbers>
#include <numeric>
#include <vector>

namespace tv {

namespace {

using Triple = std::array<double, 3>;

Triple operator-(const Triple& a, const Triple& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
double dot(const Triple& a, const Triple& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Triple cross(const Triple& a, const Triple& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double length(const Triple& a)
{
    return std::sqrt(dot(a, a));
}

// Exact for near-parallel directions too, where the arc cosine isn't.
double angle_between(const Triple& a, const Triple& b)
{
    return std::atan2(length(cross(a, b)), dot(a, b));
}

Triple point(const PolygonView& polygons, int32_t number)
{
    const float* const p = polygons.positions.data() + 3 * (static_cast<std::size_t>(number) - 1);
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
}

// A corner in the fan round its point.
struct Corner {
    std::size_t index = 0;             // in PolygonView::corners
    std::size_t polygon = 0;           // number of its polygon
    std::array<int32_t, 2> neighbours; // point numbers before and behind it
    std::size_t group = 0;             // another corner of the same group, in the fan: a union-find parent
};

// Where one corner meets the edge to a neighbour.
struct EdgeEnd {
    int32_t neighbour = 0;
    std::size_t corner = 0; // in the fan
    double turn = 0;        // of the polygon's normal about the edge, radians
};

class Smoother {
public:
    Smoother(const PolygonView& polygons, double crease, std::span<float> out)
        : polygons_(polygons), crease_(crease), out_(out)
    {
    }

    std::size_t run()
    {
        find_polygons();
        for (std::size_t p = 0; p + 1 < starts_.size(); ++p)
            if (starts_[p] != starts_[p + 1]) smooth_point(static_cast<int32_t>(p + 1));
        return flat_;
    }

private:
    // Unit normals of the polygons (0 without area), and the corners of every point.
    void find_polygons()
    {
        const std::size_t count = polygons_.sizes.size();
        normals_.resize(count);
        first_.resize(count);
        owner_.resize(polygons_.corners.size());
        starts_.assign(polygons_.positions.size() / 3 + 1, 0);
        std::size_t first = 0;
        for (std::size_t p = 0; p < count; ++p) {
            const std::size_t size = static_cast<std::size_t>(polygons_.sizes[p]);
            Triple normal;
            polygon_normal(polygons_, first, size, normal.data());
            const double area = length(normal);
            const bool flat = !(area > smallest_area(first, size)) || !std::isfinite(area);
            for (double& n : normal) n = flat ? 0 : n / area;
            normals_[p] = normal;
            first_[p] = first;
            for (std::size_t c = first; c < first + size; ++c) {
                owner_[c] = p;
                ++starts_[static_cast<std::size_t>(polygons_.corners[c])];
            }
            first += size;
        }
        assert(first == polygons_.corners.size() && out_.size() == 3 * first);
        std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
        by_point_.resize(first);
        std::vector<std::size_t> next(starts_.begin(), starts_.end());
        for (std::size_t c = 0; c < first; ++c)
            by_point_[next[static_cast<std::size_t>(polygons_.corners[c]) - 1]++] = c;
    }

    // Below it, an area is what rounding left of a polygon whose corners lie on a line.
    double smallest_area(std::size_t first, std::size_t size) const
    {
        double longest = 0;
        const Triple from = point(polygons_, polygons_.corners[first]);
        for (std::size_t c = first + 1; c < first + size; ++c) {
            const Triple way = point(polygons_, polygons_.corners[c]) - from;
            longest = std::max(longest, dot(way, way));
        }
        return 1e-12 * longest;
    }

    void smooth_point(int32_t number)
    {
        fan_.clear();
        const auto slot = static_cast<std::size_t>(number);
        for (std::size_t i = starts_[slot - 1]; i < starts_[slot]; ++i) {
            const std::size_t corner = by_point_[i], polygon = owner_[corner];
            if (normals_[polygon] == Triple{}) {
                write(corner, {0, 0, 1});
                ++flat_;
                continue;
            }
            const std::size_t first = first_[polygon], size = static_cast<std::size_t>(polygons_.sizes[polygon]);
            const std::size_t at = corner - first;
            fan_.push_back(
                {corner,
                 polygon,
                 {polygons_.corners[first + (at + size - 1) % size], polygons_.corners[first + (at + 1) % size]},
                 fan_.size()});
        }
        join_across_edges(number);
        sums_.assign(fan_.size(), Triple{});
        for (std::size_t i = 0; i < fan_.size(); ++i) {
            const Triple here = point(polygons_, number);
            const double weight = angle_between(point(polygons_, fan_[i].neighbours[0]) - here,
                                                point(polygons_, fan_[i].neighbours[1]) - here);
            Triple& sum = sums_[group_of(i)];
            for (std::size_t k = 0; k < 3; ++k) sum[k] += weight * normals_[fan_[i].polygon][k];
        }
        for (std::size_t i = 0; i < fan_.size(); ++i) {
            const Triple& sum = sums_[group_of(i)];
            const double size = length(sum);
            // Opposite sides may leave nothing: the polygon's own normal is right then.
            write(fan_[i].index,
                  size > 1e-9 ? Triple{sum[0] / size, sum[1] / size, sum[2] / size} : normals_[fan_[i].polygon]);
        }
    }

    // Joins corners whose polygons share an edge at the point and meet there at the crease angle or less. Where many
    // polygons share one edge they are taken in the order in which they stand round it, so that nearest are compared.
    void join_across_edges(int32_t number)
    {
        ends_.clear();
        for (std::size_t i = 0; i < fan_.size(); ++i)
            for (const int32_t neighbour : fan_[i].neighbours)
                if (neighbour != number) ends_.push_back({neighbour, i, 0});
        std::sort(ends_.begin(), ends_.end(), [](const EdgeEnd& a, const EdgeEnd& b) {
            return a.neighbour != b.neighbour ? a.neighbour < b.neighbour : a.corner < b.corner;
        });
        for (std::size_t i = 0; i < ends_.size();) {
            std::size_t end = i + 1;
            while (end < ends_.size() && ends_[end].neighbour == ends_[i].neighbour) ++end;
            join_edge(number, std::span(ends_).subspan(i, end - i));
            i = end;
        }
    }

    void join_edge(int32_t number, std::span<EdgeEnd> ends)
    {
        if (ends.size() < 2) return;
        if (ends.size() > 2) {
            const Triple edge = point(polygons_, ends[0].neighbour) - point(polygons_, number);
            const Triple& zero = normal_at(ends[0]);
            const Triple side = cross(edge, zero);
            const double edge_length = length(edge);
            for (EdgeEnd& end : ends)
                end.turn = std::atan2(dot(normal_at(end), side), dot(normal_at(end), zero) * edge_length);
            std::sort(ends.begin(), ends.end(), [](const EdgeEnd& a, const EdgeEnd& b) {
                return a.turn != b.turn ? a.turn < b.turn : a.corner < b.corner;
            });
            join_if_smooth(ends.back(), ends.front());
        }
        for (std::size_t i = 1; i < ends.size(); ++i) join_if_smooth(ends[i - 1], ends[i]);
    }

    void join_if_smooth(const EdgeEnd& a, const EdgeEnd& b)
    {
        // A hair more than the angle: an angle of just the crease counts, whatever rounding made of it.
        if (angle_between(normal_at(a), normal_at(b)) <= crease_ + 1e-6)
            fan_[group_of(a.corner)].group = group_of(b.corner);
    }

    const Triple& normal_at(const EdgeEnd& end) const { return normals_[fan_[end.corner].polygon]; }

    std::size_t group_of(std::size_t corner)
    {
        while (fan_[corner].group != corner) {
            fan_[corner].group = fan_[fan_[corner].group].group;
            corner = fan_[corner].group;
        }
        return corner;
    }

    void write(std::size_t corner, const Triple& normal)
    {
        for (std::size_t k = 0; k < 3; ++k) out_[3 * corner + k] = static_cast<float>(normal[k]);
    }

    const PolygonView& polygons_;
    double crease_;
    std::span<float> out_;
    std::size_t flat_ = 0;
    std::vector<Triple> normals_;     // a polygon
    std::vector<std::size_t> first_;  // a polygon: its first corner
    std::vector<std::size_t> owner_;  // a corner: its polygon
    std::vector<std::size_t> starts_; // point p + 1 has by_point_[starts_[p]] to by_point_[starts_[p + 1] - 1]
    std::vector<std::size_t> by_point_;
    std::vector<Corner> fan_; // round the point at hand
    std::vector<EdgeEnd> ends_;
    std::vector<Triple> sums_;
};

} // namespace

void polygon_normal(const PolygonView& polygons, std::size_t first, std::size_t size, double out[3])
{
    Triple sum{};
    const Triple origin = size ? point(polygons, polygons.corners[first]) : Triple{};
    for (std::size_t i = 0; i < size; ++i) {
        // Measured from a corner, so that a small polygon far from the origin keeps its digits.
        const Triple a = point(polygons, polygons.corners[first + i]) - origin;
        const Triple b = point(polygons, polygons.corners[first + (i + 1) % size]) - origin;
        // Clockwise corners: the sum over the edges points away from the viewer.
        sum[0] -= (a[1] - b[1]) * (a[2] + b[2]);
        sum[1] -= (a[2] - b[2]) * (a[0] + b[0]);
        sum[2] -= (a[0] - b[0]) * (a[1] + b[1]);
    }
    std::copy(sum.begin(), sum.end(), out);
}

std::size_t corner_normals(const PolygonView& polygons, float crease, std::span<float> out)
{
    return Smoother(polygons, static_cast<double>(crease), out).run();
}

} // namespace tv
