// One HTML file that shows a scene anywhere, without a network: the viewer, a GLB, and what is to be told of it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace page {

// What the page tells beside the picture. All texts are UTF-8; they are shown as they are, never as HTML.
struct Counter {
    std::string name; // in the plural: "objects"
    uint64_t count = 0;
};

struct Entry {
    std::string code, text;
    uint64_t count = 0; // stands in front of the text; 0: the text says it all
};

struct MissingFile {
    std::string kind; // "object" or "image"
    std::string name, asked_by;
    std::vector<std::string> tried; // the places, in order
};

struct Message {
    std::string code, level; // "error", "warning" or "info"
    std::string text, file;
    std::size_t line = 0; // of a scene, from 1; 0: none
};

struct Contents {
    std::string source;            // the input's file name: title, and name of the GLB that the page saves
    std::string program;           // "lwimport 0.1.0"
    std::vector<Counter> counters; // the first three stand below the title
    std::vector<Entry> restored, losses;
    std::vector<MissingFile> missing;
    std::vector<Message> messages; // a thousand of them are shown, and how many more there are
};

// False for a build that was made without the tools that the viewer needs.
bool has_viewer();

// Where has_viewer(). Hands out the page from its beginning to its end. Throws messages::Error where the GLB is
// larger than browsers hold.
void write_page(std::span<const unsigned char> glb, const Contents& contents,
                const std::function<void(const void*, std::size_t)>& sink);

} // namespace page
