// docs/user/6-messages.md, made from the table.
#pragma once
#include <string>

namespace messages {

std::string page();

} // namespace messages
