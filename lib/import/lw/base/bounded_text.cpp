#include "lib/import/lw/base/bounded_text.h"

#include <cstdio>
#include <cstring>

std::size_t lw_copy_text(char* buffer, std::size_t size, const char* text)
{
    if (!text) text = "";
    const std::size_t length = std::strlen(text);
    const std::size_t kept = length < size ? length : size - 1;
    std::memmove(buffer, text, kept);
    buffer[kept] = '\0';
    return length;
}

std::size_t lw_format_list(char* buffer, std::size_t size, const char* format, va_list arguments)
{
    buffer[0] = '\0';
    const int length = std::vsnprintf(buffer, size, format, arguments);
    return length < 0 ? 0 : static_cast<std::size_t>(length);
}

std::size_t lw_format_text(char* buffer, std::size_t size, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const std::size_t length = lw_format_list(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}
