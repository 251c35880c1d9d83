#include "lib/toolkit/report.h"

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

#include "lib/platform/latin1.h"

namespace tv {

namespace {

// %1, %2: the report's own strings, in order. A code that isn't here shows its strings as they came.
struct Wording {
    std::string_view code, text;
};
constexpr Wording wordings[] = {
    {"ERR_FILE_OPEN_READ", "can't open the %1 file '%2' for reading"},
    {"OUTERR_FILE_OPEN_WRITE", "can't open the %1 file '%2' for writing"},
    {"ERR_GEOM_IMPORT_BAD_TOKEN", "'%1' is no option of a conversion: it is ignored"},
    {"ERR_TOOLKIT_BAD_WORD", "'%1' has no place in this list of words: the call is ignored"},
    {"ERR_TOOLKIT_NO_MEMORY", "out of memory: the call is ignored"},
    {"ERR_SCENE_BAD_PARENT", "instance '%1' can't hang under '%2', which doesn't exist or hangs under it: it is put "
                             "under 'world'"},
    {"ERR_SCENE_UNKNOWN_NAME", "there is no %1 '%2'"},
    {"ERR_SCENE_UNKNOWN_SURFACE", "object '%1' names the surface '%2', which doesn't exist"},
    {"ERR_SCENE_NO_OBJECT", "polygons come outside the making of an object: they are dropped"},
    {"ERR_SCENE_FIXED", "'%1' is part of every scene: it stays where it is"},
    {"ERR_SCENE_TOO_LARGE", "the scene holds more than %1 places of instances: the rest isn't measured"},
    {"ERR_ANIM_BAD_CHANNEL", "keys come for a channel that doesn't exist: they are dropped"},
    {"ERR_ANIM_BAD_KEY", "the channel has no key with the number %1"},
    {"ERR_TRACE_OPEN_WRITE", "can't write the trace file '%1'"},
};

std::string worded(std::string_view code, std::span<const std::string_view> details)
{
    for (const Wording& wording : wordings) {
        if (wording.code != code) continue;
        std::string line;
        for (std::size_t i = 0; i < wording.text.size(); ++i) {
            if (wording.text[i] != '%') {
                line += wording.text[i];
                continue;
            }
            const std::size_t number = static_cast<std::size_t>(wording.text[++i] - '1');
            if (number < details.size()) line += details[number];
        }
        return line;
    }
    std::string line;
    for (const std::string_view detail : details) {
        if (!line.empty()) line += ", ";
        line += detail;
    }
    return line;
}

void to_standard_error(void*, int32_t level, const char* text)
{
    std::fprintf(stderr, "%s: %s\n", level <= 3 ? "warning" : "error", platform::latin1_to_utf8(text).c_str());
}

ReportSink sink = to_standard_error;
void* sink_context = nullptr;

} // namespace

void report(int32_t level, const char* code, const char* function, std::span<const std::string_view> details) noexcept
{
    // Without memory the message is lost, and the call goes on.
    platform::noting_short_memory([&] {
        std::string line = worded(code, details);
        line += (line.empty() ? "(" : " (") + std::string(code);
        line += function && *function ? std::string(", ") + function + ")" : std::string(")");
        sink(sink_context, level, line.c_str());
    });
}

void report(int32_t level, const char* code, const char* function,
            std::initializer_list<std::string_view> details) noexcept
{
    report(level, code, function, std::span(details.begin(), details.size()));
}

void set_report_sink(ReportSink new_sink, void* context)
{
    sink = new_sink ? new_sink : to_standard_error;
    sink_context = new_sink ? context : nullptr;
}

} // namespace tv
