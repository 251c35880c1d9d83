#include "restore/restorations.h"

#include <algorithm>
#include <iterator>

namespace restore {

namespace {

constexpr std::string_view names[] = {
    "right-file",   "later-sub-chunks", "own-parents",     "any-envelopes", "whole-names", "unreadable-objects",
    "later-scenes", "time-line",        "light-parents",   "light-motions", "targets",     "camera-angles",
    "linear-keys",  "fine-rotations",   "light-envelopes", "dark-lights",   "zoom",        "ambient",
    "dissolves",    "unseen",           "double-sided",    "light-range",   "area-lights", "morphs",
    "depth-range",
};
static_assert(std::size(names) == restoration_count);

} // namespace

std::string_view name_of(Restoration restoration)
{
    return names[static_cast<std::size_t>(restoration)];
}

std::optional<Restoration> restoration_of(std::string_view name)
{
    const auto* const at = std::find(std::begin(names), std::end(names), name);
    if (at == std::end(names)) return std::nullopt;
    return static_cast<Restoration>(at - std::begin(names));
}

} // namespace restore
