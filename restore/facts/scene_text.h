// The tokens of a scene file, in blocks: memory doesn't grow with the file.
//
// A token ends at a blank, a tab or a line's end; CR, LF and CR LF all end a line, and so does a zero byte, without
// beginning one that counts. Lines are counted as an editor does, from 1.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace restore {

class SceneText {
public:
    static constexpr std::size_t longest_token = 4096; // bytes; the rest of a longer one is passed over

    explicit SceneText(std::FILE* file) : file_(file), buffer_(block_size) {}

    // The next token, across lines; empty at the end of the file. Borrowed until the next call of anything here.
    std::string_view token();
    // The token just taken is the next one again; its line and place stay.
    void put_back() { at_ = token_; }

    // The text up to a tab or the line's end, blanks inside and behind kept; blanks and tabs ahead of it are passed.
    // Empty where nothing else is on the line. Places of its bytes are begin() and end().
    std::string_view rest_of_line();

    uint64_t line() const { return line_; }   // of the token or text just taken
    uint64_t begin() const { return begin_; } // bytes from the file's start
    uint64_t end() const { return base_ + at_; }
    uint64_t bytes() const { return base_ + filled_; } // read so far

private:
    static constexpr std::size_t block_size = std::size_t{64} << 10;

    bool refill(); // more behind at_, token_ kept; false at the end of the file
    void pass_blanks(bool across_lines);
    template <class Stop>
    std::string_view take(Stop stop);

    std::FILE* file_;
    std::vector<char> buffer_;
    std::size_t token_ = 0, at_ = 0, filled_ = 0; // places in the buffer: token_ <= at_ <= filled_
    uint64_t base_ = 0;                           // of the buffer's first byte in the file
    uint64_t begin_ = 0;
    uint64_t line_ = 1;
    bool after_return_ = false; // the byte ahead of at_ is a CR
};

} // namespace restore
