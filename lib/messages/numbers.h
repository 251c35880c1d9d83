// Counts as people read them.
#pragma once
#include <cstdint>
#include <string>

namespace messages {

std::string grouped(uint64_t number); // 3400 -> "3,400"

// "1 object", "3,400 objects".
std::string counted(uint64_t number, const char* one, const char* many);

} // namespace messages
