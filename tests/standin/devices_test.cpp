#include <pthread.h>

#include <thread>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "host_interface/test_hooks.h"
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

void* addDevice(KvCErrorListPool& pool, const char* address) {
    void* device = nullptr;
    EXPECT_EQ(KvPlatform_addDevice(pool, address, 1, &device), 0) << address;
    return device;
}

/// A device and an access-restriction handle of it.
class Devices : public testing::Test {
protected:
    Devices() { EXPECT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device_, &access_), 0); }
    ~Devices() override { KvPlatform_removeDevice(pool_, device_); }

    std::uint32_t parameter(void* handle, std::uint32_t id) {
        std::uint64_t size = 4;
        std::uint32_t value = 0;
        EXPECT_EQ(KvHIM_getParam(pool_, handle, id, 0, &size, &value), 0);
        return value;
    }

    Pool pool_;
    void* device_ = addDevice(pool_, "192.168.0.1:50001");
    void* access_ = nullptr;
};

} // namespace

TEST_F(Devices, AddressIsReadStrictly) {
    for (const char* const wrong :
         {"", "127.0.0.1", "127.0.0.1:", "127.0.0.1:0", "127.0.0.1:65536", "127.0.0.1:4294967297", "127.0.0.256:1",
          "127.0.0:1", "127.0.0.0.1:1", "127.0.0.1:1 ", " 127.0.0.1:1", "127.0.0.+1:1", "127.0.0.-1:1", "127..0.1:1",
          "0x7f.0.0.1:1", "127.0.0.01:1", "127.0.0.1:010", "localhost:1", "%s%n"}) {
        pool_->reset();
        void* device = access_;
        EXPECT_LT(KvPlatform_addDevice(pool_, wrong, 1, &device), 0) << wrong;
        EXPECT_EQ(device, nullptr);
        EXPECT_EQ(pool_.codes(), Codes{kAddressMalformed}) << wrong;
    }
    void* const highest = addDevice(pool_, "255.255.255.255:65535");
    EXPECT_EQ(parameter(highest, 6), 0xFFFFFFFFU);
    EXPECT_EQ(KvPlatform_removeDevice(pool_, highest), 0);
}

TEST_F(Devices, LevelsAreRememberedPerProcessUnlessTheyAreRefused) {
    EXPECT_EQ(KvHIM_requestAccessRestrictionLevel(pool_, access_, 7, 0x30002), 0);
    EXPECT_EQ(KvHIM_requestAccessRestrictionLevel(pool_, access_, 8, 0x10001), 0);
    host_interface::refuseLevel(0x10001);
    EXPECT_LT(KvHIM_requestAccessRestrictionLevel(pool_, access_, 7, 0x10001), 0);
    host_interface::refuseNoLevel();
    EXPECT_EQ(host_interface::grantedLevel(access_, 7), 0x30002U);
    EXPECT_EQ(host_interface::grantedLevel(access_, 8), 0x10001U);
    EXPECT_EQ(host_interface::grantedLevel(access_, 9), std::nullopt);
}

TEST_F(Devices, HandleThatNamesNothingIsAFailureOfEveryOperation) {
    void* const removed = addDevice(pool_, "10.0.0.1:1");
    void* removedAccess = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool_, removed, &removedAccess), 0);
    ASSERT_EQ(KvPlatform_removeDevice(pool_, removed), 0);
    void* next = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device_, &next), 0);
    EXPECT_NE(next, removedAccess);
    EXPECT_GT(parameter(next, 12), parameter(access_, 12)); // an ID of its own

    std::uint32_t value = 1;
    void* out = nullptr;
    KvCRpcClient* client = nullptr;
    KvHIMSDeviceInfo info{};
    Codes expected(5, kDeviceUnknown);
    expected.insert(expected.end(), 2, kAccessHandleUnknown);
    expected.insert(expected.end(), 4, kFilterUnknown);
    for (void* const nothing : {static_cast<void*>(nullptr), removed, removedAccess}) {
        pool_->reset();
        EXPECT_LT(KvHIM_setParam(pool_, nothing, 20, 2, "1"), 0);
        EXPECT_EQ(KvHIM_getAddressFromHandle(pool_, nothing), nullptr);
        EXPECT_LT(KvHIM_getRPCClientReference(pool_, nothing, 6, &client), 0);
        EXPECT_LT(KvHIM_createAccessRestrictionHandle(pool_, nothing, &out), 0);
        EXPECT_LT(KvPlatform_removeDevice(pool_, nothing), 0);
        EXPECT_LT(KvHIM_requestAccessRestrictionLevel(pool_, nothing, 1, 2), 0);
        EXPECT_LT(KvHIM_deleteAccessRestrictionHandle(pool_, nothing), 0);
        EXPECT_LT(KvHIM_setFilterParameter(pool_, nothing, 6, 4, &value), 0);
        EXPECT_LT(KvHIM_applyFilter(pool_, nothing), 0);
        EXPECT_LT(KvHIM_getDeviceList(pool_, nothing, &info, &value), 0);
        EXPECT_LT(KvHIM_deleteFilter(pool_, nothing), 0);
        EXPECT_EQ(pool_.codes(), expected);
    }
    EXPECT_LT(KvPlatform_removeDevice(pool_, access_), 0); // a handle of another kind
    EXPECT_STREQ(KvHIM_getAddressFromHandle(pool_, device_), "192.168.0.1:50001");
}

TEST_F(Devices, RegistryOwnsEveryClientUntilTheDeviceIsRemovedWhichIsNotCancelled) {
    int deleted = 0;
    KvCRpcClient* found = nullptr;
    auto* const first = new CountedClient{pool_, deleted};
    auto* const second = new CountedClient{pool_, deleted};
    ASSERT_EQ(KvHIM_registerRPCClient(pool_, device_, 6, first), 0);
    ASSERT_EQ(KvHIM_registerRPCClient(pool_, device_, 6, first), 0);
    ASSERT_EQ(KvHIM_registerRPCClient(pool_, device_, 6, second), 0);
    ASSERT_EQ(KvHIM_getRPCClientReference(pool_, device_, 6, &found), 0);
    EXPECT_EQ(found, second);
    ASSERT_EQ(KvHIM_getRPCClientReference(pool_, device_, 7, &found), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(deleted, 0); // somebody may still be calling through the first

    std::int32_t status = -1;
    std::thread{[&] {
#if !defined(_WIN32)
        ::pthread_cancel(::pthread_self());
#endif
        status = KvPlatform_removeDevice(pool_, device_);
    }}.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(deleted, 2);
}
