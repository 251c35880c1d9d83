#include "tests/export/gltf_reader.h"

#include <cstring>
#include <fstream>
#include <glm/gtc/matrix_transform.hpp>
#include <iterator>

#include "gtest/gtest.h"

namespace {

uint32_t word_at(const std::string& data, std::size_t at)
{
    uint32_t word = 0;
    if (at + 4 <= data.size()) std::memcpy(&word, data.data() + at, 4);
    return word;
}

template <typename T>
double number_at(const std::string& data, std::size_t at)
{
    T value{};
    std::memcpy(&value, data.data() + at, sizeof value);
    return static_cast<double>(value);
}

glm::dquat quat_of(const std::vector<double>& v, std::size_t at = 0)
{
    return {v[at + 3], v[at], v[at + 1], v[at + 2]};
}

} // namespace

GltfFile GltfFile::read(const std::filesystem::path& path)
{
    GltfFile file;
    std::ifstream in(path, std::ios::binary);
    const std::string data{std::istreambuf_iterator<char>(in), {}};
    EXPECT_GE(data.size(), 20u) << path;
    EXPECT_EQ(word_at(data, 0), 0x46546C67u);
    EXPECT_EQ(word_at(data, 4), 2u);
    EXPECT_EQ(word_at(data, 8), data.size());
    const std::size_t json_size = word_at(data, 12);
    EXPECT_EQ(word_at(data, 16), 0x4E4F534Au);
    if (json_size > data.size() - 20) return file;
    file.json = nlohmann::json::parse(data.substr(20, json_size));
    if (data.size() > 20 + json_size) {
        EXPECT_EQ(word_at(data, 24 + json_size), 0x004E4942u);
        EXPECT_EQ(word_at(data, 20 + json_size), data.size() - json_size - 28);
        file.bytes = data.substr(28 + json_size);
    }
    return file;
}

std::vector<double> GltfFile::numbers(std::size_t index) const
{
    const auto& accessor = json.at("accessors").at(index);
    const auto& view = json.at("bufferViews").at(accessor.at("bufferView").get<std::size_t>());
    const std::string type = accessor.at("type");
    const std::size_t parts = type == "SCALAR" ? 1 : static_cast<std::size_t>(type.back() - '0');
    const int component = accessor.at("componentType");
    const std::size_t size = component == 5123 ? 2 : 4;
    const std::size_t stride = view.value("byteStride", parts * size);
    const std::size_t start = view.value("byteOffset", std::size_t{0}) + accessor.value("byteOffset", std::size_t{0});
    const std::size_t count = accessor.at("count");
    std::vector<double> result;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = 0; k < parts; ++k) {
            const std::size_t at = start + i * stride + k * size;
            EXPECT_LE(at + size, bytes.size());
            result.push_back(component == 5123   ? number_at<uint16_t>(bytes, at)
                             : component == 5125 ? number_at<uint32_t>(bytes, at)
                                                 : number_at<float>(bytes, at));
        }
    return result;
}

GltfFile::Corners GltfFile::corners(std::size_t mesh, std::size_t number) const
{
    const auto& primitive = json.at("meshes").at(mesh).at("primitives").at(number);
    const auto positions = numbers(primitive.at("attributes").at("POSITION"));
    std::vector<double> normals;
    if (primitive.at("attributes").contains("NORMAL")) normals = numbers(primitive.at("attributes").at("NORMAL"));
    Corners result;
    for (const double index : numbers(primitive.at("indices"))) {
        const std::size_t at = 3 * static_cast<std::size_t>(index);
        result.positions.emplace_back(positions.at(at), positions.at(at + 1), positions.at(at + 2));
        if (!normals.empty()) result.normals.emplace_back(normals.at(at), normals.at(at + 1), normals.at(at + 2));
    }
    return result;
}

std::optional<std::size_t> GltfFile::node(const std::string& name) const
{
    for (std::size_t i = 0; json.contains("nodes") && i < json["nodes"].size(); ++i)
        if (json["nodes"][i].value("name", "") == name) return i;
    return std::nullopt;
}

const nlohmann::json* GltfFile::sampler(std::size_t node, const std::string& path) const
{
    if (!json.contains("animations")) return nullptr;
    const auto& animation = json["animations"].at(0);
    for (const auto& channel : animation.at("channels"))
        if (channel.at("target").value("node", json["nodes"].size()) == node && channel.at("target").at("path") == path)
            return &animation.at("samplers").at(channel.at("sampler").get<std::size_t>());
    return nullptr;
}

std::vector<double> GltfFile::key_times(std::size_t node, const std::string& path) const
{
    const nlohmann::json* const found = sampler(node, path);
    return found ? numbers(found->at("input")) : std::vector<double>{};
}

std::vector<double> GltfFile::animated(std::size_t node, const std::string& path, double seconds) const
{
    const nlohmann::json* const found = sampler(node, path);
    if (!found) return {};
    const std::vector<double> times = numbers(found->at("input")), values = numbers(found->at("output"));
    const std::string interpolation = found->value("interpolation", "LINEAR");
    const bool cubic = interpolation == "CUBICSPLINE", step = interpolation == "STEP";
    const std::size_t width = path == "rotation" ? 4 : path == "weights" ? 1 : 3, row = cubic ? 3 * width : width;
    const std::size_t value = cubic ? width : 0; // of a key's row
    const auto part = [&](std::size_t key, std::size_t from) {
        const auto start = values.begin() + static_cast<std::ptrdiff_t>(key * row + from);
        return std::vector<double>(start, start + static_cast<std::ptrdiff_t>(width));
    };
    if (seconds <= times.front()) return part(0, value);
    if (seconds >= times.back()) return part(times.size() - 1, value);
    std::size_t next = 1;
    while (times[next] < seconds) ++next;
    if (step) return part(times[next] == seconds ? next : next - 1, value);
    const double length = times[next] - times[next - 1], s = (seconds - times[next - 1]) / length;
    const std::vector<double> a = part(next - 1, value), b = part(next, value);
    std::vector<double> result(width);
    if (cubic) {
        const std::vector<double> out = part(next - 1, 2 * width), in = part(next, 0);
        const double s2 = s * s, s3 = s2 * s;
        for (std::size_t i = 0; i < width; ++i)
            result[i] = (2 * s3 - 3 * s2 + 1) * a[i] + length * (s3 - 2 * s2 + s) * out[i] + (3 * s2 - 2 * s3) * b[i] +
                        length * (s3 - s2) * in[i];
    } else if (path != "rotation") {
        for (std::size_t i = 0; i < width; ++i) result[i] = a[i] + (b[i] - a[i]) * s;
    } else {
        const glm::dquat q = glm::slerp(quat_of(a), quat_of(b), s);
        result = {q.x, q.y, q.z, q.w};
    }
    return result;
}

glm::dmat4 GltfFile::local(std::size_t index, double seconds) const
{
    const auto& node = json.at("nodes").at(index);
    const auto path = [&](const char* name, std::vector<double> otherwise) {
        const std::vector<double> moving = animated(index, name, seconds);
        return moving.empty() ? node.value(name, otherwise) : moving;
    };
    const std::vector<double> t = path("translation", {0, 0, 0}), r = path("rotation", {0, 0, 0, 1}),
                              s = path("scale", {1, 1, 1});
    return glm::translate(glm::dmat4(1), glm::dvec3(t[0], t[1], t[2])) * glm::mat4_cast(quat_of(r)) *
           glm::scale(glm::dmat4(1), glm::dvec3(s[0], s[1], s[2]));
}

glm::dmat4 GltfFile::world(std::size_t index, double seconds) const
{
    const glm::dmat4 own = local(index, seconds);
    for (std::size_t i = 0; i < json.at("nodes").size(); ++i) {
        const auto children = json["nodes"][i].value("children", std::vector<std::size_t>{});
        if (std::find(children.begin(), children.end(), index) != children.end()) return world(i, seconds) * own;
    }
    return own;
}
