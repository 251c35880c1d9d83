// A file that is there whole or not at all: written beside its target and renamed at the end.
#pragma once
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace platform {

struct FileError : std::runtime_error {
    enum class Doing : uint8_t { write, replace };
    FileError(Doing the_doing, const std::filesystem::path& the_file, const std::string& the_reason)
        : std::runtime_error(the_file.string() + ": " + the_reason), doing(the_doing), file(the_file),
          reason(the_reason)
    {
    }
    Doing doing;
    std::filesystem::path file; // as it was given
    std::string reason;         // the system's
};

class AtomicFile {
public:
    // Throws FileError, as all of these do. A target that is no regular file (a device, a pipe) is written in place. A symbolic link is followed.
    explicit AtomicFile(const std::filesystem::path& target);
    ~AtomicFile(); // not committed: the temporary file goes, the target stays as it was
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void write(const void* data, std::size_t size);
    void close(); // all bytes are on their way: the last moment at which a full disk is told
    // The new file takes the target's place. Closes where that hasn't been done. Throws std::bad_alloc, and leaves the
    // old file, where memory ran short meanwhile: nobody knows what the new one lacks.
    void commit();

    // The temporary files of all that live and aren't committed go: for ends of the program that call no destructor.
    static void remove_unfinished() noexcept;

private:
    [[noreturn]] void fail(FileError::Doing doing, int error) const;

    std::filesystem::path shown_, target_, temporary_; // temporary_ empty: written in place
    std::FILE* file_ = nullptr;
    bool committed_ = false;
    AtomicFile* next_; // of all that live
    static AtomicFile* living;
};

} // namespace platform
