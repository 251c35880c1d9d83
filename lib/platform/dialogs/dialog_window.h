// An open dialog: what its controls hold, and whom its events go to. For the faces that show it, not for plug-ins.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lib/platform/dialogs/dialog_templates.h"
#include "lib/platform/dialogs/dialogs.h"

struct PLATFORM_API Platform_Window {
    struct Control {
        const platform::DialogControl* shape;
        std::string text; // Latin-1
        bool checked = false;
        std::vector<std::string> items; // list, combo
    };

    const platform::DialogTemplate* shape = nullptr;
    std::string title;
    std::vector<Control> controls;
    std::function<INT_PTR(UINT message, WPARAM first, LPARAM second)> procedure; // not 0: handled
    std::function<void(int control, std::size_t item)> on_select;                // an item of a list was chosen
    bool ended = false;
    INT_PTR result = 0;

    Control* find(int id); // null when there is none
};

namespace platform {

// A way to show dialogs: the terminal, or a script of answers.
class PLATFORM_API DialogFace {
public:
    virtual ~DialogFace() = default;
    virtual void run(Platform_Window& window) = 0; // until window.ended; it may show further dialogs meanwhile
    virtual int message_box(const std::string& caption, const std::string& text, UINT type) = 0; // IDOK or IDCANCEL
};

// What a face does with the user's events.
PLATFORM_API void press(Platform_Window& window, int id);                             // a button or a box
PLATFORM_API void select(Platform_Window& window, int id, std::size_t item);          // an item of a list
PLATFORM_API void set_text(Platform_Window& window, int id, const std::string& text); // typed into an edit box

// What the terminal must have at least for any dialog of ours.
inline constexpr int least_columns = 80, least_lines = 24;

std::unique_ptr<Platform_Window> make_window(const char* template_name); // null: no such template
// The face in force: a script, else the terminal, else null (with one line on standard error that says why).
DialogFace* dialog_face();
// A face for as long as it isn't taken back by a null one. Not owned.
PLATFORM_API void set_dialog_face(DialogFace* face);

} // namespace platform
