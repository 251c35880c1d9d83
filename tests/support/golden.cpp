#include "tests/support/golden.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace plugin_test {

static std::vector<std::string> lines_of(std::istream& in)
{
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

static bool write_lines(const std::string& path, const std::vector<std::string>& lines)
{
    std::ofstream file(path, std::ios::binary);
    for (const std::string& line : lines) file << line << '\n';
    return static_cast<bool>(file.flush());
}

// Three lines before the difference, and three of each side from it on.
static testing::AssertionResult difference(const std::string& name, const std::vector<std::string>& wanted,
                                           const std::vector<std::string>& lines)
{
    const std::size_t shared = std::min(wanted.size(), lines.size());
    std::size_t first = 0;
    while (first < shared && wanted[first] == lines[first]) ++first;
    std::ostringstream text;
    text << name << ", line " << first + 1 << " of " << wanted.size() << " (now " << lines.size() << ")\n";
    for (std::size_t i = first > 3 ? first - 3 : 0; i < first; ++i) text << "    " << wanted[i] << '\n';
    for (std::size_t i = first; i < std::min(first + 3, wanted.size()); ++i) text << "  - " << wanted[i] << '\n';
    for (std::size_t i = first; i < std::min(first + 3, lines.size()); ++i) text << "  + " << lines[i] << '\n';
    text << "UPDATE_GOLDEN=1 rewrites the file.";
    return testing::AssertionFailure() << text.str();
}

testing::AssertionResult matches_golden(const std::string& name, const std::vector<std::string>& lines)
{
    const std::string path = std::string(TESTS_DIR) + "/golden/" + name;
    const char* const update = std::getenv("UPDATE_GOLDEN");
    if (update && std::string(update) == "1") {
        if (write_lines(path, lines)) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "can't write " << path;
    }
    std::ifstream file(path);
    if (!file) return testing::AssertionFailure() << "there is no " << path << "; UPDATE_GOLDEN=1 makes it";
    const std::vector<std::string> wanted = lines_of(file);
    return wanted == lines ? testing::AssertionSuccess() : difference(name, wanted, lines);
}

testing::AssertionResult matches_golden(const std::string& name, const std::string& text)
{
    std::istringstream in(text);
    return matches_golden(name, lines_of(in));
}

} // namespace plugin_test
