// The files that a scene or object names, and what became of each.
#pragma once
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "lib/messages/message.h"
#include "restore/facts/references.h"

namespace host {

struct FileReference {
    restore::Reference reference;
    messages::Where asked_by;
    std::string found;              // the system's path; empty: not found
    std::vector<std::string> tried; // the places, in order, the one that succeeded last; empty where a file of the same
                                    // name had been read before
    bool reached = false;           // false: the run ended before it was looked for

    bool is_missing() const { return reached && found.empty(); }
};

struct NamedFiles {
    std::vector<FileReference> objects, images;            // images: not looked for before locate_images()
    std::size_t distinct_objects = 0, missing_objects = 0; // files, not references
};

// What the plug-in takes for one file: the last element in lower case.
std::string file_key(const restore::Reference& reference);

// The objects among the references of a scene, not yet reached.
std::vector<FileReference> named_objects(const std::filesystem::path& scene,
                                         const std::vector<restore::Reference>& references);

// Behind a run: a file named again isn't looked for again, it is where it was found the first time. Sets the counts.
// whole: the run reached its end.
void follow_repetitions(NamedFiles& files, bool whole);

// The images that `input` names, whose references are given, and those that the objects found name.
void collect_images(NamedFiles& files, const std::filesystem::path& input,
                    const std::vector<restore::Reference>& references);

// Looks for the images where an exporter would, by the names that the toolkit's scene has for them: fills `found` and
// `tried` of each.
void locate_images(NamedFiles& files, const std::vector<std::string>& directories);

} // namespace host
