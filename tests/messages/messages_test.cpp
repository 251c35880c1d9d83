// Messages: what becomes of a text's places, and the page of them all.
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "lib/messages/message.h"
#include "lib/messages/page.h"

namespace messages {

namespace {

TEST(MessageText, StretchesWithoutValueAreLeftAwayOrHaveAnother)
{
    EXPECT_EQ(text(message<"option-unknown">("--scal", "--scale")), "no such option: --scal; did you mean --scale?");
    EXPECT_EQ(text(message<"option-unknown">("--x", "")), "no such option: --x; see --help");
    EXPECT_EQ(text(message<"files-done">(2, 2, 0, 0, std::vector<Message>{})), "2 files: 2 converted");
}

TEST(MessageText, CountsAreGroupedAndHaveTheirNouns)
{
    EXPECT_EQ(text(message<"converted">("a.lwo", "a.glb", 1, 1234567, 0, 0.26)),
              "a.lwo -> a.glb: 1 object, 1,234,567 polygons, 0 lights, 0.3 s");
    EXPECT_EQ(text(message<"options-directory-too-long">("key", 1000, "/p", 1)),
              "key takes at most 1000 bytes, '/p' has 1; use --content-dir");
}

TEST(MessageText, ListsAndPartsFollowOneAnother)
{
    std::vector<Message> missing = {message<"objects-missing">(1, 1), message<"images-missing">(2, 1000)};
    EXPECT_EQ(text(message<"files-missing">(std::move(missing))), "1 of 1 object missing, 2 of 1,000 images missing");
    Message told = message<"object-missing">("Toys:Boat", 3, std::vector<std::string>{"/a/boat", "/b/boat"}, 1);
    told.where = {"sea.lws", 12, std::nullopt};
    EXPECT_EQ(line(told), "sea.lws, line 12: missing object Toys:Boat, a null object takes its place (named 3 times)\n"
                          "  looked for:\n    /a/boat\n    /b/boat\n    and in 1 more place (lwimport find lists all)");
}

TEST(MessagesPage, IsWhatTheTableSays)
{
    std::ifstream file(TESTS_DIR "/../docs/user/6-messages.md");
    std::stringstream page;
    page << file.rdbuf();
    EXPECT_EQ(page.str(), messages::page()) << "make it anew: messages_page > docs/user/6-messages.md";
}

} // namespace

} // namespace messages
