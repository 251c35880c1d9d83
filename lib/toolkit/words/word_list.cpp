#include "lib/toolkit/words/word_list.h"

#include <charconv>

#include "lib/toolkit/report.h"

namespace tv {

namespace {

bool is_token_value(Value value)
{
    return value >= Value::switch_state && value <= Value::thing_kind;
}

bool may_be_null(Value value)
{
    return value == Value::surface_names || value == Value::handle || value == Value::sizes || value == Value::points ||
           value == Value::corners;
}

// Reads one list. Each function reports nothing; read() tells what stopped it.
class Reader {
public:
    Reader(WordList& list, Arguments& arguments) : list_(list), arguments_(arguments) {}

    // False when the reading stopped early: fault() is what stood there.
    bool read(int32_t item)
    {
        for (;; item = va_arg(arguments_.list, int32_t)) {
            if (list_.size == WordList::limit) return false;
            if (item == 0) {
                add({Value::end, 0, nullptr, 0});
                return true;
            }
            fault_ = item;
            if (item == 1) {
                add({Value::close, 1, nullptr, 0});
                continue;
            }
            add({Value::word, item, nullptr, 0});
            const WordRow* const row = find_word(list_.function, item);
            if (!row) return false;
            for (const Value value : row->values) {
                if (value == Value::none) break;
                if (list_.size == WordList::limit || !read_value(value)) return false;
            }
        }
    }
    int32_t fault() const { return fault_; }

    // Arrays hold no count of their own: it stands elsewhere in the list, in any order. A negative one is 0.
    void count_arrays()
    {
        uint64_t polygons = 0, points = 0, corners = 0;
        const int32_t* sizes = nullptr;
        for (std::size_t i = 0; i < list_.size; ++i) {
            const Item& item = list_.items[i];
            if (item.value == Value::sizes) sizes = static_cast<const int32_t*>(item.pointer);
            if (item.value != Value::word) continue;
            if (item.number == word::numpolygons) polygons = count_at(i + 1);
            if (item.number == word::vertex) points = count_at(i + 1);
        }
        if (sizes)
            for (uint64_t i = 0; i < polygons; ++i)
                if (sizes[i] > 0) corners += static_cast<uint64_t>(sizes[i]);
        for (std::size_t i = 0; i < list_.size; ++i) {
            Item& item = list_.items[i];
            if (!item.pointer) continue;
            if (item.value == Value::sizes || item.value == Value::surface_names) item.count = polygons;
            if (item.value == Value::points) item.count = 3 * points;
            if (item.value == Value::corners) item.count = corners;
        }
    }

private:
    void add(Item item) { list_.items[list_.size++] = item; }

    uint64_t count_at(std::size_t i) const
    {
        const int32_t count = *static_cast<const int32_t*>(list_.items[i].pointer);
        return count > 0 ? static_cast<uint64_t>(count) : 0;
    }

    bool read_value(Value value)
    {
        if (value == Value::by_value) {
            add({value, va_arg(arguments_.list, int32_t), nullptr, 0});
            return true;
        }
        if (is_token_value(value)) {
            const int32_t token = va_arg(arguments_.list, int32_t);
            add({value, token, nullptr, 0});
            if (is_choice(value, token)) return true;
            fault_ = token;
            return false;
        }
        if (value == Value::amount) {
            const int32_t channel = list_.items[list_.size - 1].number;
            value = channel == word::color || channel == word::diffuse ? Value::float_3 : Value::float_1;
        }
        const void* const pointer = va_arg(arguments_.list, const void*);
        add({value, 0, pointer, 0});
        return pointer || may_be_null(value);
    }

    WordList& list_;
    Arguments& arguments_;
    int32_t fault_ = 0;
};

void report_bad_word(Function function, int32_t item)
{
    const char* const word = word_text(item);
    char number[16];
    const std::string_view digits(
        number, static_cast<std::size_t>(std::to_chars(number, number + sizeof number, item).ptr - number));
    report(4, "ERR_TOOLKIT_BAD_WORD", function_name(function), {word ? std::string_view(word) : digits});
}

} // namespace

void read_words(WordList& list, int32_t first, Arguments& arguments)
{
    Reader reader(list, arguments);
    list.good = reader.read(first);
    if (!list.good) report_bad_word(list.function, reader.fault());
    if (list.good && list.function == Function::primitive) reader.count_arrays();
}

void read_words(WordList& list, Arguments& arguments)
{
    const int32_t first = va_arg(arguments.list, int32_t);
    read_words(list, first, arguments);
}

bool expect_kind(Function function, int32_t kind, std::initializer_list<word::Token> allowed)
{
    for (const word::Token token : allowed)
        if (kind == token) return true;
    report_bad_word(function, kind);
    return false;
}

} // namespace tv
