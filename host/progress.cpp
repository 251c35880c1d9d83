#include "host/progress.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>

#include "host/failure.h"
#include "host/say.h"
#include "lib/messages/numbers.h"
#include "lib/platform/console.h"

namespace host {

using messages::counted;
using messages::grouped;

static volatile std::sig_atomic_t interrupts = 0;

void catch_interrupts()
{
    platform::on_interrupt([] {
        interrupts = interrupts + 1;
        if (interrupts >= 3) std::_Exit(status_failed);
    });
}

bool interrupted()
{
    return interrupts > 0;
}

Progress::~Progress()
{
    if (shown_) show_progress_line({});
}

bool Progress::due()
{
    const auto now = std::chrono::steady_clock::now();
    if (!shown_ || now < next_) return false;
    next_ = now + std::chrono::milliseconds(100);
    return true;
}

bool Progress::reading(const Import_IO_Abort_Record& record)
{
    const auto count = [](int32_t number) { return static_cast<std::size_t>(std::max(number, 0)); };
    if (due())
        show_progress_line(name_ + ": " + grouped(count(record.position)) + " of " + grouped(count(record.total)) +
                           " bytes, " + counted(count(record.objects), "object", "objects") + ", " +
                           counted(count(record.polygons), "polygon", "polygons"));
    return interrupted();
}

bool Progress::writing(std::size_t done, std::size_t total)
{
    if (due()) {
        const double share = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 1;
        show_progress_line(name_ + ": writing, " + std::to_string(static_cast<int>(100 * std::min(share, 1.0))) + " %");
    }
    return interrupted();
}

} // namespace host
