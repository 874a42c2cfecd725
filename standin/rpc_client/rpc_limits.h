// Limits of connections. Tests shorten them; nothing else changes them.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

#include "rpc_wire/record_reader.h"

namespace kvrpc::limits {

using Milliseconds = std::chrono::milliseconds;

inline std::atomic<Milliseconds> connecting{Milliseconds{5000}};
inline std::atomic<Milliseconds> callOverride{Milliseconds{0}};     // in place of every call timeout, unless 0
inline constexpr Milliseconds kDefaultCall{15000};                  // of clients that were given none
inline std::atomic<Milliseconds> serverRecord{Milliseconds{30000}}; // from a call's first byte to its last
inline std::atomic<std::size_t> largestReply{kLargestRecord};       // bytes

/// The deadline of a call that begins now.
inline Deadline callDeadline(Clock::duration timeout) {
    const Milliseconds shortened = callOverride.load();
    return Clock::now() + (shortened.count() > 0 ? shortened : timeout);
}

} // namespace kvrpc::limits
