// The only two ways in which the plug-in writes to a character buffer of fixed size: both cut at the buffer's end, and
// both always leave a terminated string.
#pragma once
#include <cstdarg>
#include <cstddef>

#if defined(__GNUC__)
#define LW_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define LW_PRINTF(text, first)
#endif

// Of a path with its end, wherever the plug-in puts one together, and of a name: what the services write fits.
inline constexpr std::size_t lw_path_size = 300;
inline constexpr std::size_t lw_name_size = 256;

// Copies `text` (null counts as empty) to `buffer` of `size` bytes, its end included. The length that the whole text
// has; at or above `size` it was cut.
std::size_t lw_copy_text(char* buffer, std::size_t size, const char* text);

// The same for a formatted text.
std::size_t lw_format_text(char* buffer, std::size_t size, const char* format, ...) LW_PRINTF(3, 4);
std::size_t lw_format_list(char* buffer, std::size_t size, const char* format, va_list arguments) LW_PRINTF(3, 0);
