// Memory that ran short, anywhere in the process. Whoever gets none either lets std::bad_alloc go on its way, or notes
// it here before doing without: what was made with too little then never passes for whole.
#pragma once
#include <new>

#include "lib/platform/api.h"

namespace platform {

PLATFORM_API void note_short_memory() noexcept;
PLATFORM_API bool memory_ran_short() noexcept; // since the last forget_short_memory()
PLATFORM_API void forget_short_memory() noexcept;

// From now on each failure of `new` is noted by itself, also where a library swallows the exception.
PLATFORM_API void watch_memory() noexcept;

// To be asked before a result is taken for one.
inline void throw_if_memory_ran_short()
{
    if (memory_ran_short()) throw std::bad_alloc();
}

// Does the work, or notes that there was no memory for it; false then.
template <class Work>
bool noting_short_memory(Work&& work)
{
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        note_short_memory();
        return false;
    }
}

} // namespace platform
