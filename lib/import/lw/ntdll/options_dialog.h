// The Options dialog: what it does to the option variables.
#pragma once
#include <cstdint>

#include "lib/platform/dialogs/dialogs.h"

// The dialog's procedure. The boxes change the variables at once, and Cancel doesn't put them back; OK takes the angle
// over, if it can be taken, and writes the options file.
INT_PTR CALLBACK OptionsDlgProc(HWND dialog, UINT message, WPARAM first, LPARAM second);

// Shows it, below the host's window. What the dialog was ended with: 1 OK, 0 Cancel; 0 too where none can be shown.
int32_t lw_show_options_dialog();
