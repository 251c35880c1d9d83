// A message as data: its row of the table, values for the places of the row's text, and what it is about. Whoever has
// something to say makes one; the host words and prints it.
#pragma once
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "lib/messages/table.h"

namespace messages {

struct Message;

// All texts are UTF-8.
using Value = std::variant<std::string, uint64_t, double, std::vector<std::string>, std::vector<Message>>;

struct Where {
    std::string file;                   // as shown; empty: about no file
    std::size_t line = 0;               // of a scene, from 1; 0: none
    std::optional<std::string> surface; // of an object

    std::string text() const; // "harbour.lws, line 12", "ship.lwo, surface hull"
};

struct Message {
    const Row* row;
    std::vector<Value> values; // a value a place, in the text's order
    Where where{};
};

std::string text(const Message& message); // the row's text with its values
std::string line(const Message& message); // with what it is about in front

// The message about a file.
Message about(std::string file, Message message);

// An error on its way to the user.
struct Error : std::runtime_error {
    explicit Error(Message the_message) : std::runtime_error(line(the_message)), message(std::move(the_message)) {}
    Message message;
};

// A code as a template's argument.
template <std::size_t size>
struct CodeText {
    char bytes[size]{};
    constexpr CodeText(const char (&text)[size]) // NOLINT: written as a literal
    {
        for (std::size_t i = 0; i < size; ++i) bytes[i] = text[i];
    }
    constexpr std::string_view view() const { return {bytes, size - 1}; }
};

template <std::size_t count>
constexpr std::array<Piece::Kind, count> place_kinds(std::string_view text)
{
    if (place_count(text) != count) throw "another number of values than the text has places";
    std::array<Piece::Kind, count> kinds{};
    for (std::size_t i = 0; i < count;)
        if (const Piece piece = next_piece(text); piece.is_place()) kinds[i++] = piece.kind;
    return kinds;
}

template <Piece::Kind kind, class Given>
Value value_for(Given&& given)
{
    using Kind = Piece::Kind;
    using Plain = std::remove_cvref_t<Given>;
    if constexpr (kind == Kind::grouped || kind == Kind::digits) {
        static_assert(std::integral<Plain> && !std::same_as<Plain, bool>, "a count belongs here");
        return static_cast<uint64_t>(given);
    } else if constexpr (kind == Kind::tenths) {
        static_assert(std::floating_point<Plain>, "a number belongs here");
        return static_cast<double>(given);
    } else if constexpr (kind == Kind::lines) {
        return std::vector<std::string>(std::forward<Given>(given));
    } else if constexpr (kind == Kind::parts) {
        return std::vector<Message>(std::forward<Given>(given));
    } else {
        return std::string(std::forward<Given>(given));
    }
}

// message<"object-missing">(...): the code's row with a value for each place of its text. A code that isn't in the
// table, another number of values and values of another kind don't compile.
template <CodeText code, class... Values>
Message message(Values&&... values)
{
    static constexpr const Row& row = row_of(code.view());
    [[maybe_unused]] static constexpr std::array kinds = place_kinds<sizeof...(Values)>(row.text);
    return [&]<std::size_t... i>(std::index_sequence<i...>)
    {
        return Message{&row, {value_for<kinds[i]>(std::forward<Values>(values))...}};
    }
    (std::index_sequence_for<Values...>{});
}

template <CodeText code>
bool is(const Message& message)
{
    return message.row == &row_of(code.view());
}

} // namespace messages
