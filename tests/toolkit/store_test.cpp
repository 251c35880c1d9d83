// What calls leave in the scene.
#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Store = Toolkit;

const tv::Surface& surface()
{
    return tv::scene().surfaces[0];
}

const tv::Layer::Modulation& modulation(std::size_t layer, tv::LayerChannel channel)
{
    return surface().layers[layer].channels[static_cast<std::size_t>(channel)];
}

TEST_F(Store, PrimitivesAreCopiedWithTheirSurfaces)
{
    int32_t polygons = 4, offset = 0, points = 2;
    int32_t sizes[] = {2, 1, -3, 1}, corners[] = {1, 2, 9, 2};
    float positions[] = {0, 0, 0, 1, 2, 3};
    const char hull[] = "hull";
    const std::string same = hull; // other pointer, same name
    const char* names[] = {hull, "glass", same.c_str(), "none such"};
    Tv_Surface("glass", 0);
    Tv_Surface("hull", 0);
    Tv_Object_Define("ship", 0);
    Tv_Primitive(w("indexedpolygons"), w("numpolygons"), &polygons, 1, w("verticesperpoly"), sizes, 1,
                 w("indiceoffset"), &offset, 1, w("clockwise"), w("enabled"), w("on"), 1, w("vertex"), &points,
                 positions, corners, 1, w("surfacelink"), names, 1, 0);
    EXPECT_THAT(report(), HasSubstr("names the surface 'none such'"));
    sizes[0] = corners[0] = 77;
    positions[0] = 77;
    ASSERT_EQ(tv::scene().objects[0].primitives.size(), 1u);
    const tv::Primitive& primitive = tv::scene().objects[0].primitives[0];
    EXPECT_THAT(primitive.sizes, ElementsAre(2, 1, -3, 1));
    EXPECT_THAT(primitive.corners, ElementsAre(1, 2, 9, 2)); // the negative size has none
    EXPECT_THAT(primitive.positions, ElementsAre(0, 0, 0, 1, 2, 3));
    EXPECT_THAT(primitive.polygon_surface, ElementsAre(1u, 0u, 1u, tv::no_id));
    EXPECT_TRUE(primitive.clockwise);

    polygons = points = -1; // nothing may be read
    Tv_Primitive(w("numpolygons"), &polygons, 1, w("verticesperpoly"), sizes, 1, w("vertex"), &points, positions,
                 corners, 1, w("surfacelink"), names, 1, 0);
    EXPECT_TRUE(tv::scene().objects[0].primitives[1].corners.empty());
    EXPECT_THAT(last_line(), HasSubstr(R"("verticesperpoly",[],1,"vertex",-1,[],[],1,"surfacelink",[],1,0])"));
    Tv_Object_End(0);
    Tv_Primitive(w("numpolygons"), &polygons, 1, 0);
    EXPECT_THAT(report(), HasSubstr("ERR_SCENE_NO_OBJECT"));
    const float angle = 42;
    Tv_Manipulate_IndexedPolygons("ship", 0, w("calcnormals"), w("angle"), &angle, 0);
    EXPECT_EQ(tv::scene().objects[0].smoothing_angle, 42);
    Tv_Surfacelink(w("surface"), "glass", w("object"), "ship", 0);
    EXPECT_EQ(tv::scene().objects[0].surface, 0u);
}

TEST_F(Store, LayersTakeWhatStandsBehindTheirName)
{
    const float triple[] = {0.5f, 0.25f, 0.125f}, one = 1, quarter = 0.25f, two = 2;
    Tv_Texture("t", 0);
    Tv_Surface("s", w("texture"), "layer 1", w("texturelink"), "t", 1, 0);
    Tv_Surface("s", w("texture"), "layer 1", w("modulate"), w("color"), w("enabled"), w("off"), w("modulate"),
               w("diffuse"), w("enabled"), w("on"), w("multiplier"), w("diffuse"), triple, w("mix"), w("diffuse"),
               &quarter, 1, 0);
    Tv_Surface("s", w("texture"), "layer 2", w("texturelink"), "not yet", w("mix"), w("faceopacity"), &quarter,
               w("modulate"), w("color"), w("enabled"), w("off"), w("modulate"), w("faceopacity"), w("enabled"),
               w("on"), w("modulate"), w("faceopacity"), w("invert"), w("enabled"), w("on"), w("multiplier"),
               w("faceopacity"), &two, 1, 0);
    Tv_Surface("s", w("model"), w("phong"), w("metal"), &one, 1, w("texture"), "layer 3", w("modulate"),
               w("luminouscolor"), w("enabled"), w("on"), w("colorblend"), w("luminous"), &quarter, 1, 0);
    Tv_Surface("s", w("texture"), "layer 3", w("texturelink"), "t", w("scale"), triple, w("translate"), triple,
               w("worldspace"), w("enabled"), w("on"), 0);
    Tv_Surface("s", w("texture"), "layer 1", w("uscale"), &two, w("vscale"), &quarter, 0);
    ASSERT_EQ(surface().layers.size(), 3u);
    using C = tv::LayerChannel;
    EXPECT_TRUE(modulation(0, C::color).stated);
    EXPECT_FALSE(modulation(0, C::color).enabled);
    EXPECT_TRUE(modulation(0, C::diffuse).enabled);
    EXPECT_EQ(modulation(0, C::diffuse).multiplier, (tv::Vec3{0.5f, 0.25f, 0.125f}));
    EXPECT_EQ(modulation(0, C::diffuse).mix, 0.25f);
    EXPECT_EQ(surface().layers[0].texture, 0u);
    EXPECT_EQ(surface().layers[0].uscale, 2);
    EXPECT_EQ(surface().layers[0].vscale, 0.25f);
    EXPECT_FALSE(surface().layers[0].placed);
    EXPECT_EQ(surface().layers[1].texture, tv::no_id);
    EXPECT_EQ(surface().layers[1].texture_name, "not yet");
    EXPECT_TRUE(modulation(1, C::face_opacity).enabled);
    EXPECT_TRUE(modulation(1, C::face_opacity).invert);
    EXPECT_EQ(modulation(1, C::face_opacity).multiplier, (tv::Vec3{2, 2, 2}));
    EXPECT_EQ(modulation(2, C::luminous).blend, 0.25f);
    EXPECT_TRUE(surface().layers[2].placed);
    EXPECT_TRUE(surface().layers[2].world_space);
    EXPECT_EQ(surface().metal, 1);
    EXPECT_EQ(surface().diffuse, 1); // "diffuse" behind "multiplier" is a channel
    EXPECT_FALSE(surface().environment_enabled);
}

TEST_F(Store, LightsAndCamera)
{
    const float from[] = {1, 2, 3}, cone = 45, blend = 5, zero = 0;
    int32_t size = 256, decay = 1;
    Tv_Light("l", w("model"), w("spot"), 0);
    Tv_Light("l", w("cutoff"), &cone, w("delta"), &blend, w("shinefrom"), from, w("intensity"), &zero, 0);
    Tv_Light("l", w("shadowmap"), "default", w("enabled"), w("off"), 0);
    Tv_Light("l", w("shadowmap"), "default", w("shadowmapsize"), &size, w("useglobalvalues"), w("enabled"), w("off"),
             0);
    Tv_Light("l", w("decay"), &decay, 0);
    const tv::Light& light = tv::scene().lights[1];
    EXPECT_EQ(light.model, tv::LightModel::spot);
    EXPECT_EQ(light.cutoff, 45);
    EXPECT_EQ(light.shine_from, (tv::Vec3{1, 2, 3}));
    EXPECT_FALSE(light.shine_direction || light.shine_at);
    EXPECT_EQ(light.shadow_map_size, 256);
    EXPECT_FALSE(light.shadow_map);
    EXPECT_TRUE(light.decay);
    Tv_Camera("c", w("active"), 1, w("lookfrom"), from, 1, w("window"), from, 1, 0);
    Tv_Camera("d", w("active"), 1, w("focallength"), &cone, 1, 0);
    EXPECT_FALSE(tv::scene().cameras[0].active); // one at a time
    EXPECT_EQ(tv::scene().cameras[0].window[1], 2);
    EXPECT_EQ(tv::scene().cameras[1].focal_length, 45);
}

TEST_F(Store, BackdropTimeLineAndProjection)
{
    const float zenith[] = {0, 0, 1}, horizon = 0.5f;
    Tv_Background(w("colorscheme"), w("gradient"), w("horiztop"), w("enabled"), w("on"), w("horizbot"), w("enabled"),
                  w("on"), w("horizpos"), &horizon, 0);
    Tv_Background(w("colorscheme"), w("gradient"), w("color4"), w("rgb"), zenith, 0);
    const tv::Backdrop& backdrop = tv::scene().backdrop;
    EXPECT_EQ(backdrop.scheme, tv::BackdropScheme::gradient);
    EXPECT_TRUE(backdrop.horizon_top && backdrop.horizon_bottom);
    EXPECT_FALSE(backdrop.color || backdrop.gradient[0]);
    EXPECT_EQ(backdrop.gradient[3], (tv::Vec3{0, 0, 1}));
    Tv_Background(w("colorscheme"), w("color"), w("rgb"), zenith, 0);
    EXPECT_EQ(backdrop.color, (tv::Vec3{0, 0, 1}));
    Tv_Background(w("colorscheme"), w("surfacelink"), "sky", 0);
    EXPECT_EQ(backdrop.scheme, tv::BackdropScheme::surface);
    EXPECT_EQ(backdrop.surface, "sky");

    int32_t value[7] = {7, 6, 5, 4, 3, 2, 1};
    Tv_Animation(w("length"), value, 1, w("starttime"), value + 1, 1, w("endtime"), value + 2, 1, w("framerate"),
                 value + 6, 1, 0);
    int32_t got[4] = {};
    Tv_Inquire_Animation(w("length"), got, 1, w("starttime"), got + 1, 1, w("endtime"), got + 2, 1, w("framerate"),
                         got + 3, 1, 0);
    EXPECT_THAT(got, ElementsAre(7, 6, 5, 1));

    add_node("a");
    float o[3], u[3], v[3], wp[3];
    int32_t enabled = 0, space = 0, model = 0;
    const auto inquire = [&](const char* name) {
        Tv_Inquire_TxtrParam(w("instance"), name, w("enabled"), &enabled, 1, w("coordsystem"), &space, 1, w("origin"),
                             o, 1, w("upoint"), u, 1, w("vpoint"), v, 1, w("wpoint"), wp, 1, w("model"), &model, 1, 0);
    };
    inquire("a");
    EXPECT_EQ(enabled, w("off"));
    EXPECT_EQ(space, w("primitive"));
    EXPECT_EQ(model, w("orthographic"));
    EXPECT_THAT(v, ElementsAre(0, 1, 0));
    o[1] = -2;
    Tv_TxtrParam(w("instance"), "a", w("enabled"), w("on"), 1, w("coordsystem"), w("world"), 1, w("origin"), o, 1,
                 w("model"), w("cylindrical"), 1, 0);
    EXPECT_EQ(at("a").projection.model, tv::ProjectionModel::cylindrical);
    inquire("a");
    EXPECT_EQ(enabled, w("on"));
    EXPECT_EQ(space, w("world"));
    EXPECT_EQ(model, w("cylindrical"));
    EXPECT_THAT(o, ElementsAre(0, -2, 0));
}

TEST_F(Store, LocalAxesAreHandedOutLiveAndCopied)
{
    add_node("a");
    add_node("b");
    Tv_Local_Axes* axes = nullptr;
    Tv_Inquire_Instance("a", w("localaxes"), &axes, 0);
    axes->axes_matrix[3][1] = 5;
    axes->origin_enabled = 1;
    EXPECT_EQ(at("a").axes.axes_matrix[3][1], 5);
    Tv_Instance("b", w("localaxes"), axes, 0);
    Tv_Matrix_Identity(axes->axes_matrix);
    Tv_Instance("a", w("localaxes"), axes, 0);
    EXPECT_EQ(at("b").axes.axes_matrix[3][1], 5);
    EXPECT_EQ(at("b").axes.origin_enabled, 1);
    EXPECT_EQ(at("a").axes.axes_matrix[3][1], 0);
}

TEST_F(Store, TransformsMultiplyBehindAndReset)
{
    add_node("a");
    float m[4][4], got[16];
    const float step[] = {1, 2, 3};
    Tv_Matrix_Identity(m);
    m[0][0] = 2;
    Tv_Transform(w("instance"), "a", w("postmultiply"), w("matrix"), m, 0);
    Tv_Matrix_Identity(m);
    Tv_Matrix_Append_Transform(m, w("postmultiply"), w("translate"), step, 0);
    Tv_Transform(w("instance"), "a", w("postmultiply"), w("matrix"), m, 0);
    m[0][0] = 3;
    Tv_Transform(w("instance"), "a", w("postmultiply"), w("matrix"), m, 0);
    Tv_Inquire_Instance("a", w("matrix"), got, 0);
    EXPECT_THAT(got, ElementsAre(6, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 4, 4, 6, 1));
    Tv_Instance("a", w("resetmatrix"), 0);
    EXPECT_EQ(at("a").matrix, tv::identity_matrix);
}

} // namespace
