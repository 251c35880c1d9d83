// A GLB file of the exporter, read back into the tables it was written from: pictures of a file itself.
#pragma once
#include <filesystem>

#include "export/gltf/file/tables.h"

// Throws std::exception where the file isn't what the exporter writes.
gltf::Tables read_glb(const std::filesystem::path& path);
