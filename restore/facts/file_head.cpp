#include "restore/facts/file_head.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <iterator>
#include <string>

#include "lib/platform/latin1.h"

namespace restore {

namespace fs = std::filesystem;
using messages::message;
using messages::Message;

static std::string_view form_type(std::string_view front)
{
    return front.starts_with("FORM") && front.size() >= 12 ? front.substr(8, 4) : std::string_view();
}

static Message problem_of(const std::string& name, std::string_view front)
{
    const std::string_view type = form_type(front);
    const bool readable = std::all_of(type.begin(), type.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (type == "LWO2" || type == "LWLO") return message<"input-of-later-kind">(name, type);
    if (type == "LWOB") return message<"input-holds-nothing">(name);
    if (!type.empty() && readable) return message<"input-other-iff">(name, type);
    if (front.starts_with("FORM")) return message<"input-cut-off">(name);
    return message<"input-foreign">(name);
}

static long version_of(std::string_view front)
{
    constexpr std::string_view blanks = " \t\r\n";
    front.remove_prefix(std::min(front.find_first_of(blanks), front.size()));
    front.remove_prefix(std::min(front.find_first_not_of(blanks), front.size()));
    long version = 0;
    std::from_chars(front.data(), front.data() + front.size(), version);
    return version;
}

File open_regular(const fs::path& file)
{
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        errno = error ? error.value() : EINVAL;
        return nullptr;
    }
    return File(std::fopen(file.string().c_str(), "rb"));
}

FileHead read_head(const fs::path& file)
{
    FileHead head;
    const std::string name = platform::shown_name(file.string());
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        head.problem = message<"input-missing">(name);
    } else if (error) {
        head.problem = message<"input-unreadable">(name, error.message());
    } else if (fs::is_directory(status)) {
        head.problem = message<"input-directory">(name);
    } else if (!fs::is_regular_file(status)) {
        head.problem = message<"input-irregular">(name);
    } else if (const File opened = open_regular(file); !opened) {
        head.problem = message<"input-unreadable">(name, std::strerror(errno));
    } else {
        head.size = fs::file_size(file, error);
        if (error) head.size = 0;
        char bytes[256];
        errno = 0;
        const std::string_view front(bytes, std::fread(bytes, 1, sizeof bytes, opened.get()));
        if (front.starts_with("LWSC")) {
            head.kind = FileKind::scene;
            head.scene_version = version_of(front);
        } else if (begins_as_object(front) && front.substr(4, 4) != std::string_view("\0\0\0\0", 4)) {
            head.kind = FileKind::object;
        } else if (front.empty()) {
            head.problem =
                errno ? message<"input-unreadable">(name, std::strerror(errno)) : message<"input-empty">(name);
        } else {
            head.problem = problem_of(name, front);
        }
    }
    return head;
}

bool begins_as_object(std::string_view front)
{
    return form_type(front) == "LWOB";
}

static bool begins_as_targa(const unsigned char* head)
{
    const unsigned map = head[1], type = head[2] & ~8u, depth = head[16];
    const bool known = type >= 1 && type <= 3 && map <= 1 && (type != 1 || map == 1);
    const bool has_pixels = (head[12] | head[13]) != 0 && (head[14] | head[15]) != 0;
    return known && has_pixels && (depth == 8 || depth == 15 || depth == 16 || depth == 24 || depth == 32);
}

bool begins_as_image(std::string_view front)
{
    constexpr std::string_view form_types[] = {"ILBM", "PBM ", "ACBM", "DEEP", "RGB8", "RGBN"};
    constexpr std::string_view marks[] = {"\x89PNG\r\n\x1a\n", "\xff\xd8\xff", "GIF87a",  "GIF89a", "BM",
                                          {"II*\0", 4},        {"MM\0*", 4},   "\x01\xda"};
    const auto begins = [front](std::string_view mark) { return front.starts_with(mark); };
    if (front.starts_with("FORM"))
        return std::find(std::begin(form_types), std::end(form_types), form_type(front)) != std::end(form_types);
    if (std::any_of(std::begin(marks), std::end(marks), begins)) return true;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(front.data());
    if (front.size() >= 128 && bytes[0] == 10 && bytes[1] <= 5 && bytes[2] <= 1) return true; // PCX
    // PICT: its version behind an empty block and the picture's frame.
    if (front.size() >= 526 &&
        (front.substr(522, 2) == "\x11\x01" || front.substr(522, 3) == std::string_view("\0\x11\x02", 3)))
        return true;
    return front.size() >= 18 && begins_as_targa(bytes);
}

} // namespace restore
