// Lines and tokens: every mix of line ends, the cuts at 510 and 255 characters, bytes that no scene should hold.
#include "tests/scene/tokenizer_fixture.h"

using Strings = std::vector<std::string>;

namespace {

class Tokenizer : public scene_tests::TokenizerTest {};

std::string with_line_ends(std::string text, const std::string& end)
{
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
        text.replace(at, 1, end);
    return text;
}

TEST_F(Tokenizer, LineEndsOfAllMachinesReadTheSame)
{
    const std::string text = "LWSC\n1\n\n\nFirstFrame 1\n \t \n  LastFrame\t60\nend";
    const Strings expected = {"0:LWSC", "1:1", "2:FirstFrame", "2:1", "4:LastFrame", "4:60", "5:end"};
    EXPECT_EQ(tokens(text), expected);
    EXPECT_EQ(tokens(with_line_ends(text, "\r\n")), expected);
    EXPECT_EQ(tokens(with_line_ends(text, "\r")), expected);
    EXPECT_EQ(tokens(with_line_ends(text, "\n\r")), expected);
}

TEST_F(Tokenizer, ALineHolds510Characters)
{
    const std::string full(510, ' ');
    EXPECT_EQ(tokens(full + "\nnext"), (Strings{"1:next"}));
    // With one character more, that one opens a line of its own.
    EXPECT_EQ(tokens(full + "x\nnext"), (Strings{"1:x", "2:next"}));
    // The same where the cut falls into a token, and where the block ends in between.
    EXPECT_EQ(tokens(std::string(508, ' ') + "abcd"), (Strings{"0:ab", "1:cd"}));
    std::string blocks;
    for (int i = 0; i < 100; ++i) blocks += std::string(509, ' ') + "abcd" + std::string(500, '\n');
    Strings expected;
    for (int i = 0; i < 100; ++i) {
        expected.push_back(std::to_string(2 * i) + ":a");
        expected.push_back(std::to_string(2 * i + 1) + ":bcd");
    }
    EXPECT_EQ(tokens(blocks), expected);
}

TEST_F(Tokenizer, ALongTokenKeepsItsFirst255Characters)
{
    const std::string most(255, 'a');
    EXPECT_EQ(tokens(most + " b"), (Strings{"0:" + most, "0:b"}));
    EXPECT_EQ(tokens(most + "xyz b"), (Strings{"0:" + most, "0:b"}));
    // 100,000 characters without a blank: a line every 510, each with one token.
    const Strings pieces = tokens(std::string(100000, 'a'));
    ASSERT_EQ(pieces.size(), 197u);
    EXPECT_EQ(pieces[1], "1:" + most);
    EXPECT_EQ(pieces.back(), "196:" + std::string(40, 'a'));
}

TEST_F(Tokenizer, ANulHidesTheRestOfItsLine)
{
    EXPECT_EQ(tokens({"a b\0c d\nnext", 12}), (Strings{"0:a", "0:b", "1:next"}));
    // A line that begins with one isn't empty: it counts.
    EXPECT_EQ(tokens({"a\n\0b\nnext", 9}), (Strings{"0:a", "2:next"}));
    EXPECT_EQ(tokens({"a\xe9\x01\xff\n", 5}), (Strings{"0:a\xe9\x01\xff"}));
}

TEST_F(Tokenizer, TheEndOfTheFileShowsOnlyBehindTheLastToken)
{
    open("one two");
    EXPECT_TRUE(lws_eof_reached); // the line has no end, so that looking for it met the file's
    EXPECT_EQ(tokens(), (Strings{"0:one", "0:two"}));
    EXPECT_FALSE(lw_get_next_token());
    open("one two\n");
    EXPECT_FALSE(lws_eof_reached);
    EXPECT_EQ(tokens().size(), 2u);
    EXPECT_TRUE(lws_eof_reached);
    EXPECT_EQ(tokens(""), Strings{});
    EXPECT_EQ(tokens("\n\r\n\n"), Strings{});
    EXPECT_EQ(tokens("  \t \n  "), Strings{});
}

TEST_F(Tokenizer, ANameHoldsBlanksAndEndsAtATab)
{
    open("LoadObject  My Objects/Space Ship.lwo \tbehind\nLoadObject\n\n  next line \nLoadObject");
    ASSERT_EQ(lw_next_keyword(), KW_LOAD_OBJECT);
    ASSERT_TRUE(lw_get_name_operand());
    EXPECT_STREQ(token_buffer, "My Objects/Space Ship.lwo ");
    ASSERT_EQ(lw_next_keyword(), KW_LOAD_OBJECT);
    ASSERT_TRUE(lw_get_name_operand());
    EXPECT_STREQ(token_buffer, "next line ");
    ASSERT_EQ(lw_next_keyword(), KW_LOAD_OBJECT);
    EXPECT_FALSE(lw_get_name_operand());
    open("AddNullObject " + std::string(300, 'n') + "\nnext");
    ASSERT_EQ(lw_next_keyword(), KW_ADD_NULL_OBJECT);
    ASSERT_TRUE(lw_get_name_operand());
    EXPECT_EQ(token_buffer, std::string(255, 'n'));
    EXPECT_EQ(tokens(), (Strings{"1:next"}));
}

TEST_F(Tokenizer, EveryKeywordIsFoundAndNothingElse)
{
    for (int16_t id = 0; id < KW_COUNT; ++id) {
        const std::string word = lws_keyword_name(id);
        EXPECT_EQ(lws_find_keyword(word.c_str(), word.size()), id) << word;
        for (std::size_t i = 0; i < word.size(); ++i) {
            std::string other = word;
            other[i] = static_cast<char>(other[i] ^ 0x20);
            EXPECT_EQ(lws_find_keyword(other.c_str(), other.size()), KW_NONE) << other;
            EXPECT_EQ(lws_find_keyword(word.c_str(), i), KW_NONE) << word.substr(0, i);
        }
        EXPECT_EQ(lws_find_keyword((word + "x").c_str(), word.size() + 1), KW_NONE) << word;
    }
    // The numbers that other rooms and messages rely on.
    EXPECT_STREQ(lws_keyword_name(0), "AdaptiveSampling");
    EXPECT_STREQ(lws_keyword_name(21), "(envelope)");
    EXPECT_STREQ(lws_keyword_name(42), "LoadObject");
    EXPECT_STREQ(lws_keyword_name(83), "ZoomFactor");
    EXPECT_STREQ(lws_keyword_name(84), "(unknown)");
    EXPECT_STREQ(lws_keyword_name(-1), "(unknown)");
}

} // namespace
