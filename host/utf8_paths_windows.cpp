// On Windows the C++ library turns a path's bytes into UTF-16 and back by its codecvt<wchar_t, char>, which asks the C
// library, and that one takes each byte for a character. Ours are UTF-8 throughout; the manifest sees to the command
// line and to fopen(). So these members, which the library keeps in an object file of their own, stand here instead:
// the linker takes them first, for this program alone. All five, or it would meet the others twice.
#include <codecvt>
#include <cwchar>
#include <locale>

namespace std {

static const codecvt_utf8_utf16<wchar_t>& utf8()
{
    static const codecvt_utf8_utf16<wchar_t> facet(1); // 1: never deleted by a locale
    return facet;
}

codecvt_base::result codecvt<wchar_t, char, mbstate_t>::do_out(state_type& state, const wchar_t* from,
                                                               const wchar_t* from_end, const wchar_t*& from_next,
                                                               char* to, char* to_end, char*& to_next) const
{
    return utf8().out(state, from, from_end, from_next, to, to_end, to_next);
}

codecvt_base::result codecvt<wchar_t, char, mbstate_t>::do_in(state_type& state, const char* from, const char* from_end,
                                                              const char*& from_next, wchar_t* to, wchar_t* to_end,
                                                              wchar_t*& to_next) const
{
    return utf8().in(state, from, from_end, from_next, to, to_end, to_next);
}

int codecvt<wchar_t, char, mbstate_t>::do_encoding() const noexcept
{
    return 0; // as many bytes as a character needs
}

int codecvt<wchar_t, char, mbstate_t>::do_max_length() const noexcept
{
    return 4;
}

int codecvt<wchar_t, char, mbstate_t>::do_length(state_type& state, const char* from, const char* end, size_t max) const
{
    return utf8().length(state, from, end, max);
}

} // namespace std
