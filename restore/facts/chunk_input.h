// Big-endian bytes of a file in blocks, for walks over chunks.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace restore {

class ChunkInput {
public:
    explicit ChunkInput(std::FILE* file);

    uint64_t place() const { return base_ + at_; } // bytes from the file's start
    uint64_t size() const { return size_; }        // of the file
    uint64_t left() const { return size_ - place(); }

    // The only place where a length out of a file meets its end: `count` bytes, at most block_size, or null. Borrowed
    // until the next call.
    const unsigned char* take(std::size_t count);
    // False where the file ends first; the place is its end then.
    bool skip(uint64_t count);
    // Up to a zero byte, which is taken too; at most `most` bytes are kept. False where the file ends first, or the place
    // comes to `limit`: all up to there has been taken.
    bool text(std::string& out, std::size_t most, uint64_t limit);

    static constexpr std::size_t block_size = std::size_t{64} << 10;

private:
    bool fill(std::size_t count);

    std::FILE* file_;
    std::vector<unsigned char> buffer_;
    std::size_t at_ = 0, filled_ = 0;
    uint64_t base_ = 0, size_ = 0;
};

inline uint32_t be16(const unsigned char* bytes)
{
    return uint32_t{bytes[0]} << 8 | bytes[1];
}

inline uint32_t be32(const unsigned char* bytes)
{
    return be16(bytes) << 16 | be16(bytes + 2);
}

} // namespace restore
