#include "export/gltf/image/image_search.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "lib/platform/files.h"
#include "lib/platform/latin1.h"
#include "lib/platform/text.h"

namespace gltf {
namespace {

// ".iff" and what is folded into it come first: they are the file that was meant.
constexpr std::array<std::string_view, 20> extensions = {".iff",  ".lbm", ".ham",  ".brs", ".map", ".col", ".ilbm",
                                                         ".png",  ".jpg", ".jpeg", ".tga", ".bmp", ".gif", ".tif",
                                                         ".tiff", ".pcx", ".sgi",  ".rgb", ".pct", ""};

bool digit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    return text;
}

bool take_mark(std::string_view& name, std::string_view mark)
{
    name = trimmed(name);
    if (!platform::ends_in_any_case(name, mark)) return false;
    name.remove_suffix(mark.size());
    name = trimmed(name);
    return true;
}

bool relative(std::string_view name)
{
    return name.find(':') == std::string_view::npos && !platform::is_separator(name.front());
}

// Without an extension that means an image; other text after a dot belongs to the name.
std::string_view base_name(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return name;
    const std::string_view extension = name.substr(dot);
    for (const std::string_view known : extensions)
        if (!known.empty() && platform::equal_in_any_case(extension, known)) return name.substr(0, dot);
    return name;
}

std::string joined(const std::string& directory, std::string_view name)
{
    if (directory.empty()) return std::string(name);
    const bool closed = platform::is_separator(directory.back());
    return directory + (closed ? "" : "/") + std::string(name);
}

std::string regular_file(const std::string& path)
{
    std::string found = platform::resolve(path);
    std::error_code ignored; // a pipe would keep us waiting
    if (!found.empty() && !std::filesystem::is_regular_file(found, ignored)) found.clear();
    return found;
}

// The number with which `entry` continues `base`, or -1: "fire" and "Fire012.iff" give 12.
long sequence_number(std::string_view entry, std::string_view base)
{
    if (entry.size() <= base.size() || !platform::equal_in_any_case(entry.substr(0, base.size()), base)) return -1;
    std::string_view rest = entry.substr(base.size());
    rest = base_name(rest.front() == '.' ? rest.substr(1) : rest);
    if (rest.empty() || rest.size() > 9 || !std::all_of(rest.begin(), rest.end(), digit)) return -1;
    long number = 0;
    for (const char c : rest) number = number * 10 + (c - '0');
    return number;
}

std::string first_of_sequence(const std::string& directory, std::string_view base)
{
    const std::string place = platform::resolve(directory.empty() ? "." : directory);
    if (place.empty()) return {};
    const std::string utf8_base = platform::latin1_to_utf8(base);
    std::string best;
    long lowest = -1;
    for (const std::string& entry : platform::list_directory(place)) {
        const long number = sequence_number(entry, utf8_base);
        if (number < 0 || (lowest >= 0 && number >= lowest)) continue;
        lowest = number;
        best = entry;
    }
    return best.empty() ? best : regular_file(joined(place, best));
}

} // namespace

std::string_view plain_image_name(std::string_view name, bool& sequence)
{
    sequence = false;
    name = trimmed(name);
    while (true) {
        if (take_mark(name, "(sequence)"))
            sequence = true;
        else if (!take_mark(name, "(none)"))
            return name;
    }
}

ImagePlace find_image(std::string_view name, const std::vector<std::string>& directories)
{
    ImagePlace place;
    const std::string_view plain = plain_image_name(name, place.sequence);
    const std::string_view last = plain.empty() ? plain : platform::last_element(plain);
    place.named = !last.empty();
    if (!place.named) return place;
    const bool with_directories = last.size() < plain.size() && relative(plain);

    for (const std::string& directory : directories) {
        if (with_directories) {
            place.path = regular_file(joined(directory, plain));
            if (!place.path.empty()) return place;
            place.tried.push_back(joined(directory, platform::latin1_to_utf8(plain)));
        }
        place.path = regular_file(joined(directory, last));
        if (!place.path.empty()) return place;
        place.tried.push_back(joined(directory, platform::latin1_to_utf8(last)));
    }
    const std::string_view base = base_name(last);
    place.other_extension = true;
    for (const std::string& directory : directories) {
        if (place.sequence) {
            place.path = first_of_sequence(directory, base);
            if (!place.path.empty()) return place;
        }
        for (const std::string_view extension : extensions) {
            const std::string other = std::string(base) + std::string(extension);
            if (other == last) continue;
            place.path = regular_file(joined(directory, other));
            if (!place.path.empty()) return place;
        }
        place.tried.push_back(joined(directory, platform::latin1_to_utf8(base) + ".*"));
    }
    return place;
}

} // namespace gltf
