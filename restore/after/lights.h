// Lights: their own motion, parent and target, envelopes, reach, and those that never shine.
#pragma once
#include "restore/after/channels.h"
#include "restore/after/matching.h"
#include "restore/after/put_back.h"

namespace restore {

// Only where the lights were matched.
void put_back_lights(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result);

} // namespace restore
