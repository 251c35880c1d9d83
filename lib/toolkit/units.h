// What the toolkit counts angles and time in: radians, and parts of 1/4800 s. Constants alone, so that whoever stands
// above the toolkit can take them without linking it.
#pragma once
#include <cstdint>
#include <numbers>

namespace tv {

inline constexpr double pi = std::numbers::pi;
inline constexpr double radians_per_degree = pi / 180;
inline constexpr double degrees_per_radian = 180 / pi;

inline constexpr int32_t time_units_per_second = 4800;

} // namespace tv
