// What a scene or object file names, read by a small scanner of the host's own: the stored paths as they stand, which
// the plug-in shortens and lower-cases. Scenes: LoadObject and BGImage lines; objects: the TIMG and RIMG sub-chunks of
// SURF. Untrusted bytes are safe here: sizes are bounded by the file's end, and the number of results by max_references.
#pragma once
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lib/messages/message.h"

namespace host {

inline constexpr std::size_t max_references = 100'000;
inline constexpr std::size_t max_scanned_bytes = std::size_t{256} << 20; // of one file; what lies behind isn't scanned

enum class FileKind : uint8_t { neither, scene, object };

// What the first bytes say.
struct FileHead {
    FileKind kind = FileKind::neither;
    long scene_version = 0;                   // the number on a scene's second line, 0 when there is none
    std::uintmax_t size = 0;                  // bytes
    std::optional<messages::Message> problem; // neither: why not; the first value is the file's name
};
FileHead read_head(const std::filesystem::path& file);

enum class ReferenceKind : uint8_t { object, image };

struct Reference {
    ReferenceKind kind = ReferenceKind::object;
    std::string stored;   // Latin-1, as it stands in the file
    std::string surface;  // Latin-1; of an image in an object: who asks for it
    std::size_t line = 0; // of a scene, from 1, as an editor counts
};

// In the order of the file, doubles included, without "(none)". Empty for a file that can't be read.
std::vector<Reference> scan_scene(const std::filesystem::path& file);
std::vector<Reference> scan_object(const std::filesystem::path& file);

// True when the plug-in calls the file of this stored path by `name`: the last element in lower case, its extension
// perhaps turned into ".iff".
bool is_called(std::string_view stored, std::string_view name);

} // namespace host
