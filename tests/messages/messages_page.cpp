// Prints docs/user/6-messages.md.
#include <cstdio>

#include "lib/messages/page.h"

int main()
{
    return std::fputs(messages::page().c_str(), stdout) < 0;
}
