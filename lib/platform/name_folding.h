// Names of files without regard to case, for lists that they are looked up in. ASCII and Latin-1 letters fold.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "lib/platform/files.h"

namespace platform {

// Of a directory's entry: UTF-8, or Latin-1 where it is none.
PLATFORM_API std::u32string folded_entry(std::string_view entry);
// Of a stored name: Latin-1.
PLATFORM_API std::u32string folded_name(std::string_view latin1);
// Of a stored name that holds UTF-8 all the same (a name beyond Latin-1, handed on as it stood on the command line).
PLATFORM_API std::optional<std::u32string> folded_utf8_name(std::string_view name);

} // namespace platform
