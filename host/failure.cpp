#include "host/failure.h"

namespace host {

messages::Message message_of(const std::exception& error)
{
    const auto* const ours = dynamic_cast<const messages::Error*>(&error);
    return ours ? ours->message : messages::message<"unexpected">(error.what());
}

} // namespace host
