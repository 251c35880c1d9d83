// Where a dialog opens.
#pragma once
#include "lib/platform/dialogs/dialogs.h"

namespace services {

// Over the middle of its parent, or of the screen when there is none, and wholly on the screen.
void center_window(HWND parent, HWND dialog);

} // namespace services
