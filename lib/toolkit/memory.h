// Blocks for plug-ins, counted. For tests.
#pragma once
#include <cstdint>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

TV_API void fail_allocation(uint64_t n); // the n-th from now on (1 is the next) fails, once; 0 switches it off
TV_API uint64_t allocations_made();      // since the start of the program
TV_API uint64_t allocations_held();      // blocks not yet given back

} // namespace tv
