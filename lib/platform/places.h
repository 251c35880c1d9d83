// Where the program stands, and where it keeps things for its user. System paths.
#pragma once
#include <string>

#include "lib/platform/files.h"

namespace platform {

PLATFORM_API std::string program_file(); // empty when it can't be told

// The library or program that holds a function or variable; empty when none does.
PLATFORM_API std::string library_file(const void* address);

// The directory that plug-ins and libraries of this installation are loaded from; empty when it can't be told.
PLATFORM_API std::string library_directory();

// What a library is called: a prefix doesn't belong to it, "imp_lw" becomes "imp_lw.so" or "imp_lw.dll".
PLATFORM_API std::string library_name(const std::string& name);

// The user's directory for settings, without a separator at its end; empty when the system names none.
PLATFORM_API std::string settings_directory();
PLATFORM_API const char* settings_problem(); // why it is empty

} // namespace platform
