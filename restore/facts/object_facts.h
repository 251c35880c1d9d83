// What an object file says: a FORM of type LWOB. Names and paths are Latin-1.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "restore/facts/oddities.h"

namespace restore {

inline constexpr std::size_t max_surfaces = 100'000; // kept of one object, and as many images and bad sub-chunks

// A surface's sub-chunk that the importer can't step over: its size isn't the one by which this id is read, or it runs
// past its chunk. Places are bytes of the file.
struct BadSubChunk {
    uint64_t begin = 0, end = 0; // with its head and pad; the end lies inside the chunk
    std::string text;            // of an id whose data is a text: that text
    bool is_text = false;
};

struct SurfaceFacts {
    std::string name;
    uint64_t chunk = 0;      // place of its head
    uint32_t size = 0;       // of its data
    uint64_t sub_chunks = 0; // place of the first
    bool double_sided = false;
    uint32_t unknown_sub_chunks = 0; // which the importer passes over
    std::vector<BadSubChunk> bad;
    std::vector<std::string> textures; // type words, "Planar Image Map", in order
};

struct ImageUse {
    std::string stored;
    std::string surface;
    uint64_t head = 0; // place of the sub-chunk that names it: TIMG or RIMG
    uint16_t size = 0; // of its data
};

struct ObjectFacts {
    bool is_object = false; // FORM, a length that isn't 0, LWOB
    bool readable = false;  // the importer reads it to its end, once bad sub-chunks are left out
    std::string problem;    // why it isn't readable, as the end of a sentence that begins with the file's name
    uint64_t bytes = 0;     // of the file
    uint32_t form_length = 0;

    uint32_t points = 0;
    uint32_t polygons = 0;                  // of three points and more, details too
    std::vector<std::string> surface_names; // of SRFS, as far as they are kept
    std::vector<SurfaceFacts> surfaces;     // of SURF
    std::vector<ImageUse> images;           // in order, doubles included, without "(none)"
    Oddities oddities;
};

// From the stream's start, which has to be one that can be moved about in, to the FORM's end; what isn't needed is
// stepped over unread. Throws std::bad_alloc alone.
ObjectFacts read_object(std::FILE* file);

} // namespace restore
