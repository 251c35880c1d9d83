// Path names as text: nothing here looks at a disk.
#pragma once
#include <string_view>

namespace tv {

// The text behind the last slash, backslash or colon.
std::string_view base_name(std::string_view path);
// Behind the base name's last dot; empty where there is none, or only one in front.
std::string_view extension_of(std::string_view path);
// Equal but for the case of ASCII letters; `lower` is in lower case.
bool same_letters(std::string_view text, std::string_view lower);

} // namespace tv
