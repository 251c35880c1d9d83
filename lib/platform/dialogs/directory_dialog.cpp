// The file-save dialog in its old style, as far as a directory chooser with a template and a hook uses it: the path in
// 1088, directories in 1121, drives in 1137, the file's name in 1152. As there, choosing changes the process's directory.
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "lib/platform/dialogs/dialog_window.h"
#include "lib/platform/latin1.h"

namespace {

const int path_edit = 1088, directory_list = 1121, drive_list = 1137, file_name_edit = 1152, network_button = 1037;

// The system's own spelling; "/" when there is none, as in a directory that was removed meanwhile.
std::string current_directory()
{
    std::vector<char> text(PATH_MAX);
    return getcwd(text.data(), text.size()) ? text.data() : "/";
}

// Shows the current directory. The names of the list's items, as the system spells them.
std::vector<std::string> fill(Platform_Window& window)
{
    const std::string here = current_directory();
    if (Platform_Window::Control* const path = window.find(path_edit)) path->text = platform::utf8_to_latin1(here);
    std::vector<std::string> names;
    if (here != "/") names.emplace_back("..");
    platform::forget_directories();
    for (const std::string& name : platform::list_directory(here)) {
        if (name.empty() || name[0] == '.') continue;
        if (platform::is_directory((here == "/" ? "" : here) + "/" + name)) names.push_back(name);
    }
    if (Platform_Window::Control* const list = window.find(directory_list)) {
        list->items.clear();
        for (const std::string& name : names) list->items.push_back(platform::utf8_to_latin1(name));
    }
    if (Platform_Window::Control* const drives = window.find(drive_list)) drives->items = {"/"};
    return names;
}

} // namespace

DWORD GetCurrentDirectoryA(DWORD size, LPSTR text)
{
    std::vector<char> directory(PATH_MAX);
    if (!getcwd(directory.data(), directory.size())) return 0;
    const std::string shown = platform::utf8_to_latin1(directory.data());
    const DWORD length = static_cast<DWORD>(shown.size());
    if (length >= size || !text) return length + 1;
    std::memcpy(text, shown.c_str(), length + 1);
    return length;
}

BOOL GetSaveFileNameA(OPENFILENAMEA* record)
{
    if (!record) return FALSE;
    const std::unique_ptr<Platform_Window> window = platform::make_window(record->lpTemplateName);
    platform::DialogFace* const face = window ? platform::dialog_face() : nullptr;
    if (!face) return FALSE;
    if (record->lpstrTitle) window->title = record->lpstrTitle;
    if (record->lpstrInitialDir && record->lpstrInitialDir[0]) {
        const std::string start = platform::resolve(record->lpstrInitialDir);
        if (start.empty() || chdir(start.c_str()) != 0) window->title += " (the stored one can't be opened)";
    }

    const auto hook = [&](UINT message, WPARAM first, LPARAM second) -> UINT_PTR {
        return record->lpfnHook ? record->lpfnHook(window.get(), message, first, second) : 0;
    };
    window->procedure = [&](UINT message, WPARAM first, LPARAM second) -> INT_PTR {
        if (hook(message, first, second) != 0 || message != WM_COMMAND) return 1;
        const int id = LOWORD(first);
        // The system's dialog closes by OK only with a file's name in it.
        if (id == IDOK && window->find(file_name_edit) && !window->find(file_name_edit)->text.empty()) {
            EndDialog(window.get(), 1);
        }
        if (id == IDCANCEL) EndDialog(window.get(), 0);
        if (id == network_button) {
            MessageBoxA(window.get(), "Network drives are directories here, once the system has mounted them.",
                        "Network", MB_OK);
        }
        return 1;
    };
    std::vector<std::string> names = fill(*window);
    window->on_select = [&](int control, std::size_t item) {
        const bool drive = control == drive_list;
        if (!drive && (control != directory_list || item >= names.size())) return;
        if (chdir(drive ? "/" : names[item].c_str()) != 0) return;
        names = fill(*window);
        hook(RegisterWindowMessageA("commdlg_LBSelChangedNotify"), static_cast<WPARAM>(control), 0);
    };
    hook(WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(record));
    face->run(*window);
    return window->result != 0;
}
