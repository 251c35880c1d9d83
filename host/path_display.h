// Paths as people read them, UTF-8.
#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace host {

std::string shown_path(const std::filesystem::path& path);

// Places where a file isn't: one that differs from the line before only in an object's extension stands behind it.
struct PlaceLines {
    std::vector<std::string> lines; // "/archive/Objects/ship, .lwo, .lw"
    std::size_t more = 0;           // lines left away
};
PlaceLines place_lines(const std::vector<std::string>& tried, std::size_t most);

inline constexpr std::size_t places_told = 24; // in a message; `find` prints all

} // namespace host
