// Objects and scenes, from the first byte to the finished GLB: whatever was in the input, the result is well-formed and
// every number in it is one.
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

#include "export/gltf/writer.h"
#include "fuzz/harness.h"

namespace {

using Json = nlohmann::json;

uint32_t word(const std::vector<unsigned char>& bytes, std::size_t at)
{
    if (at + 4 > bytes.size()) fuzz::fail("the GLB is cut off");
    uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, 4);
    return value;
}

// What isn't finite is written as null.
void check_numbers(const Json& json)
{
    if (json.is_null()) fuzz::fail("the GLB's JSON holds a number that is none");
    if (json.is_structured()) {
        for (const Json& inner : json) check_numbers(inner);
    }
}

void check_floats(const Json& json, const unsigned char* data, std::size_t size)
{
    for (const Json& accessor : json.value("accessors", Json::array())) {
        if (accessor.at("componentType") != 5126) continue;
        const Json& view = json.at("bufferViews").at(accessor.at("bufferView").get<std::size_t>());
        const std::string type = accessor.at("type");
        const std::size_t parts = type == "SCALAR" ? 1 : static_cast<std::size_t>(type.back() - '0');
        const std::size_t start =
            view.value("byteOffset", std::size_t{0}) + accessor.value("byteOffset", std::size_t{0});
        const std::size_t count = accessor.at("count").get<std::size_t>() * parts;
        if (start + count * 4 > size) fuzz::fail("an accessor lies outside the GLB's bytes");
        for (std::size_t i = 0; i < count; ++i) {
            float value = 0;
            std::memcpy(&value, data + start + i * 4, 4);
            if (!std::isfinite(value)) fuzz::fail("an accessor holds a number that is none");
        }
    }
}

void write_and_check()
{
    gltf::Options options;
    options.max_texture = 64;
    options.backdrop_dome = true;
    std::vector<unsigned char> bytes;
    try {
        bytes = gltf::file_bytes(gltf::make_tables(tv::scene(), options).tables, "glb");
    } catch (const std::runtime_error&) {
        return; // a clear line for the user: as good an end as a file
    }
    const std::size_t json_size = word(bytes, 12);
    if (word(bytes, 8) != bytes.size() || 20 + json_size > bytes.size()) fuzz::fail("the GLB's lengths are wrong");
    const Json json = Json::parse(bytes.begin() + 20, bytes.begin() + 20 + static_cast<std::ptrdiff_t>(json_size));
    check_numbers(json);
    const std::size_t data = 20 + json_size + 8;
    if (data < bytes.size()) check_floats(json, bytes.data() + data, bytes.size() - data);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzz::set_up();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    fuzz::convert(data, size, write_and_check);
    return 0;
}
