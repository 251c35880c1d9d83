#include "lib/import/lw/lws/tokenizer.h"

#include <algorithm>
#include <cstring>

#include "lib/import/lw/lws/keywords.h"

std::FILE* lws_fp = nullptr;
char* lws_buf_io_input_buffer = nullptr;
int32_t lws_buf_io_chars_in_buffer = 0;
int32_t lws_buf_io_curr_buffer_offset = 0;
bool lws_eof_reached = false;
char* input_line_buffer = nullptr;
const char* curr_buf_ptr = nullptr;
char* token_buffer = nullptr;
int32_t line_num = 0;
int16_t last_token_read = KW_NONE;

// What stops a token, and a name that may hold blanks.
struct Stop_Characters {
    bool token[256], name[256];
};

static constexpr Stop_Characters make_stops()
{
    Stop_Characters stops = {};
    for (const int c : {0, 9, 10, 32}) stops.token[c] = true; // the end, tab, LF, blank
    for (const int c : {0, 9, 10}) stops.name[c] = true;      // a name holds blanks
    return stops;
}

static constexpr Stop_Characters stops = make_stops();

// Makes sure that the block holds a byte; false at the end of the file.
static bool fill_block(std::FILE* fp)
{
    if (lws_buf_io_chars_in_buffer > 0) return true;
    const std::size_t got = std::fread(lws_buf_io_input_buffer, 1, lws_block_size, fp);
    lws_buf_io_chars_in_buffer = static_cast<int32_t>(got);
    lws_buf_io_curr_buffer_offset = 0;
    return got > 0;
}

// How many of the n bytes at `from` stand in front of the first CR or LF. A line holds few hundred bytes at most, so
// the search for LF never runs far into a file whose lines end in CR.
static std::size_t line_length(const char* from, std::size_t n)
{
    const void* const lf = std::memchr(from, '\n', n);
    if (lf) n = static_cast<std::size_t>(static_cast<const char*>(lf) - from);
    const void* const cr = std::memchr(from, '\r', n);
    return cr ? static_cast<std::size_t>(static_cast<const char*>(cr) - from) : n;
}

char* LWS_Buffered_fgets(char* buffer, int32_t size, std::FILE* fp)
{
    const int32_t limit = size - 2;
    int32_t position = 0;
    while (fill_block(fp)) {
        const char* const from = lws_buf_io_input_buffer + lws_buf_io_curr_buffer_offset;
        const int32_t room = std::min(lws_buf_io_chars_in_buffer, limit - position);
        const int32_t text = static_cast<int32_t>(line_length(from, static_cast<std::size_t>(room)));
        std::memcpy(buffer + position, from, static_cast<std::size_t>(text));
        position += text;
        const int32_t taken = text < room ? text + 1 : text; // the line's end goes with it
        lws_buf_io_curr_buffer_offset += taken;
        lws_buf_io_chars_in_buffer -= taken;
        if (text < room) {
            if (position == 0) continue; // empty, or the LF of a CR LF: not a line
            buffer[position++] = '\n';
        } else if (position < limit) {
            continue; // the line goes on in the next block
        }
        buffer[position] = 0;
        buffer[size - 1] = 0;
        return buffer;
    }
    lws_buf_io_chars_in_buffer = 0;
    lws_eof_reached = true;
    buffer[position] = 0;
    return position > 0 ? buffer : nullptr;
}

int16_t lw_get_line()
{
    if (lws_eof_reached) return 0;
    curr_buf_ptr = input_line_buffer;
    if (!LWS_Buffered_fgets(input_line_buffer, lws_line_size, lws_fp)) return 0;
    if (line_num < INT32_MAX) ++line_num;
    return 1;
}

int16_t lw_strip_whitespace()
{
    for (;;) {
        while (*curr_buf_ptr == ' ' || *curr_buf_ptr == '\t') ++curr_buf_ptr;
        if (*curr_buf_ptr != 0 && *curr_buf_ptr != '\n') return 1;
        if (!lw_get_line()) return 0;
    }
}

// The end of what starts at the cursor, which moves there.
static const char* pass(const bool (&stop)[256])
{
    const char* end = curr_buf_ptr;
    while (!stop[static_cast<unsigned char>(*end)]) ++end;
    return curr_buf_ptr = end;
}

static int16_t cut(const bool (&stop)[256])
{
    if (!lw_strip_whitespace()) return 0;
    const char* const start = curr_buf_ptr;
    const std::size_t length = std::min<std::size_t>(static_cast<std::size_t>(pass(stop) - start), lws_token_size - 1);
    std::memcpy(token_buffer, start, length);
    token_buffer[length] = 0;
    return static_cast<int16_t>(length + 1);
}

int16_t lw_get_next_token()
{
    return cut(stops.token);
}

int16_t lw_get_name_operand()
{
    return cut(stops.name);
}

int16_t lw_lookup_keyword()
{
    return lws_find_keyword(token_buffer, std::strlen(token_buffer));
}

int16_t lw_next_keyword()
{
    while (lw_strip_whitespace()) {
        const char* const start = curr_buf_ptr;
        const int16_t id = lws_find_keyword(start, static_cast<std::size_t>(pass(stops.token) - start));
        if (id != KW_NONE) return id;
    }
    return KW_NONE;
}
