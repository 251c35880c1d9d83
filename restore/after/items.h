// Objects and nulls: names, straight spans, targets, dissolves and visibility; and the camera, which is placed likewise.
#pragma once
#include "restore/after/channels.h"
#include "restore/after/matching.h"
#include "restore/after/put_back.h"

namespace restore {

// Only where the instances were matched.
void put_back_items(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                    const PutBackSettings& settings, PutBack& result);

// Parent and target count only where the instances were matched.
void put_back_camera(tv::Scene& scene, const SceneFacts& facts, const Matching& matching, const FrameTimes& times,
                     const PutBackSettings& settings, PutBack& result);

} // namespace restore
