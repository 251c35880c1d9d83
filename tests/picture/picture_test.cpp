// Whole pictures: views, edges, files, and odd requests.
#include <cmath>
#include <filesystem>
#include <numbers>

#include "gmock/gmock.h"
#include "gtest/gtest.h"

#include "export/picture/texture/image_reader.h"
#include "tests/picture/table_builder.h"

namespace fs = std::filesystem;

namespace {

class Picture : public ::testing::Test {
protected:
    Picture() : directory(fs::temp_directory_path() / ("lw_picture_test." + std::to_string(::getpid())))
    {
        fs::create_directories(directory);
    }
    ~Picture() override { fs::remove_all(directory); }

    picture::Image drawn(const gltf::Tables& tables, const picture::Request& request, const char* name = "a.png")
    {
        outcome = picture::write_still(tables, directory / name, request);
        gltf::EncodedImage file;
        file.bytes = bytes_of(directory / name);
        file.mime = fs::path(name).extension() == ".png" ? "image/png" : "image/jpeg";
        return picture::read_image(file, picture::most_pixels);
    }

    const fs::path directory;
    picture::Outcome outcome;
};

// A box of half sides x, y, z, one colour, all sides out.
uint32_t box(TableBuilder& scene, glm::vec3 half, uint32_t material)
{
    std::vector<glm::vec3> points;
    for (int i = 0; i < 8; ++i) points.push_back(half * glm::vec3(i & 1 ? 1 : -1, i & 2 ? 1 : -1, i & 4 ? 1 : -1));
    return scene.mesh(points, {1, 3, 7, 1, 7, 5, 0, 4, 6, 0, 6, 2, 2, 6, 7, 2, 7, 3,
                               0, 1, 5, 0, 5, 4, 4, 5, 7, 4, 7, 6, 0, 2, 3, 0, 3, 1},
                      material);
}

TableBuilder lit_boxes()
{
    TableBuilder scene;
    const uint32_t mesh = box(scene, {1, 2, 3}, scene.material(matt(0.8, 0.4, 0.2)));
    for (int i = 0; i < 5; ++i)
        scene.node(mesh, {4.0f * static_cast<float>(i), 0, -3.0f * static_cast<float>(i)}, turn({1, 2, 3}, 25.0 * i));
    gltf::Material chrome;
    chrome.metallic = 1;
    chrome.roughness = 0.05;
    scene.node(scene.square(30, scene.material(chrome)), {0, -3, 0}, turn({1, 0, 0}, -90));
    scene.light(gltf::Light::Type::point, 800, {3, 9, 7});
    return scene;
}

// The share of a picture that is covered.
double coverage(const gltf::Tables& tables, picture::Request request)
{
    request.background.kind = picture::Background::Kind::none;
    double sum = 0;
    const std::vector<glm::vec4> pixels = paint(tables, request);
    for (const glm::vec4& pixel : pixels) sum += static_cast<double>(pixel.w);
    return sum / static_cast<double>(pixels.size());
}

} // namespace

TEST_F(Picture, SameBytesOnAnyNumberOfThreads)
{
    const TableBuilder scene = lit_boxes();
    picture::Request request;
    request.size = picture::Size{301, 203};
    std::vector<std::vector<unsigned char>> files;
    for (const unsigned threads : {1u, 2u, 7u}) {
        request.threads = threads;
        const picture::Image image = drawn(scene.tables, request);
        EXPECT_EQ(image.width, 301u);
        files.push_back(bytes_of(directory / "a.png"));
    }
    EXPECT_EQ(files[0], files[1]);
    EXPECT_EQ(files[0], files[2]);
}

TEST_F(Picture, ViewsShowTheRightSideAndAllOfIt)
{
    using picture::View;
    TableBuilder scene;
    box(scene, {1, 2, 3}, scene.material(matt(1, 1, 1)));
    scene.node(0, {100, 50, -70});
    picture::Request request = plain(120, 120);
    request.samples = 4;
    // Width and height of the sides; the longer one fills the picture but for a margin of 6 hundredths.
    const auto share = [](double width, double height) {
        return width * height / std::pow(1.06 * std::max(width, height), 2);
    };
    const std::pair<View, double> sides[] = {{View::front, share(2, 4)},
                                             {View::back, share(2, 4)},
                                             {View::left, share(6, 4)},
                                             {View::right, share(6, 4)},
                                             {View::top, share(2, 6)}};
    for (const auto& [view, expected] : sides) {
        request.view = view;
        EXPECT_NEAR(coverage(scene.tables, request), expected, 2e-3) << static_cast<int>(view);
    }
    // In perspective the fitted box touches no rim, but comes near.
    request.view = View::three_quarter;
    request.background.kind = picture::Background::Kind::none;
    const std::vector<glm::vec4> pixels = paint(scene.tables, request);
    double rim = 0, near_rim = 0;
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 120; ++x) {
            const int way = std::min({x, y, 119 - x, 119 - y});
            const auto alpha = static_cast<double>(pixels[static_cast<std::size_t>(y * 120 + x)].w);
            (way == 0 ? rim : near_rim) += way < 8 ? alpha : 0;
        }
    EXPECT_EQ(rim, 0);
    EXPECT_GT(near_rim, 0);

    // A side of its own colour tells front from back and left from right.
    gltf::Material red = matt(1, 0, 0);
    red.unlit = true;
    scene.node(scene.square(0.5f, scene.material(red)), {100, 50, -66.9f});
    for (const auto& [view, _] : sides) {
        request.view = view;
        EXPECT_EQ(middle(scene.tables, request).x, view == View::front ? 1 : 0) << static_cast<int>(view);
    }
}

TEST_F(Picture, CameraSeesWhatItsLensSays)
{
    TableBuilder scene;
    scene.node(scene.square(1, scene.material(matt(1, 1, 1))), {0, 0, 0});
    scene.camera({0.3f, 0.2f, 4}, true, 0.5); // 4 by 4 units at the square
    scene.tables.cameras[0].aspect = 1;
    picture::Request request = plain(97, 97);
    request.samples = 4;
    EXPECT_NEAR(coverage(scene.tables, request), 4.0 / 16, 5e-4);
    request.filter = picture::Filter::gaussian;
    EXPECT_NEAR(coverage(scene.tables, request), 4.0 / 16, 5e-4);
    // Wider or taller than the camera's own: more is seen, nothing lost.
    request.size = picture::Size{194, 97};
    EXPECT_NEAR(coverage(scene.tables, request), 4.0 / 32, 5e-4);
    request.size = picture::Size{97, 194};
    EXPECT_NEAR(coverage(scene.tables, request), 4.0 / 32, 5e-4);
    EXPECT_EQ(drawn(scene.tables, plain(8, 8)).rgba.size(), 8u * 8 * 4);
    EXPECT_EQ(outcome.view, picture::View::camera);
}

TEST_F(Picture, LampComesWhereNothingElseShines)
{
    using Reason = picture::Outcome::LampReason;
    TableBuilder scene;
    box(scene, {1, 1, 1}, scene.material(matt(0.5, 0.5, 0.5)));
    scene.node(0);
    // The host's default ambient light, which stands in every file of an object, lights nothing.
    scene.tables.scene_extras["ambient"] = {{"color", {1, 1, 1}}, {"intensity", 1}};
    picture::Request request = plain(32, 32);
    request.lamp = picture::Lamp::automatic;
    const picture::Image shown = drawn(scene.tables, request);
    EXPECT_EQ(outcome.lamp, Reason::no_lights);
    EXPECT_GT(shown.rgba[(16 * 32 + 16) * 4], 90);
    EXPECT_LT(shown.rgba[(16 * 32 + 16) * 4], 190);

    scene.tables.scene_extras.clear();
    scene.light(gltf::Light::Type::directional, 0.01, {0, 0, 0}, turn({0, 1, 0}, 30));
    drawn(scene.tables, request);
    EXPECT_EQ(outcome.lamp, Reason::too_dark);
    scene.tables.lights[0].intensity = 3;
    drawn(scene.tables, request);
    EXPECT_EQ(outcome.lamp, Reason::none);
    request.lamp = picture::Lamp::on;
    drawn(scene.tables, request);
    EXPECT_EQ(outcome.lamp, Reason::asked_for);
}

TEST_F(Picture, BackdropStandsBehind)
{
    TableBuilder scene;
    scene.camera({0, 0, 0}, true, 1); // 45 degrees up and down
    scene.tables.scene_extras["backdrop"] = {
        {"scheme", "gradient"}, {"zenith", {0, 0, 1}}, {"sky", {1, 1, 1}}, {"ground", {0, 1, 0}}, {"nadir", {0, 0, 0}}};
    picture::Request request = plain(1, 1000);
    request.background.kind = picture::Background::Kind::file;
    scene.tables.cameras[0].aspect = 0.001;
    const std::vector<glm::vec4> pixels = paint(scene.tables, request);
    EXPECT_NEAR(pixels[0].x, 0.5, 2e-3); // half way to the zenith
    EXPECT_NEAR(pixels[499].x, 1, 2e-3);
    EXPECT_NEAR(pixels[500].y, 1, 2e-3);
    EXPECT_NEAR(pixels[500].x, 0, 2e-3);
    EXPECT_NEAR(pixels[999].y, 0.5, 2e-3);

    // An image fills the picture, however wide it is.
    scene.texture(2, 1, {255, 0, 0, 255, 0, 0, 255, 255});
    scene.tables.scene_extras["backdrop"] = {{"scheme", "image"}, {"image", 0u}};
    request.size = picture::Size{8, 2};
    EXPECT_EQ(paint(scene.tables, request)[0], glm::vec4(1, 0, 0, 1));
    EXPECT_EQ(paint(scene.tables, request)[15], glm::vec4(0, 0, 1, 1));
    // A scene without was black, an object alone is shown on grey.
    scene.tables.scene_extras.clear();
    EXPECT_EQ(middle(scene.tables, request), glm::vec4(0, 0, 0, 1));
    EXPECT_GT(middle(gltf::Tables(), request).x, 0.1f);
}

TEST_F(Picture, FilesHoldWhatWasDrawn)
{
    TableBuilder scene;
    gltf::Material half = matt(1, 0, 0);
    half.unlit = half.blend = true;
    half.base_color = {0.5, 0, 0, 0.5};
    scene.node(scene.square(1, scene.material(half)));
    scene.camera({0, 0, 5}, false, 1);
    picture::Request request = plain(40, 30);
    request.background.kind = picture::Background::Kind::none;
    const picture::Image transparent = drawn(scene.tables, request);
    const unsigned char* pixel = transparent.rgba.data() + (15 * 40 + 20) * 4;
    EXPECT_THAT(std::vector<int>(pixel, pixel + 4), testing::ElementsAre(188, 0, 0, 128)); // not multiplied
    EXPECT_EQ(transparent.rgba[3], 0);

    request.background.kind = picture::Background::Kind::color;
    request.background.color = {0, 0, 1};
    pixel = nullptr;
    const picture::Image jpeg = drawn(scene.tables, request, "a.JPG");
    ASSERT_EQ(jpeg.rgba.size(), 40u * 30 * 4);
    EXPECT_NEAR(jpeg.rgba[(15 * 40 + 20) * 4], 137, 4); // half of 0.5
    EXPECT_NEAR(jpeg.rgba[2], 255, 4);

    // What can't be is refused in a line, and what was there stays.
    const auto refusal = [&](const char* name, const picture::Request& asked) -> std::string {
        try {
            picture::write_still(scene.tables, directory / name, asked);
        } catch (const std::runtime_error& problem) {
            return problem.what();
        }
        return "none";
    };
    const auto before = bytes_of(directory / "a.JPG");
    request.background.kind = picture::Background::Kind::none;
    EXPECT_THAT(refusal("a.JPG", request), testing::HasSubstr("transparent"));
    EXPECT_EQ(bytes_of(directory / "a.JPG"), before);
    EXPECT_THAT(refusal("a.gif", request), testing::HasSubstr(".png or .jpg"));
    EXPECT_THAT(refusal("none/a.png", request), testing::HasSubstr("No such file"));
    EXPECT_THAT(refusal("a.png", plain(16385, 1)), testing::HasSubstr("16384x16384"));
    EXPECT_THAT(refusal("a.png", plain(1, 0)), testing::HasSubstr("1x1"));
    scene.tables.cameras.clear();
    request.view = picture::View::camera;
    EXPECT_THAT(refusal("a.png", request), testing::HasSubstr("no camera"));

    // Stopped: nothing new, and nothing left over.
    request = plain(400, 400);
    request.progress = [](std::size_t, std::size_t) { return true; };
    EXPECT_TRUE(picture::write_still(scene.tables, directory / "b.png", request).stopped);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::UnorderedElementsAre("a.JPG", "a.png"));
}

TEST_F(Picture, OddScenesAreDrawnToo)
{
    picture::Request request; // as most ask
    request.size = picture::Size{20, 15};
    EXPECT_EQ(drawn({}, request).rgba.size(), 20u * 15 * 4);

    // Corners that are no numbers take their triangle away, and no more.
    TableBuilder broken;
    const float nan = NAN;
    broken.node(broken.mesh({{-1, -1, 0}, {1, -1, 0}, {0, 1, 0}, {nan, 0, 0}, {HUGE_VALF, 0, 0}},
                            {0, 1, 3, 0, 1, 2, 4, 1, 2, 0, 1, 77}, broken.material(matt(1, 1, 1))));
    drawn(broken.tables, request);
    EXPECT_EQ(outcome.triangles, 1u);
    EXPECT_GT(coverage(broken.tables, request), 0.1);
    // Places that are none, and a mesh pressed to nothing.
    for (const float odd : {nan, HUGE_VALF, 1e30f}) {
        broken.tables.nodes[0].translation = {odd, 0, 0};
        drawn(broken.tables, request);
    }
    broken.tables.nodes[0].translation = {0, 0, 0};
    broken.tables.nodes[0].scale = {0, 0, 0};
    EXPECT_EQ(coverage(broken.tables, request), 0);
    broken.tables.nodes[0].scale = {1, 1, 0}; // flat it was and is
    request.view = picture::View::front;
    EXPECT_GT(coverage(broken.tables, request), 0.1);
    // Seen from its edge, and from inside a wall.
    request.view = picture::View::top;
    drawn(broken.tables, request);
    request.view = picture::View::camera;
    broken.camera({0, 0, 0}, true, 0.5);
    drawn(broken.tables, request);
    // A lens, a light and a place that aren't numbers.
    broken.tables.cameras[0].yfov = NAN;
    broken.light(gltf::Light::Type::spot, NAN, {nan, 0, 0});
    request.view = picture::View::automatic;
    drawn(broken.tables, request);
    EXPECT_EQ(outcome.view, picture::View::three_quarter);

    // The smallest and the largest object fill the picture alike.
    request.view = picture::View::three_quarter;
    std::vector<double> shares;
    for (const float unit : {1e-6f, 1.0f, 1e8f}) {
        TableBuilder scene;
        scene.node(box(scene, glm::vec3(unit), scene.material(matt(1, 1, 1))));
        shares.push_back(coverage(scene.tables, request));
    }
    EXPECT_GT(shares[1], 0.2);
    EXPECT_NEAR(shares[0], shares[1], 1e-3);
    EXPECT_NEAR(shares[2], shares[1], 1e-3);

    request.size = picture::Size{1, 1};
    EXPECT_EQ(drawn(broken.tables, request).rgba.size(), 4u);
}

TEST_F(Picture, ThumbnailKeepsTheShape)
{
    TableBuilder scene = lit_boxes();
    const picture::Image object = drawn(scene.tables, picture::thumbnail(scene.tables, 64));
    EXPECT_EQ(object.width, 64u);
    EXPECT_EQ(object.height, 64u);
    EXPECT_TRUE(object.alpha); // an object alone, on nothing
    scene.camera({0, 3, 20}, true, 0.5);
    scene.tables.asset_extras["resolution"] = {640, 400};
    const picture::Image wide = drawn(scene.tables, picture::thumbnail(scene.tables, 64));
    EXPECT_EQ(wide.width, 64u);
    EXPECT_EQ(wide.height, 40u);
}
