// Dialogs answered by a list of events: for tests, and for programs that drive a plug-in's dialogs themselves.
#pragma once
#include <deque>
#include <string>
#include <vector>

#include "lib/platform/dialogs/dialog_window.h"

namespace platform {

// Events are taken in order by whatever dialog is open: "press 100", "type 103 45.5", "select 1121 Objects",
// and for a message box "answer ok" or "answer cancel". A dialog that runs out of events is closed by its Cancel
// button (or, having none, its button 1; or at once); a box without an answer gets Cancel. An event that the open
// dialog can't take is noted in the transcript as an error and dropped.
class PLATFORM_API DialogScript : public DialogFace {
public:
    explicit DialogScript(std::vector<std::string> events) : events_(events.begin(), events.end()) {}
    void run(Platform_Window& window) override;
    int message_box(const std::string& caption, const std::string& text, UINT type) override;

    // What was seen: "open NAME", "show NAME: id=text ..." before each event, "box CAPTION: TEXT", "close NAME result",
    // "error ...".
    std::vector<std::string> transcript;

private:
    void carry_out(Platform_Window& window, const std::string& event);
    std::deque<std::string> events_;
};

} // namespace platform
