#include "restore/facts/object_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "restore/facts/file_head.h"
#include "restore/facts/references.h"
#include "tests/restore/file_of.h"
#include "tools/lwob_writer.h"

namespace {

using restore::ObjectFacts;
using testing::ElementsAre;

ObjectFacts facts_of(std::string_view bytes)
{
    return restore::read_object(restore_test::FileOf(bytes));
}

lw_tools::ObjectWriter triangle()
{
    lw_tools::ObjectWriter object;
    object.surface_names = {"Skin", "Leaf"};
    object.polygon({object.point(0, 0, 0), object.point(0, 1, 0), object.point(1, 1, 0)});
    object.polygons.push_back({{0, 1}, 2, {{{2, 1, 0}, 1, {}}, {{0, 2, 1}, 1, {}}}}); // a line with two details
    object.surfaces = {lw_tools::SurfaceWriter("Skin")
                           .color(255, 0, 0)
                           .text("CTEX", "Planar Image Map")
                           .text("TIMG", "Toys:Images/Bark"),
                       lw_tools::SurfaceWriter("Leaf").u16("FLAG", 0x104).text("RIMG", "(None)")};
    return object;
}

TEST(ObjectFacts, HoldCountsSurfacesAndImages)
{
    const ObjectFacts facts = facts_of(triangle().to_bytes());
    EXPECT_TRUE(facts.readable) << facts.problem;
    EXPECT_EQ(facts.points, 3u);
    EXPECT_EQ(facts.polygons, 3u);
    EXPECT_THAT(facts.surface_names, ElementsAre("Skin", "Leaf"));
    ASSERT_EQ(facts.surfaces.size(), 2u);
    EXPECT_FALSE(facts.surfaces[0].double_sided);
    EXPECT_THAT(facts.surfaces[0].textures, ElementsAre("Planar Image Map"));
    EXPECT_TRUE(facts.surfaces[1].double_sided);
    const std::vector<restore::Reference> images = restore::references_of(facts);
    ASSERT_EQ(images.size(), 1u); // "(None)" is none
    EXPECT_EQ(images[0].stored, "Toys:Images/Bark");
    EXPECT_EQ(images[0].surface, "Skin");
}

TEST(ObjectFacts, SubChunksThatCantBeSteppedOverAreFound)
{
    lw_tools::ObjectWriter object = triangle();
    object.surfaces[0] =
        lw_tools::SurfaceWriter("Skin")
            .sub("VDIF", lw_tools::Bytes().f32(1).u16(0))                      // an envelope's number behind it
            .sub("SHDR", lw_tools::Bytes().text("Some plug-in"))               // unknown, but of its own size
            .sub("TIMG", lw_tools::Bytes().raw(std::string_view("Bark\0", 5))) // odd: the fill is read twice
            .color(1, 2, 3);
    object.surfaces[1].sub("WAVE", lw_tools::Bytes().id("size"));
    std::string bytes = object.to_bytes();
    bytes[bytes.size() - 5] = 99; // the last sub-chunk's size
    const ObjectFacts facts = facts_of(bytes);
    EXPECT_TRUE(facts.readable) << facts.problem; // once they are left out
    ASSERT_EQ(facts.surfaces.size(), 2u);
    const std::vector<restore::BadSubChunk>& bad = facts.surfaces[0].bad;
    ASSERT_EQ(bad.size(), 2u);
    EXPECT_EQ(bytes.substr(bad[0].begin, 4), "VDIF");
    EXPECT_EQ(bytes.substr(bad[0].end, 4), "SHDR");
    EXPECT_TRUE(bad[1].is_text);
    EXPECT_EQ(bad[1].text, "Bark");
    EXPECT_EQ(bytes.substr(bad[1].end, 4), "COLR");
    EXPECT_EQ(facts.surfaces[0].unknown_sub_chunks, 1u);
    ASSERT_EQ(facts.surfaces[1].bad.size(), 1u);
    EXPECT_EQ(facts.surfaces[1].bad[0].end, bytes.size());
}

TEST(ObjectFacts, SayWhyAnObjectCantBeRead)
{
    const std::string good = triangle().to_bytes();
    EXPECT_EQ(facts_of(good.substr(0, good.size() - 20)).problem,
              "is cut off at byte " + std::to_string(good.size() - 20));
    std::string bad = good;
    bad[12] = '\x01';
    EXPECT_EQ(facts_of(bad).problem, "is corrupt at byte 12: no chunk begins there");
    EXPECT_FALSE(facts_of("LWSC\n1\n").is_object);
}

TEST(FileHead, PicturesAndObjectsAreKnownByTheirFirstBytes)
{
    EXPECT_TRUE(restore::begins_as_object(triangle().to_bytes()));
    EXPECT_FALSE(restore::begins_as_object(std::string("FORM\0\0\0\4LWO2", 12)));
    EXPECT_FALSE(restore::begins_as_object("LWSC\n1\n"));
    EXPECT_TRUE(restore::begins_as_image(std::string("FORM\0\0\0\4ILBM", 12)));
    EXPECT_FALSE(restore::begins_as_image(triangle().to_bytes()));
    EXPECT_FALSE(restore::begins_as_image("LWSC\n1\nFirstFrame 1\n"));
    const std::string targa("\0\0\2\0\0\0\0\0\0\0\0\0\x40\0\x40\0\x18\0", 18);
    EXPECT_TRUE(restore::begins_as_image(targa));
    EXPECT_FALSE(restore::begins_as_image(targa.substr(0, 17)));
}

} // namespace
