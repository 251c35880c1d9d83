// Kinds of things, and the numbers that things bear.
#pragma once
#include <cstddef>
#include <cstdint>

namespace tv {

// Things are numbered in each kind from 0.
using Id = uint32_t;
inline constexpr Id no_id = 0xffffffffu;

enum class Kind : uint8_t { none, object, instance, surface, texture, light, camera };
inline constexpr std::size_t kind_count = 7;

} // namespace tv
