#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "lib/toolkit/scene/name_index.h"

namespace {

// Adding and taking out in a wild order: what is left is found, and nothing else, whatever moved up in the table.
TEST(NameIndex, KeepsWhatIsLeftWhileOthersGo)
{
    std::vector<std::string> names;
    for (uint32_t i = 0; i < 600; ++i) names.push_back("name #" + std::to_string(i));
    const auto name_of = [&](uint32_t number) { return std::string_view(names[number]); };
    tv::NameIndex index;
    std::map<std::string, uint32_t> held;
    EXPECT_EQ(index.find("name #0", name_of), tv::NameIndex::none);
    index.erase("name #0", 0);
    uint32_t step = 12345;
    for (int round = 0; round < 20'000; ++round) {
        step = step * 1664525u + 1013904223u;
        const uint32_t number = (step >> 8) % 600;
        if (held.erase(names[number])) {
            index.erase(names[number], number);
        } else {
            held[names[number]] = number;
            index.add(names[number], number);
        }
        if (round % 500 != 0) continue;
        for (const std::string& name : names) {
            const auto at = held.find(name);
            ASSERT_EQ(index.find(name, name_of), at == held.end() ? tv::NameIndex::none : at->second) << name;
        }
    }
}

} // namespace
