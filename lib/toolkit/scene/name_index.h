// Numbers by name, where the names are kept elsewhere: of a name it holds a hash and its number, eight bytes, so that a
// search in a large scene stays near. Open addressing, at most half full; a search that ends costs one name compared.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace tv {

class NameIndex {
public:
    static constexpr uint32_t none = 0xffffffffu;

    // The number of this name, or none. name_of(number) is the name that was added with the number.
    template <class NameOf>
    uint32_t find(std::string_view name, NameOf name_of) const
    {
        if (slots_.empty()) return none;
        const uint32_t hash = hash_of(name);
        for (std::size_t i = hash & mask();; i = (i + 1) & mask()) {
            const Slot& slot = slots_[i];
            if (slot.number == none) return none;
            if (slot.hash == hash && name_of(slot.number) == name) return slot.number;
        }
    }

    // Room for one name more: the next add() takes no memory.
    void make_room()
    {
        if (2 * (used_ + 1) > slots_.size()) grow();
    }

    // A name that isn't held yet.
    void add(std::string_view name, uint32_t number)
    {
        make_room();
        put({hash_of(name), number});
        ++used_;
    }

    // Takes out a name with its number. What stood behind it for want of a place moves up.
    void erase(std::string_view name, uint32_t number)
    {
        if (slots_.empty()) return;
        std::size_t hole = hash_of(name) & mask();
        for (; slots_[hole].number != number; hole = (hole + 1) & mask())
            if (slots_[hole].number == none) return;
        for (std::size_t i = (hole + 1) & mask(); slots_[i].number != none; i = (i + 1) & mask()) {
            const std::size_t home = slots_[i].hash & mask();
            if (((i - home) & mask()) < ((i - hole) & mask())) continue; // its place lies behind the hole
            slots_[hole] = slots_[i];
            hole = i;
        }
        slots_[hole] = {};
        --used_;
    }

private:
    struct Slot {
        uint32_t hash = 0, number = none;
    };

    static uint32_t hash_of(std::string_view name)
    {
        return static_cast<uint32_t>(std::hash<std::string_view>{}(name));
    }
    std::size_t mask() const { return slots_.size() - 1; }

    void put(const Slot& slot)
    {
        std::size_t i = slot.hash & mask();
        while (slots_[i].number != none) i = (i + 1) & mask();
        slots_[i] = slot;
    }

    void grow()
    {
        std::vector<Slot> old(slots_.empty() ? 16 : 2 * slots_.size());
        std::swap(slots_, old);
        for (const Slot& slot : old)
            if (slot.number != none) put(slot);
    }

    std::vector<Slot> slots_; // a power of two
    std::size_t used_ = 0;
};

} // namespace tv
