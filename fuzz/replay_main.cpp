// Runs a fuzz target over files, for compilers without libFuzzer: replay [--prefixes] FILE_OR_DIRECTORY...
// Each input stands in an allocation of just its size, so that AddressSanitizer sees a read beyond it.
// --prefixes: every prefix of each file of at most 1200 bytes.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

static void run(const std::string& bytes, std::size_t size)
{
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[size]);
    if (size) std::memcpy(exact.get(), bytes.data(), size);
    LLVMFuzzerTestOneInput(exact.get(), size);
}

int main(int argc, char** argv)
{
    bool prefixes = false;
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--prefixes") == 0) {
            prefixes = true;
        } else if (fs::is_directory(argv[i])) {
            for (const fs::directory_entry& entry : fs::directory_iterator(argv[i]))
                files.push_back(fs::absolute(entry.path()));
        } else {
            files.push_back(fs::absolute(argv[i]));
        }
    }
    std::sort(files.begin(), files.end());
    if (files.empty()) {
        std::fputs("replay: no inputs\n", stderr);
        return 2;
    }
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t runs = 0;
    for (const fs::path& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        if (!file) {
            std::fprintf(stderr, "replay: can't read %s\n", path.c_str());
            return 2;
        }
        std::printf("%s\n", path.filename().c_str());
        std::fflush(stdout); // names the input that a crash comes from
        for (std::size_t size = prefixes && bytes.size() <= 1200 ? 0 : bytes.size(); size <= bytes.size();
             ++size, ++runs) {
            run(bytes, size);
        }
    }
    std::printf("%zu runs over %zu files\n", runs, files.size());
    return 0;
}
