#include "export/gltf/image/image_library.h"

#include <array>
#include <filesystem>
#include <vector>

#include "export/gltf/image/image_decoder.h"
#include "lib/platform/library.h"
#include "lib/platform/places.h"

namespace gltf {
namespace {

constexpr const char* library_file = "liblw_image_decoder.so";

struct Library {
    Lw_Decode_Image decode = nullptr;
    Lw_Free_Image free = nullptr;
    std::string problem;
};

// Where the platform's library lies, and where the program expects its libraries: the build and an installed copy are
// found alike, wherever they have been moved to.
std::vector<std::filesystem::path> places()
{
    std::vector<std::filesystem::path> found;
    if (const std::string own = platform::library_file(reinterpret_cast<const void*>(&platform::library_file));
        !own.empty())
        found.push_back(std::filesystem::path(own).parent_path());
    if (const std::string directory = platform::library_directory(); !directory.empty()) found.push_back(directory);
    if (const std::string program = platform::program_file(); !program.empty())
        found.push_back(std::filesystem::path(program).parent_path());
    return found;
}

Library load()
{
    Library library;
    for (const std::filesystem::path& place : places()) {
        const std::filesystem::path file = place / library_file;
        std::error_code ignored;
        if (!std::filesystem::exists(file, ignored)) continue;
        std::string problem;
        void* const handle = platform::load_library(file.string(), problem);
        if (!handle) {
            library.problem = "the image decoder can't be loaded: " + problem;
            continue;
        }
        library.decode = reinterpret_cast<Lw_Decode_Image>(platform::library_symbol(handle, LW_DECODE_IMAGE_NAME));
        library.free = reinterpret_cast<Lw_Free_Image>(platform::library_symbol(handle, LW_FREE_IMAGE_NAME));
        if (library.decode && library.free) return library;
        library.problem = "the image decoder is of another version: " + file.string();
    }
    if (library.problem.empty()) library.problem = std::string("the image decoder is missing: ") + library_file;
    library.decode = nullptr;
    return library;
}

bool loaded = false;

const Library& library()
{
    static const Library the_one = load();
    loaded = the_one.decode != nullptr;
    return the_one;
}

} // namespace

bool image_library_loaded()
{
    return loaded;
}

DecodeResult decode_image(std::span<const unsigned char> file)
{
    const Library& decoder = library();
    DecodeResult result;
    if (!decoder.decode) {
        result.error = decoder.problem;
        return result;
    }
    Lw_Decoded_Image image{};
    std::array<char, 256> error{};
    if (!decoder.decode(file.data(), file.size(), &image, error.data(), error.size())) {
        result.error = error.data();
        return result;
    }
    const std::unique_ptr<Lw_Decoded_Image, Lw_Free_Image> keeper(&image, decoder.free);
    result.pixels.width = image.width;
    result.pixels.height = image.height;
    result.pixels.rgba.assign(image.rgba, image.rgba + std::size_t{image.width} * image.height * 4);
    result.has_alpha = image.kept_alpha != 0;
    return result;
}

} // namespace gltf
