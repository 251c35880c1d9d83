// The dialog calls of Windows. On Windows this header is the system's own. Elsewhere it declares just those calls that
// the plug-in and its services make, with the system's names, types and numbers, and a body that shows the dialogs in
// the terminal or has them answered by a script (terminal_dialogs, dialog_script).
//
// A dialog's template comes from the plug-in's resource script; its texts are Latin-1.
#pragma once

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// clang-format off
#include <commdlg.h>
#include <direct.h>
// clang-format on

#else

#include <cstdint>

#include "lib/platform/files.h"

struct Platform_Window; // a dialog or a control of one
using HWND = Platform_Window*;
using HINSTANCE = void*;
using UINT = unsigned int;
using DWORD = uint32_t;
using WORD = uint16_t;
using BOOL = int;
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using INT_PTR = intptr_t;
using UINT_PTR = uintptr_t;
using LPCSTR = const char*;
using LPSTR = char*;

#define CALLBACK
#define FALSE 0
#define TRUE 1
#define LOWORD(value) (static_cast<WORD>(static_cast<uintptr_t>(value) & 0xffffu))

using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using LPOFNHOOKPROC = UINT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

inline constexpr UINT WM_SETTEXT = 0x000c, WM_GETTEXT = 0x000d, WM_INITDIALOG = 0x0110, WM_COMMAND = 0x0111;
inline constexpr int IDOK = 1, IDCANCEL = 2;
inline constexpr UINT MB_OK = 0x0, MB_OKCANCEL = 0x1, MB_ICONQUESTION = 0x20;
inline constexpr UINT BST_UNCHECKED = 0, BST_CHECKED = 1;
inline constexpr DWORD OFN_HIDEREADONLY = 0x4, OFN_ENABLEHOOK = 0x20, OFN_ENABLETEMPLATE = 0x40,
                       OFN_LONGNAMES = 0x200000;

// The fields that are used here, of the record of the directory chooser.
struct OPENFILENAMEA {
    DWORD lStructSize;
    HWND hwndOwner;
    HINSTANCE hInstance;
    LPCSTR lpstrFilter;
    LPSTR lpstrCustomFilter;
    DWORD nMaxCustFilter;
    DWORD nFilterIndex;
    LPSTR lpstrFile;
    DWORD nMaxFile;
    LPSTR lpstrFileTitle;
    DWORD nMaxFileTitle;
    LPCSTR lpstrInitialDir;
    LPCSTR lpstrTitle;
    DWORD Flags;
    WORD nFileOffset;
    WORD nFileExtension;
    LPCSTR lpstrDefExt;
    LPARAM lCustData;
    LPOFNHOOKPROC lpfnHook;
    LPCSTR lpTemplateName;
};

extern "C" {
// What EndDialog was given; 0 at once, with one line on standard error, where there is no terminal; -1 for a template
// that doesn't exist. The procedure is called on this thread, first with WM_INITDIALOG.
PLATFORM_API INT_PTR DialogBoxParamA(HINSTANCE instance, LPCSTR template_name, HWND owner, DLGPROC procedure, LPARAM);
PLATFORM_API BOOL EndDialog(HWND dialog, INT_PTR result);
PLATFORM_API BOOL SetDlgItemTextA(HWND dialog, int control, LPCSTR text);
PLATFORM_API UINT GetDlgItemTextA(HWND dialog, int control, LPSTR text, int size); // the length; always terminated
PLATFORM_API BOOL CheckDlgButton(HWND dialog, int control, UINT state);
PLATFORM_API LRESULT SendDlgItemMessageA(HWND dialog, int control, UINT message, WPARAM, LPARAM);
PLATFORM_API UINT RegisterWindowMessageA(LPCSTR name); // the same number for the same name, 0xc000 and up
PLATFORM_API int MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type);
PLATFORM_API BOOL GetSaveFileNameA(OPENFILENAMEA* record);       // the directory chooser: not 0 after OK
PLATFORM_API DWORD GetCurrentDirectoryA(DWORD size, LPSTR text); // the length, or 0; the size needed where it is short
PLATFORM_API int _mkdir(const char* path);                       // 0, or -1
}

#endif
