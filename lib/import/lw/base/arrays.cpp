#include "lib/import/lw/base/arrays.h"

#include <algorithm>

// 0 for what no block can hold.
static std::size_t bytes_of(int64_t count, std::size_t entry_size)
{
    const std::size_t entries = static_cast<std::size_t>(std::max<int64_t>(count, 1));
    return entries <= PTRDIFF_MAX / entry_size ? entries * entry_size : 0;
}

void* lw_array_memory(void* block, int64_t count, std::size_t entry_size)
{
    const std::size_t bytes = bytes_of(count, entry_size);
    return bytes ? Tv_Realloc_Memory(0, block, bytes) : nullptr;
}

void* lw_cleared_memory(int64_t count, std::size_t entry_size)
{
    const std::size_t bytes = bytes_of(count, entry_size);
    return bytes ? Tv_Alloc_Memory(0, 1, bytes) : nullptr;
}
