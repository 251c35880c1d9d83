// What comes back from the object files themselves: surfaces seen from both sides, and morphs.
#pragma once
#include <string>
#include <vector>

#include "restore/after/channels.h"
#include "restore/after/matching.h"
#include "restore/after/put_back.h"

namespace restore {

// Surfaces of the objects in the order in which they were read, each once.
void put_back_surfaces(tv::Scene& scene, const std::vector<const ObjectFacts*>& objects,
                       const PutBackSettings& settings, PutBack& result);

// Reads each file that settings.files names once and puts back what its surfaces have.
void put_back_surfaces_of_files(tv::Scene& scene, const PutBackSettings& settings, PutBack& result);

// Only where the instances were matched.
void put_back_morphs(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result);

} // namespace restore
