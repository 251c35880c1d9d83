#include "host/options_file.h"

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

// The plug-in puts the file's name behind the directory in 300 bytes.
static constexpr std::size_t max_directory_bytes = 280;

// The plug-in cuts lines that are longer; the key stands in front of the value, which has quotes.
static std::size_t most_value_bytes(const lw_option& option)
{
    return lw_options_line_size - std::string_view(option.word).size() - sizeof " = \"\"\n";
}

static std::string number_text(float number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
    return text;
}

std::string standard_value(const lw_option& option)
{
    return option.kind == LW_OPTION_DIRECTORY ? option.directory : number_text(option.standard);
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
    return directory + lw_options_file_name;
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
    std::ifstream file(directory + lw_options_file_name);
    for (std::string line; values.size() < 1000 && std::getline(file, line);) {
        line = trimmed(line.substr(0, lw_options_line_size - 1));
        if (line.size() < 2 || line[0] == '#' || line[0] == '[') continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) break;
        const std::string key = trimmed(line.substr(0, equals));
        std::string value = trimmed(line.substr(equals + 1));
        if (key.empty() || value.empty()) break;
        if (const lw_option* const option = lw_find_option(key); option && option->kind == LW_OPTION_DIRECTORY) {
            if (value.front() == '"') value.erase(0, 1);
            if (!value.empty() && value.back() == '"') value.pop_back();
        }
        values[key] = value;
    }
    return values;
}

std::optional<std::string> options_file_value(lw_option_number option)
{
    const auto values = read_values();
    const auto found = values.find(std::string_view(lw_options[option].word));
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

static std::string checked_flag(const lw_option& option, const std::string& value)
{
    if (value == "1" || value == "yes" || value == "on" || value == "true") return "1";
    if (value == "0" || value == "no" || value == "off" || value == "false") return "0";
    throw WrongUse(message<"options-flag-wrong">(option.word, value));
}

static std::string checked_angle(const lw_option& option, const std::string& value)
{
    char* end = nullptr;
    const double angle = std::strtod(value.c_str(), &end);
    if (value.empty() || *end ||
        !(angle >= static_cast<double>(option.lowest) && angle <= static_cast<double>(option.highest)))
        throw WrongUse(message<"options-angle-wrong">(option.word, number_text(option.lowest),
                                                      number_text(option.highest), value));
    char text[32];
    std::snprintf(text, sizeof text, "%g", angle);
    return text;
}

static std::string checked_directory(const lw_option& option, const std::string& value)
{
    if (value.empty() || value == option.directory) return value;
    std::string place = platform::resolve(value);
    if (place.empty() || !platform::is_directory(place))
        throw WrongUse(message<"options-directory-wrong">(option.word, value));
    place = fs::absolute(place).lexically_normal().string();
    if (const std::size_t most = most_value_bytes(option); place.size() > most)
        throw WrongUse(message<"options-directory-too-long">(option.word, most, place, place.size()));
    if (place.find_first_of("\"\r\n") != std::string::npos)
        throw WrongUse(message<"options-directory-unfit">(option.word));
    return place;
}

static std::string checked_value(const lw_option& option, const std::string& value)
{
    switch (option.kind) {
    case LW_OPTION_FLAG: return checked_flag(option, value);
    case LW_OPTION_ANGLE: return checked_angle(option, value);
    case LW_OPTION_DIRECTORY: break;
    }
    return checked_directory(option, value);
}

void set_options_file_value(lw_option_number option, const std::string& value)
{
    auto values = read_values();
    values[lw_options[option].word] = checked_value(lw_options[option], value);

    std::string text = lw_options_file_head;
    for (const lw_option& each : lw_options) {
        const auto known = values.find(std::string_view(each.word));
        const std::string now = known == values.end() ? standard_value(each) : known->second;
        const bool quoted = each.kind == LW_OPTION_DIRECTORY;
        text += std::string(each.word) + " = " + (quoted ? "\"" + now + "\"" : now) + "\n";
    }
    const std::string path = options_file_path();
    try {
        fs::create_directories(fs::path(path).parent_path());
        platform::AtomicFile file(path);
        file.write(text.data(), text.size());
        file.commit();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        throw Failure(message<"options-not-written">(messages::text(message_of(error))));
    }
}

} // namespace host
