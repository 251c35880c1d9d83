// The table of words: every word of every function is taken, whatever isn't in it is refused.
#include "lib/toolkit/words/words.h"

#include <sstream>

#include "tests/toolkit/toolkit_fixture.h"
#include "gmock/gmock.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

using tv::Function;
using tv::Value;

// Enough for any value that goes by pointer.
struct Values {
    float floats[16] = {};
    int32_t integers[2] = {};
    Tv_Local_Axes axes{};
    void* out[16] = {};
};

void* pointer_for(Value value, Values& values)
{
    switch (value) {
    case Value::string: return const_cast<char*>("text");
    case Value::record: return &values.axes;
    case Value::integer:
    case Value::integer_2: return values.integers;
    case Value::sizes:
    case Value::points:
    case Value::corners:
    case Value::surface_names:
    case Value::handle: return nullptr;
    default: return value >= Value::out_integer ? static_cast<void*>(values.out) : values.floats;
    }
}

// The first member of a set of tokens, or 0 for a value that is none of a set.
int32_t token_for(Value value)
{
    for (const tv::ChoiceRow& row : tv::choice_table())
        if (row.value == value) return row.word;
    return 0;
}

// Calls with a word and its values behind it, each passed as what it is.
template <class Call, class... Arguments>
void send(Call call, Values& values, std::span<const Value> rest, Arguments... arguments)
{
    if (rest.empty() || rest[0] == Value::none) {
        call(arguments..., 0);
    } else if constexpr (sizeof...(Arguments) < 4) {
        const int32_t token = token_for(rest[0]);
        if (token || rest[0] == Value::by_value)
            send(call, values, rest.subspan(1), arguments..., token);
        else
            send(call, values, rest.subspan(1), arguments..., pointer_for(rest[0], values));
    }
}

// A call of each function with what stands in front of its list; what is passed in becomes the list.
template <class... Arguments>
void call(Function function, Arguments... list)
{
    float matrix[4][4] = {};
    int32_t scratch = 0;
    const int32_t instance = w("instance"), object = w("object"), surface = w("surface");
    switch (function) {
    case Function::object_define: return Tv_Object_Define("o", list...);
    case Function::primitive: return Tv_Primitive(list...);
    case Function::object_end: return Tv_Object_End(list...);
    case Function::manipulate_indexed_polygons: return Tv_Manipulate_IndexedPolygons("o", 0, list...);
    case Function::surfacelink: return Tv_Surfacelink(surface, "s", object, "o", list...);
    case Function::add_empty_node: return Tv_Add_Empty_Node(instance, "i", list...);
    case Function::add_instance: return Tv_Add_Instance(instance, "i", object, "o", list...);
    case Function::attach: return Tv_Attach(instance, "i", instance, "world", list...);
    case Function::detach: return Tv_Detach(instance, "i", list...);
    case Function::remove: return Tv_Remove(instance, "i", list...);
    case Function::instance: return Tv_Instance("i", list...);
    case Function::inquire_instance: return Tv_Inquire_Instance("i", list...);
    case Function::inquire_object: return Tv_Inquire_Object("o", list...);
    case Function::transform: return Tv_Transform(instance, "i", list...);
    case Function::surface: return Tv_Surface("s", list...);
    case Function::inquire_surface: return Tv_Inquire_Surface("s", list...);
    case Function::texture: return Tv_Texture("t", list...);
    case Function::txtr_param: return Tv_TxtrParam(instance, "i", list...);
    case Function::inquire_txtr_param: return Tv_Inquire_TxtrParam(instance, "i", list...);
    case Function::light: return Tv_Light("l", list...);
    case Function::camera: return Tv_Camera("c", list...);
    case Function::option: return Tv_Option(list...);
    case Function::background: return Tv_Background(list...);
    case Function::animation: return Tv_Animation(list...);
    case Function::inquire_animation: return Tv_Inquire_Animation(list...);
    case Function::anim_controller: return Tv_AnimController(&scratch, list...);
    case Function::matrix_append_transform: return Tv_Matrix_Append_Transform(matrix, list...);
    }
}

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

constexpr auto no_token = 999;

TEST_F(WordLists, EveryWordOfTheTableIsTakenAndTraced)
{
    for (const tv::WordRow& row : tv::word_table()) {
        SCOPED_TRACE(std::string("function ") + std::to_string(static_cast<int>(row.function)) + " word " +
                     tv::word_text(row.word));
        Values values;
        const std::size_t lines = trace().size();
        send([&](auto... list) { call(row.function, list...); }, values, row.values, static_cast<int32_t>(row.word));
        for (const std::string& text : reports) EXPECT_THAT(text, Not(HasSubstr("ERR_TOOLKIT_BAD_WORD")));
        reports.clear();
        if (row.function == Function::matrix_append_transform) continue;
        ASSERT_EQ(trace().size(), lines + 1);
        EXPECT_THAT(last_line(), AllOf(HasSubstr("\"" + std::string(tv::word_text(row.word)) + "\""), EndsWith(",0]")));
    }
}

TEST_F(WordLists, WhatNoFunctionKnowsIsReportedByFunctionAndWord)
{
    const int32_t unknown = w("nosuchword");
    for (std::size_t i = 0; i < tv::function_count; ++i) {
        const auto function = static_cast<Function>(i);
        SCOPED_TRACE(i);
        Tv_Option(0); // the line before
        call(function, unknown, 0);
        const std::string text = report();
        EXPECT_THAT(text, AllOf(testing::StartsWith("4 'nosuchword'"), HasSubstr("(ERR_TOOLKIT_BAD_WORD, Tv_")));
        const bool traced = function != Function::matrix_append_transform;
        EXPECT_EQ(traced, last_line().ends_with("\"nosuchword\"]"));
        call(function, no_token, 0);
        EXPECT_THAT(report(), testing::StartsWith("4 '999' has no place"));
    }
}

TEST_F(WordLists, ABadListChangesNothing)
{
    const float red[] = {1, 0, 0};
    Tv_Surface("s", w("color"), w("rgb"), red, w("time"), 0);
    EXPECT_THAT(report(), HasSubstr("'time'"));
    EXPECT_FALSE(tv::scene().surfaces[0].has_color);
    EXPECT_THAT(last_line(), EndsWith(R"("rgb",[1,0,0],"time"])"));

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
