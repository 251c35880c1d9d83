#include "lib/platform/dialogs/dialog_script.h"

#include <algorithm>
#include <cstdlib>

namespace platform {

static std::string describe(const Platform_Window& window)
{
    std::string text = std::string("show ") + window.shape->name + ":";
    for (const Platform_Window::Control& control : window.controls) {
        const std::string id = " " + std::to_string(control.shape->id) + "=";
        if (control.shape->kind == ControlKind::edit) text += id + control.text;
        if (control.shape->kind == ControlKind::check_box) text += id + (control.checked ? "1" : "0");
    }
    return text;
}

void DialogScript::run(Platform_Window& window)
{
    transcript.push_back(std::string("open ") + window.shape->name);
    while (!window.ended && !events_.empty()) {
        transcript.push_back(describe(window));
        const std::string event = events_.front();
        events_.pop_front();
        carry_out(window, event);
    }
    for (const int id : {IDCANCEL, IDOK}) {
        if (!window.ended && window.find(id)) press(window, id);
    }
    window.ended = true;
    transcript.push_back(std::string("close ") + window.shape->name + " " + std::to_string(window.result));
}

void DialogScript::carry_out(Platform_Window& window, const std::string& event)
{
    const std::size_t first = event.find(' '), second = event.find(' ', first + 1);
    const std::string verb = event.substr(0, first);
    const int id = first == std::string::npos ? -1 : std::atoi(event.c_str() + first + 1);
    const std::string rest = second == std::string::npos ? "" : event.substr(second + 1);
    Platform_Window::Control* const control = window.find(id);
    if (control && verb == "press") return press(window, id);
    if (control && verb == "type" && control->shape->kind == ControlKind::edit) return set_text(window, id, rest);
    if (control && verb == "select") {
        const auto item = std::find(control->items.begin(), control->items.end(), rest);
        if (item != control->items.end()) {
            return select(window, id, static_cast<std::size_t>(item - control->items.begin()));
        }
    }
    transcript.push_back("error '" + event + "' can't be done in " + window.shape->name);
}

int DialogScript::message_box(const std::string& caption, const std::string& text, UINT)
{
    transcript.push_back("box " + caption + ": " + text);
    if (events_.empty() || events_.front().rfind("answer ", 0) != 0) return IDCANCEL;
    const bool ok = events_.front() == "answer ok";
    events_.pop_front();
    return ok ? IDOK : IDCANCEL;
}

} // namespace platform
