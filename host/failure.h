// How a command ends otherwise than well: main turns these into the exit status.
#pragma once
#include <stdexcept>

namespace host {

// One line for the user, UTF-8, without a line feed: what, where, what to do.
struct Failure : std::runtime_error { // exit status 1
    using std::runtime_error::runtime_error;
};
struct WrongUse : std::runtime_error { // exit status 2
    using std::runtime_error::runtime_error;
};

inline constexpr int status_done = 0, status_failed = 1, status_wrong_use = 2;

} // namespace host
