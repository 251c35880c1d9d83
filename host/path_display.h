// Paths as people read them, UTF-8.
#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace host {

std::string shown_path(const std::filesystem::path& path);

// "looked for:" and the places, indented, each on its line; the first `most` of them.
std::string places_text(const std::vector<std::string>& tried, std::size_t most);

} // namespace host
