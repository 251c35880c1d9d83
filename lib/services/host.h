// The services' other side: what a host sets up before it runs a plug-in, and hears from it meanwhile.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "lib/services/import_io.h"

namespace services {

// All of these may be empty. Texts are Latin-1, as plug-ins speak; they may or may not end in a line feed.
// None may throw, and none may call a plug-in.
struct Host {
    std::function<void(int32_t level, std::string_view text)> report; // one call a report; 3 warning, 4 error, 5 fatal
    std::function<void(std::string_view text)> print;                 // what is printed outside a report
    std::function<void(std::string_view text)> info;                  // progress texts
    std::function<bool(const Import_IO_Abort_Record&)> poll;          // true: stop the run
};

IMPORT_IO_API void set_host(Host host);

// Replacement names, as Import_IO_TranslateName gives them. An empty replacement takes the entry away.
IMPORT_IO_API void set_translation(int32_t kind, std::string_view name, std::string_view replacement);

// The instance that the last run named as its root; empty when it named none.
IMPORT_IO_API const std::string& root_instance_name();

// Whether a run is open: Initialize came, Cleanup didn't.
IMPORT_IO_API bool run_is_open();

// Forgets every name noted, the root's name and the translations: goes with tv::clear_scene().
IMPORT_IO_API void clear();

} // namespace services
