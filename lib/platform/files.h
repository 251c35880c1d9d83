// Files as Windows programs see them: "\" and "/" both part path elements, a drive letter stands for the root, and
// letters match in any case. On Windows itself all this is the system's own, and the functions pass straight through.
//
// Names are Latin-1 inside. An element matches a directory entry of just these bytes first; else one whose name, read
// as UTF-8 (or, where it is none, as Latin-1), is the same without regard to case; of several the first in byte order.
// Directory listings are kept: one is read once, until forget_directories().
//
// None of these throws.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "lib/platform/api.h"

namespace platform {

// As fopen. Null for a directory, a missing file, or a place outside the allowed roots. A mode that writes makes the
// file in the resolved directory under the name as given.
PLATFORM_API std::FILE* open_file(const char* path, const char* mode);

// The path of the existing file or directory that `path` names, in the system's own spelling; empty when there is none
// (or it lies outside the allowed roots).
PLATFORM_API std::string resolve(std::string_view path);

PLATFORM_API bool is_directory(std::string_view path); // of a system path as resolve() gives it
PLATFORM_API bool is_file(std::string_view path);      // a regular file (or a pipe or device that can be read)

// How many bytes an open file holds; INT32_MAX where it is more, -1 where the system can't tell (a pipe). The file
// stands where it stood.
inline int32_t file_length(std::FILE* file)
{
    const long position = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    const long end = std::ftell(file);
    std::fseek(file, position, SEEK_SET);
    return static_cast<int32_t>(std::min<long>(end, INT32_MAX));
}

// 0 when made, else errno's value. One level.
PLATFORM_API int make_directory(const char* path);

// Entries of a directory (system path), sorted by bytes, from the kept listings; empty when it can't be read.
PLATFORM_API const std::vector<std::string>& list_directory(const std::string& directory);

// Drops the kept listings: to be called at the start of a run, and whenever files have been made by other means than
// open_file() and make_directory(), which drop the listing of the directory that they change.
PLATFORM_API void forget_directories();

// For servers: nothing outside these directories (system paths) is opened or resolved, also not through links.
// An empty list allows everything, which is the start.
PLATFORM_API void set_allowed_roots(std::vector<std::string> roots);

// Asked ahead of every try to open a file: a stream, which the caller of open_file() closes, or null to go on as ever.
// So a reader of files can be given changed copies of them. It must not throw. A null one, the start, switches it off.
using OpenSubstitute = std::FILE* (*)(void* context, const char* path, const char* mode);
PLATFORM_API void set_open_substitute(OpenSubstitute substitute, void* context);

// An empty file without a name, open for writing and reading, gone when it is closed. Null where none can be made.
PLATFORM_API std::FILE* temporary_file();

// Hears of every try to open a file: the path as asked for, and the system path opened, empty if it failed.
// A null observer, the start, switches it off.
using OpenObserver = void (*)(void* context, const char* path, const char* opened);
PLATFORM_API void set_open_observer(OpenObserver observer, void* context);

} // namespace platform
