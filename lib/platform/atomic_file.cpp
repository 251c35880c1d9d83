#include "lib/platform/atomic_file.h"

#include <cerrno>
#include <random>
#include <system_error>

#include "lib/platform/memory.h"

namespace platform {

namespace fs = std::filesystem;

namespace {

// A name beside the target that no other run uses. The start is short, so that long file names stay possible.
fs::path temporary_name(const fs::path& target)
{
    static constexpr char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::string name = ".lwimport-";
    for (int i = 0; i < 10; ++i) name += letters[random() % (sizeof letters - 1)];
    return target.parent_path() / name;
}

} // namespace

AtomicFile* AtomicFile::living = nullptr;

void AtomicFile::fail(FileError::Doing doing, int error) const
{
    if (error == ENOMEM) throw std::bad_alloc();
    throw FileError(doing, shown_, std::generic_category().message(error));
}

AtomicFile::AtomicFile(const fs::path& target) : shown_(target), target_(target), next_(living)
{
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (fs::is_directory(status)) fail(FileError::Doing::write, EISDIR);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        file_ = std::fopen(target.string().c_str(), "wb");
        if (!file_) fail(FileError::Doing::write, errno);
        living = this;
        return;
    }
    if (fs::is_symlink(fs::symlink_status(target, error))) {
        const fs::path real = fs::weakly_canonical(target, error);
        if (!error) target_ = real;
    }
    for (int attempt = 0; attempt < 100 && !file_; ++attempt) {
        temporary_ = temporary_name(target_);
        file_ = std::fopen(temporary_.string().c_str(), "wbx");
        if (!file_ && errno != EEXIST) break;
    }
    if (!file_) {
        const int reason = errno;
        temporary_.clear();
        fail(FileError::Doing::write, reason);
    }
    // A file that is replaced keeps its permissions.
    if (fs::exists(status)) fs::permissions(temporary_, status.permissions(), error);
    living = this;
}

AtomicFile::~AtomicFile()
{
    AtomicFile** place = &living;
    while (*place != this) place = &(*place)->next_;
    *place = next_;
    if (file_) std::fclose(file_);
    std::error_code error;
    if (!committed_ && !temporary_.empty()) fs::remove(temporary_, error);
}

void AtomicFile::write(const void* data, std::size_t size)
{
    if (std::fwrite(data, 1, size, file_) != size) fail(FileError::Doing::write, errno);
}

void AtomicFile::close()
{
    if (!file_) return;
    std::FILE* const file = file_;
    file_ = nullptr;
    if (std::fclose(file) != 0) fail(FileError::Doing::write, errno);
}

void AtomicFile::commit()
{
    close();
    throw_if_memory_ran_short();
    if (!temporary_.empty()) {
        std::error_code error;
        fs::rename(temporary_, target_, error);
        if (error) fail(FileError::Doing::replace, error.value());
    }
    committed_ = true;
}

void AtomicFile::remove_unfinished() noexcept
{
    std::error_code error;
    for (const AtomicFile* file = living; file; file = file->next_)
        if (!file->committed_ && !file->temporary_.empty()) fs::remove(file->temporary_, error);
}

} // namespace platform
