// A scene file as lines and tokens: blocks of 8192 bytes, lines with any mix of line ends, tokens between blanks, tabs
// and line ends. One scene is read at a time, so the state is the module's.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>

inline constexpr int32_t lws_block_size = 8192;
inline constexpr int32_t lws_line_size = 512;  // 510 characters, LF and NUL; a longer line comes in pieces
inline constexpr int32_t lws_token_size = 256; // the rest of a longer token is dropped

// Set by the scene reader at the start of a read, which makes and frees the three buffers too (null between reads).
extern std::FILE* lws_fp;                     // the run's, and not closed here
extern char* lws_buf_io_input_buffer;         // the block
extern int32_t lws_buf_io_chars_in_buffer;    // bytes of it not yet taken
extern int32_t lws_buf_io_curr_buffer_offset; // of the next byte to take
extern bool lws_eof_reached;                  // a refill of the block has found nothing more
extern char* input_line_buffer;               // the current line
extern const char* curr_buf_ptr;              // the next character of it to look at
extern char* token_buffer;                    // the token cut last
extern int32_t line_num;                      // the first line is 0; empty lines don't count
extern int16_t last_token_read;               // the keyword that the scene reader dispatched last

// Fills `buffer`, of lws_line_size, with the next line that isn't empty; null at the end of the file. CR, LF and CR LF
// end a line, which is stored with an LF where its end came within 510 characters, and always with a NUL.
char* LWS_Buffered_fgets(char* buffer, int32_t size, std::FILE* fp);

// All of these give 0 at the end of the file, after which nobody may ask for more.
int16_t lw_get_line();         // the next line, counted, with the cursor at its start
int16_t lw_strip_whitespace(); // moves the cursor to the next character that can start a token, across lines
int16_t lw_get_next_token();   // cuts the next token into token_buffer
int16_t lw_get_name_operand(); // the same for a path or a name: blanks belong to it, a tab or the line's end ends it

// The keyword in token_buffer, KW_NONE if it is none. For whoever has cut a token; the reader goes by lw_next_keyword,
// which doesn't copy what it drops.
int16_t lw_lookup_keyword();

// Takes tokens, dropping them, up to the next keyword, and gives that; KW_NONE at the end of the file. Leaves
// token_buffer alone.
int16_t lw_next_keyword();
