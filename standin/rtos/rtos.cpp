#include "platform/rtos.h"

#include <charconv>
#include <chrono>
#include <cstring>
#include <iterator>
#include <mutex>
#include <new>

namespace KvNRtosAbstraction {

std::int32_t initMutex(void** mutex) noexcept {
    if (mutex == nullptr) { return -1; }
    *mutex = new (std::nothrow) std::timed_mutex;
    return *mutex == nullptr ? -1 : 0;
}

std::int32_t lockMutex(void* mutex, std::int32_t timeout) noexcept try {
    if (mutex == nullptr || timeout < -1) { return -1; }
    auto& timed = *static_cast<std::timed_mutex*>(mutex);
    if (timeout == -1) {
        timed.lock();
        return 0;
    }
    const bool locked = timed.try_lock() || (timeout > 0 && timed.try_lock_for(std::chrono::milliseconds{timeout}));
    return locked ? 0 : -1;
} catch (...) { return -1; }

std::int32_t unlockMutex(void* mutex) noexcept {
    if (mutex == nullptr) { return -1; }
    static_cast<std::timed_mutex*>(mutex)->unlock();
    return 0;
}

std::int32_t deleteMutex(void* mutex) noexcept {
    if (mutex == nullptr) { return -1; }
    delete static_cast<std::timed_mutex*>(mutex);
    return 0;
}

std::int32_t ipToString(const KvSSocketAddressV4& address, char* buffer, std::size_t size) noexcept {
    std::uint8_t numbers[4];
    std::memcpy(numbers, &address.address, sizeof numbers);
    char text[16];
    char* end = text;
    for (const std::uint8_t number : numbers) {
        if (end != text) { *end++ = '.'; }
        end = std::to_chars(end, std::end(text), number).ptr;
    }
    *end++ = '\0';
    const auto length = static_cast<std::size_t>(end - text);
    if (buffer == nullptr || length > size) { return -1; }
    std::memcpy(buffer, text, length);
    return 0;
}

} // namespace KvNRtosAbstraction
