// The harbour: one scene that uses everything a scene of the time could say, and one in the older manner with keywords
// that pass through.
#include "tools/samples/harbour/harbour.h"
#include "tools/samples/pictures.h"
#include "tools/samples/samples.h"
#include "tools/samples/scene_text.h"

namespace samples {

namespace {

void sky_and_camera(SceneText& scene)
{
    scene.line("AmbientColor 150 170 200").line("AmbIntensity 0.25").line();
    scene.line("SolidBackdrop 0").line("ZenithColor 28 62 128").line("SkyColor 178 202 224");
    scene.line("GroundColor 92 98 96").line("NadirColor 40 46 52").line();
    scene.motion("CameraMotion", {{.frame = 0, .position = {-7, 5.5, -25}, .rotation = {12, 9, 0}},
                                  {.frame = 60, .position = {0, 4.2, -23}, .rotation = {3, 6, 0}, .tension = 0.2},
                                  {.frame = 120, .position = {6, 5.0, -22}, .rotation = {-8, 7, 0}}});
    scene.line("ZoomFactor 2.6").line("CustomSize 640 400").line("PixelAspectRatio 0").line();
}

void lights(SceneText& scene)
{
    scene.line("AddLight").line("LightName Sun").line("ShowLight 1 7");
    scene.at_rest("LightMotion", {-20, 25, -20}, {38, 40, 0});
    scene.line("LightColor 255 240 214").envelope("LgtIntensity", {{0, 1}, {120, 0.8}});
    scene.line("LightType 0").line("ShadowCasting 1").line();
    scene.line("AddLight").line("LightName Lantern").line("ShowLight 1 7");
    scene.at_rest("LightMotion", {3, 3.4, -4});
    scene.line("LightColor 255 214 140").line("LgtIntensity 0.6").line("LightType 1").line("Falloff 0.08").line();
    scene.line("AddLight").line("LightName Beam of the lighthouse").line("ShowLight 1 7");
    scene.at_rest("LightMotion", {15, 9.7, 12}, {-120, 12, 0});
    scene.line("LightColor 255 250 220").line("LgtIntensity 1.2").line("LightType 2");
    scene.line("ConeAngle 14.000000").line("EdgeAngle 6").line("ShadowMapSize 512").line("UseConeAngle 0").line();
}

void gull(SceneText& scene, int row, int first_frame, Vec3 around)
{
    // Four keys round a circle, and the circle again and again.
    scene.line("AddNullObject Gull path").line("ShowObject 1 1");
    std::vector<SceneKey> circle;
    for (int i = 0; i <= 4; ++i) {
        const double side[5][2] = {{0, -6}, {6, 0}, {0, 6}, {-6, 0}, {0, -6}};
        circle.push_back({.frame = first_frame + 30 * i,
                          .position = {around.x + side[i][0], around.y + (i % 2), around.z + side[i][1]},
                          .rotation = {90 - 90.0 * i, 0, 18},
                          .tension = -0.25});
    }
    scene.motion("ObjectMotion", circle, repeat).line();
    scene.line("LoadObject OBJECTS\\GullBody.lwo").line("ShowObject 7 7").at_rest("ObjectMotion", {});
    scene.line("ParentObject " + std::to_string(row)).line();
    for (const bool right : {true, false}) {
        const double heading = right ? 0 : 180;
        scene.line("LoadObject OBJECTS\\GULLWING").line("ShowObject 7 7");
        scene.motion("ObjectMotion",
                     {{.frame = 0, .position = {right ? 0.1 : -0.1, 0.05, 0.05}, .rotation = {heading, 0, 28}},
                      {.frame = 6, .position = {right ? 0.1 : -0.1, 0.05, 0.05}, .rotation = {heading, 0, -24}},
                      {.frame = 12, .position = {right ? 0.1 : -0.1, 0.05, 0.05}, .rotation = {heading, 0, 28}}},
                     repeat);
        scene.line("ParentObject " + std::to_string(row + 1)).line();
    }
}

void day(const std::string& directory)
{
    SceneText scene;
    scene.head(120);
    scene.line("LoadObject OBJECTS\\WATER").line("ShowObject 7 7").at_rest("ObjectMotion", {}).line(); // row 1
    scene.line("LoadObject C:\\NEWTEK\\OBJECTS\\QUAY.LWO").line("ShowObject 7 7").at_rest("ObjectMotion", {}).line();
    scene.line("LoadObject Toys:Objects/Lighthouse.lwo").line("ShowObject 7 7");
    scene.at_rest("ObjectMotion", {15, 0, 12}).line();
    scene.line("LoadObject OBJECTS\\HILLS").line("ShowObject 7 7").at_rest("ObjectMotion", {0, 0, 48}).line();

    // Row 5: the boat comes in, and stays where it is when the keys end. A lantern and two crates ride on it.
    scene.line("LoadObject C:\\NEWTEK\\OBJECTS\\BOAT.LWO").line("ShowObject 7 7").line("LockedChannels 0");
    scene.motion(
        "ObjectMotion",
        {{.frame = 0, .position = {13, 0, -9}, .rotation = {-80, 0, -2}},
         {.frame = 50, .position = {7, 0.05, -6}, .rotation = {-62, -1.5, 2}, .tension = 0.3, .continuity = -0.2},
         {.frame = 100, .position = {4, 0, -2.5}, .rotation = {-30, 0, 0}, .tension = 0.6, .bias = 0.4}},
        stop);
    scene.line("ShadowOptions 7").line();
    scene.line("LoadObject DH1:Objects/Crate").line("ShowObject 7 7");
    scene.at_rest("ObjectMotion", {0.3, 0.55, 2.2}, {15, 0, 0}, {0.6, 0.6, 0.6}).line("ParentObject 5").line();
    scene.line("LoadObject OBJECTS\\CRATE.LWO").line("ShowObject 7 7");
    scene.at_rest("ObjectMotion", {-0.2, 0.5, 0.9}, {-20, 0, 0}, {0.5, 0.5, 0.5}).line("ParentObject 5").line();

    // Rows 8 to 11: the crane. Tower, boom on its hinge, hook at the boom's end, a crate on the hook.
    scene.line("LoadObject Objects/CraneBase.lwo").line("ShowObject 7 7");
    scene.motion("ObjectMotion",
                 {{.frame = 0, .position = {-6, 1.2, 6}, .rotation = {150, 0, 0}},
                  {.frame = 60, .position = {-6, 1.2, 6}, .rotation = {205, 0, 0}, .tension = 0.5},
                  {.frame = 120, .position = {-6, 1.2, 6}, .rotation = {150, 0, 0}}},
                 repeat);
    scene.line();
    scene.line("LoadObject OBJECTS\\CRANEBOOM").line("ShowObject 7 7");
    scene.motion("ObjectMotion",
                 {{.frame = 0, .position = {0, 6, 0.6}, .rotation = {0, -20, 0}},
                  {.frame = 60, .position = {0, 6, 0.6}, .rotation = {0, -40, 0}, .bias = -0.3},
                  {.frame = 120, .position = {0, 6, 0.6}, .rotation = {0, -20, 0}}},
                 repeat);
    scene.line("ParentObject 8").line("PivotPoint 0 6 0.6").line();
    scene.line("LoadObject OBJECTS\\CRANEHOOK").line("ShowObject 7 7");
    scene.motion("ObjectMotion",
                 {{.frame = 0, .position = {0, 6, 7}, .rotation = {0, 20, 0}},
                  {.frame = 60, .position = {0, 6, 7}, .rotation = {0, 40, 0}},
                  {.frame = 120, .position = {0, 6, 7}, .rotation = {0, 20, 0}}},
                 repeat);
    scene.line("ParentObject 9").line();
    scene.line("LoadObject OBJECTS\\CRATE.LWO").line("ShowObject 7 7").line("PivotPoint 0 1 0");
    scene.at_rest("ObjectMotion", {0, -3.2, 0}, {30, 0, 0}).line("ParentObject 10").line();

    // Rows 12 to 16: crates on the quay, and houses, each object loaded again.
    scene.line("LoadObject OBJECTS\\CRATE.LWO").at_rest("ObjectMotion", {-2.6, 1.2, 6}, {10, 0, 0}).line();
    scene.line("LoadObject OBJECTS\\CRATE.LWO").at_rest("ObjectMotion", {-1.4, 1.2, 6.3}, {-25, 0, 0}).line();
    scene.line("LoadObject Work:Objects/House.lwo").at_rest("ObjectMotion", {-14, 1.2, 12}).line();
    scene.line("LoadObject Work:Objects/House.lwo")
        .at_rest("ObjectMotion", {-1, 1.2, 12.5}, {8, 0, 0}, {1, 1.25, 1})
        .line();
    scene.line("LoadObject Work:Objects/House.lwo")
        .at_rest("ObjectMotion", {4.6, 1.2, 12}, {90, 0, 0}, {0.9, 0.9, 0.9})
        .line();

    // Row 17: the buoy falls back to its first key when the keys end, and its twin repeats them.
    scene.line("LoadObject OBJECTS\\BUOY").line("ShowObject 7 7");
    scene.motion("ObjectMotion",
                 {{.frame = 0, .position = {9, 0, -13}, .rotation = {0, 6, 4}, .continuity = 0.3},
                  {.frame = 20, .position = {9, 0.12, -13}, .rotation = {0, -6, -3}, .bias = 0.5},
                  {.frame = 40, .position = {9, -0.05, -13}, .rotation = {0, 5, 5}}},
                 reset);
    scene.line();
    scene.line("LoadObject OBJECTS\\BUOY").line("ShowObject 7 7");
    scene.motion("ObjectMotion",
                 {{.frame = 0, .position = {-8, 0, -12}, .rotation = {0, -5, 5}},
                  {.frame = 25, .position = {-8, 0.1, -12}, .rotation = {0, 5, -4}, .linear = true},
                  {.frame = 50, .position = {-8, 0, -12}, .rotation = {0, -5, 5}}},
                 repeat);
    scene.line();
    gull(scene, 19, 0, {3, 9, -4});
    gull(scene, 23, 0, {-8, 11, 4});
    lights(scene);
    sky_and_camera(scene);
    scene.line("ShowMotionPath 0").line("ViewMode 5").line("LayoutGrid 8").line("ShowSafeAreas 0").line();
    scene.write(directory + "/harbour.lws");
}

// As the first PC and Amiga releases wrote: CR LF, bones, dissolves, lens flares, morphs. All that passes through, the
// placed objects and lights come in, and an object that is nowhere on the disk leaves a null in its place.
void old_style(const std::string& directory)
{
    SceneText scene("\r\n");
    scene.line("LWSC").line("1").line();
    scene.line("FirstFrame 1").line("LastFrame 60").line("FrameStep 1").line();
    scene.line("LoadObject DH1:Objects/Water").line("ShowObject 7 7").at_rest("ObjectMotion", {});
    scene.line("ShadowOptions 7").line();
    scene.line("LoadObject DH1:Objects/Boat").line("ShowObject 7 7").line("DisplacementMap Ripples");
    scene.line("TextureFlags 4").line("TextureSize 300 300 300");
    scene.envelope("TextureAmplitude", {{1, 0.5}, {30, 0}, {60, 0.5}}, repeat);
    scene.motion("ObjectMotion", {{.frame = 1, .position = {2, -2.1e-006, 0}, .rotation = {30, 0, 0}},
                                  {.frame = 60, .position = {-29.3434, 0.0600761, 6}, .rotation = {75, 0, -3}}});
    scene.envelope("ObjDissolve", {{1, 0}, {40, 0}, {60, 1}});
    scene.line("ObjPolygonEdges 0").line("MorphTarget 3").envelope("Metamorph", {{1, 0}, {60, 1}});
    scene.line("SaveAnimationName D:\\Anim\\harbour.avi").line("DataOverlayLabel  ").line();
    for (int i = 1; i <= 2; ++i) { // the bones' motions are not the boat's
        scene.line("AddBone").line("BoneName Bone" + std::to_string(i)).line("ShowBone 1 2").line("BoneActive 1");
        scene.line("BoneRestPosition 0 1 " + std::to_string(i))
            .line("BoneRestDirection 0 0 0")
            .line("BoneRestLength 1");
        scene.line("BoneMotion (unnamed)").line("  9").line("  1").line("  0 5 0 90 0 0 1 1 1").line("  0 0 0 0 0");
        scene.line("EndBehavior 1").line("ParentObject 2").line();
    }
    scene.line("LoadObject Toys:Objects/Mermaid").line("ShowObject 7 7");
    scene.at_rest("ObjectMotion", {0, 1, 2}).line("ParentObject 2").line();
    scene.line("AddNullObject Middle of the bay").line("ShowObject 1 1").at_rest("ObjectMotion", {0, 0, 5}).line();
    scene.line("LoadObject DH1:Objects/Lighthouse").line("ShowObject 7 7").line("PathAlignment 0 0");
    scene.at_rest("ObjectMotion", {8, 0, 10}).line("PivotPoint 0 -1 0").line("ParentObject 4").line();
    scene.line("AmbientColor 255 255 255").envelope("AmbIntensity", {{1, 0.2}, {60, 0.3}}).line();
    for (int i = 0; i < 2; ++i) {
        scene.line("AddLight")
            .line("LightName Light")
            .line("ShowLight 1 2")
            .at_rest("LightMotion", {i * 10.0, 10, -12}, {-20, 35, 0});
        scene.line("LightColor 255 245 230").line("LgtIntensity 0.7").line("LightType " + std::to_string(i));
        scene.line("LightFalloff 0.1").line("LensFlare 1").envelope("FlareIntensity", {{1, 0.5}, {30, 1}, {60, 0.5}});
        scene.line("FlareDissolve 0")
            .line("LensFlareFade 3")
            .line("LensFlareOptions 15")
            .line("FlareRandStreakInt 0.03");
        scene.line("FlareRandStreakDens 50")
            .line("FlareRandStreakSharp 6")
            .line("FlareStarFilter 0")
            .line("EnableLensFlare 1");
        scene.line("ShadowCasting 1").line();
    }
    scene.line("ShowCamera 1 2").motion("CameraMotion", {{.frame = 1, .position = {0, 4, -18}, .rotation = {0, 6, 0}}});
    scene.line("ZoomFactor 3.2")
        .line("RenderMode 2")
        .line("Antialiasing 1")
        .line("FilmSize 2")
        .line("FieldRendering 0");
    scene.line("MotionBlur 1").line("BlurLength 0.500000").line("FogType 0").line();
    scene.line("SolidBackdrop 1").line("BackdropColor 60 90 130").line("BGImage (none)").line("Resolution 1").line();
    scene.write(directory + "/Scenes/harbour_oldstyle_passes_through.lws");
}

} // namespace

void write_harbour_objects(const std::string& directory)
{
    write_boat(directory);
    write_crane(directory);
    write_gull(directory);
    write_shore(directory);
}

void write_harbour_images(const std::string& directory)
{
    const auto write = [&](const std::string& name, const Picture& picture, IlbmDepth depth = IlbmDepth::palette_8) {
        lw_tools::write_file(directory + "/" + name, ilbm_bytes(picture, depth));
    };
    write("Planks", planks({192, 152, 104}, {80, 56, 32}, 8, 128)); // Amiga images often had no extension
    write("Planks.iff", planks({192, 152, 104}, {80, 56, 32}, 8, 128));
    write("Stones.iff", stones(128));
    write("Crate", crate(128), IlbmDepth::true_colour_24);
    write("Flag.iff", flag());
    write("Rust.iff", speckles(128, 3, 120, 255));
    write("Ripples.iff", speckles(128, 40, 0, 255));
    write("Brass.iff", speckles(64, 77, 60, 255));
    write("Windows.iff", windows(4, 2));
    write("Net.iff", net(128));
}

void write_harbour_scenes(const std::string& directory)
{
    day(directory);
    old_style(directory);
}

} // namespace samples
