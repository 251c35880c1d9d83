// Files in memory, each in an allocation of just its size.
#pragma once
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

namespace restore_test {

class FileOf {
public:
    explicit FileOf(std::string_view bytes) : bytes_(new char[bytes.size()])
    {
        std::memcpy(bytes_.get(), bytes.data(), bytes.size());
        stream_ = fmemopen(bytes_.get(), bytes.size(), "rb");
    }
    ~FileOf() { std::fclose(stream_); }
    FileOf(const FileOf&) = delete;
    FileOf& operator=(const FileOf&) = delete;
    operator std::FILE*() const { return stream_; }

private:
    std::unique_ptr<char[]> bytes_;
    std::FILE* stream_;
};

} // namespace restore_test
