// Scene -> glTF 2.0, in two steps: the scene as plain tables, and tables as bytes. Reads the toolkit's scene, knows
// nothing of the formats it came from.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

struct MadeTables {
    Tables tables; // with report.stopped: a part, of which no file should be made
    Report report;
};

// All that there is to complain of is in the report, before anything is written. Throws messages::Error
// when the scene has no place in the format.
MadeTables make_tables(const tv::Scene& scene, const Options& options);

// Writes `out`, whose ending decides: .glb (everything inside) or .gltf (with a .bin beside it, and image files). Each
// file is written to a temporary one beside its target and renamed, so that a failure leaves what was there before.
// Throws messages::Error, and platform::FileError when something can't be written.
void write_file(const Tables& tables, const std::filesystem::path& out);

// The same as one block of bytes, for standard output: format "glb", or "gltf" (buffers and images as data URIs).
std::vector<unsigned char> file_bytes(const Tables& tables, const std::string& format);

} // namespace gltf
