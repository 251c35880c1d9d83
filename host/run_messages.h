// What is told of one run.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/finding/named_files.h"
#include "lib/messages/message.h"

namespace host {

// What the plug-in or a library reports, as a message of ours: text in Latin-1, level 3 warning, 4 and 5 error. A
// report that is known has its own code, others are passed on; a line of a scene that the text names stands in `where`.
messages::Message reader_message(int32_t level, std::string_view latin1);

// The messages on one file: each text once, repetitions counted.
class RunMessages {
public:
    explicit RunMessages(std::string name) : name_(std::move(name)) {} // of the file, UTF-8

    void take(int32_t level, std::string_view latin1); // a report
    void take(messages::Message message);
    void finish(); // tells the repetitions

    std::size_t warnings = 0, errors = 0;

private:
    std::string name_;
    std::unordered_map<std::string, std::size_t> counts_;
    std::vector<std::string> order_;
    std::size_t unshown_ = 0;
};

// A message for each object file that isn't there, with the places.
void tell_missing_objects(const std::vector<FileReference>& objects);

} // namespace host
