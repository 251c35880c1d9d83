#include "host/failure.h"

#include "lib/platform/atomic_file.h"

namespace host {

using messages::message;

messages::Message message_of(const std::exception& error)
{
    if (const auto* const ours = dynamic_cast<const messages::Error*>(&error)) return ours->message;
    if (const auto* const file = dynamic_cast<const platform::FileError*>(&error)) {
        const std::string name = file->file.string();
        return file->doing == platform::FileError::Doing::write ? message<"file-not-written">(name, file->reason)
                                                                : message<"file-not-replaced">(name, file->reason);
    }
    return message<"unexpected">(error.what());
}

} // namespace host
