// Which thing of the toolkit's scene an item of the scene file has become.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "lib/toolkit/scene/scene.h"
#include "restore/facts/scene_facts.h"

namespace restore {

// Found by the order of making, which is the file's, and checked by name; where one of them doesn't fit, none is
// believed, since everything is addressed by numbers that count from the first.
struct Matching {
    // An item that others hang under may have been wrapped: a group moves as the file says, and takes the children; the
    // instance below it carries the geometry alone. Else both are one.
    struct Item {
        tv::Id mover = tv::no_id, carrier = tv::no_id;
    };
    std::optional<std::vector<Item>> instances; // of each object and null of the file
    std::optional<std::vector<tv::Id>> lights;  // of each light
    tv::Id camera = tv::no_id;                  // none where the file has no camera motion

    // What moves item `number`, counted from 1; no_id for 0 and for what isn't there.
    tv::Id item(int32_t number) const
    {
        if (!instances || number < 1 || static_cast<std::size_t>(number) > instances->size()) return tv::no_id;
        return (*instances)[static_cast<std::size_t>(number) - 1].mover;
    }
};

// given_names: what the plug-in was given as the name of each item, if that differs from the file's; else empty.
Matching match(const tv::Scene& scene, const SceneFacts& facts, const std::vector<std::string>& given_names);

} // namespace restore
