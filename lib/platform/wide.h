// Windows' own strings: UTF-16 at its calls, UTF-8 on our side.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "lib/platform/dialogs/dialogs.h"

namespace platform {

std::optional<std::wstring> wide_of_utf8(std::string_view text); // nothing where it isn't UTF-8
std::wstring wide_of_latin1(std::string_view text);
std::wstring wide(std::string_view text); // UTF-8, or what isn't taken for Latin-1
std::string narrow(std::wstring_view text);

std::string error_text(DWORD error); // what the system says of it, without a line end

} // namespace platform
