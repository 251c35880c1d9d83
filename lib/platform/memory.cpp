#include "lib/platform/memory.h"

#include <atomic>

namespace platform {

static std::atomic<bool> ran_short{false};

void note_short_memory() noexcept
{
    ran_short = true;
}

bool memory_ran_short() noexcept
{
    return ran_short;
}

void forget_short_memory() noexcept
{
    ran_short = false;
}

void watch_memory() noexcept
{
    std::set_new_handler([] {
        note_short_memory();
        throw std::bad_alloc();
    });
}

} // namespace platform
