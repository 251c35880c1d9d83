// Image files by the names that scenes give them.
//
// A scene's name may lack its extension, or bear one that stands for several: importers fold the Amiga's picture
// extensions into ".iff". So where no file has the name itself, one with the same base name and another image extension
// is taken. Letters match in any case.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace gltf {

struct ImagePlace {
    bool named = true;              // false: the name says that there is no image, such as "(none)" or ""
    std::string path;               // the system's; empty: not found
    bool other_extension = false;   // not the name itself, but its base name
    bool sequence = false;          // the name stands for a row of numbered pictures, and this is the first
    std::vector<std::string> tried; // without a path: every place, UTF-8
};

// The name without the marks after it, "(sequence)" and "(none)", and blanks. `sequence` tells whether there was one.
std::string_view plain_image_name(std::string_view name, bool& sequence);

// Looks in the directories (system paths) in order: for the name itself in all of them, then for its base name.
// `name` is Latin-1. Regular files alone are found.
ImagePlace find_image(std::string_view name, const std::vector<std::string>& directories);

} // namespace gltf
