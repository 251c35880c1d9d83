// The toolkit's own messages on their way to the host.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

#include "lib/platform/memory.h"
#include "lib/toolkit/vc4_tv.h"

namespace tv {

// Hears reports: level, and one line of text, Latin-1.
using ReportSink = void (*)(void* context, int32_t level, const char* text);
TV_API void set_report_sink(ReportSink sink, void* context); // null: standard error, which is the start

// Tells the host's sink, or standard error, one line of text: what happened, worded for the codes that are known, then
// the code and the function in brackets. Level 3 warning, 4 error. Never throws; what can't be worded is dropped.
void report(int32_t level, const char* code, const char* function, std::span<const std::string_view> details) noexcept;
void report(int32_t level, const char* code, const char* function,
            std::initializer_list<std::string_view> details) noexcept;

// Runs the body of a call that takes memory: no function that plug-ins call may throw. A body that is left in its middle
// leaves the scene in order, if perhaps half changed.
template <class Body>
void guarded(const char* function, Body&& body) noexcept
{
    if (!platform::noting_short_memory(body)) report(4, "ERR_TOOLKIT_NO_MEMORY", function, {});
}

} // namespace tv
