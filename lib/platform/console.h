// The terminal that the program was started in, and the user's wish to end it.
#pragma once
#include <cstddef>
#include <cstdio>

#include "lib/platform/files.h"

namespace platform {

// First in main(): standard output takes bytes as they are, and a console shows UTF-8 and knows control sequences.
PLATFORM_API void prepare_console();

PLATFORM_API bool is_terminal(std::FILE* stream);

PLATFORM_API std::size_t terminal_columns(std::FILE* stream); // 0 when it can't be told

// Calls `action` whenever the user or the system asks the program to end (Ctrl-C), instead of ending it. What was
// started with that ignored (a shell's background job) leaves it so. `action` may run beside everything else: it sets
// a flag, no more.
PLATFORM_API void on_interrupt(void (*action)());

} // namespace platform
