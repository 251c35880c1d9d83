// Targets that would have to know where they stand before they do.
#pragma once
#include <cstddef>

#include "lib/toolkit/scene/scene.h"

namespace restore {

// Where an instance stands and how it is turned depends on the same of its parent and, where it has a target, of the
// target's parent. Takes away each target by which an instance would depend on itself; returns how many. Linear.
std::size_t drop_circular_targets(tv::Scene& scene);

} // namespace restore
