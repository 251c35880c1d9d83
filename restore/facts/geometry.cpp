#include "restore/facts/geometry.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <string>

#include "restore/facts/chunk_input.h"

namespace restore {

namespace {

constexpr uint32_t id(const char (&text)[5])
{
    return static_cast<uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
           static_cast<uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
           static_cast<uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
           static_cast<uint32_t>(static_cast<unsigned char>(text[3]));
}

class GeometryReader {
public:
    explicit GeometryReader(std::FILE* file) : in_(file) {}

    std::optional<Geometry> read()
    {
        const unsigned char* const head = in_.take(12);
        if (!head || be32(head) != id("FORM") || be32(head + 8) != id("LWOB")) return std::nullopt;
        while (const unsigned char* const chunk = in_.take(8)) {
            const uint32_t name = be32(chunk);
            const uint64_t end = in_.place() + be32(chunk + 4);
            if (name == id("SRFS")) surface_names(std::min(end, in_.size()));
            if (name == id("PNTS") && !points(be32(chunk + 4))) return std::nullopt;
            if (name == id("POLS")) polygons(std::min(end, in_.size()));
            if (end > in_.place() && !in_.skip(end - in_.place())) break;
            if (end % 2 != 0 && !in_.skip(1)) break;
        }
        if (out_.points.empty()) return std::nullopt;
        part();
        return std::move(out_);
    }

private:
    void surface_names(uint64_t end)
    {
        std::string name;
        while (in_.place() < end) {
            in_.text(name, 0, end);
            if (in_.place() % 2 != 0) in_.skip(1);
            ++surfaces_;
        }
    }

    bool points(uint32_t size)
    {
        const uint32_t count = size / 12;
        if (uint64_t{count} * 12 > in_.left()) return false;
        out_.points.clear();
        out_.points.reserve(std::size_t{count} * 3);
        for (uint64_t i = 0; i < uint64_t{count} * 3; ++i)
            out_.points.push_back(std::bit_cast<float>(be32(in_.take(4))));
        return true;
    }

    // A negative surface number is followed by a count of details, polygons that have none of their own.
    void polygons(uint64_t end)
    {
        corners_.clear();
        int64_t details = 0;
        while (in_.place() + 4 <= end) {
            const uint32_t count = be16(in_.take(2));
            if (in_.place() + 2 * uint64_t{count} + 2 > end) return;
            const std::size_t first = corners_.size();
            for (uint32_t i = 0; i < count; ++i) corners_.push_back(be16(in_.take(2)));
            const int surface = static_cast<int16_t>(be16(in_.take(2)));
            const uint32_t number = std::min<uint32_t>(static_cast<uint32_t>(std::abs(surface)), surfaces_);
            if (number != 0) surface_ = number; // 0 goes with the polygon before it
            if (count < 3) corners_.resize(first);
            for (std::size_t i = first; i < corners_.size(); ++i) corners_[i] |= uint64_t{surface_} << 16;
            if (details > 0) {
                --details;
            } else if (surface < 0 && in_.place() + 2 <= end) {
                details = static_cast<int16_t>(be16(in_.take(2)));
            }
        }
    }

    void part()
    {
        std::sort(corners_.begin(), corners_.end());
        corners_.erase(std::unique(corners_.begin(), corners_.end()), corners_.end());
        out_.used.resize(surfaces_);
        const std::size_t points = out_.points.size() / 3;
        for (const uint64_t corner : corners_) {
            const auto point = static_cast<uint32_t>(corner & 0xffff);
            const uint64_t surface = corner >> 16;
            if (surface != 0 && point < points) out_.used[surface - 1].push_back(point);
        }
    }

    ChunkInput in_;
    Geometry out_;
    uint32_t surfaces_ = 0, surface_ = 1;
    std::vector<uint64_t> corners_; // of kept polygons: point in the lower 16 bits, surface above
};

} // namespace

std::optional<Geometry> read_geometry(std::FILE* file)
{
    return GeometryReader(file).read();
}

} // namespace restore
