// Stands in for the call trace when the libraries are built without one, to measure what the trace costs while it is
// switched off. The same names, and nothing in them.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

constexpr bool trace_enabled()
{
    return false;
}
inline void trace_begin(const char*) {}
inline void trace_string(const char*) {}
inline void trace_word(const char*) {}
inline void trace_token(int32_t) {}
inline void trace_integer(int64_t) {}
inline void trace_float(float) {}
inline void trace_floats(const float*, std::size_t) {}
inline void trace_integers(const int32_t*, std::size_t) {}
inline void trace_null() {}
inline void trace_end() {}
inline void trace_flush() {}
inline void trace_suspend() {}
inline void trace_resume() {}

} // namespace tv
