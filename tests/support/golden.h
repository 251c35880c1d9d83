// Golden texts: lines that a person has read and agreed with, kept in tests/golden/NAME.
#pragma once
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace plugin_test {

// Success when the lines are those of tests/golden/NAME (NAME with its ending). Else the first line that differs, with
// its surroundings, and the file keeps what it had. With UPDATE_GOLDEN=1 in the environment the file is rewritten.
testing::AssertionResult matches_golden(const std::string& name, const std::vector<std::string>& lines);

// The same for a text of lines.
testing::AssertionResult matches_golden(const std::string& name, const std::string& text);

} // namespace plugin_test
