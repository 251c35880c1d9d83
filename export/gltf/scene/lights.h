// Lights -> KHR_lights_punctual, each on a node of its own.
#pragma once
#include "export/gltf/base/measure.h"
#include "export/gltf/base/options.h"
#include "export/gltf/base/report.h"
#include "export/gltf/file/tables.h"
#include "export/gltf/scene/rig.h"
#include "lib/toolkit/scene/scene.h"
#include "lib/toolkit/units.h"

namespace gltf {

// Lux for a directional light of intensity 1. The old renderer gives a white surface that faces such a light its full
// colour; a diffuse surface sends E / pi of the light E that it gets.
inline constexpr double lux_of_intensity = tv::pi;

// The ambient light goes into the scene's extras.
void make_lights(const tv::Scene& scene, const Options& options, const Measure& measure, const RigParts& parts,
                 Report& report);

} // namespace gltf
