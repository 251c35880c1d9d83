#include "restore/after/put_back.h"

#include "restore/after/channels.h"
#include "restore/after/items.h"
#include "restore/after/lights.h"
#include "restore/after/matching.h"
#include "restore/after/object_files.h"
#include "restore/after/surroundings.h"
#include "restore/after/target_circles.h"

namespace restore {

PutBack put_back(tv::Scene& scene, const SceneFacts& facts, const PutBackSettings& settings)
{
    PutBack result;
    result.losses = losses_of(facts);
    if (settings.wanted.none()) return result;
    const FrameTimes times(facts.frames_per_second);
    const Matching matching = match(scene, facts, settings.given_names);
    result.objects_unmatched = !matching.instances;
    result.lights_unmatched = !matching.lights;
    if (matching.instances) {
        put_back_items(scene, facts, matching, times, settings, result);
        put_back_morphs(scene, facts, matching, times, settings, result);
        result.circular_targets = drop_circular_targets(scene);
    }
    if (matching.lights) put_back_lights(scene, facts, matching, times, settings, result);
    put_back_camera(scene, facts, matching, times, settings, result);
    put_back_surfaces_of_files(scene, settings, result);
    put_back_surroundings(scene, facts, settings, result);
    return result;
}

PutBack put_back(tv::Scene& scene, const ObjectFacts& facts, const PutBackSettings& settings)
{
    PutBack result;
    if (!settings.wanted.none()) put_back_surfaces(scene, {&facts}, settings, result);
    return result;
}

} // namespace restore
