// What the plug-in tells: reports by level with the fatal exit, lines of the debug file, and how far it has come.
#pragma once
#include <csetjmp>
#include <cstdint>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/services/import_io.h"

enum lw_level : int32_t {
    LW_WARNING = 3, // the run goes on
    LW_ERROR = 4,   // it goes on without what failed, or the reader says that it failed
    LW_FATAL = 5    // it ends at once
};

// Where a fatal error returns to. The run sets it; it is good only inside a run.
extern std::jmp_buf jump_buffer;

// Formats into a buffer of 256 and reports, as a warning or an error.
void lw_report(lw_level level, const char* format, ...) LW_PRINTF(2, 3);

// Reports and ends the run by the non-local exit to jump_buffer. Only from inside a run.
[[noreturn]] void lw_report_fatal(const char* message);

// The run's handler, to which the services hand each report.
void LW_Error_Handler(Import_IO_Error_Record* record);

// True while lines for the debug file are wanted.
bool lw_debug_is_on();

// Writes to the debug file, if it is wanted.
void lw_debug_printf(const char* format, ...) LW_PRINTF(1, 2);

// Shows the host how far the file is read, in bytes, and how much the run has made. True when the user wants to stop.
bool lw_user_stops(int32_t position, int32_t total);
