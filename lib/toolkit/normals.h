// One unit normal for every polygon corner, smoothed across edges up to a crease angle.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

// Polygons of one primitive. Views only: the caller owns the arrays and keeps them alive during a call.
// Corners run clockwise seen from the visible side, and normals point to that side.
struct PolygonView {
    std::span<const float> positions; // x, y, z a point
    std::span<const int32_t> corners; // point numbers from 1, polygon after polygon; all within positions
    std::span<const int32_t> sizes;   // corners of each polygon, each above 0; the sum is corners.size()
};

// Normal of the polygon of `size` corners that starts at `first`, not normalised: its length is twice the area, 0 for
// a degenerate one. Right for concave and slightly bent polygons. Newell's method: F. Tampieri, Graphics Gems III, 1992.
TV_API void polygon_normal(const PolygonView& polygons, std::size_t first, std::size_t size, double out[3]);

// Writes 3 floats a corner to `out`. Corners on one point share a normal where their polygons meet at `crease` or less
// (radians: 0 flat, pi all smooth), weighted by the angle at the corner: G. Thürmer and C. Wüthrich, Computing Vertex
// Normals from Polygonal Facets, 1998. Returns how many corners got (0, 0, 1) because their polygon has no area.
// Caller's duty, asserted: corners lie inside positions, out.size() == 3 * corners.size(). Time grows with corners times
// the polygons that meet in a point; a point where thousands meet is handled in n log n.
TV_API std::size_t corner_normals(const PolygonView& polygons, float crease, std::span<float> out);

} // namespace tv
