#include "tools/lwob_writer.h"

#include <bit>
#include <fstream>
#include <stdexcept>

namespace lw_tools {

Bytes& Bytes::u8(unsigned value)
{
    data_.push_back(static_cast<char>(value & 0xff));
    return *this;
}

Bytes& Bytes::u16(unsigned value)
{
    return u8(value >> 8).u8(value);
}

Bytes& Bytes::u32(uint32_t value)
{
    return u16(value >> 16).u16(value & 0xffff);
}

Bytes& Bytes::f32(float value)
{
    return u32(std::bit_cast<uint32_t>(value));
}

Bytes& Bytes::floats(std::initializer_list<float> values)
{
    for (const float value : values) f32(value);
    return *this;
}

Bytes& Bytes::id(std::string_view four)
{
    return raw(four);
}

Bytes& Bytes::text(std::string_view text)
{
    raw(text).u8(0);
    if (text.size() % 2 == 0) u8(0);
    return *this;
}

Bytes& Bytes::raw(std::string_view bytes)
{
    data_.append(bytes);
    return *this;
}

Bytes& Bytes::raw(const Bytes& other)
{
    data_.append(other.data_);
    return *this;
}

SurfaceWriter& SurfaceWriter::sub(std::string_view id, const Bytes& payload)
{
    body_.id(id).u16(static_cast<unsigned>(payload.size())).raw(payload);
    if (payload.size() % 2) body_.u8(0);
    return *this;
}

SurfaceWriter& SurfaceWriter::u16(std::string_view id, unsigned value)
{
    return sub(id, Bytes().u16(value));
}

SurfaceWriter& SurfaceWriter::f32(std::string_view id, float value)
{
    return sub(id, Bytes().f32(value));
}

SurfaceWriter& SurfaceWriter::vec(std::string_view id, float x, float y, float z)
{
    return sub(id, Bytes().floats({x, y, z}));
}

SurfaceWriter& SurfaceWriter::text(std::string_view id, std::string_view text)
{
    return sub(id, Bytes().text(text));
}

SurfaceWriter& SurfaceWriter::color(unsigned r, unsigned g, unsigned b)
{
    return sub("COLR", Bytes().u8(r).u8(g).u8(b).u8(0));
}

SurfaceWriter& SurfaceWriter::texture_color(unsigned r, unsigned g, unsigned b)
{
    return sub("TCLR", Bytes().u8(r).u8(g).u8(b).u8(0));
}

unsigned ObjectWriter::point(float x, float y, float z)
{
    points.insert(points.end(), {x, y, z});
    return static_cast<unsigned>(points.size() / 3 - 1);
}

std::string ObjectWriter::to_bytes() const
{
    std::vector<std::string> chunks;
    if (!surface_names.empty()) chunks.push_back(chunk("SRFS", surface_names_body(surface_names)));
    if (!points.empty()) chunks.push_back(chunk("PNTS", points_body(points)));
    if (!polygons.empty()) chunks.push_back(chunk("POLS", polygons_body(polygons)));
    for (const SurfaceWriter& surface : surfaces) chunks.push_back(surface_chunk(surface));
    return form(chunks);
}

std::string chunk(std::string_view id, const Bytes& body)
{
    Bytes out;
    out.id(id).u32(static_cast<uint32_t>(body.size())).raw(body);
    if (body.size() % 2) out.u8(0);
    return out.str();
}

std::string form(const std::vector<std::string>& chunks)
{
    Bytes body;
    body.id("LWOB");
    for (const std::string& one : chunks) body.raw(one);
    Bytes out;
    out.id("FORM").u32(static_cast<uint32_t>(body.size())).raw(body);
    return out.str();
}

Bytes surface_names_body(const std::vector<std::string>& names)
{
    Bytes out;
    for (const std::string& name : names) out.text(name);
    return out;
}

static void append_polygon(Bytes& out, const Polygon& polygon)
{
    out.u16(static_cast<unsigned>(polygon.points.size()));
    for (const unsigned point : polygon.points) out.u16(point);
    if (polygon.details.empty()) {
        out.u16(static_cast<unsigned>(polygon.surface));
        return;
    }
    out.u16(static_cast<unsigned>(-polygon.surface)).u16(static_cast<unsigned>(polygon.details.size()));
    for (const Polygon& detail : polygon.details) append_polygon(out, detail);
}

Bytes polygons_body(const std::vector<Polygon>& polygons)
{
    Bytes out;
    for (const Polygon& polygon : polygons) append_polygon(out, polygon);
    return out;
}

Bytes points_body(const std::vector<float>& points)
{
    Bytes out;
    for (const float value : points) out.f32(value);
    return out;
}

std::string surface_chunk(const SurfaceWriter& surface)
{
    return chunk("SURF", Bytes().text(surface.name()).raw(surface.body()));
}

void write_file(const std::string& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("can't write " + path);
}

} // namespace lw_tools
