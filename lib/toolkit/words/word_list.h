// Word lists as the toolkit's calls take them: varargs read into typed items. Store and trace both work from these.
#pragma once
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "lib/toolkit/words/words.h"

namespace tv {

// One vararg. What it points to is the caller's and lives as long as the call.
struct Item {
    Value value;
    int32_t number;      // a token, a value by value, 1 or 0
    const void* pointer; // never null where `value` is one by pointer, but for surface_names and empty arrays
    uint64_t count;      // entries of an array
};

// The items of one call, on the caller's stack; nothing in it is cleared beforehand but the counts.
struct WordList {
    static constexpr std::size_t limit = 512; // the longest list that has a use holds some 60 items

    explicit WordList(Function which) : function(which) {}

    Function function;
    std::size_t size = 0;
    bool good = false; // read to its end. Else the call must change nothing
    Item items[limit]; // the words' values stand behind them; the end or the fault last
};

// Where the va_list of a function is kept so that it can be handed on by reference on every platform.
struct Arguments {
    va_list list;
};

// Reads items up to the 0. A word that the function doesn't know, or what is neither token, 1 nor 0 where one of these
// must stand, is reported (ERR_TOOLKIT_BAD_WORD, level 4), ends the reading there and leaves `good` false.
void read_words(WordList& list, Arguments& arguments);
void read_words(WordList& list, int32_t first, Arguments& arguments); // the first item is the function's own argument

// For the kind that a call names in front of its list: true when it is one of `allowed`, else reported likewise.
bool expect_kind(Function function, int32_t kind, std::initializer_list<word::Token> allowed);

// Declares `list`, a WordList of the function, read from the varargs behind the parameter `last`.
#define TV_READ_WORDS(list, which, last)                                                                               \
    ::tv::WordList list(which);                                                                                        \
    {                                                                                                                  \
        ::tv::Arguments arguments;                                                                                     \
        va_start(arguments.list, last);                                                                                \
        ::tv::read_words(list, arguments);                                                                             \
        va_end(arguments.list);                                                                                        \
    }

// The same where the parameter `first` is the list's first item.
#define TV_READ_WORDS_FROM(list, which, first)                                                                         \
    ::tv::WordList list(which);                                                                                        \
    {                                                                                                                  \
        ::tv::Arguments arguments;                                                                                     \
        va_start(arguments.list, first);                                                                               \
        ::tv::read_words(list, first, arguments);                                                                      \
        va_end(arguments.list);                                                                                        \
    }

// Walks over the words of a list that was read to its end.
class Words {
public:
    explicit Words(const WordList& list) : at_(list.items), end_(list.items + list.size) {}

    // The next word or item-closing 1; false behind the last.
    bool next()
    {
        while (at_ != end_) {
            const Item& item = *at_++;
            if (item.value != Value::word && item.value != Value::close) continue;
            word_ = item.value == Value::word ? item.number : 0;
            return true;
        }
        return false;
    }
    int32_t word() const { return word_; } // 0 for an item-closing 1

    // Values of the word, counted from 0; the table says which it has.
    int32_t number(std::size_t i = 0) const { return at_[i].number; }
    uint64_t count(std::size_t i = 0) const { return at_[i].count; }
    const char* text(std::size_t i = 0) const { return static_cast<const char*>(at_[i].pointer); }
    template <class T>
    const T* array(std::size_t i = 0) const
    {
        return static_cast<const T*>(at_[i].pointer);
    }
    float real(std::size_t i = 0) const { return *array<float>(i); }
    int32_t integer(std::size_t i = 0) const { return *array<int32_t>(i); }
    std::array<float, 3> triple(std::size_t i = 0) const
    {
        const float* const from = array<float>(i);
        return {from[0], from[1], from[2]};
    }
    Value kind(std::size_t i) const { return at_[i].value; }
    // Where the call writes.
    template <class T>
    T* out(std::size_t i = 0) const
    {
        return static_cast<T*>(const_cast<void*>(at_[i].pointer)); // the caller passed it as writable
    }

private:
    const Item* at_;
    const Item* end_;
    int32_t word_ = 0;
};

} // namespace tv
