// The system's own blocks, counted, and made to fail where a test asks for it.
#include "lib/platform/memory.h"
#include "lib/toolkit/memory.h"

#include <cstdlib>

namespace {

uint64_t made = 0, held = 0;
uint64_t fails_in = 0; // allocations until the one that fails; 0: none does

// Counts one allocation; true when it is the one to fail.
bool count_and_fail()
{
    ++made;
    return fails_in && --fails_in == 0;
}

} // namespace

namespace tv {

void fail_allocation(uint64_t n)
{
    fails_in = n;
}

uint64_t allocations_made()
{
    return made;
}

uint64_t allocations_held()
{
    return held;
}

} // namespace tv

extern "C" {

void* Tv_Alloc_Memory(int32_t, int32_t clear, size_t size)
{
    const bool refused = count_and_fail() || size > PTRDIFF_MAX;
    void* const block = refused ? nullptr : clear ? std::calloc(size ? size : 1, 1) : std::malloc(size ? size : 1);
    if (block)
        ++held;
    else
        platform::note_short_memory();
    return block;
}

void* Tv_Realloc_Memory(int32_t, void* block, size_t size)
{
    const bool refused = count_and_fail() || size > PTRDIFF_MAX;
    void* const grown = refused ? nullptr : std::realloc(block, size ? size : 1);
    if (!grown) platform::note_short_memory();
    if (grown && !block) ++held;
    return grown;
}

void Tv_Free_Memory(void* block)
{
    if (block) --held;
    std::free(block);
}

} // extern "C"
