// What the library relies on of platform/rtos.h. Built with the platform's own implementation, and with the adapter in
// examples/other_platform.
#include <array>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "platform/rtos.h"

namespace {

struct Mutex {
    Mutex() { EXPECT_EQ(KvNRtosAbstraction::initMutex(&handle), 0); }
    ~Mutex() { EXPECT_EQ(KvNRtosAbstraction::deleteMutex(handle), 0); }
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void* handle = nullptr;
};

/// The result of locking it from another thread, which unlocks it again.
std::int32_t lockedElsewhere(void* mutex, std::int32_t timeout) {
    std::int32_t locked = 1;
    std::thread([&] {
        locked = KvNRtosAbstraction::lockMutex(mutex, timeout);
        if (locked == 0) { KvNRtosAbstraction::unlockMutex(mutex); }
    }).join();
    return locked;
}

double secondsSince(std::uint64_t tick) {
    return static_cast<double>(KvRtosAbstractionTime_getTicks64() - tick) /
           static_cast<double>(KvRtosAbstractionTime_getTicksPerSec());
}

} // namespace

TEST(Rtos, AMutexExcludesAndItsTimeoutIsInMilliseconds) {
    const Mutex mutex;
    ASSERT_EQ(KvNRtosAbstraction::lockMutex(mutex.handle, -1), 0);
    EXPECT_NE(lockedElsewhere(mutex.handle, 0), 0);
    const std::uint64_t before = KvRtosAbstractionTime_getTicks64();
    EXPECT_NE(lockedElsewhere(mutex.handle, 30), 0);
    EXPECT_GE(secondsSince(before), 0.029);
    EXPECT_EQ(KvNRtosAbstraction::unlockMutex(mutex.handle), 0);
    EXPECT_EQ(lockedElsewhere(mutex.handle, 1100), 0);
    EXPECT_EQ(lockedElsewhere(mutex.handle, -1), 0);
}

TEST(Rtos, ANullMutexIsAFailure) {
    EXPECT_NE(KvNRtosAbstraction::initMutex(nullptr), 0);
    EXPECT_NE(KvNRtosAbstraction::lockMutex(nullptr, -1), 0);
    EXPECT_NE(KvNRtosAbstraction::unlockMutex(nullptr), 0);
    EXPECT_NE(KvNRtosAbstraction::deleteMutex(nullptr), 0);
}

TEST(Rtos, ASleepLastsAsLongAsItSaysByTheTicks) {
    const std::uint64_t before = KvRtosAbstractionTime_getTicks64();
    KvNRtosAbstraction::usleep(20'000);
    EXPECT_GE(secondsSince(before), 0.0199);
}

TEST(Rtos, AnAddressIsWrittenWithItsZeroOrNotAtAll) {
    KvSSocketAddressV4 address{2, 0, 0, {}};
    const std::array<std::uint8_t, 4> numbers{192, 168, 0, 255};
    std::memcpy(&address.address, numbers.data(), numbers.size());
    std::array<char, 16> text{};
    EXPECT_EQ(KvNRtosAbstraction::ipToString(address, text.data(), 14), 0);
    EXPECT_STREQ(text.data(), "192.168.0.255");
    text.fill('x');
    EXPECT_NE(KvNRtosAbstraction::ipToString(address, text.data(), 13), 0);
    EXPECT_EQ(text[0], 'x');
}
