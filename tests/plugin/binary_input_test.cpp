// The read buffer and the operations on it, at the edges of blocks and files.
#include <cstdio>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "lib/import/lw/lw2tv/binary_input.h"
#include "lib/services/import_io.h"
#include "lib/toolkit/memory.h"
#include "tools/lwob_writer.h"

using lw_tools::Bytes;

namespace {

class BinaryInput : public testing::Test {
protected:
    ~BinaryInput() override
    {
        if (file_) std::fclose(file_);
        lw_free_file_read_buffer();
    }

    std::FILE* open(std::string_view bytes)
    {
        file_ = std::tmpfile();
        std::fwrite(bytes.data(), 1, bytes.size(), file_);
        std::rewind(file_);
        EXPECT_EQ(lw_reset_file_read_buffer(), 0);
        return file_;
    }

    std::FILE* file_ = nullptr;
};

TEST_F(BinaryInput, EndOfAFileOfWholeBlocks)
{
    std::FILE* const fp = open(std::string(2 * lw_buf_io_size, 'x'));
    for (int i = 0; i < 2 * lw_buf_io_size; ++i) ASSERT_EQ(LW_GET_BYTE(fp), 'x');
    EXPECT_EQ(LW_GET_BYTE(fp), lw_end_of_file);
    EXPECT_TRUE(lw_at_end_of_file(fp));
    EXPECT_EQ(LW_GET_U2(fp), 0xFFFFu);
    EXPECT_EQ(LW_GET_U4(fp), 0xFFFFFFFFu);
    lw_skip_bytes(fp, 4000000000u);
    EXPECT_EQ(lw_file_offset, 2 * lw_buf_io_size);
    EXPECT_EQ(lw_buf_io_chars_in_buffer, 0);
}

TEST_F(BinaryInput, NumbersAcrossTheBuffersEnd)
{
    Bytes bytes;
    bytes.raw(std::string(lw_buf_io_size - 1, 'x')).u16(0x1234).raw(std::string(lw_buf_io_size - 4, 'x'));
    bytes.u32(0x89ABCDEF).raw("LW");
    std::FILE* const fp = open(bytes.str());
    lw_skip_bytes(fp, lw_buf_io_size - 1);
    EXPECT_EQ(LW_GET_U2(fp), 0x1234);
    lw_skip_bytes(fp, lw_buf_io_size - 4);
    EXPECT_EQ(LW_GET_U4(fp), 0x89ABCDEFu);
    char id[5];
    LW_GET_ID(fp, id);
    EXPECT_STREQ(id, "LW\xFF\xFF");
}

TEST_F(BinaryInput, FloatsAcrossTheBuffersEndAndNone)
{
    Bytes bytes;
    bytes.raw(std::string(lw_buf_io_size - 3, 'x')).floats({1.5f, -2.25f, 1e30f});
    std::FILE* const fp = open(bytes.str());
    lw_skip_bytes(fp, lw_buf_io_size - 3);
    float values[3] = {7, 7, 7};
    EXPECT_EQ(get_FLOAT(fp, 0, values), 0);
    EXPECT_EQ(get_FLOAT(fp, -5, values), 0);
    EXPECT_EQ(values[0], 7);
    EXPECT_EQ(get_FLOAT(fp, 3, values), 0);
    EXPECT_EQ(values[0], 1.5f);
    EXPECT_EQ(values[1], -2.25f);
    EXPECT_EQ(values[2], 1e30f);
}

// The fourth byte tells: whatever is missing of a float, its first three bytes are filled and its last stays.
TEST_F(BinaryInput, FloatsThatTheFileCutsOff)
{
    for (std::size_t there = 0; there < 8; ++there) {
        std::FILE* const fp = open(Bytes().u32(0x11223344).u32(0x55667788).str().substr(0, there));
        unsigned char bytes[8] = {};
        EXPECT_EQ(get_FLOAT(fp, 2, reinterpret_cast<float*>(bytes)), 1);
        const unsigned char whole[8] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};
        EXPECT_EQ(std::memcmp(bytes, whole, there), 0) << there;
        const std::size_t broken_end = there / 4 * 4 + 3;
        for (std::size_t i = there; i < 8; ++i) EXPECT_EQ(bytes[i], i < broken_end ? 0xFF : 0) << there << ' ' << i;
        EXPECT_EQ(lw_file_offset, static_cast<int32_t>(there));
        std::fclose(std::exchange(file_, nullptr));
    }
}

struct NameCase {
    std::string bytes;
    int32_t remaining, remaining_after, taken;
    const char* name;
};

TEST_F(BinaryInput, Names)
{
    using namespace std::string_literals;
    const NameCase cases[] = {
        {"ab\0\0Z"s, 10, 6, 4, "ab"},   // three bytes and a pad
        {"abc\0Z"s, 10, 6, 4, "abc"},   // no pad
        {"\0\0Z"s, 10, 8, 2, ""},       //
        {"abcdZ"s, 4, 0, 4, "abcd"},    // nothing terminates it within the chunk
        {"abcZ"s, 3, -1, 4, "abc"},     // nor here, and its pad is taken
        {"Z"s, 0, 0, 0, ""},            //
        {"ab"s, 4, 0, 2, "ab\xFF\xFF"}, // the file ends first
    };
    for (const NameCase& c : cases) {
        std::FILE* const fp = open(c.bytes);
        char* name = nullptr;
        Import_IO_Copy_String(&name, "old");
        int32_t remaining = c.remaining;
        const uint64_t held = tv::allocations_held();
        get_lw_string_name(fp, &name, &remaining);
        EXPECT_STREQ(name, c.name);
        EXPECT_EQ(remaining, c.remaining_after) << c.name;
        EXPECT_EQ(lw_file_offset, c.taken) << c.name;
        EXPECT_EQ(tv::allocations_held(), held); // the old one went
        Tv_Free_Memory(name);
        std::fclose(std::exchange(file_, nullptr));
    }
}

TEST_F(BinaryInput, LongNamesAreCutAndReadWhole)
{
    std::FILE* const fp = open(Bytes().text(std::string(60000, 'n')).u8('Z').str());
    char* name = nullptr;
    int32_t remaining = 65535;
    get_lw_string_name(fp, &name, &remaining);
    EXPECT_EQ(std::strlen(name), 1023u);
    EXPECT_EQ(LW_GET_BYTE(fp), 'Z');
    EXPECT_EQ(remaining, 65535 - 60002);
    Tv_Free_Memory(name);
}

} // namespace
