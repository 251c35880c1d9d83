// What a pixel shows, against numbers worked out by hand from the formulae.
#include <cmath>

#include "gtest/gtest.h"

#include "tests/picture/table_builder.h"

namespace {

constexpr double pi = 3.14159265358979323846;
using Type = gltf::Light::Type;

// A square that faces a camera 10 units away, which sees 2 by 2 units of it.
TableBuilder wall(const gltf::Material& material)
{
    TableBuilder scene;
    scene.node(scene.square(100, scene.material(material)));
    scene.camera({0, 0, 10}, false, 1);
    return scene;
}

gltf::Material plastic(double grey)
{
    gltf::Material result;
    result.base_color = {grey, grey, grey, 1};
    return result;
}

} // namespace

TEST(Shading, DirectionalLight)
{
    // Head-on, rough: (1 - 0.04) 0.5 scattered, and 0.04 D V = 0.04 / 4 mirrored; pi lux take the pi away.
    TableBuilder facing = wall(plastic(0.5));
    facing.light(Type::directional, pi);
    EXPECT_NEAR(middle(facing.tables).x, 0.49, 1e-5);
    EXPECT_EQ(middle(facing.tables).w, 1);

    // From 60 degrees off: V.H is cos 30, F = 0.04 + 0.96 (1 - 0.866)^5 = 0.0400414, V = 0.5 / 1.5, and half the light.
    TableBuilder slanted = wall(plastic(0.5));
    slanted.light(Type::directional, pi, {0, 0, 0}, turn({0, 1, 0}, 60));
    EXPECT_NEAR(middle(slanted.tables).x, 0.5 * (0.5 * (1 - 0.0400414) + 0.0400414 / 3), 1e-5);

    // Less than rough: alpha = 0.25, D = 1 / (pi alpha^2) = 16 / pi, V = 1 / 4.
    gltf::Material shiny = plastic(0);
    shiny.roughness = 0.5;
    TableBuilder highlight = wall(shiny);
    highlight.light(Type::directional, pi);
    EXPECT_NEAR(middle(highlight.tables).x, 0.04 * 16 / 4, 1e-4);
}

TEST(Shading, KindsOfMatter)
{
    // Metal of colour 0.5 scatters nothing: D V F = 0.5 / 4 where it is rough.
    gltf::Material metal = plastic(0.5);
    metal.metallic = 1;
    // A background keeps the mirror that a metal is from adding to it.
    TableBuilder scene = wall(metal);
    scene.light(Type::directional, pi);
    EXPECT_NEAR(middle(scene.tables).x, 0.5 / 4, 1e-5);

    // No specular: 0.5 and nothing else, whatever the index is.
    TableBuilder dull = wall(matt(0.5, 0.25, 0));
    dull.tables.materials[0].ior = 1.8;
    dull.light(Type::directional, pi).color = {1, 0.5, 1};
    EXPECT_NEAR(middle(dull.tables).x, 0.5, 1e-5);
    EXPECT_NEAR(middle(dull.tables).y, 0.125, 1e-5);
    EXPECT_EQ(middle(dull.tables).z, 0);

    // Emission of strength 2 over 0.2, and unlit 0.7 without any of it.
    TableBuilder sign = wall(matt(0, 0, 0));
    sign.tables.materials[0].emissive = {0.2, 0.2, 0.2};
    sign.tables.materials[0].emissive_strength = 2;
    EXPECT_NEAR(middle(sign.tables).x, 0.4, 1e-6);
    sign.tables.materials[0].base_color = {0.7, 0.7, 0.7, 1};
    sign.tables.materials[0].unlit = true;
    EXPECT_NEAR(middle(sign.tables).x, 0.7, 1e-6);

    // Too bright is clipped.
    sign.tables.materials[0].unlit = false;
    sign.tables.materials[0].emissive_strength = 50;
    EXPECT_EQ(middle(sign.tables).x, 1);
}

TEST(Shading, LampsNearAndFar)
{
    // 100 candela at 5 units: 4 lux.
    TableBuilder lamp = wall(matt(0.5, 0.5, 0.5));
    lamp.light(Type::point, 100, {0, 0, 5});
    EXPECT_NEAR(middle(lamp.tables).x, 0.5 * 4 / pi, 1e-5);
    // A node's scale changes nothing of it.
    lamp.tables.nodes.back().scale = {7, 7, 7};
    EXPECT_NEAR(middle(lamp.tables).x, 0.5 * 4 / pi, 1e-5);

    // A spot from 5 units above, 0.3 off its axis: between 0.2 and 0.4 that is the square of
    // (cos 0.3 - cos 0.4) / (cos 0.2 - cos 0.4) = 0.580874.
    TableBuilder spot = wall(matt(0.5, 0.5, 0.5));
    gltf::Light& cone = spot.light(Type::spot, 100, {0, 0, 5}, turn({0, 1, 0}, 0.3 * 180 / pi));
    cone.inner_cone = 0.2;
    cone.outer_cone = 0.4;
    EXPECT_NEAR(middle(spot.tables).x, 0.5 * 4 / pi * 0.580874 * 0.580874, 2e-5);
    spot.tables.nodes.back().rotation = turn({0, 1, 0}, 0.41 * 180 / pi);
    EXPECT_EQ(middle(spot.tables).x, 0);
}

TEST(Shading, WhatStandsInTheWayOfLight)
{
    TableBuilder scene = wall(matt(0.5, 0.5, 0.5));
    scene.light(Type::directional, pi, {0, 0, 0}, turn({0, 1, 0}, 45));
    const uint32_t dark = scene.material(matt(0, 0, 0));
    scene.node(scene.square(1, dark), {5, 0, 5}); // on the way to the light, which comes from +X and +Z
    EXPECT_EQ(middle(scene.tables).x, 0);
    const double lit = 0.5 * std::sqrt(0.5);
    // A quarter opaque; not there at all for light where it is unlit.
    scene.tables.materials[dark].blend = true;
    scene.tables.materials[dark].base_color[3] = 0.25;
    EXPECT_NEAR(middle(scene.tables).x, 0.75 * lit, 1e-5);
    scene.tables.materials[dark].unlit = true;
    scene.tables.materials[dark].base_color[3] = 1;
    EXPECT_NEAR(middle(scene.tables).x, lit, 1e-5);

    // A lamp in front of the thing is not behind it.
    TableBuilder lamp = wall(matt(0.5, 0.5, 0.5));
    lamp.light(Type::point, 100, {0, 0, 5});
    lamp.node(lamp.square(1, lamp.material(matt(0, 0, 0))), {0, 0, 5.5f});
    lamp.tables.cameras[0].ymag = 0.1;
    lamp.tables.nodes[1].translation = {3, 0, 10};
    const double cosine = 5 / std::sqrt(34.0);
    EXPECT_NEAR(middle(lamp.tables).x, 0.5 / pi * 100 / 34 * cosine, 1e-5);
}

TEST(Shading, Mirrors)
{
    // A metal that leans at 45 degrees shows what is above it: F = 0.8 + 0.2 (1 - cos 45)^5 = 0.800431.
    gltf::Material metal = plastic(0.8);
    metal.metallic = 1;
    metal.roughness = 0;
    TableBuilder scene;
    scene.node(scene.square(3, scene.material(metal)), {0, 0, 0}, turn({1, 0, 0}, -45));
    gltf::Material sign = matt(0, 0, 0);
    sign.emissive = {0.5, 0.25, 0};
    scene.node(scene.square(3, scene.material(sign)), {0, 8, 0}, turn({1, 0, 0}, 90)); // faces down
    scene.camera({0, 0, 10}, false, 0.1);
    EXPECT_NEAR(middle(scene.tables).x, 0.5 * 0.800431, 1e-5);
    EXPECT_NEAR(middle(scene.tables).y, 0.25 * 0.800431, 1e-5);

    // Where there is nothing it shows the backdrop, whatever colour the request wants behind the picture.
    scene.tables.nodes[1].mesh = gltf::none;
    scene.tables.scene_extras["backdrop"] = {{"scheme", "color"}, {"color", {0.1, 0.2, 0.3}}};
    EXPECT_NEAR(middle(scene.tables).z, 0.3 * 0.800431, 1e-5);

    // Two mirrors that face one another end, and varnish is none.
    TableBuilder hall;
    hall.node(hall.square(3, hall.material(metal)));
    hall.node(hall.square(3, 0), {0, 0, 20}, turn({0, 1, 0}, 180));
    hall.camera({0, 0, 10}, false, 0.1);
    EXPECT_EQ(middle(hall.tables).x, 0);
    TableBuilder varnish = wall(plastic(0));
    varnish.tables.materials[0].roughness = 0;
    varnish.tables.scene_extras["backdrop"] = {{"scheme", "color"}, {"color", {1, 1, 1}}};
    EXPECT_EQ(middle(varnish.tables).x, 0);
}

TEST(Shading, LooksThroughWhatIsTransparent)
{
    gltf::Material glass = matt(0, 0, 0);
    glass.unlit = true;
    glass.blend = true;
    glass.base_color = {0.6, 0.6, 0.6, 0.25};
    TableBuilder scene = wall(glass);
    picture::Request request = plain(1, 1);
    request.background.color = {0.2, 0.2, 0.2};
    EXPECT_NEAR(middle(scene.tables, request).x, 0.25 * 0.6 + 0.75 * 0.2, 1e-6);
    scene.node(0, {0, 0, 1}); // two panes
    EXPECT_NEAR(middle(scene.tables, request).x, 0.25 * 0.6 + 0.75 * (0.25 * 0.6 + 0.75 * 0.2), 1e-6);
    request.background.kind = picture::Background::Kind::none;
    EXPECT_NEAR(middle(scene.tables, request).w, 1 - 0.75 * 0.75, 1e-6);
    // A material that isn't meant to blend is opaque whatever its alpha says.
    scene.tables.materials[0].blend = false;
    EXPECT_EQ(middle(scene.tables, request).w, 1);
}

TEST(Shading, OneSidedSurfacesAreSeenFromTheirFront)
{
    gltf::Material red = matt(1, 0, 0), green = matt(0, 1, 0);
    red.unlit = green.unlit = true;
    TableBuilder scene;
    const uint32_t front = scene.square(1, scene.material(red)), back = scene.square(1, scene.material(green));
    // Back to back in one plane, in an order that doesn't help.
    scene.node(back, {0, 0, 0}, turn({0, 1, 0}, 180));
    scene.node(front);
    scene.camera({0, 0, 10}, false, 1);
    for (const glm::vec4& pixel : paint(scene.tables, plain(8, 8))) EXPECT_EQ(pixel, glm::vec4(1, 0, 0, 1));
    // A mirroring node turns the order of corners, not the side.
    scene.tables.nodes[1].scale = {-1, 1, 1};
    EXPECT_EQ(middle(scene.tables), glm::vec4(1, 0, 0, 1));
    scene.tables.nodes[1].scale = {1, 1, -1}; // this one does turn it away
    EXPECT_EQ(middle(scene.tables), glm::vec4(0, 0, 0, 1));
}

TEST(Shading, NoSurfaceShadesItselfAtAnySize)
{
    for (const float unit : {1e-6f, 1e-3f, 1.0f, 1e4f, 1e8f}) {
        TableBuilder scene;
        const float far = 50 * unit;
        scene.node(scene.square(unit, scene.material(matt(0.5, 0.5, 0.5))), {far, far, 0}, turn({1, 1, 0}, 20));
        scene.light(Type::directional, pi, {0, 0, 0}, turn({0, 1, 0}, 50));
        scene.camera({far, far, 10 * unit}, true, 0.05);
        float low = 1, high = 0;
        for (const glm::vec4& pixel : paint(scene.tables, plain(50, 50))) {
            low = std::min(low, pixel.x);
            high = std::max(high, pixel.x);
        }
        EXPECT_GT(low, 0.1f) << unit;
        EXPECT_NEAR(low, high, 1e-4) << unit;
    }
}
