#include "bench/limits.h"

#include <bit>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace bench {

namespace {

class Blocks {
public:
    explicit Blocks(const std::string& path) : file_(std::fopen(path.c_str(), "rb"))
    {
        if (!file_) throw std::runtime_error("can't read " + path);
    }
    ~Blocks() { std::fclose(file_); }
    Blocks(const Blocks&) = delete;
    Blocks& operator=(const Blocks&) = delete;

    int get() // -1 at the end
    {
        if (at_ == end_ && !refill()) return -1;
        return buffer_[at_++];
    }
    uint32_t big_endian(int bytes)
    {
        uint32_t out = 0;
        for (int i = 0; i < bytes; ++i) out = out << 8 | static_cast<uint32_t>(get() & 0xff);
        return out;
    }

private:
    bool refill()
    {
        at_ = 0;
        end_ = std::fread(buffer_, 1, sizeof buffer_, file_);
        return end_ != 0;
    }
    std::FILE* file_;
    unsigned char buffer_[8192];
    std::size_t at_ = 0, end_ = 0;
};

} // namespace

FlatObject read_flat(const std::string& path)
{
    Blocks in(path);
    FlatObject out;
    in.big_endian(4);
    uint32_t left = in.big_endian(4) - 4;
    in.big_endian(4);
    while (left > 8) {
        const uint32_t name = in.big_endian(4), size = in.big_endian(4), padded = size + size % 2;
        left -= 8 + padded;
        if (name == 0x504E5453) { // PNTS
            out.points.resize(size / 4);
            for (float& value : out.points) value = std::bit_cast<float>(in.big_endian(4));
        } else if (name == 0x504F4C53) { // POLS
            out.indices.reserve(size / 2);
            out.sizes.reserve(size / 10);
            for (uint32_t taken = 0; taken < size;) {
                const uint32_t count = in.big_endian(2);
                for (uint32_t i = 0; i < count; ++i) out.indices.push_back(static_cast<int32_t>(in.big_endian(2)));
                out.sizes.push_back(static_cast<int32_t>(count));
                in.big_endian(2);
                taken += 2 * count + 4;
            }
        } else {
            for (uint32_t i = 0; i < padded; ++i) in.get();
        }
    }
    return out;
}

double read_tokens(const std::string& path)
{
    Blocks in(path);
    double sum = 0;
    char token[256];
    for (std::size_t size = 0;;) {
        const int c = in.get();
        if (c > ' ' && size < sizeof token) {
            token[size++] = static_cast<char>(c);
            continue;
        }
        if (size) {
            if (token[0] == '-' || (token[0] >= '0' && token[0] <= '9')) {
                double value = 0;
                std::from_chars(token, token + size, value);
                sum += value;
            }
            size = 0;
        }
        if (c < 0) return sum;
    }
}

} // namespace bench
