// Scene -> glTF 2.0. Reads the toolkit's scene, knows nothing of the formats it came from.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Writes `out`, whose ending decides: .glb (everything inside), .gltf (with a .bin beside it, and image files), .json
// (the scene as the toolkit holds it, complete). Each file is written to a temporary one beside its target and
// renamed, so that a failure leaves what was there before. Throws std::runtime_error with one clear line (UTF-8) when
// something can't be written or the scene has no place in the format.
Report write_scene(const tv::Scene& scene, const std::filesystem::path& out, const Options& options);

// The same as one block of bytes, for standard output: format "glb", "gltf" (buffers and images as data URIs) or "json".
Report write_scene(const tv::Scene& scene, const std::string& format, const Options& options,
                   std::vector<unsigned char>& bytes);

// The .json form: every field of scene.h, in the order in which it stands there. UTF-8 text.
std::string dump_scene(const tv::Scene& scene);

} // namespace gltf
