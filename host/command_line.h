// The arguments of one command: one list of options makes the parser, the help text, and the check of the manual page.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

using Arguments = std::span<char* const>;

class CommandLine {
public:
    // usage: lines below "Usage:". examples: a command line and what it does, alternately.
    CommandLine(std::string usage, std::string summary, std::vector<std::string> examples)
        : usage_(std::move(usage)), summary_(std::move(summary)), examples_(std::move(examples))
    {
    }

    // names: "-o,--output". A heading groups the options behind it in the help. Targets keep their value where the
    // option isn't given; they must outlive parse().
    void heading(std::string title) { options_.push_back({"", "", std::move(title), nullptr_target, 0, 0}); }
    void flag(std::string names, bool& target, std::string help);
    void text(std::string names, std::string value, std::string& target, std::string help);
    void texts(std::string names, std::string value, std::vector<std::string>& target, std::string help);
    void number(std::string names, std::string value, std::optional<double>& target, double low, double high,
                std::string help);
    void whole(std::string names, std::string value, std::optional<int64_t>& target, int64_t low, int64_t high,
               std::string help);
    void inputs(std::string value, std::vector<std::string>& target, std::size_t least, std::size_t most);

    // How many of the first arguments are options or their values: where words that are not ours begin.
    std::size_t leading_options(Arguments arguments) const;

    // Fills the targets. False when --help was asked for and has been printed. Throws WrongUse.
    bool parse(Arguments arguments) const;

    std::string help() const;

private:
    using Target = std::variant<std::nullptr_t, bool*, std::string*, std::vector<std::string>*, std::optional<double>*,
                                std::optional<int64_t>*>;
    static constexpr std::nullptr_t nullptr_target = nullptr;
    struct Option {
        std::string names, value, help;
        Target target;
        double low, high; // of numbers
    };
    std::string nearest(const std::string& wrong) const;

    std::string usage_, summary_;
    std::vector<std::string> examples_;
    std::vector<Option> options_;
    std::string inputs_name_;
    std::vector<std::string>* inputs_ = nullptr;
    std::size_t least_ = 0, most_ = 0;
};

// The nearest of `known` to `wrong`, or an empty text when none is near.
std::string nearest_word(std::string_view wrong, const std::vector<std::string>& known);

} // namespace host
