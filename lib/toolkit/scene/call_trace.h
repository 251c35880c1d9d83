// How the toolkit's own calls are traced: fixed arguments, then the items of the list.
#pragma once
#include <cstdint>

#include "lib/toolkit/words/trace.h"
#include "lib/toolkit/words/word_list.h"

namespace tv {

// After the function's name and its fixed arguments: all items, as they stand after the call.
void trace_items(const WordList& list);

struct TokenArgument {
    int32_t token;
};
inline void trace_argument(const char* text)
{
    trace_string(text);
}
inline void trace_argument(TokenArgument argument)
{
    trace_token(argument.token);
}
inline void trace_argument(int32_t value)
{
    trace_integer(value);
}

// The line of a call: arguments in front of the list, then the list. To be called when the call's work is done, so that
// what it hands out is there; costs one branch while the trace is off.
template <class... Fixed>
void trace_call(const WordList& list, Fixed... fixed)
{
    if (!trace_enabled()) return;
    trace_begin(function_name(list.function));
    (trace_argument(fixed), ...);
    trace_items(list);
    trace_end();
}

} // namespace tv
