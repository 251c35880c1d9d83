// What stands in the file. What a browser makes of it: browser.test.mjs.
#include "export/page/page.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

std::string page_of(const std::vector<unsigned char>& glb, const page::Contents& contents)
{
    std::string text;
    page::write_page(glb, contents,
                     [&](const void* data, std::size_t size) { text.append(static_cast<const char*>(data), size); });
    return text;
}

std::vector<std::string> between(const std::string& text, const std::string& open, const std::string& close)
{
    std::vector<std::string> found;
    for (std::size_t at = text.find(open); at != std::string::npos; at = text.find(open, at)) {
        at += open.size();
        found.push_back(text.substr(at, text.find(close, at) - at));
    }
    return found;
}

std::vector<unsigned char> decoded(const std::string& text)
{
    static const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<unsigned char> bytes;
    uint32_t bits = 0;
    int held = 0;
    for (const char c : text.substr(0, text.find('='))) {
        bits = bits << 6 | static_cast<uint32_t>(alphabet.find(c));
        held += 6;
        if (held >= 8) bytes.push_back(static_cast<unsigned char>(bits >> (held -= 8)));
    }
    return bytes;
}

nlohmann::json report_in(const std::string& text)
{
    const auto blocks = between(text, R"(<script type="application/json" id="report">)", "</script>");
    return blocks.size() == 1 ? nlohmann::json::parse(blocks[0]) : nlohmann::json();
}

const std::string glb_open = R"(<script type="application/octet-stream;base64">)";

} // namespace

class Page : public testing::Test {
    void SetUp() override
    {
        if (!page::has_viewer()) GTEST_SKIP() << "this build has no viewer";
    }
};

TEST_F(Page, HoldsTheGlbInBlocksThatEachDecodeAlone)
{
    std::vector<unsigned char> glb((std::size_t{12} << 20) + 4);
    for (std::size_t i = 0; i < glb.size(); ++i) glb[i] = static_cast<unsigned char>(i * 31 >> 3);
    const auto blocks = between(page_of(glb, {}), glb_open, "</script>");
    ASSERT_EQ(blocks.size(), 2u);
    std::vector<unsigned char> back = decoded(blocks[0]);
    const std::vector<unsigned char> rest = decoded(blocks[1]);
    back.insert(back.end(), rest.begin(), rest.end());
    EXPECT_TRUE(back == glb);
    EXPECT_TRUE(between(page_of({}, {}), glb_open, "</script>").empty());
}

TEST_F(Page, TextsNeverBecomeMarkup)
{
    const std::string name = "</script><script>alert(1)</script><!--&amp;\x01.lws";
    page::Contents contents;
    contents.source = name;
    contents.missing = {{"image", name, name, {name}}};
    contents.messages = {{"code", "error", "not UTF-8: \xff", name, 3}};
    const std::string text = page_of({1, 2, 3}, contents);
    EXPECT_EQ(text.find("alert(1)</script>"), std::string::npos);
    EXPECT_EQ(between(text, "<title>", "</title>"),
              std::vector<std::string>{"&lt;/script>&lt;script>alert(1)&lt;/script>&lt;!--&amp;amp;.lws"});
    const nlohmann::json report = report_in(text);
    EXPECT_EQ(report["missing"][0]["tried"][0], name);
    EXPECT_EQ(report["messages"][0]["text"], "not UTF-8: \xef\xbf\xbd");
}

TEST_F(Page, ALongReportIsCutAndSaysSo)
{
    page::Contents contents;
    contents.messages.assign(1234, {"code", "warning", "text", "", 0});
    contents.losses = {{"code", std::string(3999, 'x') + "€" + std::string(5000, 'x'), 1}};
    contents.missing = {{"image", "a", "", std::vector<std::string>(500, "/place")}};
    const nlohmann::json report = report_in(page_of({}, contents));
    EXPECT_EQ(report["messages"].size(), 1000u);
    EXPECT_EQ(report["messagesLeftOut"], 234);
    EXPECT_EQ(report["losses"][0]["text"], std::string(3999, 'x') + "…"); // cut in front of the euro, not in it
    EXPECT_EQ(report["missing"][0]["tried"].size(), 100u);
}
