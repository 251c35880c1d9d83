#include "lib/platform/wide.h"

namespace platform {

std::optional<std::wstring> wide_of_utf8(std::string_view text)
{
    if (text.empty()) return std::wstring();
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (length <= 0) return std::nullopt;
    std::wstring out(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, out.data(), length);
    return out;
}

std::wstring wide_of_latin1(std::string_view text)
{
    std::wstring out;
    for (const char c : text) out += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return out;
}

std::wstring wide(std::string_view text)
{
    std::optional<std::wstring> out = wide_of_utf8(text);
    return out ? *std::move(out) : wide_of_latin1(text);
}

std::string narrow(std::wstring_view text)
{
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, out.data(), length, nullptr, nullptr);
    return out;
}

std::string error_text(DWORD error)
{
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                  512, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
    return length > 0 ? narrow({text, length}) : "error " + std::to_string(error);
}

} // namespace platform
