// Base64 without line ends, from pieces of any length. RFC 4648, section 4.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace gltf {

class Base64 {
public:
    explicit Base64(std::string& out) : out_(out) {}

    // Appends what is complete; up to two bytes wait for more.
    void add(const void* data, std::size_t size);

    void finish(); // the bytes that wait, and the padding

private:
    void put(uint32_t bits, std::size_t letters); // from the upper end of 24 bits

    std::string& out_;
    uint32_t held_bits_ = 0;
    std::size_t held_ = 0; // bytes, below 3
};

} // namespace gltf
