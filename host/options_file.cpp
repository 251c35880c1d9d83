#include "host/options_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "host/failure.h"
#include "lib/platform/atomic_file.h"
#include "lib/platform/files.h"
#include "lib/platform/places.h"

namespace host {

using messages::message;
namespace fs = std::filesystem;

static constexpr std::array<OptionKey, 9> keys = {{
    {"compute_normals", OptionForm::flag, "1", "smoothed normals where surfaces ask for them"},
    {"make_surface_names_unique", OptionForm::flag, "1", "surfaces of one name stay apart as \"NAME #2\""},
    {"import_keyframe0_only", OptionForm::flag, "0", "no animation"},
    {"print_statistics", OptionForm::flag, "1", "counters behind a run (convert: only with --stats)"},
    {"print_warnings", OptionForm::flag, "0", "tell of unknown chunks and detail polygons"},
    {"smoothing_angle", OptionForm::angle, "89.5", "degrees, for surfaces that state none"},
    {"output_debug_info", OptionForm::flag, "0", "write what is parsed to debuglw.txt"},
    {"explode_obj_by_surf_names", OptionForm::flag, "1", "a mesh for each surface of an object"},
    {"newtek_root_directory", OptionForm::directory, "c:\\", "the content directory, where none can be worked out"},
}};

// The plug-in takes lines of 127 bytes, the line feed included, and the key stands in front of the value.
static constexpr std::size_t max_value_bytes = 100;
// It puts the file's name behind the directory in 300 bytes.
static constexpr std::size_t max_directory_bytes = 280;

std::span<const OptionKey> option_keys()
{
    return keys;
}

std::string options_directory()
{
    const std::string directory = platform::settings_directory();
    if (directory.empty() || directory.size() > max_directory_bytes) return {};
    return directory + "/lwimport/";
}

std::string options_file_path()
{
    const std::string directory = options_directory();
    if (directory.empty()) throw Failure(message<"options-without-place">(platform::settings_problem()));
    return directory + "imp_lw.ini";
}

static std::string trimmed(std::string_view text)
{
    constexpr std::string_view white = " \t\r\n\v\f";
    const std::size_t from = text.find_first_not_of(white);
    return from == std::string_view::npos ? ""
                                          : std::string(text.substr(from, text.find_last_not_of(white) - from + 1));
}

// As the plug-in reads it: a line without a value ends the reading.
static std::map<std::string, std::string, std::less<>> read_values()
{
    std::map<std::string, std::string, std::less<>> values;
    const std::string directory = options_directory();
    if (directory.empty()) return values;
    std::ifstream file(directory + "imp_lw.ini");
    for (std::string line; values.size() < 1000 && std::getline(file, line);) {
        line = trimmed(line.substr(0, 127));
        if (line.size() < 2 || line[0] == '#' || line[0] == '[') continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) break;
        const std::string key = trimmed(line.substr(0, equals));
        std::string value = trimmed(line.substr(equals + 1));
        if (key.empty() || value.empty()) break;
        if (key == "newtek_root_directory") {
            if (value.front() == '"') value.erase(0, 1);
            if (!value.empty() && value.back() == '"') value.pop_back();
        }
        values[key] = value;
    }
    return values;
}

std::optional<std::string> options_file_value(std::string_view key)
{
    const auto values = read_values();
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

static std::string checked_value(const OptionKey& option, const std::string& value)
{
    const std::string key(option.key);
    switch (option.form) {
    case OptionForm::flag:
        if (value == "1" || value == "yes" || value == "on" || value == "true") return "1";
        if (value == "0" || value == "no" || value == "off" || value == "false") return "0";
        throw WrongUse(message<"options-flag-wrong">(key, value));
    case OptionForm::angle: {
        char* end = nullptr;
        const double angle = std::strtod(value.c_str(), &end);
        if (value.empty() || *end || !(angle >= 0 && angle <= 180))
            throw WrongUse(message<"options-angle-wrong">(key, "0", "180", value));
        char text[32];
        std::snprintf(text, sizeof text, "%g", angle);
        return text;
    }
    case OptionForm::directory: break;
    }
    if (value.empty() || value == option.standard) return value;
    std::string place = platform::resolve(value);
    if (place.empty() || !platform::is_directory(place)) throw WrongUse(message<"options-directory-wrong">(key, value));
    place = fs::absolute(place).lexically_normal().string();
    if (place.size() > max_value_bytes)
        throw WrongUse(message<"options-directory-too-long">(key, max_value_bytes, place, place.size()));
    if (place.find_first_of("\"\r\n") != std::string::npos) throw WrongUse(message<"options-directory-unfit">(key));
    return place;
}

void set_options_file_value(std::string_view key, std::string value)
{
    const auto option = std::find_if(keys.begin(), keys.end(), [key](const OptionKey& k) { return k.key == key; });
    auto values = read_values();
    values[std::string(key)] = checked_value(*option, value);

    std::string text = "# Default options for the Lightwave geometry import converter.\n"
                       "# !! Do not modify this file. It is written by the converter.\n"
                       "[Preferences]\n";
    for (const OptionKey& each : keys) {
        const auto known = values.find(each.key);
        const std::string now = known == values.end() ? std::string(each.standard) : known->second;
        const bool quoted = each.form == OptionForm::directory;
        text += std::string(each.key) + " = " + (quoted ? "\"" + now + "\"" : now) + "\n";
    }
    const std::string path = options_file_path();
    try {
        fs::create_directories(fs::path(path).parent_path());
        platform::AtomicFile file(path);
        file.write(text.data(), text.size());
        file.commit();
    } catch (const std::exception& error) {
        throw Failure(message<"options-not-written">(error.what()));
    }
}

} // namespace host
