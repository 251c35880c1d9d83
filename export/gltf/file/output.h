// Tables -> bytes and files.
#pragma once
#include <filesystem>
#include <functional>
#include <string>

#include "export/gltf/file/tables.h"

namespace gltf {

using ByteSink = std::function<void(const void*, std::size_t)>;

// One binary file with everything inside. Throws messages::Error where it would be larger than 4 GiB.
void write_glb(const Tables& tables, const ByteSink& sink);

// A JSON file that holds its data as base64.
void write_self_contained_gltf(const Tables& tables, const ByteSink& sink);

// out, a .bin file and the images beside it. All are complete before the first one takes its place.
void write_gltf_files(const Tables& tables, const std::filesystem::path& out);

} // namespace gltf
