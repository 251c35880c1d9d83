#include "export/picture/raster/workers.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>
#if defined(__SSE2__)
#include <pmmintrin.h>
#endif

namespace picture {

namespace {

// Denormal numbers are slow, and the ray library wants them off. The setting is the thread's own.
class TinyIsZero {
#if defined(__SSE2__)
public:
    TinyIsZero() : before_(_mm_getcsr())
    {
        _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
        _MM_SET_DENORMALS_ZERO_MODE(_MM_DENORMALS_ZERO_ON);
    }
    ~TinyIsZero()
    {
        _mm_setcsr(before_);
    }

private:
    unsigned before_;
#endif
};

struct Shared {
    std::atomic<std::size_t> next{0}, done{0};
    std::atomic<bool> stopped{false};
    std::mutex guard;
    std::exception_ptr failure;
};

} // namespace

unsigned core_count()
{
    return std::max(std::thread::hardware_concurrency(), 1u);
}

bool share_out(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work,
               const std::function<bool(std::size_t done)>& stop)
{
    Shared shared;
    const auto run = [&](bool caller) {
        const TinyIsZero mode;
        try {
            for (std::size_t i = shared.next++; i < count && !shared.stopped; i = shared.next++) {
                work(i);
                ++shared.done;
                if (caller && stop && stop(shared.done)) shared.stopped = true;
            }
        } catch (...) {
            const std::lock_guard lock(shared.guard);
            if (!shared.failure) shared.failure = std::current_exception();
            shared.stopped = true;
        }
    };
    {
        std::vector<std::jthread> helpers;
        const std::size_t wanted = std::min<std::size_t>(std::max(threads, 1u), count);
        for (std::size_t i = 1; i < wanted; ++i) {
            try {
                helpers.emplace_back(run, false);
            } catch (const std::system_error&) {
                break; // no more threads to be had: the others do it
            }
        }
        run(true);
    }
    if (shared.failure) std::rethrow_exception(shared.failure);
    return !shared.stopped;
}

} // namespace picture
