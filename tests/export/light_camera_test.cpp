#include <cmath>
#include <glm/geometric.hpp>

#include "export/gltf/base/transform.h"
#include "tests/export/scene_builder.h"

namespace {

constexpr double degree = M_PI / 180;

class LightsAndCamera : public Export {
protected:
    // The picture's axes of a node at a time.
    struct Axes {
        glm::dvec3 forward, up, position;
    };
    static Axes axes(const GltfFile& file, const std::string& name, double seconds = 0)
    {
        const glm::dmat4 world = file.world(*file.node(name), seconds);
        return {-glm::dvec3(world[2]), glm::dvec3(world[1]), glm::dvec3(world[3])};
    }
    static void expect_near(const glm::dvec3& a, const glm::dvec3& b, double tolerance = 1e-5)
    {
        EXPECT_LT(glm::length(a - b), tolerance)
            << a.x << ' ' << a.y << ' ' << a.z << " instead of " << b.x << ' ' << b.y << ' ' << b.z;
    }
    static nlohmann::json light_of(const GltfFile& file, const std::string& name)
    {
        const std::size_t number =
            file.json["nodes"][*file.node(name)]["extensions"]["KHR_lights_punctual"]["light"].get<std::size_t>();
        return file.json["extensions"]["KHR_lights_punctual"]["lights"][number];
    }

    void light(const char* name, const char* model, float intensity)
    {
        Tv_Light(name, w("model"), w(model), 0);
        Tv_Light(name, w("intensity"), &intensity, 0);
    }
    void camera(std::array<float, 3> from, std::array<float, 3> at, std::array<float, 3> up)
    {
        float focal = 5;
        float window[2] = {3.125f, 3.125f};
        Tv_Camera("lightwave", w("active"), 1, w("focallength"), &focal, 1, w("formmappingtype"), w("type4"), 1,
                  w("lookfrom"), from.data(), 1, w("lookat"), at.data(), 1, w("lookup"), up.data(), 1, w("projection"),
                  w("perspective"), 1, w("window"), window, 1, 0);
    }
    // The old camera's own axes: heading, pitch and bank in degrees turn right, down and to the left.
    static Axes turned(double heading, double pitch, double bank)
    {
        const glm::dquat q = gltf::euler_rotation(-pitch * degree, -heading * degree, bank * degree);
        return {q * glm::dvec3(0, 0, -1), q * glm::dvec3(0, 1, 0), {}};
    }
};

std::array<float, 3> array_of(const glm::dvec3& v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

} // namespace

TEST_F(LightsAndCamera, DistantLightShinesAwayFromItsDirection)
{
    light("sun", "direction", 2);
    float direction[3] = {0, 3, 0}, color[3] = {1, 0.5f, 0};
    Tv_Light("sun", w("shinedir"), direction, 0);
    Tv_Light("sun", w("color"), w("rgb"), color, 0);
    gltf::Options options;
    options.light_scale = 0.5;
    const GltfFile file = write(options);
    expect_near(axes(file, "sun").forward, {0, -1, 0});
    EXPECT_EQ(light_of(file, "sun")["type"], "directional");
    EXPECT_NEAR(light_of(file, "sun")["intensity"].get<double>(), M_PI, 1e-6) << "pi lux an intensity, 2, times 0.5";
    EXPECT_NEAR(light_of(file, "sun")["color"][1].get<double>(), 0.2140411, 1e-6) << "linear";
    EXPECT_FALSE(file.json["scenes"][0]["extras"].contains("ambient") &&
                 file.json["scenes"][0]["extras"]["ambient"]["name"] == "sun");
}

TEST_F(LightsAndCamera, LampsAreAsBrightAsBeforeWhereTheSceneIs)
{
    object("thing", cube_shape());
    for (int i = 0; i < 3; ++i) instance("thing " + std::to_string(i), "thing");
    instance("far", "thing"); // must not drag the measure away
    place("far", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -400000, 1});
    light("lamp", "point", 1);
    light("spot", "spot", 1);
    float from[3] = {0, 0, 6}, at[3] = {0, -6, 6}, cutoff = 40, delta = 10;
    Tv_Light("lamp", w("shinefrom"), from, 0);
    Tv_Light("spot", w("shinefrom"), from, 0);
    Tv_Light("spot", w("shineat"), at, 0);
    Tv_Light("spot", w("cutoff"), &cutoff, 0);
    Tv_Light("spot", w("delta"), &delta, 0);
    gltf::Options options;
    options.scale = 10;
    const GltfFile file = write(options);
    EXPECT_NEAR(light_of(file, "lamp")["intensity"].get<double>(), M_PI * 3600, 0.1) << "60 units away, squared";
    expect_near(axes(file, "spot").position, {0, 0, 60});
    expect_near(axes(file, "spot").forward, {0, -1, 0});
    EXPECT_NEAR(light_of(file, "spot")["spot"]["outerConeAngle"].get<double>(), 40 * degree, 1e-6);
    EXPECT_NEAR(light_of(file, "spot")["spot"]["innerConeAngle"].get<double>(), 30 * degree, 1e-6);
}

TEST_F(LightsAndCamera, OddLightsStayWithinBounds)
{
    int i = 0;
    for (const float cone : {0.0f, 90.0f, 180.0f, -5.0f, NAN, INFINITY}) {
        const std::string name = "spot " + std::to_string(i++);
        light(name.c_str(), "spot", cone);
        float color[3] = {cone, 2, -1}, place[3] = {cone, 0, 0};
        Tv_Light(name.c_str(), w("cutoff"), &cone, 0);
        Tv_Light(name.c_str(), w("delta"), &cone, 0);
        Tv_Light(name.c_str(), w("color"), w("rgb"), color, 0);
        Tv_Light(name.c_str(), w("shinefrom"), place, 0);
        Tv_Light(name.c_str(), w("shineat"), place, 0);
    }
    const GltfFile file = write();
    EXPECT_EQ(file.json["extensions"]["KHR_lights_punctual"]["lights"].size(), 6u);
    for (const auto& one : file.json["extensions"]["KHR_lights_punctual"]["lights"])
        EXPECT_LT(one["spot"]["innerConeAngle"].get<double>(), one["spot"]["outerConeAngle"].get<double>());
    EXPECT_EQ(notes(), "2 lights of negative intensity: glTF has no light that darkens, written as 0\n");
}

TEST_F(LightsAndCamera, AmbientAndBackdropAreInTheExtras)
{
    float intensity = 0.25f, position = 0.5f, color[3] = {1, 1, 0};
    Tv_Light("defaultambient", w("intensity"), &intensity, 0);
    Tv_Background(w("colorscheme"), w("gradient"), w("horiztop"), w("enabled"), w("on"), w("horizbot"), w("enabled"),
                  w("on"), w("horizpos"), &position, 0);
    EXPECT_FALSE(write().json["scenes"][0]["extras"].contains("backdrop")) << "no colour, no backdrop";
    Tv_Background(w("colorscheme"), w("gradient"), w("color2"), w("rgb"), color, 0);
    gltf::Options options;
    options.backdrop_dome = true;
    const GltfFile file = write(options);
    const auto& extras = file.json["scenes"][0]["extras"];
    EXPECT_NEAR(extras["ambient"]["intensity"].get<double>(), 0.25, 1e-6);
    EXPECT_EQ(extras["backdrop"]["sky"], nlohmann::json({1, 1, 0}));
    // The dome is seen from inside, and nothing of the scene reaches it.
    ASSERT_TRUE(file.node("backdrop"));
    const GltfFile::Corners dome = file.corners(0);
    for (std::size_t i = 0; i < dome.positions.size(); i += 3) {
        const glm::dvec3 face =
            glm::cross(dome.positions[i + 1] - dome.positions[i], dome.positions[i + 2] - dome.positions[i]);
        EXPECT_LT(glm::dot(face, dome.positions[i]), 0);
        EXPECT_NEAR(glm::length(dome.positions[i]), 10, 1e-4);
    }
}

TEST_F(LightsAndCamera, CameraSeesWhatItSaw)
{
    int32_t size[2] = {640, 480};
    Tv_Option(w("resolution"), size, 0);
    const Axes expected = turned(30, 20, 15);
    const glm::dvec3 from(1, 2, 3);
    camera(array_of(from), array_of(from + 7.0 * expected.forward), array_of(expected.up));
    const GltfFile file = write();
    const Axes got = axes(file, "lightwave");
    expect_near(got.position, from);
    expect_near(got.forward, expected.forward);
    expect_near(got.up, expected.up);
    const auto& lens = file.json["cameras"][0]["perspective"];
    EXPECT_NEAR(lens["yfov"].get<double>(), 2 * std::atan(1 / 3.2), 1e-6) << "a zoom of 3.2";
    EXPECT_NEAR(lens["aspectRatio"].get<double>(), 4.0 / 3, 1e-6);
}

TEST_F(LightsAndCamera, CameraPathHoldsAtItsKeys)
{
    // Heading, pitch, bank a key. The last ones go over the zenith and come to rest upside down.
    const double angles[][3] = {{10, 5, 20}, {60, -30, 0}, {90, 10, -45}, {90, -60, 0}, {90, -80, 0}, {90, -120, 0}};
    std::array<std::vector<TestKey>, 7> path;
    for (int i = 0; i < 6; ++i) {
        const Axes at = turned(angles[i][0], angles[i][1], angles[i][2]);
        const glm::dvec3 from(i, 2 * i, -i);
        if (i == 0) camera(array_of(from), array_of(from + 4.0 * at.forward), array_of(at.up));
        for (int k = 0; k < 3; ++k) {
            path[static_cast<std::size_t>(k)].push_back({i * 4800, static_cast<float>(from[k])});
            path[static_cast<std::size_t>(3 + k)].push_back(
                {i * 4800, static_cast<float>((from + 4.0 * at.forward)[k])});
        }
        path[6].push_back({i * 4800, static_cast<float>(angles[i][2])});
    }
    for (std::size_t slot = 0; slot < 7; ++slot) camera_keys("lightwave", from_x + slot, path[slot]);
    time_line(0, 150);
    const GltfFile file = write();
    for (int i = 0; i < 6; ++i) {
        const Axes expected = turned(angles[i][0], angles[i][1], angles[i][2]), got = axes(file, "lightwave", i);
        expect_near(got.forward, expected.forward, 1e-3);
        expect_near(got.up, expected.up, 1e-3);
        expect_near(got.position, {i, 2 * i, -i}, 1e-4);
    }
    // A still of the last frame is the end of the same path.
    gltf::Options options;
    options.frame = 150;
    const GltfFile still = write(options);
    EXPECT_FALSE(still.json.contains("animations"));
    expect_near(axes(still, "lightwave").up, turned(90, -120, 0).up, 1e-3);
}

TEST_F(LightsAndCamera, CameraWithoutALookStandsStill)
{
    camera({1, 1, 1}, {1, 1, 1}, {0, 0, 0});
    float window[2] = {0, NAN}, focal = 0;
    Tv_Camera("lightwave", w("window"), window, 1, w("focallength"), &focal, 1, 0);
    camera_keys("lightwave", roll, {{0, 0}, {4800, 90}});
    time_line(0, 30);
    const GltfFile file = write();
    expect_near(axes(file, "lightwave", 1).up, {-1, 0, 0}, 1e-3);
    EXPECT_GT(file.json["cameras"][0]["perspective"]["yfov"].get<double>(), 0);
}
