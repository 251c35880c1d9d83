// For programs that open a plug-in's dialogs: can one be shown at all?
#pragma once
#include <string>

#include "lib/platform/files.h"

namespace platform {

// Why no dialog can be shown now, as a part of a sentence; empty when one can.
#if defined(_WIN32)
inline std::string dialog_obstacle()
{
    return {};
}
#else
PLATFORM_API std::string dialog_obstacle();
#endif

} // namespace platform
