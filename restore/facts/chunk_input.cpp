#include "restore/facts/chunk_input.h"

#include <algorithm>
#include <cstring>

namespace restore {

static uint64_t measured(std::FILE* file)
{
    if (std::fseek(file, 0, SEEK_END) != 0) return 0;
    const long end = std::ftell(file);
    return std::fseek(file, 0, SEEK_SET) == 0 && end > 0 ? static_cast<uint64_t>(end) : 0;
}

ChunkInput::ChunkInput(std::FILE* file) : file_(file), buffer_(block_size), size_(measured(file)) {}

bool ChunkInput::fill(std::size_t count)
{
    std::memmove(buffer_.data(), buffer_.data() + at_, filled_ - at_);
    base_ += at_;
    filled_ -= at_;
    at_ = 0;
    filled_ += std::fread(buffer_.data() + filled_, 1, buffer_.size() - filled_, file_);
    if (filled_ >= count) return true;
    size_ = base_ + filled_; // shorter than it was measured, or unreadable from here
    return false;
}

const unsigned char* ChunkInput::take(std::size_t count)
{
    if (filled_ - at_ < count && !fill(count)) return nullptr;
    at_ += count;
    return buffer_.data() + at_ - count;
}

bool ChunkInput::skip(uint64_t count)
{
    if (count <= filled_ - at_) {
        at_ += static_cast<std::size_t>(count);
        return true;
    }
    const uint64_t target = std::min(place() + count, size_);
    const bool there = count <= left();
    base_ = target;
    at_ = filled_ = 0;
    if (std::fseek(file_, static_cast<long>(target), SEEK_SET) != 0) size_ = base_;
    return there;
}

bool ChunkInput::text(std::string& out, std::size_t most, uint64_t limit)
{
    out.clear();
    while (place() < limit && (at_ < filled_ || fill(1))) {
        const unsigned char* const from = buffer_.data() + at_;
        const std::size_t here = static_cast<std::size_t>(std::min<uint64_t>(filled_ - at_, limit - place()));
        const auto* const end = static_cast<const unsigned char*>(std::memchr(from, 0, here));
        const std::size_t length = end ? static_cast<std::size_t>(end - from) : here;
        out.append(reinterpret_cast<const char*>(from), std::min(length, most - out.size()));
        at_ += length;
        if (end) {
            ++at_;
            return true;
        }
    }
    return false;
}

} // namespace restore
