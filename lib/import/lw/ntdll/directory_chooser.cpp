#include "lib/import/lw/ntdll/directory_chooser.h"

#include <cstring>

#include "lib/import/lw/base/bounded_text.h"
#include "lib/import/lw/base/option_variables.h"
#include "lib/import/lw/ntdll/library.h"
#include "lib/platform/text.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/vc4_tv.h"

int32_t lb_sel_change_msg_id = -1;

static const int path_edit = 1088, file_name_edit = 1152;
static const size_t file_name_size = 16384;

static bool ends_in_separator(const char* text)
{
    const size_t length = strlen(text);
    return length > 0 && platform::is_separator(text[length - 1]);
}

// A root or a drive letter in front: the path stands on its own.
static bool is_anchored(const char* text)
{
    return platform::is_separator(text[0]) || (text[0] && text[1] == ':');
}

static const char* working_directory()
{
    const char* directory = nullptr;
    Tv_Inquire_Environment("TV_WORKING_DIR", &directory);
    return directory ? directory : "";
}

static void initial_directory(const char* root, char* out)
{
    if (!root[0]) {
        const char* const working = working_directory();
        lw_copy_text(out, lw_path_size, working[0] ? working : "\\");
        return;
    }
    if (root[1] == ':') {
        lw_copy_text(out, lw_path_size, root);
        return;
    }
    char directory[lw_path_size];
    lw_copy_text(directory, sizeof directory, root);
    const size_t length = strlen(directory);
    if (directory[length - 1] == '\\') directory[length - 1] = 0;
    const char* const working = working_directory();
    if (platform::is_separator(directory[0]) || !working[0]) {
        lw_copy_text(out, lw_path_size, directory);
        return;
    }
    lw_format_text(out, lw_path_size, "%s%s%s", working, ends_in_separator(working) ? "" : "\\", directory);
}

// What stands in the path's edit box; an empty text when the box gives none.
static void read_path(HWND dialog, char* text)
{
    text[0] = 0;
    SendDlgItemMessageA(dialog, path_edit, WM_GETTEXT, lw_path_size, reinterpret_cast<LPARAM>(text));
    text[lw_path_size - 1] = 0;
}

static void append_backslash(char* text)
{
    char whole[lw_path_size];
    const size_t length = strlen(text);
    lw_format_text(whole, sizeof whole, "%s%s", text, length > 0 && text[length - 1] == '\\' ? "" : "\\");
    lw_copy_text(text, lw_path_size, whole);
}

// OK in the chooser. False: it stays open.
static bool take_directory(HWND dialog)
{
    // The system's dialog closes only with a file name in it.
    SendDlgItemMessageA(dialog, file_name_edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("dummy.3ds"));

    char text[lw_path_size];
    read_path(dialog, text);
    if (strstr(text, "..")) {
        const DWORD length = GetCurrentDirectoryA(lw_path_size, text);
        if (length == 0 || length >= static_cast<DWORD>(lw_path_size)) read_path(dialog, text);
        append_backslash(text);
    }
    if (!is_anchored(text)) {
        const char* const root = lw_newtek_root_directory ? lw_newtek_root_directory : "";
        char whole[lw_path_size];
        lw_format_text(whole, sizeof whole, "%s%s%s", root, ends_in_separator(root) ? "" : "\\", text);
        lw_copy_text(text, sizeof text, whole);
    }

    int32_t exists = 0;
    Tv_File_Exists(text, &exists);
    if (!exists) {
        char question[lw_path_size + 128];
        lw_format_text(question, sizeof question,
                       "Newtek directory '%s' does not exist.\n\nDo you want to create this directory or cancel?",
                       text);
        if (MessageBoxA(dialog, question, "Directory Does Not Exist", MB_OKCANCEL | MB_ICONQUESTION) == IDCANCEL) {
            return false;
        }
        _mkdir(text);
    }
    Import_IO_Copy_String(&lw_newtek_root_directory, text);
    return true;
}

UINT_PTR CALLBACK OutputDirectoryDialogHookProc(HWND dialog, UINT message, WPARAM first, LPARAM)
{
    if (lb_sel_change_msg_id != -1 && message == static_cast<UINT>(lb_sel_change_msg_id)) {
        char text[lw_path_size];
        read_path(dialog, text);
        Import_IO_Copy_String(&lw_newtek_root_directory, text);
        return 0;
    }
    if (message == WM_INITDIALOG) {
        lb_sel_change_msg_id = static_cast<int32_t>(RegisterWindowMessageA("commdlg_LBSelChangedNotify"));
        Import_IO_Center_Window(parent_hwnd, dialog);
        return 1;
    }
    if (message == WM_COMMAND && LOWORD(first) == 1) return take_directory(dialog) ? 0 : 1;
    return 0;
}

void lw_choose_directory(HWND options_dialog)
{
    const lw_option& option = lw_options[LW_NEWTEK_ROOT_DIRECTORY];
    if (!lw_newtek_root_directory) Import_IO_Copy_String(&lw_newtek_root_directory, option.directory);
    char* const file_name = static_cast<char*>(Tv_Alloc_Memory(1, 0, file_name_size));
    if (!file_name) return;
    file_name[0] = 0;
    char file_title[lw_path_size] = "";
    char directory[lw_path_size];
    initial_directory(lw_newtek_root_directory ? lw_newtek_root_directory : "", directory);

    char filter[] = "All Files (*.*)|*.*|";
    for (char& c : filter) {
        if (c == '|') c = 0;
    }

    OPENFILENAMEA record = {};
    record.lStructSize = sizeof record;
    record.hwndOwner = options_dialog;
    record.hInstance = static_cast<HINSTANCE>(hDLLinstance);
    record.lpstrFilter = filter;
    record.nFilterIndex = 1;
    record.lpstrFile = file_name;
    record.nMaxFile = static_cast<DWORD>(file_name_size);
    record.lpstrFileTitle = file_title;
    record.nMaxFileTitle = sizeof file_title;
    record.lpstrInitialDir = directory;
    record.lpstrTitle = "Choose Directory";
    record.Flags = OFN_HIDEREADONLY | OFN_ENABLEHOOK | OFN_ENABLETEMPLATE | OFN_LONGNAMES;
    record.lpfnHook = OutputDirectoryDialogHookProc;
    record.lpTemplateName = "SelectDirDialogNT";
    const BOOL chosen = GetSaveFileNameA(&record);
    Tv_Free_Memory(file_name);
    if (chosen && lw_newtek_root_directory) SetDlgItemTextA(options_dialog, option.control, lw_newtek_root_directory);
}
