// What a host tells plug-ins: words of the environment, and where files are looked for.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "lib/toolkit/vc4_tv.h"

namespace tv {

TV_API void set_environment(std::string_view word, std::string_view value); // empty: takes it away

// Where Tv_Search_And_Open_File looks, in order; directories in the system's spelling. In each of them a name without
// an extension is tried with each of the endings put on (".abc", lower case), one that bears one of them without it.
TV_API void set_search_path(std::vector<std::string> directories, std::vector<std::string> endings = {});

} // namespace tv
