#include "host/run_messages.h"

#include <charconv>

#include "host/path_display.h"
#include "host/say.h"
#include "lib/platform/latin1.h"

namespace host {

using messages::message;
using messages::Message;

static constexpr std::size_t max_messages = 100; // of one file; more of them say no more

// "... at line number 12 of ..." and "Line number = 12. ...", as the scene reader words them; 0 where there is none.
static std::size_t line_in(std::string_view text)
{
    constexpr std::string_view mark = "ine number ";
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos) return 0;
    text.remove_prefix(at + mark.size());
    if (text.starts_with("= ")) text.remove_prefix(2);
    std::size_t line = 0;
    std::from_chars(text.data(), text.data() + text.size(), line);
    return line;
}

Message reader_message(int32_t level, std::string_view latin1)
{
    while (!latin1.empty() && latin1.back() == '\n') latin1.remove_suffix(1);
    std::string text = platform::latin1_to_utf8(latin1);
    Message told = latin1.starts_with("Could not locate Lightwave object file '")
                       ? message<"reader-object-missing">(std::move(text))
                   : level <= 3 ? message<"reader-warning">(std::move(text))
                                : message<"reader-error">(std::move(text));
    told.where.line = line_in(latin1);
    return told;
}

void RunMessages::take(int32_t level, std::string_view latin1)
{
    Message told = reader_message(level, latin1);
    // That one is told better behind the run, with the stored path and the places.
    if (!messages::is<"reader-object-missing">(told)) take(std::move(told));
}

void RunMessages::take(Message told)
{
    ++(told.row->level == messages::Level::error ? errors : warnings);
    const std::string text = messages::text(told);
    if (const auto known = counts_.find(text); known != counts_.end()) {
        ++known->second;
    } else if (counts_.size() < max_messages) {
        counts_.emplace(text, 1);
        order_.push_back(text);
        say(about(name_, std::move(told)));
    } else {
        ++unshown_;
    }
}

void RunMessages::finish()
{
    for (const std::string& text : order_)
        if (const std::size_t times = counts_[text]; times > 1)
            say(about(name_, message<"reader-repeated">(times - 1, text)));
    if (unshown_ > 0) say(about(name_, message<"reader-not-shown">(unshown_)));
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
        PlaceLines places = place_lines(object.tried, places_told);
        Message told = message<"object-missing">(platform::latin1_to_utf8(object.reference.stored),
                                                 count > 1 ? count : 0, std::move(places.lines), places.more);
        told.where = object.asked_by;
        say(told);
        count = 0;
    }
}

} // namespace host
