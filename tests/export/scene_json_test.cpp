#include <cmath>

#include "export/scene_json/scene_dump.h"
#include "tests/export/scene_builder.h"

TEST_F(Export, TheDumpHoldsTheSceneAsItIs)
{
    surface("paint");
    object("th\xefng", cube_shape(), "paint", 40);
    instance("thing", "th\xefng");
    instance("child", "", "thing");
    keys("thing", x, {{0, 0.1f}, {4800, INFINITY, 0.5f}}, "cycle");
    pivot("thing", 1, 2, 3);
    const auto json = nlohmann::json::parse(scene_json::dump_scene(tv::scene()));
    EXPECT_EQ(json["objects"][0]["name"], "th\xc3\xafng");
    EXPECT_EQ(json["objects"][0]["primitives"][0]["corners"].size(), 24u);
    EXPECT_EQ(json["objects"][0]["smoothingAngle"], 40);
    EXPECT_EQ(json["objects"][0]["surface"], "paint");
    const auto& thing = json["instances"][1];
    EXPECT_EQ(thing["parent"], "world");
    EXPECT_EQ(thing["children"], nlohmann::json({"child"}));
    EXPECT_EQ(thing["axes"]["matrix"][13], 2);
    EXPECT_EQ(thing["channels"]["position"][0]["keys"][0]["value"], 0.1);
    EXPECT_EQ(thing["channels"]["position"][0]["keys"][1]["value"], "inf");
    EXPECT_EQ(thing["channels"]["position"][0]["after"], "cycle");
    EXPECT_EQ(json["lights"][0]["name"], "defaultambient");
    EXPECT_EQ(json["timeLine"]["frameRate"], 30);
}
