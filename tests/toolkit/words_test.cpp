// Word lists: whatever isn't in the table of words is refused.
#include "lib/toolkit/words/words.h"

#include <sstream>

#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

class WordLists : public Toolkit {
protected:
    void SetUp() override
    {
        Toolkit::SetUp();
        Tv_Object_Define("o", 0); // open, so that primitives have a place
        Tv_Surface("s", 0);
        Tv_Add_Empty_Node(w("instance"), "i", 0);
        Tv_Add_Empty_Node(w("instance"), "text", 0);
    }
};

TEST_F(WordLists, ABadListChangesNothing)
{
    const float red[] = {1, 0, 0};
    Tv_Surface("s", w("color"), w("rgb"), red, w("time"), 0);
    EXPECT_THAT(report(), HasSubstr("'time'"));
    EXPECT_FALSE(tv::scene().surfaces[0].has_color);
    EXPECT_THAT(last_line(), EndsWith(R"("rgb",[1,0,0],"time"])"));

    Tv_Option(w("nosuchword"), 0);
    EXPECT_THAT(report(), testing::StartsWith("4 'nosuchword' has no place in this list"));
    Tv_Option(999, 0);
    EXPECT_THAT(report(), testing::StartsWith("4 '999' has no place"));
    EXPECT_THAT(last_line(), EndsWith(",999]"));
    Tv_Light("new", w("intensity"), red, w("lookat"), 0);
    EXPECT_EQ(tv::scene().find(tv::Kind::light, "new"), tv::no_id);
    EXPECT_THAT(report(), HasSubstr("Tv_Light"));

    Tv_Detach(w("light"), "i", 0); // a kind that has no place in the tree
    EXPECT_THAT(report(), AllOf(HasSubstr("'light'"), HasSubstr("Tv_Detach")));
    Tv_Surface("s", w("texture"), "layer", w("modulate"), w("metal"), w("enabled"), w("on"), 0); // no layer's channel
    EXPECT_THAT(report(), HasSubstr("'metal'"));
    EXPECT_TRUE(tv::scene().surfaces[0].layers.empty());
    Tv_Surface("s", w("rgb"), static_cast<float*>(nullptr), 0);
    EXPECT_THAT(report(), HasSubstr("'rgb'"));
    EXPECT_THAT(last_line(), EndsWith(R"("rgb",null])"));
    const char* text = "untouched";
    int32_t number = 7;
    Tv_Inquire_Instance("i", w("masterobject"), &text, 1, w("numchildren"), &number, w("color"), 0);
    EXPECT_STREQ(text, "untouched");
    EXPECT_EQ(number, 7);
    EXPECT_THAT(last_line(), EndsWith(R"("masterobject",null,1,"numchildren",null,"color"])"));
}

TEST_F(WordLists, NamesThatDoNotExistAreReportedAndInquiriesAnswer)
{
    Tv_Local_Axes* axes = nullptr;
    const char* parent = "?";
    int32_t kind = -1, count = -1;
    Tv_Inquire_Instance("gone", w("localaxes"), &axes, 1, w("parent"), &kind, &parent, 0);
    EXPECT_THAT(report(), HasSubstr("there is no instance 'gone' (ERR_SCENE_UNKNOWN_NAME, Tv_Inquire_Instance)"));
    ASSERT_NE(axes, nullptr);
    EXPECT_EQ(axes->axes_scale, 1);
    EXPECT_EQ(kind, 0);
    EXPECT_EQ(parent, nullptr);
    Tv_Inquire_Object("gone", w("numprimitives"), &count, 1, 0);
    EXPECT_EQ(count, 0);
    EXPECT_THAT(report(), HasSubstr("object 'gone'"));
    Tv_Attach(w("instance"), "gone", w("instance"), "world", 0);
    EXPECT_THAT(report(), HasSubstr("Tv_Attach"));
    Tv_Surface(nullptr, 0);
    EXPECT_THAT(report(), HasSubstr("Tv_Surface"));
}

TEST(Tokens, AreOneAWordForEverAndNeverBelow1000)
{
    EXPECT_GE(w("object"), 1000);
    const int32_t made = w("made up for this test");
    EXPECT_GE(made, 1000);
    for (int i = 0; i < 1000; ++i) w(("filler " + std::to_string(i)).c_str());
    EXPECT_EQ(w("made up for this test"), made);
    EXPECT_NE(w("Object"), w("object"));
    EXPECT_STREQ(tv::word_text(made), "made up for this test");
    EXPECT_EQ(tv::word_text(999), nullptr);
}

TEST(WordsPage, IsWhatTheTableSays)
{
    std::ifstream file(TESTS_DIR "/../docs/dev/words.md");
    std::stringstream page;
    page << file.rdbuf();
    EXPECT_EQ(page.str(), tv::words_page()) << "make it anew: words_page > docs/dev/words.md";
}

} // namespace
