// In the place of the toolkit's trace.cpp. All that is left to do is to hold the empty functions against the real ones.
#include <type_traits>

#include "lib/toolkit/words/trace.h" // the one beside this file

#define tv traced
#include "../../lib/toolkit/words/trace.h" // the real one
#undef tv

#define EXPECT_AS_DECLARED(name, ...)                                                                                  \
    static_assert(std::is_same_v<decltype(tv::name), decltype(traced::name)>, #name " isn't the real one's twin");
UNTRACED_FUNCTIONS(EXPECT_AS_DECLARED)
