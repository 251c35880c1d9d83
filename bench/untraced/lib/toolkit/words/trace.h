// Stands in for the call trace when the libraries are built without one, to measure what the trace costs while it is
// switched off. The same names, and nothing in them; trace.cpp has the compiler compare them with the real ones.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/toolkit/vc4_tv.h"

// What the calls' files use. Name and parameters of each.
#define UNTRACED_FUNCTIONS(X)                                                                                          \
    X(trace_begin, const char*)                                                                                        \
    X(trace_string, const char*)                                                                                       \
    X(trace_token, int32_t)                                                                                            \
    X(trace_integer, int64_t)                                                                                          \
    X(trace_float, float)                                                                                              \
    X(trace_floats, const float*, std::size_t)                                                                         \
    X(trace_integers, const int32_t*, std::size_t)                                                                     \
    X(trace_strings, const char* const*, std::size_t)                                                                  \
    X(trace_record, const Tv_Local_Axes&)                                                                              \
    X(trace_handle, const char*, int)                                                                                  \
    X(trace_null)                                                                                                      \
    X(trace_end)                                                                                                       \
    X(trace_flush)                                                                                                     \
    X(trace_suspend)                                                                                                   \
    X(trace_resume)

namespace tv {

constexpr bool trace_enabled()
{
    return false;
}
#define UNTRACED_FUNCTION(name, ...)                                                                                   \
    inline void name(__VA_ARGS__) {}
UNTRACED_FUNCTIONS(UNTRACED_FUNCTION)
#undef UNTRACED_FUNCTION

} // namespace tv
