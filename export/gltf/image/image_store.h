// Image files, each read once, decoded once and encoded once.
#pragma once
#include <cstddef>
#include <deque>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "export/gltf/base/encoded_image.h"
#include "export/gltf/base/notes.h"
#include "export/gltf/base/options.h"
#include "export/gltf/image/image_pixels.h"

namespace gltf {

// A file that was found and can be decoded.
struct ImageFile {
    std::size_t number = 0;                      // in the order of first use
    std::string path;                            // the system's
    std::string name;                            // for people, UTF-8: the file's name without its extension
    uint32_t width = 0, height = 0;              // as it goes into the file, thus at most Options::max_texture
    std::shared_ptr<const EncodedImage> encoded; // once it has been asked for
    std::vector<unsigned char> kept;             // the file as it can stay, until it is encoded; else empty
    const char* kept_mime = "image/png";
};

class ImageStore {
public:
    ImageStore(const Options& options, NoteBook& notes) : options_(options), notes_(notes) {}

    // The file behind a name of the scene (Latin-1); null where there is none. The first failure of a name goes into
    // the report, with the surface (UTF-8) that asked. Files stay where they are.
    ImageFile* open(const std::string& name, const std::string& surface);

    // Opaque: scenes of the time ignored the alpha channel of a file, and in many Targa files it is 0 throughout.
    // Decoded anew where it was dropped for want of room. Null when the file has gone in between.
    std::shared_ptr<const Pixels> pixels(ImageFile& file);

    // The file as an image of its own.
    std::shared_ptr<const EncodedImage> encoded(ImageFile& file);

private:
    struct Kept {
        std::size_t file = 0;
        std::shared_ptr<const Pixels> pixels;
    };
    std::shared_ptr<const Pixels> load(ImageFile& file, std::string& error);
    void keep(const ImageFile& file, std::shared_ptr<const Pixels> pixels);

    const Options& options_;
    NoteBook& notes_;
    std::deque<ImageFile> files_;
    std::unordered_map<std::string, ImageFile*> by_name_; // null: can't be had, and reported
    std::unordered_map<std::string, ImageFile*> by_path_; // null: unreadable, and reported
    std::list<Kept> recent_;                              // the last used one first
    std::size_t recent_bytes_ = 0;
};

} // namespace gltf
