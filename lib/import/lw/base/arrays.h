// The reader's arrays: memory of the toolkit, every size of which is one checked product. Where there is none, the
// message is reported: as fatal, so that nobody has to ask, or as an error by the functions that say so.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/import/lw/base/report.h"
#include "lib/toolkit/vc4_tv.h"

// Memory for `count` entries, one at least, or null. `block` is null, or an array to grow, which keeps its entries and
// stays as it was where there is no memory. Reports nothing.
void* lw_array_memory(void* block, int64_t count, std::size_t entry_size);
void* lw_cleared_memory(int64_t count, std::size_t entry_size);

// Frees the array and sets it to null.
template <typename T>
void lw_free_array(T** array)
{
    Tv_Free_Memory(*array);
    *array = nullptr;
}

// A new array in the place of *array, null or owned. Its entries hold nothing yet, or zeros.
template <typename T>
void lw_allocate(T** array, int64_t count, const char* message)
{
    lw_free_array(array);
    *array = static_cast<T*>(lw_array_memory(nullptr, count, sizeof(T)));
    if (!*array) lw_report_fatal(message);
}
template <typename T>
void lw_allocate_cleared(T** array, int64_t count, const char* message)
{
    lw_free_array(array);
    *array = static_cast<T*>(lw_cleared_memory(count, sizeof(T)));
    if (!*array) lw_report_fatal(message);
}

// Room for `count` entries in all; the new ones hold nothing yet.
template <typename T>
void lw_grow(T** array, int64_t count, const char* message)
{
    void* const grown = lw_array_memory(*array, count, sizeof(T));
    if (!grown) lw_report_fatal(message);
    *array = static_cast<T*>(grown);
}

// The same for a caller who can go on: false with an error reported, and *array null or as it was.
template <typename T>
[[nodiscard]] bool lw_try_allocate(T** array, int64_t count, const char* message)
{
    lw_free_array(array);
    *array = static_cast<T*>(lw_array_memory(nullptr, count, sizeof(T)));
    if (!*array) lw_report(LW_ERROR, "%s", message);
    return *array != nullptr;
}
template <typename T>
[[nodiscard]] bool lw_try_grow(T** array, int64_t count, const char* message)
{
    void* const grown = lw_array_memory(*array, count, sizeof(T));
    if (grown) {
        *array = static_cast<T*>(grown);
    } else {
        lw_report(LW_ERROR, "%s", message);
    }
    return grown != nullptr;
}
