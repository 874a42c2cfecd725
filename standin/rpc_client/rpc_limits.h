// How long a channel lets things take: a value that it is given when it is made.
#pragma once

#include <atomic>
#include <chrono>

#include "rpc_wire/socket.h"

namespace kvrpc {

struct Limits {
    Clock::duration connecting = std::chrono::seconds{5};
    Clock::duration call =
        std::chrono::seconds{15}; // connecting anew, sending and waiting, unless it is told otherwise
};

inline constexpr Limits kUsualLimits{};

/// What channels are given that are made from now on. Tests shorten it; nothing else changes it.
inline constinit std::atomic<const Limits*> limitsOfNewChannels{&kUsualLimits};

} // namespace kvrpc
