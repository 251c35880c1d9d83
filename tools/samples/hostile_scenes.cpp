// Scenes that are damaged, contradict themselves, or come from another version.
#include "tools/samples/samples.h"
#include "tools/samples/scene_text.h"

namespace samples {

void write_hostile_scenes(const std::string& directory)
{
    const auto null = [](SceneText& scene, const std::string& name, int parent, double x = 0) {
        scene.line("AddNullObject " + name).at_rest("ObjectMotion", {x, 0, 0});
        if (parent != 0) scene.line("ParentObject " + std::to_string(parent));
        scene.line();
    };
    const auto write = [&](SceneText& scene, const std::string& name) { scene.write(directory + "/" + name + ".lws"); };

    {
        SceneText scene;
        scene.head(30);
        null(scene, "First", 2, 1);
        null(scene, "Second", 3, 2);
        null(scene, "Third", 1, 3);
        write(scene, "hierarchy_cycle_hangs_under_world");
    }
    {
        SceneText scene;
        scene.head(30);
        null(scene, "Own parent", 1);
        null(scene, "Parent below zero", -3);
        null(scene, "Parent far too high", 99);
        null(scene, "Parent just too high", 5);
        write(scene, "hierarchy_parents_out_of_range_stay_in_the_scene");
    }
    {
        SceneText scene;
        scene.head(30).line("LoadObject C:\\NOWHERE\\Missing.lwo");
        scene.motion("ObjectMotion", {{.frame = 0}, {.frame = 30, .position = {1, 0, 0}}}).line();
        null(scene, "Child of what is missing", 1);
        scene.line("LoadObject ..\\..\\..\\..\\..\\etc\\passwd").at_rest("ObjectMotion", {});
        scene.line("LoadObject polygon_indices_out_of_range_are_dropped.lwo").at_rest("ObjectMotion", {2, 0, 0});
        scene.line("LoadObject chunk_size_too_big_reports_corrupt.lwo").at_rest("ObjectMotion", {4, 0, 0});
        write(scene, "objects_missing_and_broken_become_nulls");
    }
    {
        SceneText scene;
        scene.head(30).line("AddNullObject Cut").line("ObjectMotion (unnamed)").line("  9").line("  32767");
        scene.line("  0 0 0 0 0 0 1 1 1").line("  0 0 0 0");
        write(scene, "motion_cut_off_in_a_key_fails");
    }
    {
        SceneText scene;
        scene.head(30).line("AddNullObject Negative").line("ObjectMotion (unnamed)").line("  9").line("  -5").line();
        scene.line("AddNullObject None").line("ObjectMotion (unnamed)").line("  9").line("  0").line("EndBehavior 1");
        scene.line("AddNullObject Wraps to one").line("ObjectMotion (unnamed)").line("  9").line("  65537");
        scene.line("  1 2 3 0 0 0 1 1 1").line("  0 0 0 0 0").line("EndBehavior 7");
        write(scene, "motion_key_counts_odd_are_bounded");
    }
    {
        SceneText scene;
        scene.head(30).line("AddLight").line("LightName Deep").line("LgtIntensity (envelope)").line("  1").line("  1");
        for (int i = 0; i < 2000; ++i) scene.line("  (envelope)").line("  1").line("  1");
        write(scene, "envelopes_nested_deep_end");
    }
    {
        SceneText scene;
        scene.head(30).line("FramesPerSecond 0").line("FirstFrame -2147483648").line("LastFrame 99999999999999");
        scene.line("AddNullObject Wild");
        scene.line("ObjectMotion (unnamed)").line("  9").line("  2");
        scene.line("  1e999 -1e999 nan 1e30 0 0 0 0 0").line("  -32768 0 1e9 -1e9 0");
        scene.line("  0 0 0 0 0 0 1 1 1").line("  32767 0 0 0 0").line("EndBehavior 2").line();
        write(scene, "numbers_out_of_range_are_bounded");
    }
    {
        SceneText scene;
        scene.head(30).line("AddNullObject " + std::string(5000, 'n')).at_rest("ObjectMotion", {});
        scene.line("LoadObject " + std::string(3000, '\\') + std::string(3000, 'x')).at_rest("ObjectMotion", {});
        scene.line(std::string(20'000, 'z')).line("ZoomFactor 3.2");
        scene.line("AddNullObject \xC4\xD6\xDC\xDF and \x01\x7F\"quoted\"\\").at_rest("ObjectMotion", {});
        write(scene, "names_long_and_odd_are_cut");
    }
    {
        SceneText scene;
        scene.line("LWSC").line("3").line().line("FirstFrame 0").line("LastFrame 60").line("FramesPerSecond 30").line();
        scene.line("LoadObjectLayer 1 Objects/Ship.lwo").line("ObjectMotion").line("NumChannels 9").line("Channel 0");
        scene.line("{ Envelope").line("  1").line("  Key 0 0 0 0 0 0 0 0 0").line("  Behaviors 1 1").line("}");
        write(scene, "version_3_loses_its_motions");
    }
    {
        SceneText scene;
        scene.line("LWSC").line("1");
        write(scene, "head_alone_is_an_empty_scene");
    }
}

} // namespace samples
