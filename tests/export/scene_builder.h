// Small scenes, built as a plug-in would: through the toolkit's calls.
#pragma once
#include <array>
#include <string>
#include <vector>

#include "gtest/gtest.h"

#include "export/gltf/writer.h"
#include "lib/toolkit/scene/scene.h"
#include "tests/export/gltf_reader.h"

// A word's token.
inline int32_t w(const char* word)
{
    return Tv_Inquire_Token(word);
}

struct Shape {
    std::vector<std::array<float, 3>> points;
    std::vector<std::vector<int32_t>> polygons; // point numbers from 1, clockwise seen from the visible side
    std::vector<std::string> surfaces;          // one a polygon, or none
    bool clockwise = true;
};

// One animated number, and the keys it gets.
struct TestKey {
    int32_t time;
    float value, tension = 0, continuity = 0, bias = 0;
};
enum Slot : std::size_t { x = 10, y, z, scale_x, scale_y, scale_z, turn_x, turn_y, turn_z };
enum CameraSlot : std::size_t { from_x = 8, from_y, from_z, at_x, at_y, at_z, roll };

// An empty scene for each test. Files go to export_files/ in the build directory, where the validator looks at them.
class Export : public testing::Test {
protected:
    void SetUp() override { tv::clear_scene(); }
    void TearDown() override { tv::clear_scene(); }

    void surface(const std::string& name, std::array<float, 3> color = {1, 0, 0});
    void object(const std::string& name, const Shape& shape, const std::string& surface = "", float smooth_degrees = 0);
    // parent: an instance, or an object where parent_kind says so. No object: an empty node.
    void instance(const std::string& name, const std::string& object = "", const std::string& parent = "world",
                  const char* parent_kind = "instance");
    void place(const std::string& name, const std::array<float, 16>& matrix);
    void pivot(const std::string& name, float px, float py, float pz);
    void keys(const std::string& name, std::size_t slot, const std::vector<TestKey>& keys,
              const char* end = "constant");
    void camera_keys(const std::string& name, std::size_t slot, const std::vector<TestKey>& keys,
                     const char* end = "constant");
    void time_line(int32_t first_frame, int32_t last_frame, int32_t rate = 30);

    // Writes the scene as TEST.glb, which must be there afterwards, and reads it back.
    GltfFile write(const gltf::Options& options = {});
    gltf::Report report; // of the last write
    std::filesystem::path file_name(const std::string& ending, const std::string& suffix = "") const;
    std::string notes() const; // all of them, a line each
};

// A triangle of area 1/2 at z = 0 that is visible from +Z.
Shape triangle_shape();
// A cube from -1 to 1, visible from outside.
Shape cube_shape();
