// What stands behind everything: told in the scene's extras, and shown by a dome where that is asked for.
#pragma once
#include "export/gltf/base/measure.h"
#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/material/material.h"
#include "lib/toolkit/scene/scene.h"

namespace gltf {

// Colours in the extras are linear. A backdrop image is embedded when it can be had.
void make_backdrop(const tv::Scene& scene, const Options& options, const Measure& measure, MaterialMaker& materials,
                   Tables& tables, Report& report);

} // namespace gltf
