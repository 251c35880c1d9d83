// What a reader of strange files met and went on from.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace restore {

struct Oddity {
    uint64_t place = 0; // the line of a scene, from 1; the byte of an object, from 0
    std::string what;   // "a key count of 3 and a number that is none", without a stop
};

// The first of them as text, all of them as a count, so that no file can fill the memory with them.
struct Oddities {
    static constexpr std::size_t most_kept = 100;
    std::vector<Oddity> kept;
    std::size_t count = 0;

    void add(uint64_t place, std::string what)
    {
        if (++count <= most_kept) kept.push_back({place, std::move(what)});
    }
};

} // namespace restore
