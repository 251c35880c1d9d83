// What belongs to the scene as a whole: the time line, ambient light, numbers of fog.
#pragma once
#include "restore/after/put_back.h"

namespace restore {

void put_back_surroundings(tv::Scene& scene, const SceneFacts& facts, const PutBackSettings& settings, PutBack& result);

Losses losses_of(const SceneFacts& facts);

} // namespace restore
