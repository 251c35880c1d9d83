// One line for the user.
#pragma once
#include <string>

#include "export/gltf/writer.h"

namespace gltf {

inline void note(Report& report, Note::Level level, std::string text)
{
    report.notes.push_back({level, std::move(text)});
}

// "1 polygon", "12 polygons".
inline std::string counted(std::size_t count, const char* thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

} // namespace gltf
