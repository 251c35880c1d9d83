// Reports and prints. A handler may leave Import_IO_Report_Error by a non-local exit: what stands there has no
// destructor, and the texts lie in buffers that outlive the frame.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "lib/services/run.h"
#include "lib/toolkit/words/trace.h"

namespace {

constexpr std::size_t text_size = 8192; // a longer text is cut

char report_text[text_size];
char print_text[text_size];

} // namespace

using services::run;

void Import_IO_Report_Error(int32_t level, const char* text)
{
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_Report_Error");
        tv::trace_integer(level);
        tv::trace_string(text);
        tv::trace_end();
    }
    const std::size_t length = text ? strnlen(text, text_size - 1) : 0;
    if (length) std::memmove(report_text, text, length); // a handler may hand its record's message on
    report_text[length] = 0;

    if (run().host.report) run().host.report(level, std::string_view(report_text, length));
    // What a handler reports itself doesn't come back to it.
    if (!run().handler || run().in_handler) return;
    Import_IO_Error_Record record{level, 0, report_text};
    run().in_handler = true;
    run().handler(&record);
    run().in_handler = false;
}

// A handler prints each text that it gets: the host has had that one already.
void Import_IO_printf(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int wanted = format ? std::vsnprintf(print_text, text_size, format, arguments) : 0;
    va_end(arguments);
    const std::size_t length = wanted < 0 ? 0 : std::min(static_cast<std::size_t>(wanted), text_size - 1);
    print_text[length] = 0;
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_printf");
        tv::trace_string(print_text);
        tv::trace_end();
    }
    const bool told = run().in_handler && run().host.report;
    if (!told && run().host.print) run().host.print(std::string_view(print_text, length));
}
