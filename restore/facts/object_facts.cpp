#include "restore/facts/object_facts.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "lib/platform/text.h"
#include "restore/facts/chunk_input.h"
#include "restore/facts/surface_widths.h"

namespace restore {

namespace {

constexpr std::size_t longest_name = 1023; // bytes kept of a name or path
constexpr uint16_t flag_double_sided = 0x100;
constexpr uint32_t sub_chunk_head = 6;

// Follows the importer's walk byte for byte, so that what it can't read is known before it tries.
class ObjectReader {
public:
    explicit ObjectReader(std::FILE* file) : in_(file) { facts_.bytes = in_.size(); }
    ObjectFacts read();

private:
    bool form();
    void chunks();
    void points(uint32_t size);
    void surface_names(uint32_t size);
    void polygons(uint32_t size);
    bool polygon(uint32_t& left, int16_t& surface);
    void surface(uint32_t size);
    bool sub_chunk(SurfaceFacts& surface, uint64_t chunk_end);
    void texts(SurfaceFacts& surface, std::string_view id, uint64_t head, uint16_t size);
    bool fail(std::string problem);
    bool cut() { return fail("is cut off at byte " + std::to_string(in_.size())); }

    ChunkInput in_;
    ObjectFacts facts_;
    std::string name_;
};

bool ObjectReader::fail(std::string problem)
{
    if (facts_.problem.empty()) facts_.problem = std::move(problem);
    return false;
}

ObjectFacts ObjectReader::read()
{
    if (form()) chunks();
    facts_.readable = facts_.problem.empty();
    return std::move(facts_);
}

bool ObjectReader::form()
{
    const unsigned char* const head = in_.take(12);
    if (!head || std::memcmp(head, "FORM", 4) != 0 || std::memcmp(head + 8, "LWOB", 4) != 0)
        return fail("isn't a Lightwave object");
    facts_.form_length = be32(head + 4);
    facts_.is_object = facts_.form_length != 0;
    return facts_.is_object || fail("says that it holds nothing (its length is 0)");
}

bool is_sound(const unsigned char* head, uint64_t file_size)
{
    const uint32_t size = be32(head + 4);
    return std::all_of(head, head + 4, [](unsigned char c) { return c >= 0x20 && c <= 0x7F; }) && size <= INT32_MAX &&
           size <= file_size + 100; // the importer's margin
}

// The count of what is left of the FORM wraps as the importer's does: a length that doesn't fit the chunks leads on to
// the file's end.
void ObjectReader::chunks()
{
    uint32_t left = facts_.form_length - 4;
    while (left != 0 && facts_.problem.empty()) {
        const uint64_t place = in_.place();
        const unsigned char* const head = in_.take(8);
        if (!head) {
            cut();
            return;
        }
        if (!is_sound(head, facts_.bytes)) {
            fail("is corrupt at byte " + std::to_string(place) + ": no chunk begins there");
            return;
        }
        const std::string id(reinterpret_cast<const char*>(head), 4);
        const uint32_t size = be32(head + 4);
        left -= 8 + size + size % 2;
        if (id == "PNTS")
            points(size);
        else if (id == "SRFS")
            surface_names(size);
        else if (id == "POLS")
            polygons(size);
        else if (id == "SURF")
            surface(size);
        else
            in_.skip(size); // past the end too, as long as nothing is looked for behind it
        if (size % 2 != 0) in_.skip(1);
    }
}

void ObjectReader::points(uint32_t size)
{
    facts_.points = size / 12;
    if (size % 12 != 0) facts_.oddities.add(in_.place(), "points of " + std::to_string(size) + " bytes");
    if (!in_.skip(size / 4 * 4)) cut(); // bytes behind the last whole float aren't taken
}

void ObjectReader::surface_names(uint32_t size)
{
    facts_.surface_names.clear();
    const uint64_t end = in_.place() + size;
    while (in_.place() < end) {
        const uint64_t start = in_.place();
        const unsigned char* const first = in_.take(1);
        if (!first) {
            cut();
            return;
        }
        if (*first == 0) continue;
        const char initial = static_cast<char>(*first);
        std::string rest;
        if (!in_.text(rest, longest_name, end)) {
            facts_.oddities.add(start, "a surface name without an end");
            if (in_.place() < end) cut();
            return;
        }
        if (facts_.surface_names.size() < max_surfaces) facts_.surface_names.push_back(initial + rest);
        if ((in_.place() - start) % 2 != 0) in_.skip(1); // may lie behind the chunk
    }
}

// Takes as much of one polygon as the chunk has; true for one of three points and more.
bool ObjectReader::polygon(uint32_t& left, int16_t& surface)
{
    const auto number = [&]() -> int16_t {
        const unsigned char* const bytes = left >= 2 ? in_.take(2) : nullptr;
        left -= bytes ? 2 : 0;
        return bytes ? static_cast<int16_t>(be16(bytes)) : int16_t{1};
    };
    bool kept = false;
    if (left >= 2) {
        const int16_t count = number();
        kept = count >= 3;
        const uint32_t there = count > 0 ? std::min<uint32_t>(static_cast<uint32_t>(count), left / 2) : 0;
        in_.skip(uint64_t{2} * there);
        left -= 2 * there;
    }
    surface = number();
    if (left == 1) {
        in_.skip(1);
        left = 0;
    }
    return kept;
}

void ObjectReader::polygons(uint32_t size)
{
    facts_.polygons = 0;
    if (in_.left() < size) {
        cut();
        return;
    }
    for (uint32_t left = size; left > 0 && in_.left() > 0;) {
        int16_t number = 1;
        facts_.polygons += polygon(left, number) ? 1 : 0;
        if (number >= 0 || left < 2) continue;
        const unsigned char* const bytes = in_.take(2); // details are counted, and have none of their own
        left -= 2;
        const int16_t details = bytes ? static_cast<int16_t>(be16(bytes)) : int16_t{0};
        for (int16_t i = 0; i < details && left > 0; ++i) facts_.polygons += polygon(left, number) ? 1 : 0;
    }
}

void ObjectReader::surface(uint32_t size)
{
    SurfaceFacts surface;
    surface.chunk = in_.place() - 8;
    surface.size = size;
    const uint64_t end = in_.place() + size;
    const bool named = in_.text(surface.name, longest_name, end);
    if ((in_.place() - surface.chunk) % 2 != 0) in_.skip(1);
    if (!named || in_.place() > end) {
        if (in_.left() == 0)
            cut();
        else
            fail("is corrupt at byte " + std::to_string(surface.chunk) + ": a surface's name is longer than its chunk");
        return;
    }
    surface.sub_chunks = in_.place();
    while (in_.place() < end && sub_chunk(surface, end)) {
    }
    if (facts_.surfaces.size() < max_surfaces) facts_.surfaces.push_back(std::move(surface));
}

// False when nothing of the chunk is left to be read.
bool ObjectReader::sub_chunk(SurfaceFacts& surface, uint64_t chunk_end)
{
    const uint64_t place = in_.place(), file_end = in_.size();
    const auto bad = [&](uint64_t end) {
        if (surface.bad.size() < max_surfaces) surface.bad.push_back({.begin = place, .end = end, .text = {}});
        in_.skip(end - in_.place());
        return end < chunk_end;
    };
    const unsigned char* const head = chunk_end - place < sub_chunk_head ? nullptr : in_.take(sub_chunk_head);
    if (!head) return chunk_end <= file_end ? bad(chunk_end) : cut();
    const std::string id(reinterpret_cast<const char*>(head), 4);
    const uint16_t size = static_cast<uint16_t>(be16(head + 4));
    const uint64_t end = in_.place() + size + size % 2;
    if (end > chunk_end) return chunk_end <= file_end ? bad(chunk_end) : cut();
    if (end > file_end) { // its data are cut off: the importer minds where something else should follow in the chunk
        if (end != chunk_end) return cut();
        bad(file_end);
        return false;
    }
    const int width = sub_chunk_width(id);
    if (width == width_of_text) {
        texts(surface, id, place, size);
    } else if (width > 0 && width != size) {
        return bad(end);
    } else if (id == "FLAG") {
        const unsigned char* const flags = in_.take(2);
        surface.double_sided = flags && (be16(flags) & flag_double_sided) != 0;
    }
    if (width == width_unknown) ++surface.unknown_sub_chunks;
    in_.skip(end - in_.place());
    return end < chunk_end;
}

void ObjectReader::texts(SurfaceFacts& surface, std::string_view id, uint64_t head, uint16_t size)
{
    const unsigned char* const bytes = in_.take(size);
    const std::string_view data(reinterpret_cast<const char*>(bytes), bytes ? size : 0);
    const std::string text(data.substr(0, data.find('\0')));
    // Without a zero byte the importer takes the data as they are, which have to be even.
    const std::size_t taken = text.size() == data.size() ? (data.size() + 1) / 2 * 2 : text_width(text.size());
    if ((taken != size || size % 2 != 0) && surface.bad.size() < max_surfaces)
        surface.bad.push_back({.begin = head, .end = in_.place() + size % 2, .text = text, .is_text = true});
    if (id == "TIMG" || id == "RIMG") {
        if (!text.empty() && !platform::equal_in_any_case(text, "(none)") && facts_.images.size() < max_surfaces)
            facts_.images.push_back({.stored = text, .surface = surface.name, .head = head, .size = size});
    } else if (id != "TALP" && surface.textures.size() < max_surfaces) {
        surface.textures.push_back(text);
    }
}

} // namespace

ObjectFacts read_object(std::FILE* file)
{
    return ObjectReader(file).read();
}

} // namespace restore
