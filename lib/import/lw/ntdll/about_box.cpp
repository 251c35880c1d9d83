#include "lib/import/lw/ntdll/about_box.h"

#include "lib/import/lw/ntdll/library.h"
#include "lib/services/import_io.h"

void lw_show_help(HWND dialog)
{
    Import_IO_DisplayHelpTopic(dialog, plugin_directory, "imp_lw.hlp", "main");
}

INT_PTR CALLBACK AboutDlgProc(HWND dialog, UINT message, WPARAM first, LPARAM)
{
    if (message == WM_INITDIALOG) {
        Import_IO_Center_Window(parent_hwnd, dialog);
        return 1;
    }
    if (message != WM_COMMAND) return 0;
    switch (LOWORD(first)) {
    case 1: EndDialog(dialog, 1); return 1;
    case 200: lw_show_help(dialog); return 1;
    default: return 0;
    }
}

void lw_show_about_dialog()
{
    DialogBoxParamA(static_cast<HINSTANCE>(hDLLinstance), "AboutBox", static_cast<HWND>(parent_hwnd), AboutDlgProc, 0);
}
