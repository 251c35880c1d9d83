#include "export/page/page.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "export/gltf/file/base64.h"
#include "export/page/viewer_page.h"
#include "lib/messages/message.h"

namespace page {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t most_rows = 1000;    // of each list
constexpr std::size_t most_places = 100;   // of one missing file
constexpr std::size_t largest_text = 4000; // bytes
constexpr std::size_t largest_glb = std::size_t{1} << 30;
constexpr std::size_t block_size = std::size_t{12}
                                   << 20; // of the GLB, in a text that every browser holds; whole triples

// At most largest_text bytes, cut between characters.
std::string bounded(const std::string& text)
{
    if (text.size() <= largest_text) return text;
    std::size_t end = largest_text;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;
    return text.substr(0, end) + "…";
}

template <class Thing, class ToJson>
Json list_of(const std::vector<Thing>& things, ToJson to_json)
{
    Json list = Json::array();
    for (std::size_t i = 0; i < std::min(things.size(), most_rows); ++i) list.push_back(to_json(things[i]));
    return list;
}

Json entry_json(const Entry& entry)
{
    return {{"code", entry.code}, {"text", bounded(entry.text)}, {"count", entry.count}};
}

Json missing_json(const MissingFile& file)
{
    Json tried = Json::array();
    for (std::size_t i = 0; i < std::min(file.tried.size(), most_places); ++i) tried.push_back(bounded(file.tried[i]));
    return {{"kind", file.kind},
            {"name", bounded(file.name)},
            {"askedBy", bounded(file.asked_by)},
            {"tried", std::move(tried)}};
}

Json message_json(const Message& message)
{
    return {{"code", message.code},
            {"level", message.level},
            {"text", bounded(message.text)},
            {"file", bounded(message.file)},
            {"line", message.line}};
}

// Text that can stand in a script element: ASCII, and nothing in it ends the element.
std::string report_text(const Contents& contents)
{
    Json report = {{"format", "lwimport page"}, {"version", 1}};
    report["source"] = bounded(contents.source);
    report["program"] = contents.program;
    report["counters"] = list_of(contents.counters, [](const Counter& counter) -> Json {
        return {{"name", counter.name}, {"count", counter.count}};
    });
    report["restored"] = list_of(contents.restored, entry_json);
    report["losses"] = list_of(contents.losses, entry_json);
    report["missing"] = list_of(contents.missing, missing_json);
    report["messages"] = list_of(contents.messages, message_json);
    report["messagesLeftOut"] = contents.messages.size() - std::min(contents.messages.size(), most_rows);
    const std::string json = report.dump(-1, ' ', true, Json::error_handler_t::replace);
    std::string text;
    for (const char c : json) {
        if (c == '<')
            text += "\\u003c";
        else
            text += c;
    }
    return text;
}

// Of HTML; control characters are nothing that a title shows.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '<')
            result += "&lt;";
        else if (c == '&')
            result += "&amp;";
        else if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7f)
            result += c;
    }
    return result;
}

} // namespace

bool has_viewer()
{
    return !viewer_page.empty();
}

void write_page(std::span<const unsigned char> glb, const Contents& contents,
                const std::function<void(const void*, std::size_t)>& sink)
{
    if (glb.size() > largest_glb) throw messages::Error(messages::message<"page-too-large">());
    std::string_view rest = viewer_page;
    // What stands before the mark goes out, and the mark is dropped.
    const auto up_to = [&](std::string_view mark) {
        const std::size_t at = std::min(rest.find(mark), rest.size());
        sink(rest.data(), at);
        rest.remove_prefix(std::min(at + mark.size(), rest.size()));
    };
    const auto put = [&](std::string_view text) { sink(text.data(), text.size()); };

    up_to("@@title@@");
    put(escaped(bounded(contents.source)));
    up_to("@@report@@");
    put(report_text(contents));
    up_to("@@glb@@");
    std::string text;
    for (std::size_t at = 0; at < glb.size(); at += block_size) {
        const std::span<const unsigned char> block = glb.subspan(at, std::min(block_size, glb.size() - at));
        text = "<script type=\"application/octet-stream;base64\">";
        gltf::Base64 base64(text);
        base64.add(block.data(), block.size());
        base64.finish();
        text += "</script>\n";
        put(text);
    }
    put(rest);
}

} // namespace page
