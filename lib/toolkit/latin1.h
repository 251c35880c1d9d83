// Names are Latin-1 inside and UTF-8 outside.
#pragma once
#include <string>
#include <string_view>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

TV_API std::string latin1_to_utf8(std::string_view latin1); // total: every byte is a character
// What isn't valid UTF-8, or has characters beyond Latin-1, comes back byte for byte.
TV_API std::string utf8_to_latin1(std::string_view utf8);

} // namespace tv
