// The files that a scene or an object names, for those who look for them and tell of them.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "restore/facts/object_facts.h"
#include "restore/facts/scene_facts.h"

namespace restore {

inline constexpr std::size_t max_references = 100'000; // that one file is asked for

enum class ReferenceKind : uint8_t { object, image };

struct Reference {
    ReferenceKind kind = ReferenceKind::object;
    std::string stored;   // Latin-1, as it stands in the file
    std::string surface;  // Latin-1; of an image in an object: who asks for it
    std::size_t line = 0; // of a scene, from 1, as an editor counts
};

// In the order of the file, doubles included, without "(none)": a scene's objects and its backdrop image; an object's
// textures and reflection maps.
std::vector<Reference> references_of(const SceneFacts& scene);
std::vector<Reference> references_of(const ObjectFacts& object);

// The same of a file; empty for one that can't be read.
std::vector<Reference> references_of_scene(const std::filesystem::path& file);
std::vector<Reference> references_of_object(const std::filesystem::path& file);

// True when the importer calls the file of this stored path by `name`: the last element in lower case, its extension
// perhaps turned into ".iff".
bool is_called(std::string_view stored, std::string_view name);

} // namespace restore
