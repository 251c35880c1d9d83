#include "lib/import/lw/base/arrays.h"

#include <algorithm>

// 0 for what no block can hold.
static std::size_t bytes_of(int64_t count, std::size_t entry_size)
{
    const std::size_t entries = static_cast<std::size_t>(std::max<int64_t>(count, 1));
    return entries <= PTRDIFF_MAX / entry_size ? entries * entry_size : 0;
}

static void* reported(void* block, const char* message, lw_level level)
{
    if (block) return block;
    if (level == LW_FATAL) lw_report_fatal(message);
    lw_report(level, "%s", message);
    return nullptr;
}

void* lw_array_memory(void* block, int64_t count, std::size_t entry_size, const char* message, lw_level level)
{
    const std::size_t bytes = bytes_of(count, entry_size);
    return reported(bytes ? Tv_Realloc_Memory(0, block, bytes) : nullptr, message, level);
}

void* lw_cleared_memory(int64_t count, std::size_t entry_size, const char* message, lw_level level)
{
    const std::size_t bytes = bytes_of(count, entry_size);
    return reported(bytes ? Tv_Alloc_Memory(0, 1, bytes) : nullptr, message, level);
}
