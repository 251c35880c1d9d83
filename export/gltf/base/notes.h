// Lines for the report.
#pragma once
#include <string>
#include <unordered_set>
#include <utility>

#include "export/gltf/base/report.h"

namespace gltf {

inline void note(Report& report, Note::Level level, std::string text)
{
    report.notes.push_back({level, std::move(text)});
}

// "1 polygon", "12 polygons".
inline std::string counted(std::size_t count, const char* thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

// Tells each line once, however often it comes.
class NoteBook {
public:
    explicit NoteBook(Report& report) : report_(report) {}
    void info(const std::string& text) { add(Note::Level::info, text); }
    void warn(const std::string& text) { add(Note::Level::warning, text); }
    Report& report() { return report_; }

private:
    void add(Note::Level level, const std::string& text)
    {
        if (told_.insert(text).second) note(report_, level, text);
    }

    Report& report_;
    std::unordered_set<std::string> told_;
};

} // namespace gltf
