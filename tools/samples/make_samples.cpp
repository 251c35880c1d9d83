// lwimport_make_samples DIR: writes all samples from nothing, the same bytes each time.
#include <cstdio>
#include <exception>
#include <filesystem>

#include "tools/samples/samples.h"

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: lwimport_make_samples DIR\nWrites objects, scenes and images below DIR, which may exist.\n",
                   stderr);
        return 2;
    }
    try {
        const std::string root = argv[1];
        for (const char* const below : {"objects/Images", "hostile", "projections/Images", "harbour/Objects",
                                        "harbour/Images", "harbour/Scenes"}) {
            std::filesystem::create_directories(root + "/" + below);
        }
        samples::write_goblet(root + "/objects");
        samples::write_letters(root + "/objects");
        samples::write_every_sub_chunk(root + "/objects");
        samples::write_procedurals(root + "/objects");
        samples::write_hostile_objects(root + "/hostile");
        samples::write_hostile_scenes(root + "/hostile");
        samples::write_projections(root + "/projections");
        samples::write_harbour_objects(root + "/harbour/Objects");
        samples::write_harbour_images(root + "/harbour/Images");
        samples::write_harbour_scenes(root + "/harbour");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lwimport_make_samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
