// Dialogs in the terminal, by newt. A module of its own: only who opens a dialog loads newt.
//
// Controls keep the order and the neighbourhood of the template: those of about one height share a line, and lines that
// hold nothing are left out, so that a dialog of 284 units fits the 24 lines of a terminal.
#include <newt.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "lib/platform/dialog_window.h"

namespace {

using platform::ControlKind;
using platform::DialogControl;
using Control = Platform_Window::Control;

const int units_per_column = 3;
const int same_line_units = 5; // controls whose middles are nearer than this stand on one line
const int list_lines = 7;

// Latin-1 to the terminal's UTF-8.
std::string shown(const std::string& latin1)
{
    std::string text;
    for (const char c : latin1) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xc0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return text;
}

std::string label(const Control& control)
{
    std::string text = control.text;
    text.erase(std::remove(text.begin(), text.end(), '&'), text.end());
    return shown(text);
}

int middle(const DialogControl& shape)
{
    return shape.y + shape.height / 2;
}

std::vector<std::string> wrapped(const std::string& text, std::size_t columns)
{
    std::vector<std::string> lines(1);
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t blank = std::min(text.find(' ', at), text.size());
        const std::string word = text.substr(at, blank - at);
        if (!lines.back().empty() && lines.back().size() + 1 + word.size() > columns) lines.emplace_back();
        if (!lines.back().empty()) lines.back() += ' ';
        lines.back() += word;
        at = blank + 1;
    }
    return lines;
}

// One open dialog on the screen.
class Screen {
public:
    explicit Screen(Platform_Window& window) : window_(window) { build(); }
    ~Screen()
    {
        newtFormDestroy(form_);
        newtPopWindow();
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // One event of the user's, carried out.
    void step()
    {
        newtExitStruct event = {};
        newtFormRun(form_, &event);
        take_over_texts();
        if (event.reason == newtExitStruct::NEWT_EXIT_HOTKEY && event.u.key == NEWT_KEY_ESCAPE) {
            return platform::press(window_, IDCANCEL);
        }
        const newtComponent pressed =
            event.reason == newtExitStruct::NEWT_EXIT_HOTKEY ? newtFormGetCurrent(form_) : event.u.co;
        const auto found = by_component_.find(pressed);
        if (found == by_component_.end()) return;
        Control& control = *found->second;
        current_ = control.shape->id;
        switch (control.shape->kind) {
        case ControlKind::list:
        case ControlKind::combo: {
            const auto item = reinterpret_cast<std::uintptr_t>(newtListboxGetCurrent(pressed));
            if (!control.items.empty()) platform::select(window_, control.shape->id, item);
            break;
        }
        case ControlKind::edit: press_default(); break;
        case ControlKind::check_box:
        case ControlKind::button: platform::press(window_, control.shape->id); break;
        case ControlKind::text:
        case ControlKind::group: break;
        }
    }

    int current() const { return current_; }
    void set_current(int id)
    {
        for (const auto& [component, control] : by_component_) {
            if (control->shape->id == id && id != -1) newtFormSetCurrent(form_, component);
        }
    }

private:
    void build()
    {
        std::vector<Control*> visible;
        for (Control& control : window_.controls) {
            const DialogControl& shape = *control.shape;
            if (shape.x < window_.shape->width && shape.kind != ControlKind::group) visible.push_back(&control);
        }
        std::stable_sort(visible.begin(), visible.end(),
                         [](const Control* a, const Control* b) { return middle(*a->shape) < middle(*b->shape); });
        const int columns = window_.shape->width / units_per_column + 2;
        form_ = newtForm(nullptr, nullptr, 0);
        newtFormAddHotKey(form_, NEWT_KEY_ESCAPE);
        int line = 0, next_line = 0, line_middle = -1000;
        for (Control* control : visible) {
            const DialogControl& shape = *control->shape;
            const bool tall = shape.kind == ControlKind::list;
            if (middle(shape) - line_middle > same_line_units) {
                line = next_line;
                line_middle = middle(shape);
            }
            next_line = std::max(next_line, line + place(*control, line, tall ? list_lines : 1));
        }
        newtCenteredWindow(static_cast<unsigned>(columns), static_cast<unsigned>(next_line),
                           shown(window_.title).c_str());
    }

    // Adds the control; how many lines it takes.
    int place(Control& control, int line, int lines)
    {
        const DialogControl& shape = *control.shape;
        const int column = shape.x / units_per_column;
        const int width = std::max(4, shape.width / units_per_column);
        newtComponent component = nullptr;
        switch (shape.kind) {
        case ControlKind::text: {
            const std::vector<std::string> parts = wrapped(label(control), static_cast<std::size_t>(width));
            int row = line;
            for (const std::string& part : parts) {
                const int indent = shape.centred ? std::max(0, (width - static_cast<int>(part.size())) / 2) : 0;
                newtFormAddComponent(form_, newtLabel(column + indent, row++, part.c_str()));
            }
            return static_cast<int>(parts.size());
        }
        case ControlKind::edit:
            component = newtEntry(column, line, shown(control.text).c_str(), width, nullptr,
                                  NEWT_FLAG_SCROLL | NEWT_FLAG_RETURNEXIT | (shape.read_only ? NEWT_FLAG_DISABLED : 0));
            break;
        case ControlKind::check_box: // a button that looks like a box: its state is the procedure's to change
            component = newtCompactButton(column, line, ((control.checked ? "[*] " : "[ ] ") + label(control)).c_str());
            break;
        case ControlKind::button: component = newtCompactButton(column, line, label(control).c_str()); break;
        case ControlKind::list:
        case ControlKind::combo:
            component = newtListbox(column, line, lines, NEWT_FLAG_RETURNEXIT | (lines > 1 ? NEWT_FLAG_SCROLL : 0));
            newtListboxSetWidth(component, width);
            for (std::size_t i = 0; i < control.items.size(); ++i) {
                newtListboxAppendEntry(component, shown(control.items[i]).c_str(), reinterpret_cast<void*>(i));
            }
            break;
        case ControlKind::group: return 0;
        }
        newtFormAddComponent(form_, component);
        by_component_[component] = &control;
        return lines;
    }

    void take_over_texts()
    {
        for (const auto& [component, control] : by_component_) {
            if (control->shape->kind != ControlKind::edit || control->shape->read_only) continue;
            char* const typed = newtEntryGetValue(component);
            if (!typed || shown(control->text) == typed) continue;
            platform::set_text(window_, control->shape->id, typed);
        }
    }

    void press_default()
    {
        for (const Control& control : window_.controls) {
            if (control.shape->is_default) return platform::press(window_, control.shape->id);
        }
    }

    Platform_Window& window_;
    newtComponent form_ = nullptr;
    std::map<newtComponent, Control*> by_component_;
    int current_ = -1;
};

class TerminalFace : public platform::DialogFace {
public:
    void run(Platform_Window& window) override
    {
        enter();
        int current = -1;
        // Built anew for each event: whatever the procedure changed is then on the screen.
        while (!window.ended) {
            Screen screen(window);
            screen.set_current(current);
            screen.step();
            if (screen.current() != -1) current = screen.current();
        }
        leave();
    }

    int message_box(const std::string& caption, const std::string& text, UINT type) override
    {
        enter();
        std::string title = shown(caption), words = shown(text);
        char ok[] = "OK", cancel[] = "Cancel", format[] = "%s";
        int answer = 1;
        if ((type & 0xf) == MB_OKCANCEL) {
            answer = newtWinChoice(title.data(), ok, cancel, format, words.c_str());
        } else {
            newtWinMessage(title.data(), ok, format, words.c_str());
        }
        leave();
        return answer == 1 || (type & 0xf) != MB_OKCANCEL ? IDOK : IDCANCEL;
    }

private:
    void enter()
    {
        if (depth_++ > 0) return;
        newtInit();
        newtCls();
    }
    void leave()
    {
        if (--depth_ == 0) newtFinished();
    }
    int depth_ = 0;
};

} // namespace

extern "C" __attribute__((visibility("default"))) platform::DialogFace* lw_terminal_dialog_face()
{
    static TerminalFace face;
    return &face;
}
