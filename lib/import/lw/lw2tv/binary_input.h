// Buffered big-endian input. All that the plug-in reads of binary files goes through one buffer: there is one such file
// at a time. Past the end of the file every byte reads as 0xFF and no counter moves; only LW_GET_BYTE and get_FLOAT
// tell it from data.
#pragma once
#include <cstdint>
#include <cstdio>

inline constexpr int32_t lw_buf_io_size = 8192;
inline constexpr int32_t lw_end_of_file = 0xFFFF;

extern unsigned char* lw_buf_io_input_buffer; // lw_buf_io_size bytes; null while no file is being read
extern int32_t lw_buf_io_chars_in_buffer;     // bytes not yet taken
extern int32_t lw_buf_io_curr_buffer_offset;  // of the next byte in the buffer
extern int32_t lw_file_offset;                // bytes taken since the last reset

// Makes sure of the buffer and sets all counters to 0, for a new file. 0, or 1 when there is no memory, which is
// reported at level 4.
int16_t lw_reset_file_read_buffer();

// Frees the buffer and sets its pointer and lw_file_offset to 0. Harmless without one.
void lw_free_file_read_buffer();

// Reads the next block from fp. The number of bytes, or lw_end_of_file when there are none.
int32_t LW_Fill_File_Read_Buffer(std::FILE* fp);

// Counts `count` bytes as taken. Unsigned arithmetic, since files may be longer than the counter.
inline void lw_take_bytes(int32_t count)
{
    lw_buf_io_chars_in_buffer -= count;
    lw_buf_io_curr_buffer_offset += count;
    lw_file_offset = static_cast<int32_t>(static_cast<uint32_t>(lw_file_offset) + static_cast<uint32_t>(count));
}

// The bytes not yet taken. Good until the next read.
inline const unsigned char* lw_buffered_bytes()
{
    return lw_buf_io_input_buffer + lw_buf_io_curr_buffer_offset;
}

// 0 to 255, or lw_end_of_file.
inline int32_t LW_GET_BYTE(std::FILE* fp)
{
    if (lw_buf_io_chars_in_buffer == 0 && LW_Fill_File_Read_Buffer(fp) == lw_end_of_file) return lw_end_of_file;
    const int32_t byte = *lw_buffered_bytes();
    lw_take_bytes(1);
    return byte;
}

// True when the next byte would be one past the end. Takes nothing.
inline bool lw_at_end_of_file(std::FILE* fp)
{
    return lw_buf_io_chars_in_buffer == 0 && LW_Fill_File_Read_Buffer(fp) == lw_end_of_file;
}

// Big-endian numbers of bytes in memory, put together in unsigned values: a byte shifted as an int could meet the sign.
inline uint16_t lw_u2_at(const unsigned char* bytes)
{
    return static_cast<uint16_t>(uint32_t{bytes[0]} << 8 | bytes[1]);
}
inline uint32_t lw_u4_at(const unsigned char* bytes)
{
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

inline uint16_t LW_GET_U2(std::FILE* fp)
{
    unsigned char bytes[2];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(LW_GET_BYTE(fp));
    return lw_u2_at(bytes);
}

inline uint32_t LW_GET_U4(std::FILE* fp)
{
    unsigned char bytes[4];
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(LW_GET_BYTE(fp));
    return lw_u4_at(bytes);
}

// An id as a number, for comparisons and case labels.
consteval uint32_t lw_id(const char (&text)[5])
{
    uint32_t id = 0;
    for (int i = 0; i < 4; ++i) id = id << 8 | static_cast<unsigned char>(text[i]);
    return id;
}
inline uint32_t lw_id_at(const char* text)
{
    return lw_u4_at(reinterpret_cast<const unsigned char*>(text));
}

// A fraction in steps of 1/256.
inline float lw_get_fraction(std::FILE* fp)
{
    return static_cast<float>(LW_GET_U2(fp) / 256.0);
}

// A colour: three bytes of 0 to 255 as 0 to 1, and a fourth that means nothing.
void lw_get_color(std::FILE* fp, float rgb[3]);

// The four bytes and an end.
void LW_GET_ID(std::FILE* fp, char buffer[5]);

// As `count` reads whose results are dropped.
void lw_skip_bytes(std::FILE* fp, uint32_t count);

// Reads `count` floats. 0, or 1 when the stream has an error or ends before the last byte; that is reported at level 4,
// and `dest` then holds the bytes that were there, in file order, with the first three of a broken float filled up.
int16_t get_FLOAT(std::FILE* fp, int32_t count, float* dest);

// Reads one zero-terminated string, padded to an even length, of at most *remaining bytes, which it lowers by all bytes
// taken. *name, null or an owned string, becomes the new string: cut at 1023 characters, and null without memory. A
// string that nothing terminates within *remaining ends there; its pad may take *remaining to -1.
void get_lw_string_name(std::FILE* fp, char** name, int32_t* remaining);
