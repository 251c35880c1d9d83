#include "restore/facts/scene_text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace restore {

namespace {

enum : uint8_t { text = 0, blank = 1, tab = 2, line_end = 4 };

constexpr std::array<uint8_t, 256> kinds = [] {
    std::array<uint8_t, 256> out{};
    out[' '] = blank;
    out['\t'] = tab;
    out['\n'] = out['\r'] = out['\0'] = line_end;
    return out;
}();

uint8_t kind_of(char c)
{
    return kinds[static_cast<unsigned char>(c)];
}

} // namespace

bool SceneText::refill()
{
    std::memmove(buffer_.data(), buffer_.data() + token_, filled_ - token_);
    base_ += token_;
    at_ -= token_;
    filled_ -= token_;
    token_ = 0;
    const std::size_t got = std::fread(buffer_.data() + filled_, 1, buffer_.size() - filled_, file_);
    filled_ += got;
    return got > 0;
}

void SceneText::pass_blanks(bool across_lines)
{
    for (;; ++at_) {
        token_ = at_;
        if (at_ == filled_ && !refill()) return;
        const char c = buffer_[at_];
        const uint8_t kind = kind_of(c);
        if (kind == text || (kind == line_end && !across_lines)) return;
        if (c == '\r' || (c == '\n' && !after_return_)) ++line_;
        after_return_ = c == '\r';
    }
}

template <class Stop>
std::string_view SceneText::take(Stop stop)
{
    begin_ = base_ + token_;
    after_return_ = false;
    for (;;) {
        while (at_ < filled_ && !stop(buffer_[at_])) ++at_;
        if (at_ < filled_) break;
        if (filled_ - token_ == buffer_.size()) { // longer than a block: its head stays, the rest is passed over
            base_ += filled_ - longest_token;
            at_ = filled_ = longest_token;
        }
        if (!refill()) break;
    }
    return {buffer_.data() + token_, std::min(at_ - token_, longest_token)};
}

std::string_view SceneText::token()
{
    pass_blanks(true);
    return take([](char c) { return kind_of(c) != text; });
}

std::string_view SceneText::rest_of_line()
{
    pass_blanks(false);
    return take([](char c) { return (kind_of(c) & (tab | line_end)) != 0; });
}

} // namespace restore
