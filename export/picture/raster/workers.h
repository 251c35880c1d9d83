// Pieces of work on all cores.
#pragma once
#include <cstddef>
#include <functional>

namespace picture {

unsigned core_count(); // at least 1

// Calls work(0) to work(count - 1), each once, on `threads` threads, one of them the caller's; in any order. After each
// piece of its own the caller's thread asks `stop` (which may be empty); true ends the work early. Returns false then.
// What a piece throws ends it too and is thrown again here. Tiny floats count as 0 in all pieces.
bool share_out(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work,
               const std::function<bool(std::size_t done)>& stop);

} // namespace picture
