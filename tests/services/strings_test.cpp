#include <gtest/gtest.h>

#include "lib/services/import_io.h"
#include "lib/toolkit/memory.h"
#include "lib/toolkit/vc4_tv.h"

namespace {

std::string base_of(const std::string& path)
{
    char base[256];
    Import_IO_ExtractBaseFileName(path.c_str(), base);
    return base;
}

std::string stripped(std::string text)
{
    const int16_t left = Import_IO_Strip_Whitespace(text.data());
    EXPECT_EQ(left != 0, text.c_str()[0] != 0) << text;
    return text.c_str();
}

TEST(Strings, BaseNameIsTheLastElementWithoutItsLastExtension)
{
    EXPECT_EQ(base_of("c:\\objects\\ship.lwo"), "ship");
    EXPECT_EQ(base_of("Toys:plane.lwo"), "plane");
    EXPECT_EQ(base_of("Toys:objects/old.plane.lwo"), "old.plane");
    EXPECT_EQ(base_of("v1.2/ship"), "ship");
    EXPECT_EQ(base_of("a/.hidden"), ".hidden");
    EXPECT_EQ(base_of("a/.hidden.lwo"), ".hidden");
    EXPECT_EQ(base_of("ship."), "ship");
    EXPECT_EQ(base_of("objects/"), "");
    EXPECT_EQ(base_of(""), "");
    EXPECT_EQ(base_of(std::string(1000, 'a') + ".lwo"), std::string(255, 'a'));
    char in_place[] = "objects/ship.lwo";
    Import_IO_ExtractBaseFileName(in_place, in_place);
    EXPECT_STREQ(in_place, "ship");
}

TEST(Strings, WhitespaceIsTrimmedInPlace)
{
    EXPECT_EQ(stripped("  c:\\newtek \t\r\n"), "c:\\newtek");
    EXPECT_EQ(stripped("a b"), "a b");
    EXPECT_EQ(stripped(" \t\v\f\r\n "), "");
    EXPECT_EQ(stripped(""), "");
    EXPECT_EQ(stripped("\xA0x\xA0"), "\xA0x\xA0"); // bytes beyond ASCII are no blanks
}

TEST(Strings, LowerCaseTouchesAsciiLettersAlone)
{
    char text[] = "@AZ[`az{ \xC4\xD6";
    Import_IO_String_To_Lower(text, text);
    EXPECT_STREQ(text, "@az[`az{ \xC4\xD6");
}

TEST(Strings, CopiesAreOwnedAndReplaceTheOldOne)
{
    const uint64_t held = tv::allocations_held();
    char* copy = nullptr;
    Import_IO_Copy_String(&copy, "first");
    EXPECT_STREQ(copy, "first");
    Import_IO_Copy_String(&copy, copy + 2); // out of the string that it replaces
    EXPECT_STREQ(copy, "rst");
    EXPECT_EQ(tv::allocations_held(), held + 1);
    tv::fail_allocation(1);
    Import_IO_Copy_String(&copy, "no memory for this");
    tv::fail_allocation(0);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(tv::allocations_held(), held);
    Import_IO_Copy_String(&copy, "again");
    Import_IO_Copy_String(&copy, nullptr);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(tv::allocations_held(), held);
}

} // namespace
