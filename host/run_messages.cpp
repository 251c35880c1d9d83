#include "host/run_messages.h"

#include "host/messages.h"
#include "host/path_display.h"
#include "host/progress.h"
#include "lib/platform/latin1.h"

namespace host {

static constexpr std::size_t max_messages = 100; // of one file; more of them say no more

void RunMessages::take(int32_t level, std::string_view latin1)
{
    ++(level <= 3 ? warnings : errors);
    while (!latin1.empty() && latin1.back() == '\n') latin1.remove_suffix(1);
    const std::string text = platform::latin1_to_utf8(latin1);
    if (const auto known = counts_.find(text); known != counts_.end()) {
        ++known->second;
    } else if (counts_.size() < max_messages) {
        counts_.emplace(text, 1);
        order_.push_back(text);
        say(level <= 3 ? Level::warning : Level::error, name_ + ": " + text);
    } else {
        ++unshown_;
    }
}

void RunMessages::finish()
{
    for (const std::string& text : order_)
        if (const std::size_t times = counts_[text]; times > 1)
            say(Level::note, name_ + ": " + grouped(times - 1) + " more times: " + text);
    if (unshown_ > 0) say(Level::note, name_ + ": " + counted(unshown_, "message", "messages") + " not shown");
}

void tell_missing_objects(const std::vector<FileReference>& objects)
{
    std::unordered_map<std::string, std::size_t> times;
    for (const FileReference& object : objects)
        if (object.is_missing()) ++times[file_key(object.reference)];
    for (const FileReference& object : objects) {
        if (!object.is_missing()) continue;
        std::size_t& count = times[file_key(object.reference)];
        if (count == 0) continue; // told already
        std::string text = object.asked_by + ": missing object " + platform::latin1_to_utf8(object.reference.stored) +
                           ", a null object takes its place";
        if (count > 1) text += " (named " + grouped(count) + " times)";
        say(Level::warning, text + "\n" + places_text(object.tried, 24));
        count = 0;
    }
}

} // namespace host
