#include "lib/import/lw/base/report.h"

#include <cstdio>

#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/base/run_state.h"

std::jmp_buf jump_buffer;

void lw_report(lw_level level, const char* format, ...)
{
    char message[256];
    va_list arguments;
    va_start(arguments, format);
    lw_format_list(message, sizeof message, format, arguments);
    va_end(arguments);
    Import_IO_Report_Error(level, message);
}

void lw_report_fatal(const char* message)
{
    Import_IO_Report_Error(LW_FATAL, message);
    std::longjmp(jump_buffer, 1); // the handler has done so already, unless the services lost it
}

void LW_Error_Handler(Import_IO_Error_Record* record)
{
    Import_IO_printf("%s", record->message);
    if (record->level != LW_FATAL) return;
    if (lw_debug_fp) {
        std::fprintf(lw_debug_fp, "%s\n", record->message);
        std::fflush(lw_debug_fp);
    }
    std::longjmp(jump_buffer, 1);
}

bool lw_debug_is_on()
{
    return lw_debug_fp && lw_output_debug_info;
}

void lw_debug_printf(const char* format, ...)
{
    if (!lw_debug_is_on()) return;
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(lw_debug_fp, format, arguments);
    va_end(arguments);
}

bool lw_user_stops(int32_t position, int32_t total)
{
    Import_IO_Abort_Record record = {20, position, total, lw_object_count, num_polygons_read};
    return Import_IO_Check_For_Abort(&record) != 0;
}
