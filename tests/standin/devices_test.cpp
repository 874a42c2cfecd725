#include <pthread.h>

#include <thread>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "host_interface/test_hooks.h"
#include "platform/host_interface.h"
#include "support/pool.h"

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

class Devices : public testing::Test {
protected:
    Devices() { EXPECT_EQ(KvPlatform_addDevice(pool, "255.255.255.255:65535", 1, &device), 0); }
    ~Devices() override { KvPlatform_removeDevice(pool, device); }

    Pool pool;
    void* device = nullptr;
};

} // namespace

TEST_F(Devices, AddressIsReadStrictly) {
    for (const char* const wrong :
         {"", "127.0.0.1", "127.0.0.1:", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:4294967297", "127.0.0.256:1",
          "127.0.0:1", "127.0.0.0.1:1", "127.0.0.1:1 ", " 127.0.0.1:1", "127.0.0.-1:1", "127..0.1:1", "0x7f.0.0.1:1",
          "127.0.0.01:1", "127.0.0.1:010", "localhost:1"}) {
        pool->reset();
        void* added = device;
        EXPECT_LT(KvPlatform_addDevice(pool, wrong, 1, &added), 0) << wrong;
        EXPECT_EQ(added, nullptr);
        EXPECT_EQ(pool.codes(), Codes{platform_messages::kAddressMalformed}) << wrong;
    }
}

TEST_F(Devices, LevelsAreRememberedPerProcessAndTheirHandleNeverNamesAnotherOne) {
    void* access = nullptr;
    void* next = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool, device, &access), 0);
    EXPECT_EQ(KvHIM_requestAccessRestrictionLevel(pool, access, 7, 0x30002), 0);
    EXPECT_EQ(KvHIM_requestAccessRestrictionLevel(pool, access, 8, 0x10001), 0);
    EXPECT_EQ(host_interface::grantedLevel(access, 7), 0x30002U);
    EXPECT_EQ(host_interface::grantedLevel(access, 8), 0x10001U);
    ASSERT_EQ(KvHIM_deleteAccessRestrictionHandle(pool, access), 0);
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool, device, &next), 0);
    EXPECT_NE(next, access);
    EXPECT_LT(KvHIM_requestAccessRestrictionLevel(pool, access, 7, 0x10001), 0);
    EXPECT_EQ(pool.codes(), Codes{platform_messages::kAccessHandleUnknown});
}

TEST_F(Devices, RegistryOwnsEveryClientUntilTheDeviceIsRemovedWhichIsNotCancelled) {
    int deleted = 0;
    auto* const first = new CountedClient{pool, deleted};
    auto* const second = new CountedClient{pool, deleted};
    for (KvCRpcClient* const client : {first, first, second}) {
        ASSERT_EQ(KvHIM_registerRPCClient(pool, device, 6, client), 0);
    }
    KvCRpcClient* found = nullptr;
    ASSERT_EQ(KvHIM_getRPCClientReference(pool, device, 6, &found), 0);
    EXPECT_EQ(found, second);
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
