// The call trace: every call that a plug-in makes to the toolkit or to the import services, one JSON array to a line.
//
// A line is put together in one buffer, between trace_begin and trace_end, and never while another one is open. The
// functions hold nothing between them that a non-local exit could lose: a line that was begun and not ended is dropped.
// All cost nothing to speak of while the trace is off, but the caller's own work: ask trace_enabled() first.
//
//     if (tv::trace_enabled()) {
//         tv::trace_begin("Import_IO_MakeNameUnique");
//         tv::trace_token(kind);
//         tv::trace_string(name);
//         tv::trace_string(out);
//         tv::trace_end();
//     }
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

// Writes the call trace there, one JSON array a line; null or empty: off. False when the file can't be made.
// Without this call the environment variable TV_TRACE, read once, names the file.
TV_API bool set_trace_file(const char* path);

TV_API bool trace_enabled(); // false also while suspended

TV_API void trace_begin(const char* function);
TV_API void trace_string(const char* text); // Latin-1; one apostrophe in front and one behind; null for a null pointer
TV_API void trace_token(int32_t token);     // its word; a number that is no token's shows as a number
TV_API void trace_integer(int64_t value);
TV_API void trace_float(float value); // as many digits as bring it back; "nan", "inf", "-inf"
TV_API void trace_floats(const float* values, std::size_t count); // an array; null for a null pointer
void trace_integers(const int32_t* values, std::size_t count);
void trace_strings(const char* const* texts, std::size_t count);
void trace_record(const Tv_Local_Axes& axes);
void trace_handle(const char* owner, int slot); // of a channel; a null owner: one that is gone
TV_API void trace_null();
TV_API void trace_end();

// Writes what is buffered. Done of itself when the file changes, the scene is cleared and the process exits.
TV_API void trace_flush();

// Calls that a library makes for its own purposes aren't traced: suspend before them, resume after. They nest.
TV_API void trace_suspend();
TV_API void trace_resume();

} // namespace tv
