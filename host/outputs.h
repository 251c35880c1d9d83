// Which files a conversion reads, and where each result goes.
#pragma once
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "lib/messages/message.h"

namespace host {

struct Job {
    std::filesystem::path input;
    std::filesystem::path output;             // absolute; empty: standard output
    std::optional<messages::Message> problem; // why there is nothing to convert
};

struct OutputOptions {
    std::string out;        // as given to -o; empty: beside the input
    std::string format;     // "glb", "gltf", "json"; empty: by the ending of `out`, else "glb"
    bool recursive = false; // directories stand for the Lightwave files in them
};

// Two inputs that would meet in one output keep their full names in front of the ending. Throws WrongUse where `out`
// and the inputs don't fit each other.
std::vector<Job> plan_jobs(const std::vector<std::string>& inputs, const OutputOptions& options);

// "glb", "gltf" or "json" for a path with such an ending, in any case; else empty.
std::string format_of(const std::filesystem::path& path);

} // namespace host
