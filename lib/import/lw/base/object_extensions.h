// The endings that files of the formats bear, in the order in which they are tried. Nothing is told by them: a file's
// first bytes say what it is.
#pragma once
#include <array>
#include <string_view>

inline constexpr std::array<std::string_view, 3> lw_object_extensions = {".lwo", ".lw", ".lwob"};
inline constexpr std::array<std::string_view, 2> lw_scene_extensions = {".lws", ".scn"};
