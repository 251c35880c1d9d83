// Dialog templates, as the build makes them from a plug-in's resource script. Sizes are dialog units: a quarter of a
// character's width, an eighth of its height.
#pragma once
#include <cstddef>
#include <cstdint>

#include "lib/platform/files.h"

namespace platform {

enum class ControlKind : uint8_t { text, group, edit, check_box, button, list, combo };

struct DialogControl {
    ControlKind kind;
    int32_t id;       // -1: none
    const char* text; // Latin-1; "&" marks the next letter as the control's key
    int16_t x, y, width, height;
    bool read_only;  // edit
    bool centred;    // text
    bool is_default; // button: Enter presses it
};

struct DialogTemplate {
    const char* name;
    const char* title;
    int16_t width, height;
    const DialogControl* controls;
    std::size_t control_count;
};

// Makes them known to DialogBoxParamA and GetSaveFileNameA, by name; the later of two of one name counts. They are the
// caller's, and live as long as the program.
PLATFORM_API void add_dialog_templates(const DialogTemplate* templates, std::size_t count);

} // namespace platform
