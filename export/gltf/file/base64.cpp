#include "export/gltf/file/base64.h"

namespace gltf {

void Base64::put(uint32_t bits, std::size_t letters)
{
    static constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const char text[] = {alphabet[bits >> 18 & 63], alphabet[bits >> 12 & 63], alphabet[bits >> 6 & 63],
                         alphabet[bits & 63]};
    out_.append(text, letters);
}

void Base64::add(const void* data, std::size_t size)
{
    const auto* at = static_cast<const unsigned char*>(data);
    const unsigned char* const end = at + size;
    out_.reserve(out_.size() + (size + 2) / 3 * 4);
    while (at != end) {
        if (held_ == 0)
            for (; end - at >= 3; at += 3)
                put(static_cast<uint32_t>(at[0]) << 16 | static_cast<uint32_t>(at[1]) << 8 | at[2], 4);
        if (at == end) return;
        held_bits_ = held_bits_ << 8 | *at++;
        if (++held_ == 3) {
            put(held_bits_, 4);
            held_bits_ = 0;
            held_ = 0;
        }
    }
}

void Base64::finish()
{
    if (held_ == 0) return;
    put(held_bits_ << 8 * (3 - held_), held_ + 1);
    out_.append(3 - held_, '=');
    held_ = 0;
    held_bits_ = 0;
}

} // namespace gltf
