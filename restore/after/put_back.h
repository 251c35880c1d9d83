// After the import: what the toolkit's scene gets back from the facts of the file.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/toolkit/scene/scene.h"
#include "restore/facts/object_facts.h"
#include "restore/facts/scene_facts.h"
#include "restore/restorations.h"

namespace restore {

struct PutBackSettings {
    Wanted wanted;
    bool first_key_only = false; // no animation was imported: everything stands as at its first key
    bool all_keys = false;       // the clip spans all keys, not the file's range of frames
    bool unique_surfaces = true; // surfaces of one name in two objects are two, the later called "NAME #2"
    // By item, in the order of the file; shorter or empty entries where there is nothing to say.
    std::vector<std::string> given_names; // what the plug-in was given as a name, if not the file's
    std::vector<std::string> files;       // the object's file that was read, in the system's spelling
};

// What no restoration brings back, counted.
struct Losses {
    std::size_t negative_lights = 0, lens_flares = 0, fogs = 0, displacements = 0, clip_maps = 0, bones = 0,
                path_alignments = 0, motion_blurs = 0, depth_of_field = 0, procedural_textures = 0;
    bool any() const;
};

struct PutBack {
    Acted acted;
    Losses losses;
    // The scene's things don't fit the file's one for one, so that nothing could be put back that is addressed by them.
    bool objects_unmatched = false, lights_unmatched = false;
    // Links that mean nothing: numbers of items that aren't there, targets that would follow themselves.
    std::size_t bad_parents = 0, bad_targets = 0, circular_targets = 0;
    std::size_t unfit_morphs = 0; // the two objects differ in their points, or one of them can't be read
};

// Of a scene file. Fills the restored fields of `scene`, which the import has just made.
PutBack put_back(tv::Scene& scene, const SceneFacts& facts, const PutBackSettings& settings);

// Of an object file that was imported by itself.
PutBack put_back(tv::Scene& scene, const ObjectFacts& facts, const PutBackSettings& settings);

} // namespace restore
