// What dialogs share. Window handles stay out of the trace: they differ from run to run.
#include <charconv>
#include <cmath>
#include <cstring>

#include "lib/platform/dialogs/dialogs.h"
#include "lib/services/center_window.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/words/trace.h"

void Import_IO_Center_Window(void* parent, void* dialog)
{
    services::center_window(static_cast<HWND>(parent), static_cast<HWND>(dialog));
    if (!tv::trace_enabled()) return;
    tv::trace_begin("Import_IO_Center_Window");
    tv::trace_end();
}

void Import_IO_NdFloat_To_Dialog(void* dialog, int32_t control, float value)
{
    char text[32];
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, 6).ptr = 0;
    SetDlgItemTextA(static_cast<HWND>(dialog), control, text);
    if (!tv::trace_enabled()) return;
    tv::trace_begin("Import_IO_NdFloat_To_Dialog");
    tv::trace_integer(control);
    tv::trace_float(value);
    tv::trace_end();
}

// A number from 0 to 180, with nothing but blanks round it.
static bool parse_angle(const char* text, float* angle)
{
    const char* const first = text + std::strspn(text, " \t");
    const char* const last = text + std::strlen(text);
    float value = 0;
    const std::from_chars_result end = std::from_chars(first, last, value);
    if (end.ec != std::errc() || end.ptr + std::strspn(end.ptr, " \t") != last) return false;
    if (!std::isfinite(value) || value < 0 || value > 180) return false;
    *angle = value;
    return true;
}

int32_t Import_IO_Check_Smoothing_Angle(void* dialog, int32_t control, float* angle)
{
    char text[64];
    GetDlgItemTextA(static_cast<HWND>(dialog), control, text, sizeof text);
    const bool good = angle && parse_angle(text, angle);
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_Check_Smoothing_Angle");
        tv::trace_integer(control);
        tv::trace_float(angle ? *angle : 0.0f);
        tv::trace_integer(good ? 1 : 0);
        tv::trace_end();
    }
    if (!good) {
        MessageBoxA(static_cast<HWND>(dialog), "The smoothing angle must be a number from 0 to 180 degrees.",
                    "Smoothing Angle", MB_OK);
    }
    return good ? 1 : 0;
}

void Import_IO_DisplayHelpTopic(void* dialog, const char* directory, const char* file, const char* topic)
{
    if (tv::trace_enabled()) {
        tv::trace_begin("Import_IO_DisplayHelpTopic");
        tv::trace_string(directory);
        tv::trace_string(file);
        tv::trace_string(topic);
        tv::trace_end();
    }
    MessageBoxA(static_cast<HWND>(dialog),
                "Each option is explained in the manual page (man lwimport) and in docs/user/2-options.md.", "Help",
                MB_OK);
}
