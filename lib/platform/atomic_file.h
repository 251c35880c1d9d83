// A file that is there whole or not at all: written beside its target and renamed at the end.
#pragma once
#include <cstdio>
#include <filesystem>
#include <string>

namespace platform {

class AtomicFile {
public:
    // Throws std::runtime_error, as all of these do, with one line that names the target and the system's reason.
    // A target that is no regular file (a device, a pipe) is written in place. A symbolic link is followed.
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
    [[noreturn]] void fail(const char* doing, int error) const;

    std::filesystem::path shown_, target_, temporary_; // temporary_ empty: written in place
    std::FILE* file_ = nullptr;
    bool committed_ = false;
    AtomicFile* next_; // of all that live
    static AtomicFile* living;
};

} // namespace platform
