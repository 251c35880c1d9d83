// Messages for the report.
#pragma once
#include <string>
#include <unordered_set>
#include <utility>

#include "export/gltf/base/report.h"

namespace gltf {

using messages::message;

// Tells each text once, however often it comes.
class NoteBook {
public:
    explicit NoteBook(Report& report) : report_(report) {}
    void tell(messages::Message note)
    {
        if (told_.insert(messages::text(note)).second) report_.notes.push_back(std::move(note));
    }
    Report& report() { return report_; }

private:
    Report& report_;
    std::unordered_set<std::string> told_;
};

} // namespace gltf
