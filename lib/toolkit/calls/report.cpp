// A plug-in's own reports.
#include <cstdarg>
#include <string_view>
#include <vector>

#include "lib/toolkit/report.h"
#include "lib/toolkit/words/trace.h"

extern "C" void Tv_Report_Error(int32_t level, const char* code, const char* function, ...)
{
    va_list arguments;
    va_start(arguments, function);
    tv::guarded("Tv_Report_Error", [&] {
        constexpr std::size_t most = 32; // a list that has lost its null isn't followed for ever
        std::vector<std::string_view> details;
        while (details.size() < most) {
            const char* const text = va_arg(arguments, const char*);
            if (!text) break;
            details.emplace_back(text);
        }
        if (tv::trace_enabled()) {
            tv::trace_begin("Tv_Report_Error");
            tv::trace_integer(level);
            tv::trace_string(code);
            tv::trace_string(function);
            for (const std::string_view detail : details) tv::trace_string(detail.data()); // as it came, with its end
            tv::trace_null();
            tv::trace_end();
        }
        tv::report(level, code ? code : "ERR", function, details);
    });
    va_end(arguments);
}
