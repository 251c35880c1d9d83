// The frame of a run, as the rooms of the services share it.
#pragma once
#include "lib/services/host.h"

namespace services {

struct Run {
    Host host;
    Import_IO_Error_Handler handler = nullptr; // of the open run
    bool open = false;
    bool in_handler = false;   // a handler is at work, or has left by the non-local exit
    std::string root_instance; // as the last run named it
};

Run& run();

} // namespace services
