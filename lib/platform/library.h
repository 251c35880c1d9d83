// Libraries loaded at run time. Each stays loaded until the program ends.
#pragma once
#include <string>

#include "lib/platform/files.h"

namespace platform {

// A handle; or null, and why in `problem`. The path is the system's own.
PLATFORM_API void* load_library(const std::string& path, std::string& problem);

// Null when the library exports no such name.
PLATFORM_API void* library_symbol(void* library, const char* name);

} // namespace platform
