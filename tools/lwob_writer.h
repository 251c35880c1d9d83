// Writes Lightwave object files, good ones and bad ones: for the samples, the tests, the benchmarks and the fuzz seeds.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace lw_tools {

// Big-endian bytes in the order of writing.
class Bytes {
public:
    Bytes& u8(unsigned value);
    Bytes& u16(unsigned value); // the low 16 bits
    Bytes& u32(uint32_t value);
    Bytes& f32(float value);
    Bytes& floats(std::initializer_list<float> values);
    Bytes& id(std::string_view four);   // exactly the four bytes given
    Bytes& text(std::string_view text); // with its terminator, padded to an even length
    Bytes& raw(std::string_view bytes);
    Bytes& raw(const Bytes& other);
    std::size_t size() const { return data_.size(); }
    const std::string& str() const { return data_; }

private:
    std::string data_;
};

// The sub-chunks of a SURF chunk. Each call appends one; sub() takes any id and payload.
class SurfaceWriter {
public:
    explicit SurfaceWriter(std::string name) : name_(std::move(name)) {}
    SurfaceWriter& sub(std::string_view id, const Bytes& payload); // pads an odd payload
    SurfaceWriter& u16(std::string_view id, unsigned value);
    SurfaceWriter& f32(std::string_view id, float value);
    SurfaceWriter& vec(std::string_view id, float x, float y, float z);
    SurfaceWriter& text(std::string_view id, std::string_view text);
    SurfaceWriter& color(unsigned r, unsigned g, unsigned b);         // COLR
    SurfaceWriter& texture_color(unsigned r, unsigned g, unsigned b); // TCLR
    const std::string& name() const { return name_; }
    const Bytes& body() const { return body_; }

private:
    std::string name_;
    Bytes body_;
};

struct Polygon {
    std::vector<unsigned> points; // from 0, as the file counts
    int surface = 1;              // from 1; written negative where details follow
    std::vector<Polygon> details;
};

// An object: points, surface names, polygons, surfaces. to_bytes() gives the usual order SRFS, PNTS, POLS, SURF.
struct ObjectWriter {
    std::vector<float> points; // x, y, z each, file coordinates
    std::vector<std::string> surface_names;
    std::vector<Polygon> polygons;
    std::vector<SurfaceWriter> surfaces;

    unsigned point(float x, float y, float z); // its number
    void polygon(std::vector<unsigned> points_of_it, int surface = 1)
    {
        polygons.push_back({std::move(points_of_it), surface, {}});
    }
    std::string to_bytes() const;
};

std::string chunk(std::string_view id, const Bytes& body);        // with its pad byte
std::string form(const std::vector<std::string>& chunks);         // FORM .. LWOB round finished chunks
Bytes surface_names_body(const std::vector<std::string>& names);  // of SRFS
Bytes polygons_body(const std::vector<Polygon>& polygons);        // of POLS
Bytes points_body(const std::vector<float>& points);              // of PNTS
std::string surface_chunk(const SurfaceWriter& surface);          // a whole SURF chunk
void write_file(const std::string& path, std::string_view bytes); // throws std::runtime_error

} // namespace lw_tools
