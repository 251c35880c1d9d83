#include "lib/toolkit/words/trace.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "lib/platform/latin1.h"
#include "lib/platform/memory.h"
#include "lib/toolkit/report.h"
#include "lib/toolkit/words/words.h"

namespace tv {

namespace {

constexpr std::size_t flush_at = std::size_t{1} << 18; // bytes

bool is_open = false; // asked for with every call, so it stands apart from what must be made first

// The open trace. Lines are put together at the end of `text_`; what stands before `line_` is complete.
class Trace {
public:
    Trace()
    {
        const char* const path = std::getenv("TV_TRACE");
        if (path && *path && !open(path)) report(4, "ERR_TRACE_OPEN_WRITE", "TV_TRACE", {path});
    }
    ~Trace() { open(nullptr); }
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    bool open(const char* path)
    {
        flush();
        if (file_) std::fclose(file_);
        file_ = path && *path ? std::fopen(path, "wb") : nullptr;
        is_open = file_;
        text_.clear();
        line_ = 0;
        return file_ || !path || !*path;
    }
    bool on() const { return file_ && !suspended; }
    void begin(const char* function)
    {
        text_.resize(line_); // of a line that was never ended
        whole_ = true;
        put([&](std::string& text) { (text += "[\"" + std::string(function)) += '"'; });
    }
    // Lets add(text) append. A line that there is no memory for is dropped whole.
    template <class Add>
    void put(Add add)
    {
        whole_ = platform::noting_short_memory([&] { add(text_); }) && whole_;
    }
    void end()
    {
        put([](std::string& text) { text += "]\n"; });
        if (!whole_) text_.resize(line_);
        line_ = text_.size();
        if (line_ >= flush_at) flush();
    }
    void flush()
    {
        if (file_ && line_) {
            std::fwrite(text_.data(), 1, line_, file_);
            std::fflush(file_);
        }
        text_.erase(0, line_);
        line_ = 0;
        if (text_.capacity() > 16 * flush_at) text_.shrink_to_fit();
    }

    int suspended = 0;

private:
    std::string text_;
    std::FILE* file_ = nullptr;
    std::size_t line_ = 0;
    bool whole_ = true; // the line that is put together
};

Trace& trace()
{
    static Trace open_trace;
    return open_trace;
}

void add_string_body(std::string& out, const char* text)
{
    constexpr char hex[] = "0123456789abcdef";
    for (; *text; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        switch (byte) {
        case '"': out += "\\\""; continue;
        case '\\': out += "\\\\"; continue;
        case '\n': out += "\\n"; continue;
        case '\r': out += "\\r"; continue;
        case '\t': out += "\\t"; continue;
        default: break;
        }
        if (byte < 0x20) {
            out += "\\u00";
            out += hex[byte >> 4];
            out += hex[byte & 15];
        } else {
            platform::append_utf8(out, *text);
        }
    }
}

void add_quoted(std::string& out, const char* text)
{
    if (!text) {
        out += "null";
        return;
    }
    out += "\"'";
    add_string_body(out, text);
    out += "'\"";
}

template <class Number>
void add_integer(std::string& out, Number value)
{
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void add_float(std::string& out, float value)
{
    if (!std::isfinite(value)) {
        out += std::isnan(value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"";
        return;
    }
    char digits[32];
    value += 0.0f; // a zero has no sign here: the flip of Z would put one on every point of the ground
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 9).ptr);
}

template <class T, class Add>
void add_array(std::string& out, const T* values, std::size_t count, Add add)
{
    if (!values) {
        out += "null";
        return;
    }
    out += '[';
    for (std::size_t i = 0; i < count; ++i) {
        if (i) out += ',';
        add(out, values[i]);
    }
    out += ']';
}

void add_token(std::string& out, int32_t token)
{
    if (const char* const word = word_text(token)) {
        out += '"';
        add_string_body(out, word);
        out += '"';
    } else {
        add_integer(out, token);
    }
}

void add_record(std::string& out, const Tv_Local_Axes& axes)
{
    out += "{\"matrix\":";
    add_array(out, &axes.axes_matrix[0][0], 16, add_float);
    out += ",\"scale\":";
    add_float(out, axes.axes_scale);
    out += ",\"flag_a\":";
    add_integer(out, axes.axes_flag_a);
    out += ",\"origin_enabled\":";
    add_integer(out, axes.origin_enabled);
    out += ",\"flag_c\":";
    add_integer(out, axes.axes_flag_c);
    out += '}';
}

// Opened when the library is loaded: a relative path means the directory that the program was started in.
[[maybe_unused]] const bool opened_at_load = trace().on();

} // namespace

bool trace_enabled()
{
    return is_open && trace().on();
}

void trace_begin(const char* function)
{
    trace().begin(function);
}

// Behind a comma.
template <class Add, class... Values>
static void put(Add add, Values... values)
{
    trace().put([&](std::string& text) {
        text += ',';
        add(text, values...);
    });
}

void trace_string(const char* text)
{
    put(add_quoted, text);
}

void trace_token(int32_t token)
{
    put(add_token, token);
}

void trace_integer(int64_t value)
{
    put(add_integer<int64_t>, value);
}

void trace_float(float value)
{
    put(add_float, value);
}

void trace_floats(const float* values, std::size_t count)
{
    put(add_array<float, decltype(&add_float)>, values, count, &add_float);
}

void trace_integers(const int32_t* values, std::size_t count)
{
    put(add_array<int32_t, decltype(&add_integer<int32_t>)>, values, count, &add_integer<int32_t>);
}

void trace_strings(const char* const* texts, std::size_t count)
{
    put(add_array<const char*, decltype(&add_quoted)>, texts, count, &add_quoted);
}

void trace_record(const Tv_Local_Axes& axes)
{
    put([&axes](std::string& text) { add_record(text, axes); });
}

void trace_handle(const char* owner, int slot)
{
    put([owner, slot](std::string& text) {
        text += "\"<";
        if (owner) {
            add_string_body(text, owner);
            text += ':';
            add_integer(text, slot);
        }
        text += ">\"";
    });
}

void trace_null()
{
    put([](std::string& text) { text += "null"; });
}

void trace_end()
{
    trace().end();
}

void trace_flush()
{
    trace().flush();
}

void trace_suspend()
{
    ++trace().suspended;
}

void trace_resume()
{
    --trace().suspended;
}

bool set_trace_file(const char* path)
{
    return trace().open(path);
}

} // namespace tv
