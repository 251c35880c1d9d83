// What a row of the table of messages holds, and how its text is written. A text has places for values in it:
//
//   {name}             text                           {name:,}           3,400
//   {name:#}           3400                           {name:,one|many}   1 one, 3,400 many; with # likewise
//   {name:.1}          0.4                            {name:lines}       each text on a line of its own, indented
//   {name:parts}       messages of level `part`, parted by commas
//   [a|b]              a, but b where a value in a is 0 or empty; "|b" may be left away
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace messages {

enum class Level : uint8_t {
    part,    // stands within other messages
    info,    // silent with --quiet
    warning, // the result lacks something
    error    // the exit status isn't 0
};

struct Row {
    std::string_view code; // stable: programs and people look for it
    Level level;
    std::string_view text;
    std::string_view help = {}; // what it means or what to do, for the page
    bool says_line = false;     // the text names the line itself
};

// A stretch of a row's text.
struct Piece {
    enum class Kind : uint8_t { words, text, grouped, digits, tenths, lines, parts, open, otherwise, close };
    Kind kind;
    std::string_view words;         // themselves, or the place's name
    std::string_view one{}, many{}; // the noun behind a number
    constexpr bool is_place() const { return kind > Kind::words && kind < Kind::open; }
};

constexpr Piece place_piece(std::string_view inside)
{
    const std::size_t colon = inside.find(':');
    Piece piece{Piece::Kind::text, inside.substr(0, colon)};
    if (colon == std::string_view::npos) return piece;
    const std::string_view form = inside.substr(colon + 1);
    if (form == "lines") return {Piece::Kind::lines, piece.words};
    if (form == "parts") return {Piece::Kind::parts, piece.words};
    if (form == ".1") return {Piece::Kind::tenths, piece.words};
    if (form.empty() || (form[0] != ',' && form[0] != '#')) throw "no such form of a value";
    piece.kind = form[0] == ',' ? Piece::Kind::grouped : Piece::Kind::digits;
    if (form.size() == 1) return piece;
    const std::size_t bar = form.find('|');
    if (bar == std::string_view::npos) throw "a noun without its plural";
    piece.one = form.substr(1, bar - 1);
    piece.many = form.substr(bar + 1);
    return piece;
}

// Takes the piece in front off `text`, which isn't empty. What isn't well-formed is no constant expression, thus no
// row of the table.
constexpr Piece next_piece(std::string_view& text)
{
    constexpr std::string_view marks = "{[|]";
    const std::size_t mark = text.find_first_of(marks);
    std::size_t length = mark == 0 ? 1 : mark < text.size() ? mark : text.size();
    Piece piece{Piece::Kind::words, text.substr(0, length)};
    if (mark == 0) {
        switch (text[0]) {
        case '[': piece.kind = Piece::Kind::open; break;
        case '|': piece.kind = Piece::Kind::otherwise; break;
        case ']': piece.kind = Piece::Kind::close; break;
        default:
            length = text.find('}');
            if (length == std::string_view::npos) throw "a place without an end";
            piece = place_piece(text.substr(1, length - 1));
            ++length;
        }
    }
    text.remove_prefix(length);
    return piece;
}

constexpr std::size_t place_count(std::string_view text)
{
    std::size_t count = 0;
    while (!text.empty()) count += next_piece(text).is_place() ? 1 : 0;
    return count;
}

// True where brackets come in pairs, not within each other, and bars only in them.
constexpr bool is_well_formed(std::string_view text)
{
    bool open = false, has_bar = false;
    while (!text.empty()) {
        const Piece piece = next_piece(text);
        if (piece.is_place() && piece.words.empty()) return false;
        if (piece.kind == Piece::Kind::open && open) return false;
        if ((piece.kind == Piece::Kind::close || piece.kind == Piece::Kind::otherwise) && !open) return false;
        if (piece.kind == Piece::Kind::otherwise && has_bar) return false;
        has_bar = open && (has_bar || piece.kind == Piece::Kind::otherwise);
        if (piece.kind == Piece::Kind::open) open = true;
        if (piece.kind == Piece::Kind::close) open = has_bar = false;
    }
    return !open;
}

} // namespace messages
