// What the fuzz targets share: a file that holds the input, a quiet host, and the conversion of the file through the
// plug-in's entry point with the real toolkit and services.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

// A file of just these bytes, in memory where the system has that. The name is lower-case, as the plug-in makes names.
class InputFile {
public:
    InputFile();
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    void hold(const uint8_t* data, std::size_t size);
    const std::string& path() const { return path_; }
    std::string content() const;

private:
    int descriptor_ = -1;
    std::string path_;
};

// Once, before the first input: a directory of its own with the object "part.lwo", as the current directory and the
// search path; a host that hears and prints nothing.
void set_up();

// Converts the input file and checks what must hold whatever was in it (see harness.cpp). The last byte of the input
// chooses the options, so that a find replays alone. `look` is called while the scene stands. True when the plug-in has
// read it.
bool convert(const uint8_t* data, std::size_t size, void (*look)() = nullptr);

// Says what failed and ends the program as a sanitizer would.
[[noreturn]] void fail(const char* what);

} // namespace fuzz
