#include "lib/import/lw/lw2tv/binary_input.h"

#include <algorithm>
#include <cstring>

#include "lib/import/lw/base/arrays.h"
#include "lib/import/lw/base/report.h"
#include "lib/services/import_io.h"

unsigned char* lw_buf_io_input_buffer = nullptr;
int32_t lw_buf_io_chars_in_buffer = 0;
int32_t lw_buf_io_curr_buffer_offset = 0;
int32_t lw_file_offset = 0;

int16_t lw_reset_file_read_buffer()
{
    const char* const no_buffer = "LW_IO_Alloc_File_Read_Buffer(): Could not allocate read buffer memory.";
    if (!lw_buf_io_input_buffer && !lw_try_allocate(&lw_buf_io_input_buffer, lw_buf_io_size, no_buffer)) return 1;
    lw_buf_io_chars_in_buffer = lw_buf_io_curr_buffer_offset = lw_file_offset = 0;
    return 0;
}

void lw_free_file_read_buffer()
{
    lw_free_array(&lw_buf_io_input_buffer);
    lw_file_offset = 0;
    lw_buf_io_chars_in_buffer = 0; // nothing may be read where there is no buffer
}

int32_t LW_Fill_File_Read_Buffer(std::FILE* fp)
{
    const std::size_t count = std::fread(lw_buf_io_input_buffer, 1, lw_buf_io_size, fp);
    lw_buf_io_curr_buffer_offset = 0;
    lw_buf_io_chars_in_buffer = static_cast<int32_t>(count);
    return count ? lw_buf_io_chars_in_buffer : lw_end_of_file;
}

void LW_GET_ID(std::FILE* fp, char buffer[5])
{
    for (int i = 0; i < 4; ++i) buffer[i] = static_cast<char>(LW_GET_BYTE(fp));
    buffer[4] = '\0';
}

void lw_skip_bytes(std::FILE* fp, uint32_t count)
{
    while (count && !lw_at_end_of_file(fp)) {
        const uint32_t here = std::min(count, static_cast<uint32_t>(lw_buf_io_chars_in_buffer));
        lw_take_bytes(static_cast<int32_t>(here));
        count -= here;
    }
}

void lw_get_color(std::FILE* fp, float rgb[3])
{
    for (int i = 0; i < 3; ++i) {
        rgb[i] = static_cast<float>(static_cast<unsigned char>(LW_GET_BYTE(fp)) / 255.0);
    }
    lw_skip_bytes(fp, 1);
}

static int16_t report_read_error()
{
    lw_report(LW_ERROR, "File read error encountered while reading from Lightwave file");
    return 1;
}

int16_t get_FLOAT(std::FILE* fp, int32_t count, float* dest)
{
    if (std::ferror(fp)) return report_read_error();
    unsigned char* const bytes = reinterpret_cast<unsigned char*>(dest);
    const std::size_t wanted = count > 0 ? static_cast<std::size_t>(count) * 4 : 0;
    for (std::size_t have = 0; have < wanted;) {
        if (lw_at_end_of_file(fp)) {
            for (; have % 4 != 3; ++have) bytes[have] = 0xFF; // the fourth byte is the one that tells the end
            return report_read_error();
        }
        const std::size_t here = std::min(wanted - have, static_cast<std::size_t>(lw_buf_io_chars_in_buffer));
        std::memcpy(bytes + have, lw_buffered_bytes(), here);
        lw_take_bytes(static_cast<int32_t>(here));
        have += here;
    }
    for (std::size_t i = 0; i < wanted; i += 4) {
        const uint32_t value = lw_u4_at(bytes + i);
        std::memcpy(bytes + i, &value, 4);
    }
    return 0;
}

void get_lw_string_name(std::FILE* fp, char** name, int32_t* remaining)
{
    char buffer[1024];
    std::size_t length = 0;
    int32_t taken = 0;
    while (*remaining > 0) {
        const char c = static_cast<char>(LW_GET_BYTE(fp));
        --*remaining;
        ++taken;
        if (c == '\0') break;
        if (length < sizeof buffer - 1) buffer[length++] = c;
    }
    buffer[length] = '\0';
    if (taken % 2 != 0) {
        lw_skip_bytes(fp, 1);
        --*remaining;
    }
    Import_IO_Copy_String(name, buffer);
    if (!*name) lw_report_fatal("Out of memory while copying a name out of the Lightwave file");
}
