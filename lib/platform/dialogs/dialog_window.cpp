// The dialog calls, in terms of an open window and a face that shows it.
#include "lib/platform/dialogs/dialog_window.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "lib/platform/dialogs/dialog_obstacle.h"
#include "lib/platform/library.h"
#include "lib/platform/places.h"

Platform_Window::Control* Platform_Window::find(int id)
{
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [id](const Control& control) { return control.shape->id == id; });
    return found == controls.end() || id == -1 ? nullptr : &*found;
}

namespace platform {

static std::map<std::string, const DialogTemplate*>& templates()
{
    static std::map<std::string, const DialogTemplate*> known;
    return known;
}

void add_dialog_templates(const DialogTemplate* added, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) templates()[added[i].name] = &added[i];
}

std::unique_ptr<Platform_Window> make_window(const char* template_name)
{
    const auto found = template_name ? templates().find(template_name) : templates().end();
    if (found == templates().end()) return nullptr;
    auto window = std::make_unique<Platform_Window>();
    window->shape = found->second;
    window->title = found->second->title;
    for (std::size_t i = 0; i < found->second->control_count; ++i) {
        const DialogControl& shape = found->second->controls[i];
        window->controls.push_back({&shape, shape.text, false, {}});
    }
    return window;
}

void press(Platform_Window& window, int id)
{
    window.procedure(WM_COMMAND, static_cast<WPARAM>(id), 0);
}

void select(Platform_Window& window, int id, std::size_t item)
{
    if (window.on_select) window.on_select(id, item);
}

void set_text(Platform_Window& window, int id, const std::string& text)
{
    Platform_Window::Control* const control = window.find(id);
    if (control && control->shape->kind == ControlKind::edit && !control->shape->read_only) control->text = text;
}

static DialogFace* chosen_face = nullptr;

void set_dialog_face(DialogFace* face)
{
    chosen_face = face;
}

// The terminal's face is a library of its own beside this one, so that only those who open a dialog load it.
static DialogFace* terminal_face()
{
    static DialogFace* const face = []() -> DialogFace* {
        std::string path = library_file(reinterpret_cast<void*>(&add_dialog_templates));
        path = path.substr(0, path.rfind('/') + 1) + "lw_terminal_dialogs.so";
        std::string problem;
        void* const library = load_library(path, problem);
        if (!library) {
            std::fprintf(stderr, "Dialogs can't be shown: %s\n", problem.c_str());
            return nullptr;
        }
        using Maker = DialogFace* (*)();
        const Maker make = reinterpret_cast<Maker>(library_symbol(library, "lw_terminal_dialog_face"));
        return make ? make() : nullptr;
    }();
    return face;
}

std::string dialog_obstacle()
{
    if (chosen_face) return {};
    if (!isatty(STDIN_FILENO) || !isatty(STDOUT_FILENO)) return "dialogs need a terminal, and there is none";
    const char* const kind = std::getenv("TERM");
    if (!kind || !*kind) return "dialogs need to know the terminal's kind, and TERM isn't set";
    winsize size = {};
    // Nothing told: as the terminal's library takes it then, 80 by 24.
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) return {};
    if (size.ws_col >= least_columns && size.ws_row >= least_lines) return {};
    return "dialogs need a terminal of " + std::to_string(least_columns) + " columns and " +
           std::to_string(least_lines) + " lines, and this one has " + std::to_string(size.ws_col) + " and " +
           std::to_string(size.ws_row);
}

DialogFace* dialog_face()
{
    if (chosen_face) return chosen_face;
    const std::string obstacle = dialog_obstacle();
    if (obstacle.empty()) return terminal_face();
    std::fprintf(stderr, "No dialog: %s; nothing was changed.\n", obstacle.c_str());
    return nullptr;
}

} // namespace platform

extern "C" {

INT_PTR DialogBoxParamA(HINSTANCE, LPCSTR template_name, HWND, DLGPROC procedure, LPARAM parameter)
{
    const std::unique_ptr<Platform_Window> window = platform::make_window(template_name);
    if (!window || !procedure) return -1;
    platform::DialogFace* const face = platform::dialog_face();
    if (!face) return 0;
    window->procedure = [&](UINT message, WPARAM first, LPARAM second) {
        return procedure(window.get(), message, first, second);
    };
    window->procedure(WM_INITDIALOG, 0, parameter);
    if (!window->ended) face->run(*window);
    return window->result;
}

BOOL EndDialog(HWND dialog, INT_PTR result)
{
    if (!dialog) return FALSE;
    dialog->ended = true;
    dialog->result = result;
    return TRUE;
}

BOOL SetDlgItemTextA(HWND dialog, int control, LPCSTR text)
{
    Platform_Window::Control* const found = dialog ? dialog->find(control) : nullptr;
    if (!found) return FALSE;
    found->text = text ? text : "";
    return TRUE;
}

UINT GetDlgItemTextA(HWND dialog, int control, LPSTR text, int size)
{
    if (!text || size <= 0) return 0;
    const Platform_Window::Control* const found = dialog ? dialog->find(control) : nullptr;
    const std::string& whole = found ? found->text : std::string();
    const std::size_t length = std::min(whole.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(text, whole.data(), length);
    text[length] = 0;
    return static_cast<UINT>(length);
}

BOOL CheckDlgButton(HWND dialog, int control, UINT state)
{
    Platform_Window::Control* const found = dialog ? dialog->find(control) : nullptr;
    if (!found) return FALSE;
    found->checked = state != BST_UNCHECKED;
    return TRUE;
}

LRESULT SendDlgItemMessageA(HWND dialog, int control, UINT message, WPARAM first, LPARAM second)
{
    if (message == WM_SETTEXT) return SetDlgItemTextA(dialog, control, reinterpret_cast<LPCSTR>(second));
    if (message == WM_GETTEXT) {
        return GetDlgItemTextA(dialog, control, reinterpret_cast<LPSTR>(second),
                               static_cast<int>(std::min<WPARAM>(first, 1 << 20)));
    }
    return 0;
}

UINT RegisterWindowMessageA(LPCSTR name)
{
    static std::map<std::string, UINT> numbers;
    return numbers.try_emplace(name ? name : "", 0xc000 + static_cast<UINT>(numbers.size())).first->second;
}

int MessageBoxA(HWND, LPCSTR text, LPCSTR caption, UINT type)
{
    platform::DialogFace* const face = platform::dialog_face();
    return face ? face->message_box(caption ? caption : "", text ? text : "", type) : IDCANCEL;
}

int _mkdir(const char* path)
{
    return platform::make_directory(path) == 0 ? 0 : -1;
}
}
