// A primitive's polygons, tested: what can't be drawn is left out, the rest is in one order.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/toolkit/normals.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct PolygonFaults {
    std::size_t few_points = 0; // fewer than three distinct points: stars and lines of the time
    std::size_t bad_index = 0;  // a corner names no point, or the corner list ends before the polygon
    std::size_t not_finite = 0; // a coordinate that isn't a number or is beyond what the file can hold
    std::size_t no_area = 0;
    std::string first_object;         // where the first one was, UTF-8
    std::size_t tangled = 0;          // not left out, but filled anyhow
    std::string first_tangled_object; // UTF-8

    std::size_t total() const { return few_points + bad_index + not_finite + no_area; }
};

struct CleanPolygons {
    const std::vector<float>* positions = nullptr; // the primitive's own
    std::vector<int32_t> corners, sizes;           // point numbers from 1; clockwise seen from the visible side
    std::vector<tv::Id> surfaces;                  // one for each polygon; no_id: none

    tv::PolygonView view() const { return {*positions, corners, sizes}; }
};

// `scale` is what the positions will be multiplied with.
CleanPolygons clean_polygons(const tv::Primitive& primitive, tv::Id object_surface, double scale,
                             PolygonFaults& faults);

} // namespace gltf
