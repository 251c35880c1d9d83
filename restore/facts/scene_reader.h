// Reads scene files of versions 1 and 2 into facts; of later ones what is written in the same way.
#pragma once
#include <cstdio>

#include "restore/facts/scene_facts.h"

namespace restore {

inline constexpr std::size_t max_items = 100'000;    // objects and nulls, and as many lights and images
inline constexpr int64_t max_curve_keys = 4'000'000; // of one motion or envelope

// From the stream's place, which is the file's start, to its end, in one pass. Whatever the file holds, facts come of
// it: what can't be understood is passed over and stands among the oddities. Throws std::bad_alloc alone.
//
// Keywords count wherever a token stands, as for the importer; the operand of a name is the rest of its line.
SceneFacts read_scene(std::FILE* file);

} // namespace restore
