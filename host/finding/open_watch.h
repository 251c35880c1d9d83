// Which files the plug-in tries to open in a run, and for which reference.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/finding/named_files.h"

namespace host {

// While it lives each try goes to the reference that it is made for: a search begins with the bare, lower-cased name,
// tried in the current directory, and references come in the file's order. There is one at a time; the references and
// the directory outlive it.
class OpenWatch {
public:
    // directory: absolute, where the run takes place.
    OpenWatch(std::vector<FileReference>& objects, const std::string& directory);
    ~OpenWatch();
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

private:
    void opened(std::string_view path, std::string_view place);
    void note(std::string_view path);
    std::string absolute(std::string_view path) const;

    std::vector<FileReference>& objects_;
    const std::string& directory_;
    FileReference* current_ = nullptr;
    std::size_t next_ = 0, noted_ = 0;
};

} // namespace host
