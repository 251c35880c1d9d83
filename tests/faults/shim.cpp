// Preloaded into the program under test: makes one call in its run fail, or ends the run there. Linux with glibc alone.
//   FAULT_CALL   memory | new | read | write | open | rename | sync
//   FAULT_AT     "17": the seventeenth such call; "17+": that one and all behind it. Counted from main() on
//   FAULT_PATH   of "open", only those whose path has this text in it
//   FAULT_DO     absent: the call fails; a number: this signal is raised in front of the call, which then goes on
//   FAULT_COUNT  a file that gets the number of such calls when the program ends
// Standard error never fails: the tests read there what the program says.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

enum Call { memory, by_new, reading, writing, opening, renaming, syncing, none };
constexpr const char* call_names[] = {"memory", "new", "read", "write", "open", "rename", "sync"};

Call watched = none;
unsigned long first = 0;
bool all_behind = false;
int signal_number = 0;
const char* count_file = nullptr;
const char* path_part = nullptr;
std::atomic<unsigned long> calls{0};
std::atomic<bool> armed{false};
thread_local bool resting = false; // in work of the shim itself

struct Rest {
    Rest() { resting = true; }
    ~Rest() { resting = false; }
};

template <class Function>
Function next_one(const char* name)
{
    const Rest rest;
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// Counts a call; true where it has to fail.
bool fails(Call call, int error)
{
    if (call != watched || resting || !armed.load(std::memory_order_relaxed)) return false;
    const unsigned long number = ++calls;
    if (first == 0 || (all_behind ? number < first : number != first)) return false;
    if (signal_number != 0) {
        kill(getpid(), signal_number);
        return false;
    }
    errno = error;
    return true;
}

bool open_fails(const char* path)
{
    return (!path_part || std::strstr(path, path_part)) && fails(opening, EACCES);
}

// A stream as it is behind a failure: ferror() tells.
bool stream_fails(Call call, std::FILE* stream, int error)
{
    if (stream == stderr || !fails(call, error)) return false;
    stream->_flags |= 0x20; // _IO_ERR_SEEN
    return true;
}

int (*real_main)(int, char**, char**) = nullptr;

int counted_main(int argc, char** argv, char** environment)
{
    for (int i = 0; i < none; ++i)
        if (const char* const name = std::getenv("FAULT_CALL"); name && std::strcmp(name, call_names[i]) == 0)
            watched = static_cast<Call>(i);
    if (const char* const at = std::getenv("FAULT_AT")) {
        first = std::strtoul(at, nullptr, 10);
        all_behind = std::strchr(at, '+');
    }
    if (const char* const action = std::getenv("FAULT_DO")) signal_number = std::atoi(action);
    count_file = std::getenv("FAULT_COUNT");
    path_part = std::getenv("FAULT_PATH");
    armed = true;
    return real_main(argc, argv, environment);
}

[[gnu::destructor]] void tell_count()
{
    armed = false;
    if (!count_file) return;
    if (std::FILE* const file = std::fopen(count_file, "w")) {
        std::fprintf(file, "%lu\n", calls.load());
        std::fclose(file);
    }
}

} // namespace

// `real`: the function as the next library has it.
#define NEXT(function) static const auto real = next_one<decltype(&::function)>(#function)

extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);

int __libc_start_main(int (*main)(int, char**, char**), int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*rtld_fini)(), void* stack_end)
{
    using Start = int (*)(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(), void*);
    real_main = main;
    return next_one<Start>("__libc_start_main")(counted_main, argc, argv, init, fini, rtld_fini, stack_end);
}

// ---- memory --------------------------------------------------------------------------------------------------------

void* malloc(size_t size)
{
    return fails(memory, ENOMEM) ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size)
{
    return fails(memory, ENOMEM) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, size_t size)
{
    return fails(memory, ENOMEM) ? nullptr : __libc_realloc(block, size);
}

void* memalign(size_t alignment, size_t size)
{
    return fails(memory, ENOMEM) ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size)
{
    void* const made = memalign(alignment, size);
    if (made) *block = made;
    return made ? 0 : ENOMEM;
}

// ---- files ---------------------------------------------------------------------------------------------------------

ssize_t read(int file, void* to, size_t size)
{
    NEXT(read);
    return fails(reading, EIO) ? -1 : real(file, to, size);
}

ssize_t write(int file, const void* from, size_t size)
{
    NEXT(write);
    return file != STDERR_FILENO && fails(writing, ENOSPC) ? -1 : real(file, from, size);
}

size_t fread(void* to, size_t size, size_t count, std::FILE* stream)
{
    NEXT(fread);
    return stream_fails(reading, stream, EIO) ? 0 : real(to, size, count, stream);
}

char* fgets(char* to, int size, std::FILE* stream)
{
    NEXT(fgets);
    return stream_fails(reading, stream, EIO) ? nullptr : real(to, size, stream);
}

int fgetc(std::FILE* stream)
{
    NEXT(fgetc);
    return stream_fails(reading, stream, EIO) ? EOF : real(stream);
}

int getc(std::FILE* stream)
{
    return fgetc(stream);
}

dirent* readdir(DIR* directory)
{
    NEXT(readdir);
    return fails(reading, EIO) ? nullptr : real(directory);
}

size_t fwrite(const void* from, size_t size, size_t count, std::FILE* stream)
{
    NEXT(fwrite);
    return stream_fails(writing, stream, ENOSPC) ? 0 : real(from, size, count, stream);
}

int fputs(const char* text, std::FILE* stream)
{
    NEXT(fputs);
    return stream_fails(writing, stream, ENOSPC) ? EOF : real(text, stream);
}

int vfprintf(std::FILE* stream, const char* format, va_list arguments)
{
    NEXT(vfprintf);
    return stream_fails(writing, stream, ENOSPC) ? -1 : real(stream, format, arguments);
}

int fprintf(std::FILE* stream, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int result = vfprintf(stream, format, arguments);
    va_end(arguments);
    return result;
}

int printf(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int result = vfprintf(stdout, format, arguments);
    va_end(arguments);
    return result;
}

int fflush(std::FILE* stream)
{
    NEXT(fflush);
    const bool pending = stream && stream->_IO_write_ptr != stream->_IO_write_base;
    return pending && stream_fails(writing, stream, ENOSPC) ? EOF : real(stream);
}

int fclose(std::FILE* stream)
{
    NEXT(fclose);
    const bool written = (fcntl(fileno(stream), F_GETFL) & O_ACCMODE) != O_RDONLY;
    const bool failed = written && stream_fails(writing, stream, ENOSPC);
    return real(stream) == 0 && !failed ? 0 : EOF;
}

std::FILE* fopen(const char* path, const char* mode)
{
    NEXT(fopen);
    return open_fails(path) ? nullptr : real(path, mode);
}

int open(const char* path, int flags, ...)
{
    NEXT(open);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open_fails(path) ? -1 : real(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...)
{
    NEXT(openat);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open_fails(path) ? -1 : real(directory, path, flags, mode);
}

DIR* opendir(const char* path)
{
    NEXT(opendir);
    return open_fails(path) ? nullptr : real(path);
}

std::FILE* fopen64(const char* path, const char* mode)
{
    return fopen(path, mode);
}

int rename(const char* from, const char* to)
{
    NEXT(rename);
    return fails(renaming, EACCES) ? -1 : real(from, to);
}

int fsync(int file)
{
    NEXT(fsync);
    return fails(syncing, EIO) ? -1 : real(file);
}

} // extern "C"

// As the C++ library has it; where it is the one to fail, no handler is asked first.
void* operator new(size_t size)
{
    if (fails(by_new, ENOMEM)) throw std::bad_alloc();
    for (;;) {
        if (void* const block = malloc(size ? size : 1)) return block;
        const std::new_handler handler = std::get_new_handler();
        if (!handler) throw std::bad_alloc();
        handler();
    }
}
