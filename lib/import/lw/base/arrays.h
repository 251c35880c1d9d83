// The reader's arrays: memory of the toolkit, every size of which is one checked product. Where there is none, the
// message is reported: as fatal, so that nobody has to look at the result, or at the level that the caller gives.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/import/lw/base/report.h"
#include "lib/toolkit/vc4_tv.h"

// Memory for `count` entries, one at least. `block` is null, or an array to grow, which keeps its entries. Null without
// memory, where the level lets it return: then the block stays as it was.
void* lw_array_memory(void* block, int64_t count, std::size_t entry_size, const char* message, lw_level level);
void* lw_cleared_memory(int64_t count, std::size_t entry_size, const char* message, lw_level level);

// Frees the array and sets it to null.
template <typename T>
void lw_free_array(T** array)
{
    Tv_Free_Memory(*array);
    *array = nullptr;
}

// A new array in the place of *array, null or owned. False: *array is null.
template <typename T>
bool lw_allocate(T** array, int64_t count, const char* message, lw_level level = LW_FATAL)
{
    lw_free_array(array);
    *array = static_cast<T*>(lw_array_memory(nullptr, count, sizeof(T), message, level));
    return *array != nullptr;
}

// The same, filled with zeros.
template <typename T>
bool lw_allocate_cleared(T** array, int64_t count, const char* message, lw_level level = LW_FATAL)
{
    lw_free_array(array);
    *array = static_cast<T*>(lw_cleared_memory(count, sizeof(T), message, level));
    return *array != nullptr;
}

// Room for `count` entries in all; the new ones hold nothing yet. False: the array is as it was.
template <typename T>
bool lw_grow(T** array, int64_t count, const char* message, lw_level level = LW_FATAL)
{
    void* const grown = lw_array_memory(*array, count, sizeof(T), message, level);
    if (!grown) return false;
    *array = static_cast<T*>(grown);
    return true;
}
