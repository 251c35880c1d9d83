#include "lib/messages/message.h"

#include <cstdio>

#include "lib/messages/numbers.h"

namespace messages {

std::string grouped(uint64_t number)
{
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
    return digits;
}

std::string counted(uint64_t number, const char* one, const char* many)
{
    return grouped(number) + " " + (number == 1 ? one : many);
}

static std::string number_text(const Piece& place, uint64_t number)
{
    std::string text = place.kind == Piece::Kind::grouped ? grouped(number) : std::to_string(number);
    if (!place.many.empty()) text.append(" ").append(number == 1 ? place.one : place.many);
    return text;
}

// Empty for a value that a text in brackets does without.
static std::string value_text(const Piece& place, const Value& value)
{
    std::string text;
    if (const auto* const words = std::get_if<std::string>(&value)) {
        text = *words;
    } else if (const auto* const count = std::get_if<uint64_t>(&value)) {
        text = number_text(place, *count);
    } else if (const auto* const number = std::get_if<double>(&value)) {
        char digits[64];
        std::snprintf(digits, sizeof digits, "%.1f", *number);
        text = digits;
    } else if (const auto* const lines = std::get_if<std::vector<std::string>>(&value)) {
        for (const std::string& each : *lines) text += "\n    " + each;
    } else if (const auto* const parts = std::get_if<std::vector<Message>>(&value)) {
        for (const Message& part : *parts) text += (text.empty() ? "" : ", ") + messages::text(part);
    }
    return text;
}

std::string text(const Message& message)
{
    std::string out;
    std::size_t opened = 0;                 // where the text in brackets begins
    std::size_t wanted = std::string::npos; // where its first half ends, once that is taken
    bool filled = true;
    auto value = message.values.begin();
    for (std::string_view rest = message.row->text; !rest.empty();) {
        const Piece piece = next_piece(rest);
        switch (piece.kind) {
        case Piece::Kind::words: out += piece.words; break;
        case Piece::Kind::open:
            opened = out.size();
            wanted = std::string::npos;
            filled = true;
            break;
        case Piece::Kind::otherwise:
            if (filled)
                wanted = out.size();
            else
                out.resize(opened);
            filled = true;
            break;
        case Piece::Kind::close:
            if (wanted != std::string::npos)
                out.resize(wanted);
            else if (!filled)
                out.resize(opened);
            break;
        default:
            const auto* const count = std::get_if<uint64_t>(&*value);
            const std::string words = value_text(piece, *value);
            filled = filled && !words.empty() && !(count && *count == 0);
            out += words;
            ++value;
        }
    }
    return out;
}

std::string Where::text() const
{
    std::string text = file;
    if (line > 0) text += ", line " + std::to_string(line);
    if (surface) text += ", surface " + *surface;
    return text;
}

std::string line(const Message& message)
{
    const std::string where = message.row->says_line ? message.where.file : message.where.text();
    return where.empty() ? text(message) : where + ": " + text(message);
}

Message about(std::string file, Message message)
{
    message.where.file = std::move(file);
    return message;
}

} // namespace messages
