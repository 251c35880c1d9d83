#include "fuzz/harness.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "lib/import/implugin.h"
#include "lib/services/host.h"
#include "lib/toolkit/calls/environment.h"
#include "lib/toolkit/memory.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/scene/scene.h"
#include "tools/lwob_writer.h"

namespace fuzz {

namespace {

std::string work_directory;

void remove_work_directory()
{
    std::error_code error;
    std::filesystem::remove_all(work_directory, error);
}

// A word and its value as the entry point's lists hold them.
struct Words {
    std::vector<char*> names;
    std::vector<void*> values;
    void add(const char* name, void* value)
    {
        names.push_back(const_cast<char*>(name));
        values.push_back(value);
    }
    void add(const char* name, unsigned value) { add(name, reinterpret_cast<void*>(static_cast<uintptr_t>(value))); }
};

// Behind every run, good or bad: the tree is whole, and what the scene holds can be asked for.
void check_scene()
{
    const tv::Scene& scene = tv::scene();
    for (tv::Id id = 1; id < scene.instances.size(); ++id) {
        const tv::Instance& instance = scene.instances[id];
        if (!instance.alive) continue;
        if (scene.find(tv::Kind::instance, instance.name) != id) fail("an instance isn't found by its name");
        if (instance.name.size() > 255) fail("a name is longer than 255 bytes");
    }
    for (const tv::Object& object : scene.objects) {
        for (const tv::Primitive& primitive : object.primitives) {
            std::size_t corners = 0;
            for (const int32_t size : primitive.sizes) corners += static_cast<std::size_t>(size);
            if (corners != primitive.corners.size()) fail("a mesh's sizes and corners differ");
            if (!primitive.polygon_surface.empty() && primitive.polygon_surface.size() != primitive.sizes.size()) {
                fail("a mesh's sizes and surfaces differ");
            }
        }
    }
    std::vector<tv::Placement> places;
    tv::place_all(tv::scene(), 0, 20'000, places);
    float upper[3], lower[3];
    Tv_Compute_Worldspace_Extents(upper, lower, 0);
}

} // namespace

void fail(const char* what)
{
    std::fprintf(stderr, "fuzz: %s\n", what);
    std::abort();
}

InputFile::InputFile() : descriptor_(memfd_create("input", MFD_CLOEXEC))
{
    if (descriptor_ < 0) fail("no memory file");
    path_ = "/proc/self/fd/" + std::to_string(descriptor_);
}

InputFile::~InputFile()
{
    close(descriptor_);
}

void InputFile::hold(const uint8_t* data, std::size_t size)
{
    if (ftruncate(descriptor_, 0) != 0) fail("the memory file can't be emptied");
    for (std::size_t done = 0; done < size;) {
        const ssize_t written = pwrite(descriptor_, data + done, size - done, static_cast<off_t>(done));
        if (written <= 0) fail("the memory file can't be written");
        done += static_cast<std::size_t>(written);
    }
}

std::string InputFile::content() const
{
    std::string out(static_cast<std::size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
    const ssize_t got = pread(descriptor_, out.data(), out.size(), 0);
    if (got != static_cast<ssize_t>(out.size())) fail("the memory file can't be read");
    return out;
}

void set_up()
{
    char name[] = "/tmp/lwimport_fuzz_XXXXXX";
    if (!mkdtemp(name) || chdir(name) != 0) fail("no directory to work in");
    work_directory = name;
    std::atexit(remove_work_directory);
    lw_tools::ObjectWriter part;
    part.surface_names = {"Skin", "Bone"};
    part.surfaces = {lw_tools::SurfaceWriter("Skin").color(200, 100, 50).text("CTEX", "Planar Image Map"),
                     lw_tools::SurfaceWriter("Bone").color(220, 220, 210)};
    part.polygon({part.point(0, 0, 0), part.point(0, 1, 0), part.point(1, 1, 0)}, 1);
    part.polygon({part.point(0, 0, 1), part.point(0, 1, 1), part.point(1, 1, 1)}, 2);
    lw_tools::write_file("part.lwo", part.to_bytes());
    tv::set_search_path({work_directory});
    tv::set_environment("TV_WORKING_DIR", work_directory);
    tv::set_report_sink([](void*, int32_t, const char*) {}, nullptr);
    services::set_host({});
}

bool convert(const uint8_t* data, std::size_t size, void (*look)())
{
    static InputFile file;
    file.hold(data, size);
    std::string path = file.path();
    const unsigned options = size ? data[size - 1] : 0;
    Words words;
    words.add("execute_geometry_converter", nullptr);
    words.add("filename", path.data());
    words.add("make_surface_names_unique", ~options & 1);
    words.add("import_keyframe0_only", options >> 1 & 1);
    words.add("print_warnings", options >> 2 & 1);
    words.add("explode_obj_by_surf_names", ~options >> 3 & 1);
    words.add("compute_normals", ~options >> 4 & 1);
    words.add("output_debug_info", (options & 0x60) == 0x60 ? 1u : 0u);
    words.add("print_statistics", 1u);
    words.add(nullptr, nullptr);
    int32_t result = -999;
    Tavrin_Plugin_EntryPoint(words.names.data(), words.values.data(), &result, nullptr);
    if (result != 0 && result != 1) fail("the result is neither 0 nor 1");
    if (services::run_is_open()) fail("the run was left open");
    check_scene();
    if (look) look();
    tv::clear_scene();
    services::clear();
    // Option strings stay held; all that a run takes goes back when it ends.
    static const uint64_t held_after_first = tv::allocations_held();
    if (tv::allocations_held() != held_after_first) fail("a run kept memory");
    return result == 0;
}

} // namespace fuzz
