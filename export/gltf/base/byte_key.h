// Keys of what has been made already: the bytes of all that it depends on, so that no two that differ are taken for one.
#pragma once
#include <cstring>
#include <string>
#include <type_traits>

#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Of a type without gaps between its members.
template <typename T>
void append_bytes(std::string& key, const T& value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    key.append(bytes, sizeof(T));
}

// Where a frame lies, and how it lays its pictures.
inline void append_frame(std::string& key, const tv::TextureProjection& frame)
{
    append_bytes(key, frame.model);
    for (const tv::Vec3* point : {&frame.origin, &frame.upoint, &frame.vpoint, &frame.wpoint})
        append_bytes(key, *point);
}

} // namespace gltf
