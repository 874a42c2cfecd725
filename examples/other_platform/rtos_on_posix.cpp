// An adapter: the mutex, sleep, ticks and address text that the library asks for (platform/rtos.h), over POSIX. What
// standin/rtos does over the C++ library, another platform library does over its own system.
#include "platform/rtos.h"

#include <cerrno>
#include <cstring>
#include <new>

#include <arpa/inet.h>
#include <pthread.h>
#include <time.h>

namespace {

constexpr std::int32_t kFailed = -1;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

timespec sum(timespec time, std::int64_t milliseconds) {
    time.tv_sec += static_cast<time_t>(milliseconds / 1000);
    time.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (time.tv_nsec >= kNanosecondsPerSecond) {
        time.tv_nsec -= kNanosecondsPerSecond;
        ++time.tv_sec;
    }
    return time;
}

} // namespace

namespace KvNRtosAbstraction {

// cut: mutex
std::int32_t initMutex(void** mutex) noexcept {
    if (mutex == nullptr) return kFailed;
    *mutex = new (std::nothrow) pthread_mutex_t PTHREAD_MUTEX_INITIALIZER;
    return *mutex == nullptr ? kFailed : 0;
}

std::int32_t lockMutex(void* mutex, std::int32_t timeout) noexcept {
    if (mutex == nullptr || timeout < -1) return kFailed;
    auto* const lock = static_cast<pthread_mutex_t*>(mutex);
    if (timeout == -1) return pthread_mutex_lock(lock) == 0 ? 0 : kFailed;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now); // the clock of pthread_mutex_timedlock
    const timespec end = sum(now, timeout);
    return pthread_mutex_timedlock(lock, &end) == 0 ? 0 : kFailed;
}
// end

std::int32_t unlockMutex(void* mutex) noexcept {
    return mutex != nullptr && pthread_mutex_unlock(static_cast<pthread_mutex_t*>(mutex)) == 0 ? 0 : kFailed;
}

std::int32_t deleteMutex(void* mutex) noexcept {
    if (mutex == nullptr) return kFailed;
    auto* const lock = static_cast<pthread_mutex_t*>(mutex);
    pthread_mutex_destroy(lock);
    delete lock;
    return 0;
}

/// A signal of the host must not shorten the sleep.
void usleep(std::uint32_t microseconds) noexcept {
    timespec left{};
    left.tv_sec = static_cast<time_t>(microseconds / 1'000'000);
    left.tv_nsec = static_cast<long>(microseconds % 1'000'000) * 1000;
    while (nanosleep(&left, &left) == -1 && errno == EINTR) {}
}

std::int32_t ipToString(const KvSSocketAddressV4& address, char* buffer, std::size_t size) noexcept {
    char text[INET_ADDRSTRLEN];
    if (buffer == nullptr || inet_ntop(AF_INET, &address.address, text, sizeof text) == nullptr) return kFailed;
    const std::size_t length = std::strlen(text) + 1;
    if (length > size) return kFailed;
    std::memcpy(buffer, text, length);
    return 0;
}

} // namespace KvNRtosAbstraction

std::uint64_t KvRtosAbstractionTime_getTicks64() noexcept {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * kNanosecondsPerSecond + static_cast<std::uint64_t>(now.tv_nsec);
}

std::uint64_t KvRtosAbstractionTime_getTicksPerSec() noexcept { return kNanosecondsPerSecond; }
