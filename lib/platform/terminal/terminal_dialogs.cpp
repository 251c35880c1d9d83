// Dialogs in the terminal, by newt. A module of its own: only who opens a dialog loads newt.
//
// Controls keep the order and the neighbourhood of the template: those of about one height share a line, and lines that
// hold nothing are left out, so that a dialog of 284 units fits the 24 lines of a terminal. Tab and the arrows go from
// control to control, Space flips a box or presses a button, Enter is the dialog's default button or the button or list
// it stands on, Escape and Ctrl-C are Cancel, F1 is Help. There is no mouse: newt is built without one here.
#include <newt.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

#include "lib/platform/dialogs/dialog_window.h"
#include "lib/platform/latin1.h"

namespace {

using platform::ControlKind;
using platform::DialogControl;
using Control = Platform_Window::Control;

const int frame = 4;           // columns and lines that a window's border and shadow take
const int same_line_units = 5; // controls whose middles are nearer than this stand on one line
const int list_lines = 9;
const int box_columns = 60; // of a message box
const int enter_key = '\r', interrupt_key = 3 /* Ctrl-C, which comes as a key here */, help_button = 200;
const int resize_wait = 300; // ms between two looks at the terminal's size

// A dialog's text as the terminal takes it. A control character would move the cursor.
std::string terminal_text(std::string_view text)
{
    std::string utf8 = platform::is_beyond_latin1(text) ? std::string(text) : platform::latin1_to_utf8(text);
    std::replace_if(
        utf8.begin(), utf8.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
    return utf8;
}

std::string label(const Control& control)
{
    std::string text = control.text;
    text.erase(std::remove(text.begin(), text.end(), '&'), text.end());
    return text;
}

int middle(const DialogControl& shape)
{
    return shape.y + shape.height / 2;
}

// A text too wide for its place keeps its end, which is what tells one path from another.
std::string end_of(const std::string& text, std::size_t columns)
{
    return text.size() <= columns ? text : "..." + text.substr(text.size() - columns + 3);
}

// Lines of at most `columns` characters, parted at blanks and line feeds; a longer word is broken.
std::vector<std::string> wrapped(const std::string& text, std::size_t columns)
{
    std::vector<std::string> lines(1);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t stop = std::min(text.find_first_of(" \n", at), text.size());
        std::string word = text.substr(at, stop - at);
        if (!lines.back().empty() && lines.back().size() + 1 + word.size() > columns) lines.emplace_back();
        for (; word.size() > columns; word.erase(0, columns)) {
            lines.back() = word.substr(0, columns);
            lines.emplace_back();
        }
        if (!lines.back().empty()) lines.back() += ' ';
        lines.back() += word;
        if (stop < text.size() && text[stop] == '\n') lines.emplace_back();
        at = stop + 1;
    }
    return lines;
}

bool terminal_was_resized()
{
    winsize now = {};
    int columns = 0, lines = 0;
    newtGetScreenSize(&columns, &lines);
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &now) != 0 || now.ws_col == 0 || now.ws_row == 0) return false;
    return now.ws_col != columns || now.ws_row != lines;
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
        do {
            newtFormRun(form_, &event);
        } while (event.reason == newtExitStruct::NEWT_EXIT_TIMER && flipped_.empty() && !terminal_was_resized());
        take_over_texts();
        for (const int id : flipped_) {
            current_ = id;
            platform::press(window_, id);
        }
        if (window_.ended || event.reason == newtExitStruct::NEWT_EXIT_TIMER) return;
        if (event.reason == newtExitStruct::NEWT_EXIT_ERROR) { // the terminal is gone
            press_cancel();
            window_.ended = true;
            return;
        }
        const bool by_key = event.reason == newtExitStruct::NEWT_EXIT_HOTKEY;
        if (by_key && (event.u.key == NEWT_KEY_ESCAPE || event.u.key == interrupt_key)) return press_cancel();
        if (by_key && event.u.key == NEWT_KEY_F1) {
            if (window_.find(help_button)) platform::press(window_, help_button);
            return;
        }
        carry_out(by_key ? newtFormGetCurrent(form_) : event.u.co);
    }

    int current() const { return current_; }
    void set_current(int id)
    {
        for (const auto& [component, control] : by_component_) {
            if (control->shape->id == id && id != -1) newtFormSetCurrent(form_, component);
        }
    }

private:
    void carry_out(newtComponent pressed)
    {
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
        case ControlKind::edit:
        case ControlKind::check_box: press_default(); break;
        case ControlKind::button: platform::press(window_, control.shape->id); break;
        case ControlKind::text:
        case ControlKind::group: break;
        }
    }

    bool is_visible(const DialogControl& shape) const
    {
        return shape.x < window_.shape->width && shape.kind != ControlKind::group;
    }

    void build()
    {
        std::vector<Control*> visible;
        for (Control& control : window_.controls) {
            if (is_visible(*control.shape)) visible.push_back(&control);
        }
        std::stable_sort(visible.begin(), visible.end(),
                         [](const Control* a, const Control* b) { return middle(*a->shape) < middle(*b->shape); });
        units_ = window_.shape->width / 3 + 2 + frame <= platform::least_columns ? 3 : 4;
        columns_ = window_.shape->width / units_ + 2;
        form_ = newtForm(nullptr, nullptr, 0);
        newtFormAddHotKey(form_, NEWT_KEY_ESCAPE);
        newtFormAddHotKey(form_, interrupt_key);
        newtFormAddHotKey(form_, NEWT_KEY_F1);
        newtFormAddHotKey(form_, enter_key);
        newtFormSetTimer(form_, resize_wait);
        int line = 0, next_line = 0, line_middle = -1000;
        for (Control* control : visible) {
            const DialogControl& shape = *control->shape;
            if (middle(shape) - line_middle > same_line_units) {
                line = next_line;
                line_middle = middle(shape);
            }
            next_line = std::max(next_line, line + place(*control, line));
        }
        newtCenteredWindow(static_cast<unsigned>(columns_), static_cast<unsigned>(next_line),
                           terminal_text(end_of(window_.title, static_cast<std::size_t>(columns_) - 4)).c_str());
    }

    // Adds the control; how many lines it takes.
    int place(Control& control, int line)
    {
        const DialogControl& shape = *control.shape;
        const int column = shape.x / units_;
        const int width = std::min(std::max(4, shape.width / units_), columns_ - column);
        const auto characters = static_cast<std::size_t>(width);
        newtComponent component = nullptr;
        int lines = 1;
        switch (shape.kind) {
        case ControlKind::text: {
            const std::vector<std::string> parts = wrapped(label(control), characters);
            for (const std::string& part : parts) {
                const int indent = shape.centred ? std::max(0, (width - static_cast<int>(part.size())) / 2) : 0;
                newtFormAddComponent(form_, newtLabel(column + indent, line++, terminal_text(part).c_str()));
            }
            return static_cast<int>(parts.size());
        }
        case ControlKind::edit:
            if (shape.read_only) {
                std::string text = end_of(control.text, characters);
                text.resize(characters, '_');
                newtFormAddComponent(form_, newtLabel(column, line, terminal_text(text).c_str()));
                return 1;
            }
            component = newtEntry(column, line, terminal_text(control.text).c_str(), width, nullptr, NEWT_FLAG_SCROLL);
            break;
        case ControlKind::check_box:
            component =
                newtCheckbox(column, line, terminal_text(label(control)).c_str(), state_of(control), " *", nullptr);
            newtComponentAddCallback(component, flip, this);
            break;
        case ControlKind::button:
            component = newtCompactButton(column, line, terminal_text(label(control)).c_str());
            break;
        case ControlKind::list: lines = list_lines; [[fallthrough]];
        case ControlKind::combo:
            component = newtListbox(column, line, lines, lines > 1 ? NEWT_FLAG_SCROLL | NEWT_FLAG_BORDER : 0);
            newtListboxSetWidth(component, width);
            for (std::size_t i = 0; i < control.items.size(); ++i) {
                newtListboxAppendEntry(component, terminal_text(end_of(control.items[i], characters - 4)).c_str(),
                                       reinterpret_cast<void*>(i));
            }
            break;
        case ControlKind::group: return 0;
        }
        newtFormAddComponent(form_, component);
        by_component_[component] = &control;
        return lines;
    }

    static char state_of(const Control& control) { return control.checked ? '*' : ' '; }

    // newt has turned the box on the screen; what it stands at is the procedure's to say, once the form has returned: a
    // message box opened in here would run a form within a form.
    static void flip(newtComponent component, void* screen)
    {
        Screen& self = *static_cast<Screen*>(screen);
        self.flipped_.push_back(self.by_component_[component]->shape->id);
        newtFormSetTimer(self.form_, 1);
    }

    void take_over_texts()
    {
        for (const auto& [component, control] : by_component_) {
            if (control->shape->kind != ControlKind::edit) continue;
            const char* const typed = newtEntryGetValue(component);
            if (!typed || terminal_text(control->text) == typed) continue;
            platform::set_text(window_, control->shape->id, platform::utf8_to_latin1(typed));
        }
    }

    // A dialog without Cancel is one that only tells something.
    void press_cancel() { window_.find(IDCANCEL) ? platform::press(window_, IDCANCEL) : press_default(); }

    void press_default()
    {
        for (const Control& control : window_.controls) {
            if (control.shape->is_default) return platform::press(window_, control.shape->id);
        }
    }

    Platform_Window& window_;
    newtComponent form_ = nullptr;
    std::map<newtComponent, Control*> by_component_;
    int units_ = 3, columns_ = 0; // units a column; columns of the window
    std::vector<int> flipped_;    // boxes, in order: two quick keys may come before the form returns
    int current_ = -1;
};

// Its own instead of newt's: that one takes a format, and a width that a long path doesn't fit.
bool show_box(const std::string& caption, const std::string& text, bool with_cancel)
{
    const std::vector<std::string> lines = wrapped(text, box_columns);
    const int shown = std::min(static_cast<int>(lines.size()), platform::least_lines - frame - 4);
    newtCenteredWindow(box_columns + 4, static_cast<unsigned>(shown) + 4, terminal_text(caption).c_str());
    std::string all;
    for (const std::string& line : lines) all += terminal_text(line) + "\n";
    const bool scrolls = shown < static_cast<int>(lines.size());
    const newtComponent words = newtTextbox(1, 1, box_columns, shown, scrolls ? NEWT_FLAG_SCROLL : 0);
    newtTextboxSetText(words, all.c_str());
    const newtComponent ok = newtCompactButton(with_cancel ? 18 : 28, shown + 2, "OK");
    const newtComponent cancel = with_cancel ? newtCompactButton(34, shown + 2, "Cancel") : nullptr;
    const newtComponent form = newtForm(nullptr, nullptr, 0);
    newtFormAddComponents(form, words, ok, cancel, nullptr);
    newtFormAddHotKey(form, NEWT_KEY_ESCAPE);
    newtFormAddHotKey(form, interrupt_key);
    newtFormSetCurrent(form, ok);
    newtExitStruct event = {};
    newtFormRun(form, &event);
    const bool accepted = event.reason == newtExitStruct::NEWT_EXIT_COMPONENT && event.u.co == ok;
    newtFormDestroy(form);
    newtPopWindow();
    return accepted;
}

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
            if (terminal_was_resized()) {
                newtResizeScreen(0);
                newtCls();
            }
        }
        leave();
    }

    int message_box(const std::string& caption, const std::string& text, UINT type) override
    {
        enter();
        const bool with_cancel = (type & 0xf) == MB_OKCANCEL;
        const bool accepted = show_box(caption, text, with_cancel);
        leave();
        return accepted || !with_cancel ? IDOK : IDCANCEL;
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
