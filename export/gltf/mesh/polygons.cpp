#include "export/gltf/mesh/polygons.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace gltf {

namespace {

using Point = std::array<float, 3>;

// At least three of the points differ. Three that do are mostly found at once; a polygon that runs back and forth
// between two points is walked to its end.
bool three_distinct(const std::vector<Point>& points)
{
    const auto second = std::find_if(points.begin(), points.end(), [&](const Point& p) { return p != points[0]; });
    return std::any_of(second, points.end(), [&](const Point& p) { return p != points[0] && p != *second; });
}

} // namespace

CleanPolygons clean_polygons(const tv::Primitive& primitive, tv::Id object_surface, double scale, PolygonFaults& faults)
{
    CleanPolygons result;
    result.positions = &primitive.positions;
    result.corners.reserve(primitive.corners.size());
    result.sizes.reserve(primitive.sizes.size());
    result.surfaces.reserve(primitive.sizes.size());
    const int64_t point_count = static_cast<int64_t>(primitive.positions.size() / 3);
    const double limit = 1e38 / std::max(scale, 1.0); // leaves room for what the normals and boxes add

    std::vector<Point> points;
    std::size_t at = 0;
    for (std::size_t polygon = 0; polygon < primitive.sizes.size(); ++polygon) {
        const std::size_t size = static_cast<std::size_t>(std::max(primitive.sizes[polygon], 0));
        const std::size_t first = at;
        if (size > primitive.corners.size() - at) {
            // Nothing after it can be trusted either: where it would start is not known.
            faults.bad_index += primitive.sizes.size() - polygon;
            break;
        }
        at += size;
        if (size < 3) {
            ++faults.few_points;
            continue;
        }
        const std::size_t start = result.corners.size();
        points.clear();
        bool in_range = true, finite = true;
        for (std::size_t i = first; i < at && in_range && finite; ++i) {
            const int64_t number = static_cast<int64_t>(primitive.corners[i]) + primitive.index_offset;
            in_range = number >= 1 && number <= point_count;
            if (!in_range) break;
            Point point;
            std::copy_n(primitive.positions.begin() + (number - 1) * 3, 3, point.begin());
            for (const float part : point) finite &= std::abs(static_cast<double>(part)) <= limit;
            points.push_back(point);
            result.corners.push_back(static_cast<int32_t>(number));
        }
        bool keep = false;
        if (!in_range)
            ++faults.bad_index;
        else if (!finite)
            ++faults.not_finite;
        else if (!three_distinct(points))
            ++faults.few_points;
        else
            keep = true;
        if (keep) {
            result.sizes.push_back(static_cast<int32_t>(size));
            double normal[3];
            tv::polygon_normal(result.view(), start, size, normal);
            keep = normal[0] != 0 || normal[1] != 0 || normal[2] != 0;
            keep = keep && std::isfinite(normal[0]) && std::isfinite(normal[1]) && std::isfinite(normal[2]);
            if (!keep) {
                ++faults.no_area;
                result.sizes.pop_back();
            }
        }
        if (!keep) {
            result.corners.resize(start);
            continue;
        }
        if (!primitive.clockwise)
            std::reverse(result.corners.begin() + static_cast<std::ptrdiff_t>(start), result.corners.end());
        const tv::Id surface =
            polygon < primitive.polygon_surface.size() ? primitive.polygon_surface[polygon] : object_surface;
        result.surfaces.push_back(surface == tv::no_id ? object_surface : surface);
    }
    return result;
}

} // namespace gltf
