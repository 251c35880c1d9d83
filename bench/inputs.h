// Generated inputs, written below a directory and made once.
#pragma once
#include <cstddef>
#include <string>

namespace bench {

struct ObjectSize {
    std::size_t points = 65535, polygons = 1'000'000, surfaces = 1;
};
// Triangles on patches of some thirty points, in runs of ten that go through all patches and surfaces again and again.
void write_object(const std::string& path, const ObjectSize& size);

// `bytes` of keywords that a scene reader passes over, and their numbers.
void write_ignored_keywords(const std::string& path, std::size_t bytes);

struct SceneSize {
    std::size_t nulls = 0, keys = 1;              // keys a null
    enum { flat, chain, one_parent } tree = flat; // of the nulls
    std::size_t loads = 0;                        // of one object, "part.lwo"
    std::size_t distinct = 0;                     // objects "part_N.lwo", each loaded once
    std::size_t big = 0;                          // objects "big_N.lwo" of 65,535 points
    std::size_t lights = 0, camera_keys = 0;
};
// Writes the objects that the scene loads beside it.
void write_scene(const std::string& path, const SceneSize& size);

} // namespace bench
