// The About box.
#pragma once
#include "lib/platform/dialogs/dialogs.h"

INT_PTR CALLBACK AboutDlgProc(HWND dialog, UINT message, WPARAM first, LPARAM second);

void lw_show_about_dialog(); // below the host's window

// The online help, at its main topic: the help buttons of both dialogs.
void lw_show_help(HWND dialog);
