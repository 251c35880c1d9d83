// What the first bytes of a file say it is.
#pragma once
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "lib/messages/message.h"

namespace restore {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

enum class FileKind : uint8_t { neither, scene, object };

struct FileHead {
    FileKind kind = FileKind::neither;
    long scene_version = 0;                   // the number on a scene's second line, 0 when there is none
    std::uintmax_t size = 0;                  // bytes
    std::optional<messages::Message> problem; // neither: why not; the first value is the file's name
};
FileHead read_head(const std::filesystem::path& file);

// Regular files alone: a pipe would keep us waiting. Null with errno set.
File open_regular(const std::filesystem::path& file);

// Of a file's first bytes, 512 of them or all there are.
bool begins_as_object(std::string_view front);
bool begins_as_image(std::string_view front);  // one of the kinds that scenes name; Targa by what its head can hold
inline constexpr std::size_t front_size = 768; // that the two ask for: a PICT's picture begins behind 512 bytes

} // namespace restore
