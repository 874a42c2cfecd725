#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/rtos.h"

using namespace KvNRtosAbstraction;

namespace {

template <class Work>
void onAnotherThread(Work work) {
    std::thread{work}.join();
}

} // namespace

TEST(RtosMutex, KeepsOtherThreadsOutUntilItIsUnlocked) {
    void* mutex = nullptr;
    ASSERT_EQ(initMutex(&mutex), 0);
    ASSERT_EQ(lockMutex(mutex, -1), 0);
    onAnotherThread([&] {
        EXPECT_NE(lockMutex(mutex, 0), 0);
        EXPECT_NE(lockMutex(mutex, 1), 0);
    });
    ASSERT_EQ(unlockMutex(mutex), 0);
    onAnotherThread([&] {
        EXPECT_EQ(lockMutex(mutex, 0), 0);
        EXPECT_EQ(unlockMutex(mutex), 0);
    });
    EXPECT_EQ(deleteMutex(mutex), 0);
}

TEST(RtosMutex, NullIsRefused) {
    EXPECT_NE(initMutex(nullptr), 0);
    EXPECT_NE(lockMutex(nullptr, -1), 0);
    EXPECT_NE(unlockMutex(nullptr), 0);
    EXPECT_NE(deleteMutex(nullptr), 0);
}

TEST(RtosTime, SleepLastsAtLeastItsDurationOnTheTickCounter) {
    const std::uint64_t start = KvRtosAbstractionTime_getTicks64();
    KvNRtosAbstraction::usleep(2000);
    EXPECT_GE(KvRtosAbstractionTime_getTicks64() - start, KvRtosAbstractionTime_getTicksPerSec() / 500);
}

TEST(RtosAddress, IsWrittenAsItLiesInMemory) {
    struct Case {
        std::uint8_t bytes[4];
        const char* text;
    };
    for (const Case& c : {Case{{192, 168, 0, 1}, "192.168.0.1"}, Case{{0, 0, 0, 0}, "0.0.0.0"},
                          Case{{255, 255, 255, 255}, "255.255.255.255"}, Case{{10, 0, 99, 100}, "10.0.99.100"}}) {
        KvSSocketAddressV4 address{2, 0, 0, {}};
        std::memcpy(&address.address, c.bytes, 4);
        char buffer[17] = "";
        const std::size_t needed = std::strlen(c.text) + 1;
        EXPECT_NE(ipToString(address, buffer, needed - 1), 0);
        EXPECT_STREQ(buffer, "");
        EXPECT_EQ(ipToString(address, buffer, needed), 0);
        EXPECT_STREQ(buffer, c.text);
        EXPECT_NE(ipToString(address, nullptr, 16), 0);
    }
}
