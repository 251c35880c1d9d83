// How a command ends otherwise than well: main turns these into the exit status.
#pragma once
#include <exception>

#include "lib/messages/message.h"

namespace host {

struct Failure : messages::Error { // exit status 1
    using Error::Error;
};
struct WrongUse : messages::Error { // exit status 2
    using Error::Error;
};

inline constexpr int status_done = 0, status_failed = 1, status_wrong_use = 2;

// What is told of an exception: its own message, where it brings one.
messages::Message message_of(const std::exception& error);

} // namespace host
