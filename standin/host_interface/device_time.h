// How the host interface hands a host's local time to a target.
#pragma once

#include <cstdint>
#include <string>

#include "platform/error_lists.h"

/// Sends `text`, a local time "YYYYMMDDhhmm.ss", to the target at `address` and waits for its answer. Result: 0, or
/// negative with the reason in the pool. May throw std::bad_alloc only.
std::int32_t sendHostTime(KvCErrorListPool& pool, const std::string& address, const std::string& text);
