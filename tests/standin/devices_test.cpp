#include <pthread.h>

#include <thread>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "platform/host_interface.h"
#include "support/pool.h"

using namespace platform_messages;

namespace {

using Codes = std::vector<std::uint32_t>;

class CountedClient : public KvCRpcClient {
public:
    CountedClient(KvCErrorListPool& pool, int& deleted) : KvCRpcClient(pool, "127.0.0.1:1"), deleted_(deleted) {}
    ~CountedClient() override {
        ++deleted_;
        ::pthread_testcancel(); // as closing its connection does
    }

private:
    int& deleted_;
};

} // namespace

TEST(Devices, AddressIsReadStrictly) {
    for (const char* const wrong :
         {"", "127.0.0.1", "127.0.0.1:", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:4294967297", "127.0.0.256:1",
          "127.0.0:1", "127.0.0.0.1:1", "127.0.0.1:1 ", " 127.0.0.1:1", "127.0.0.+1:1", "127.0.0.-1:1", "127..0.1:1",
          "0x7f.0.0.1:1", "127.0.0.01:1", "127.0.0.1:010", "localhost:1", "%s%n"}) {
        Pool pool;
        void* device = &pool;
        EXPECT_LT(KvPlatform_addDevice(pool, wrong, 1, &device), 0) << wrong;
        EXPECT_EQ(device, nullptr);
        EXPECT_EQ(pool.codes(), Codes{kAddressMalformed}) << wrong;
    }
}

TEST(Devices, RegistryOwnsEveryClientUntilTheDeviceIsRemovedWhichIsNotCancelled) {
    Pool pool;
    void* device = nullptr;
    ASSERT_EQ(KvPlatform_addDevice(pool, "255.255.255.255:65535", 1, &device), 0);
    int deleted = 0;
    KvCRpcClient* found = nullptr;
    auto* const first = new CountedClient{pool, deleted};
    auto* const second = new CountedClient{pool, deleted};
    ASSERT_EQ(KvHIM_registerRPCClient(pool, device, 6, first), 0);
    ASSERT_EQ(KvHIM_registerRPCClient(pool, device, 6, first), 0);
    ASSERT_EQ(KvHIM_registerRPCClient(pool, device, 6, second), 0);
    ASSERT_EQ(KvHIM_getRPCClientReference(pool, device, 6, &found), 0);
    EXPECT_EQ(found, second);
    ASSERT_EQ(KvHIM_getRPCClientReference(pool, device, 7, &found), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(deleted, 0); // somebody may still be calling through the first

    std::int32_t status = -1;
    std::thread{[&] {
#if !defined(_WIN32)
        ::pthread_cancel(::pthread_self());
#endif
        status = KvPlatform_removeDevice(pool, device);
    }}.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(deleted, 2);
}
