// Mutex, sleep, ticks and IPv4 address text of the RTOS abstraction library, as the library calls them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/KvExport.h"

/// An IPv4 socket address; `port` and `address` lie in memory in network order.
struct KvSSocketAddressV4 {
    std::uint16_t family; // 2
    std::uint16_t port;
    std::uint32_t address;
    std::uint8_t zero[8];
};

namespace KvNRtosAbstraction {

KVPLATFORM_API std::int32_t initMutex(void** mutex) noexcept;

/// `timeout` in milliseconds; -1 waits without limit.
KVPLATFORM_API std::int32_t lockMutex(void* mutex, std::int32_t timeout) noexcept;
KVPLATFORM_API std::int32_t unlockMutex(void* mutex) noexcept;
KVPLATFORM_API std::int32_t deleteMutex(void* mutex) noexcept;

/// Suspends the calling thread for `microseconds`.
KVPLATFORM_API void usleep(std::uint32_t microseconds) noexcept;

/// Writes the dotted address, at most 15 characters and a terminating zero; a smaller `size` is a failure.
KVPLATFORM_API std::int32_t ipToString(const KvSSocketAddressV4& address, char* buffer, std::size_t size) noexcept;

} // namespace KvNRtosAbstraction

/// A monotonic tick counter and its rate.
KVPLATFORM_API std::uint64_t KvRtosAbstractionTime_getTicks64() noexcept;
KVPLATFORM_API std::uint64_t KvRtosAbstractionTime_getTicksPerSec() noexcept;
