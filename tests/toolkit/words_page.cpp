// Prints docs/dev/words.md.
#include <cstdio>

#include "lib/toolkit/words/words.h"

int main()
{
    return std::fputs(tv::words_page().c_str(), stdout) < 0;
}
