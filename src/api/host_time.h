// Sending the host's time to a target.
#pragma once

#include "platform/error_lists.h"

namespace applman {

/// Sends the host's time; a target that takes no such parameter gets the local time another way. What the target reports
/// is added to the pool, but nothing depends on it.
void setHostTimeParameters(KvCErrorListPool& pool, void* devHandle, void* accessResHandle);

} // namespace applman
