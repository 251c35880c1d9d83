#include "export/gltf/file/output.h"

#include <array>
#include <deque>
#include <set>

#include "export/gltf/file/base64.h"
#include "export/gltf/file/gltf_json.h"
#include "lib/messages/message.h"
#include "lib/platform/atomic_file.h"

namespace gltf {

namespace {

void write_word(const ByteSink& sink, uint64_t value)
{
    const std::array<unsigned char, 4> bytes = {
        static_cast<unsigned char>(value & 0xff), static_cast<unsigned char>(value >> 8 & 0xff),
        static_cast<unsigned char>(value >> 16 & 0xff), static_cast<unsigned char>(value >> 24 & 0xff)};
    sink(bytes.data(), bytes.size());
}

// A file name as part of a URI. RFC 3986: what isn't unreserved goes as %XX, byte by byte.
std::string percent_encoded(const std::string& name)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || byte == '-' || byte == '.' || byte == '_' || byte == '~';
        if (plain) {
            result += c;
        } else {
            result += '%';
            result += digits[byte >> 4];
            result += digits[byte & 15];
        }
    }
    return result;
}

// "ship_hull.png": unique, and safe on every system.
std::string image_file_name(const std::string& stem, const EncodedImage& image, std::set<std::string>& taken)
{
    std::string base;
    for (const char c : image.name.substr(0, image.name.rfind('.'))) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
        if (plain)
            base += c;
        else if (!base.empty() && base.back() != '_')
            base += '_';
    }
    base = stem + '_' + (base.empty() ? "image" : base.substr(0, 60));
    const std::string ending = image.mime == "image/jpeg" ? ".jpg" : ".png";
    std::string name = base + ending;
    for (int i = 2; !taken.insert(name).second; ++i) name = base + '_' + std::to_string(i) + ending;
    return name;
}

} // namespace

void write_glb(const Tables& tables, const ByteSink& sink)
{
    std::string json = gltf_json(tables, {});
    json.resize((json.size() + 3) & ~std::size_t{3}, ' ');
    const uint64_t size = tables.buffer.size(true);
    const uint64_t total = 12 + 8 + json.size() + (size == 0 ? 0 : 8 + size);
    if (total > 0xffffffffull) throw messages::Error(messages::message<"glb-too-large">());
    static constexpr uint32_t magic = 0x46546C67, json_chunk = 0x4E4F534A, data_chunk = 0x004E4942;
    write_word(sink, magic);
    write_word(sink, 2);
    write_word(sink, total);
    write_word(sink, json.size());
    write_word(sink, json_chunk);
    sink(json.data(), json.size());
    if (size == 0) return;
    write_word(sink, size);
    write_word(sink, data_chunk);
    tables.buffer.write(true, sink);
}

void write_self_contained_gltf(const Tables& tables, const ByteSink& sink)
{
    std::string data = "data:application/octet-stream;base64,";
    Base64 base64(data);
    tables.buffer.write(true, [&](const void* bytes, std::size_t size) { base64.add(bytes, size); });
    base64.finish();
    JsonTarget target;
    target.buffer_uri = std::move(data);
    target.lines = true;
    const std::string json = gltf_json(tables, target);
    sink(json.data(), json.size());
}

void write_gltf_files(const Tables& tables, const std::filesystem::path& out)
{
    const std::filesystem::path folder = out.parent_path();
    const std::string stem = out.stem().string();
    JsonTarget target;
    target.lines = true;
    std::deque<platform::AtomicFile> files;

    const std::string data_name = stem + ".bin";
    target.buffer_uri = percent_encoded(data_name);
    if (tables.buffer.size(false) != 0) {
        platform::AtomicFile& file = files.emplace_back(folder / data_name);
        tables.buffer.write(false, [&](const void* bytes, std::size_t size) { file.write(bytes, size); });
    }
    std::set<std::string> taken;
    for (const auto& image : tables.buffer.images()) {
        const std::string name = image_file_name(stem, *image, taken);
        files.emplace_back(folder / name).write(image->bytes.data(), image->bytes.size());
        target.image_uris.push_back(percent_encoded(name));
    }
    const std::string json = gltf_json(tables, target);
    files.emplace_back(out).write(json.data(), json.size());
    for (platform::AtomicFile& file : files) file.close();
    for (platform::AtomicFile& file : files) file.commit(); // the one that names the others comes last
}

} // namespace gltf
