// The chooser of the content directory: the system's file dialog with a template and a hook of ours. The hook writes
// the choice straight to lw_newtek_root_directory; what the system's dialog itself returns is not looked at.
#pragma once
#include <cstdint>

#include "lib/platform/dialogs/dialogs.h"

// Number of the registered message that tells of a selection in the directory list; -1 until the first WM_INITDIALOG.
extern int32_t lb_sel_change_msg_id;

UINT_PTR CALLBACK OutputDirectoryDialogHookProc(HWND dialog, UINT message, WPARAM first, LPARAM second);

// Opens the chooser below the Options dialog, and shows what was chosen in the dialog's control 108.
void lw_choose_directory(HWND options_dialog);
