// Objects that the tests convert.
#pragma once
#include <array>
#include <string>

#include "tools/lwob_writer.h"

namespace plugin_test {

// One square on one surface, with all that `surface` says.
inline lw_tools::ObjectWriter square(const lw_tools::SurfaceWriter& surface)
{
    lw_tools::ObjectWriter object;
    object.surface_names = {surface.name()};
    object.point(0, 0, 0);
    object.point(1, 0, 0);
    object.point(1, 2, 3);
    object.point(0, 2, 3);
    object.polygon({0, 1, 2, 3});
    object.surfaces = {surface};
    return object;
}

// Two triangles, one a surface, with two points in common; a third surface without polygons, a point that none uses.
inline lw_tools::ObjectWriter two_triangles()
{
    lw_tools::ObjectWriter object;
    object.surface_names = {"Hull", "Glas", "Unused"};
    object.point(0, 0, 1);
    object.point(1, 0, 1);
    object.point(9, 9, 9);
    object.point(1, 1, 1);
    object.point(2, 1, 1);
    object.polygon({0, 1, 3}, 1);
    object.polygon({1, 4, 3}, 2);
    return object;
}

// A surface with an image map on its colour.
inline lw_tools::SurfaceWriter mapped(const char* name, const char* map, unsigned flags)
{
    return lw_tools::SurfaceWriter(name)
        .text("CTEX", map)
        .u16("TFLG", flags)
        .vec("TSIZ", 2, 4, 6)
        .text("TIMG", "DH0:Pics/Wood.IFF");
}

} // namespace plugin_test
