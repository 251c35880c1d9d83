#include "export/gltf/image/image_store.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "export/gltf/image/image_header.h"
#include "export/gltf/image/image_library.h"
#include "export/gltf/image/image_png.h"
#include "export/gltf/image/image_search.h"
#include "lib/platform/files.h"
#include "lib/platform/latin1.h"

namespace gltf {
namespace {

constexpr std::size_t largest_file = (std::size_t{1} << 30) + (1 << 16); // 16384 x 16384 pixels of 32 bits
constexpr std::size_t room_for_pixels = std::size_t{512} << 20;          // of decoded files kept for a second use

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::optional<std::vector<unsigned char>> read_file(const std::string& path, std::string& error)
{
    std::error_code code;
    const auto size = std::filesystem::file_size(path, code);
    if (code) {
        error = messages::text(message<"image-not-opened">(code.message()));
        return std::nullopt;
    }
    if (size > largest_file) {
        error = messages::text(message<"image-too-large">());
        return std::nullopt;
    }
    const std::unique_ptr<std::FILE, Close> file(platform::open_file(path.c_str(), "rb"));
    if (!file) {
        error = messages::text(message<"image-not-opened">(""));
        return std::nullopt;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
        error = messages::text(message<"image-cut-off">());
        return std::nullopt;
    }
    return bytes;
}

} // namespace

ImageFile* ImageStore::open(const std::string& name, const std::string& surface)
{
    const auto known = by_name_.find(name);
    if (known != by_name_.end()) return known->second;
    ImageFile*& answer = by_name_[name];
    const std::string shown = platform::latin1_to_utf8(name);
    ImagePlace place = find_image(name, options_.image_directories);
    if (!place.named) return nullptr;
    if (place.path.empty()) {
        notes_.report().missing_images.push_back({shown, surface, std::move(place.tried), ""});
        return nullptr;
    }
    const std::string found = platform::shown_name(place.path);
    if (place.sequence)
        notes_.tell(message<"image-sequence">(shown, found));
    else if (place.other_extension)
        notes_.tell(message<"image-by-another-name">(shown, found));

    const auto same_file = by_path_.find(place.path);
    if (same_file != by_path_.end()) return answer = same_file->second;
    ImageFile file;
    file.number = files_.size();
    file.path = place.path;
    file.name = std::filesystem::path(found).stem().string();
    std::string error;
    const std::shared_ptr<const Pixels> pixels = load(file, error);
    if (!pixels) {
        by_path_[place.path] = nullptr;
        notes_.report().missing_images.push_back({shown, surface, {found}, error});
        return nullptr;
    }
    notes_.report().images_found++;
    files_.push_back(std::move(file));
    answer = by_path_[place.path] = &files_.back();
    keep(*answer, pixels);
    return answer;
}

std::shared_ptr<const Pixels> ImageStore::load(ImageFile& file, std::string& error)
{
    const std::optional<std::vector<unsigned char>> bytes = read_file(file.path, error);
    if (!bytes) return nullptr;
    DecodeResult decoded = decode_image(*bytes);
    if (!decoded.error.empty()) {
        error = std::move(decoded.error);
        return nullptr;
    }
    Pixels& pixels = decoded.pixels;
    const bool fits = pixels.width <= options_.max_texture && pixels.height <= options_.max_texture;
    if (!file.encoded && fits) {
        const ImageKind kind = read_image_header(*bytes).kind;
        std::optional<std::vector<unsigned char>> kept;
        if (kind == ImageKind::png) kept = keep_png(*bytes);
        if (kind == ImageKind::jpeg) kept = keep_jpeg(*bytes);
        if (kept) file.kept = std::move(*kept);
        if (kind == ImageKind::jpeg) file.kept_mime = "image/jpeg";
    }
    if (decoded.has_alpha) drop_alpha(pixels);
    shrink_to(pixels, options_.max_texture);
    file.width = pixels.width;
    file.height = pixels.height;
    return std::make_shared<const Pixels>(std::move(pixels));
}

void ImageStore::keep(const ImageFile& file, std::shared_ptr<const Pixels> pixels)
{
    recent_bytes_ += pixels->rgba.size();
    recent_.push_front({file.number, std::move(pixels)});
    while (recent_bytes_ > room_for_pixels && recent_.size() > 1) {
        recent_bytes_ -= recent_.back().pixels->rgba.size();
        recent_.pop_back();
    }
}

std::shared_ptr<const Pixels> ImageStore::pixels(ImageFile& file)
{
    for (auto it = recent_.begin(); it != recent_.end(); ++it) {
        if (it->file != file.number) continue;
        recent_.splice(recent_.begin(), recent_, it);
        return it->pixels;
    }
    std::string error;
    std::shared_ptr<const Pixels> again = load(file, error);
    if (!again) {
        notes_.tell(message<"image-gone">(platform::shown_name(file.path), error));
        return nullptr;
    }
    keep(file, again);
    return again;
}

std::shared_ptr<const EncodedImage> ImageStore::encoded(ImageFile& file)
{
    if (file.encoded) return file.encoded;
    auto image = std::make_shared<EncodedImage>();
    image->name = file.name;
    image->width = file.width;
    image->height = file.height;
    if (!file.kept.empty()) {
        image->mime = file.kept_mime;
        image->bytes = std::move(file.kept);
    } else {
        const std::shared_ptr<const Pixels> picture = pixels(file);
        if (!picture) return nullptr;
        image->mime = "image/png";
        image->bytes = encode_png(*picture);
    }
    return file.encoded = std::move(image);
}

} // namespace gltf
