// The toolkit's scene as JSON, field by field, as it is.
#pragma once
#include <string>

#include "lib/toolkit/scene/scene.h"

namespace scene_json {

// Every field of scene.h that its calls fill, in the order in which it stands there. UTF-8. Things are lines, so that a
// diff tells which one changed. Numbers that JSON doesn't know stand as "nan", "inf" and "-inf"; references as a name,
// or null.
std::string dump_scene(const tv::Scene& scene);

} // namespace scene_json
