#include "host/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "host/failure.h"

namespace host {

using messages::message;

void CommandLine::flag(std::string names, bool& target, std::string help)
{
    options_.push_back({std::move(names), "", std::move(help), &target, 0, 0});
}

void CommandLine::text(std::string names, std::string value, std::string& target, std::string help)
{
    options_.push_back({std::move(names), std::move(value), std::move(help), &target, 0, 0});
}

void CommandLine::texts(std::string names, std::string value, std::vector<std::string>& target, std::string help)
{
    options_.push_back({std::move(names), std::move(value), std::move(help), &target, 0, 0});
}

void CommandLine::number(std::string names, std::string value, std::optional<double>& target, double low, double high,
                         std::string help)
{
    options_.push_back({std::move(names), std::move(value), std::move(help), &target, low, high});
}

void CommandLine::whole(std::string names, std::string value, std::optional<int64_t>& target, int64_t low, int64_t high,
                        std::string help)
{
    options_.push_back({std::move(names), std::move(value), std::move(help), &target, static_cast<double>(low),
                        static_cast<double>(high)});
}

void CommandLine::inputs(std::string value, std::vector<std::string>& target, std::size_t least, std::size_t most)
{
    inputs_name_ = std::move(value);
    inputs_ = &target;
    least_ = least;
    most_ = most;
}

static std::vector<std::string> split_names(const std::string& names)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= names.size();) {
        const std::size_t comma = std::min(names.find(',', at), names.size());
        parts.push_back(names.substr(at, comma - at));
        at = comma + 1;
    }
    return parts;
}

// Edit distance, two rows of the table at a time.
static std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> above(b.size() + 1), row(b.size() + 1);
    std::iota(above.begin(), above.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j)
            row[j + 1] = std::min({above[j] + (a[i] == b[j] ? 0u : 1u), above[j + 1] + 1, row[j] + 1});
        above.swap(row);
    }
    return above[b.size()];
}

std::string nearest_word(std::string_view wrong, const std::vector<std::string>& known)
{
    wrong = wrong.substr(0, 64);
    std::string best;
    std::size_t best_distance = std::max<std::size_t>(2, wrong.size() / 2); // farther is no typing error
    for (const std::string& word : known) {
        // A word cut short is near, however much is missing: --smooth for --smoothing-angle.
        const bool begins = wrong.size() >= 4 && word.starts_with(wrong);
        const std::size_t d = begins ? 0 : distance(wrong, word);
        if (d < best_distance) {
            best_distance = d;
            best = word;
        }
    }
    return best;
}

std::string CommandLine::nearest(const std::string& wrong) const
{
    std::vector<std::string> known{"--help"};
    for (const Option& option : options_)
        for (const std::string& name : split_names(option.names))
            if (name.starts_with("--")) known.push_back(name);
    return nearest_word(wrong.substr(0, wrong.find('=')), known);
}

std::size_t CommandLine::leading_options(Arguments arguments) const
{
    std::size_t n = 0;
    while (n < arguments.size()) {
        const std::string_view argument = arguments[n];
        if (argument.size() < 2 || argument[0] != '-') break;
        ++n;
        if (argument == "--") break;
        const auto takes_next = [&](const Option& option) {
            const std::vector<std::string> names = split_names(option.names);
            return !option.value.empty() && std::find(names.begin(), names.end(), argument) != names.end();
        };
        if (n < arguments.size() && std::any_of(options_.begin(), options_.end(), takes_next)) ++n;
    }
    return n;
}

static std::string plain_number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

bool CommandLine::parse(Arguments arguments) const
{
    CLI::App app;
    bool help_asked = false;
    app.set_help_flag();
    app.add_flag("-h,--help", help_asked);
    for (const Option& option : options_) {
        const auto range = [&option](const auto& text) -> std::string {
            double value = 0;
            if (!CLI::detail::lexical_cast(text, value) || !std::isfinite(value))
                return messages::text(message<"value-no-number">(text));
            if (value < option.low || value > option.high)
                return messages::text(
                    message<"value-out-of-range">(text, plain_number(option.low), plain_number(option.high)));
            return {};
        };
        if (bool* const* flag = std::get_if<bool*>(&option.target))
            app.add_flag(option.names, **flag);
        else if (std::string* const* text = std::get_if<std::string*>(&option.target))
            app.add_option(option.names, **text);
        else if (std::vector<std::string>* const* texts = std::get_if<std::vector<std::string>*>(&option.target))
            app.add_option(option.names, **texts)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        else if (std::optional<double>* const* number = std::get_if<std::optional<double>*>(&option.target))
            app.add_option(option.names, **number)->check(range);
        else if (std::optional<int64_t>* const* whole = std::get_if<std::optional<int64_t>*>(&option.target))
            app.add_option(option.names, **whole)->check(range);
    }
    if (inputs_) app.add_option("inputs", *inputs_);

    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend()); // as CLI11 takes them
    try {
        app.parse(std::move(reversed));
    } catch (const CLI::ExtrasError&) {
        const std::vector<std::string> rest = app.remaining();
        const std::string wrong = rest.empty() ? "" : rest.front();
        if (wrong.size() < 2 || wrong[0] != '-') throw WrongUse(message<"argument-too-many">(wrong));
        throw WrongUse(message<"option-unknown">(wrong, nearest(wrong)));
    } catch (const CLI::ParseError& error) {
        throw WrongUse(message<"arguments-wrong">(error.what()));
    }
    if (help_asked) {
        std::fputs(help().c_str(), stdout);
        return false;
    }
    if (inputs_ && inputs_->size() < least_) throw WrongUse(message<"argument-missing">(inputs_name_));
    if (inputs_ && inputs_->size() > most_) throw WrongUse(message<"argument-too-many">((*inputs_)[most_]));
    return true;
}

std::string CommandLine::help() const
{
    std::string out;
    if (!examples_.empty()) out += "Examples:\n";
    for (std::size_t i = 0; i + 1 < examples_.size(); i += 2)
        out += "  " + examples_[i] + "\n      " + examples_[i + 1] + "\n";
    out += "\nUsage:\n" + usage_ + "\n" + summary_ + "\n";
    if (!options_.empty() && !options_.front().names.empty()) out += "\nOptions:\n";
    constexpr std::size_t column = 30;
    for (const Option& option : options_) {
        if (option.names.empty()) {
            out += "\n" + option.help + ":\n";
            continue;
        }
        std::string left = "  ";
        for (const std::string& name : split_names(option.names)) left += (left.size() > 2 ? ", " : "") + name;
        if (!option.value.empty()) left += " " + option.value;
        if (left.size() + 2 > column)
            left += "\n" + std::string(column, ' ');
        else
            left.resize(column, ' ');
        std::string text = option.help;
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += column)
            text.insert(++at, std::string(column, ' '));
        out += left + text + "\n";
    }
    out += "\n  -h, --help                  this text\n";
    return out;
}

} // namespace host
