#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "error_lists/platform_messages.h"
#include "host_interface/test_hooks.h"
#include "platform/host_interface.h"
#include "support/failing_memory.h"
#include "support/pool.h"

#if !defined(_WIN32)
#include <pthread.h>
#endif

using namespace platform_messages;

namespace {

class CountedClient : public KvCRpcClient {
public:
    CountedClient(KvCErrorListPool& pool, int& deleted) : KvCRpcClient(pool, "127.0.0.1:1"), deleted_(deleted) {}
    ~CountedClient() override { ++deleted_; }

private:
    int& deleted_;
};

void* addDevice(KvCErrorListPool& pool, const char* address, std::uint32_t cnSerialNumber = 1) {
    void* device = nullptr;
    EXPECT_EQ(KvPlatform_addDevice(pool, address, cnSerialNumber, &device), 0) << address;
    return device;
}

std::uint32_t word(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    const std::uint8_t bytes[4] = {a, b, c, d};
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, 4);
    return value;
}

/// A device, an access-restriction handle of it and a filter.
class Devices : public testing::Test {
protected:
    Devices() {
        EXPECT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device_, &access_), 0);
        EXPECT_EQ(KvHIM_createFilter(pool_, &filter_, 1), 0);
    }
    ~Devices() override {
        KvPlatform_removeDevice(pool_, device_);
        KvHIM_deleteFilter(pool_, filter_);
        host_interface::refuseNoLevel();
    }

    std::uint32_t parameter(void* handle, std::uint32_t id) {
        std::uint64_t size = 4;
        std::uint32_t value = 0;
        EXPECT_EQ(KvHIM_getParam(pool_, handle, id, 0, &size, &value), 0);
        return value;
    }

    Pool pool_;
    void* device_ = addDevice(pool_, "192.168.0.1:50001");
    void* access_ = nullptr;
    void* filter_ = nullptr;
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
        EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{kAddressMalformed}) << wrong;
    }
    for (const char* const right : {"0.0.0.0:1", "255.255.255.255:65535"}) {
        void* const device = addDevice(pool_, right);
        EXPECT_STREQ(KvHIM_getAddressFromHandle(pool_, device), right);
        EXPECT_EQ(parameter(device, 6), right[0] == '0' ? 0 : 0xFFFFFFFF);
        EXPECT_EQ(KvPlatform_removeDevice(pool_, device), 0);
    }
    EXPECT_EQ(parameter(device_, 6), word(192, 168, 0, 1));
}

TEST_F(Devices, EveryAccessRestrictionHandleHasAnAccessIdOfItsOwn) {
    void* second = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device_, &second), 0);
    const std::uint32_t firstId = parameter(access_, 12);
    const std::uint32_t secondId = parameter(second, 12);
    EXPECT_NE(firstId, 0U);
    EXPECT_GT(secondId, firstId);
    ASSERT_EQ(KvHIM_deleteAccessRestrictionHandle(pool_, second), 0);
    void* third = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool_, device_, &third), 0);
    EXPECT_NE(third, second);
    EXPECT_GT(parameter(third, 12), secondId);
}

TEST_F(Devices, ParameterIsReadOnlyAsItIs) {
    struct Case {
        void* handle;
        std::uint32_t id, index;
        std::uint64_t size;
        std::uint32_t message;
    };
    for (const Case& c : {Case{access_, 6, 0, 4, kParameterUnknown}, Case{device_, 12, 0, 4, kParameterUnknown},
                          Case{access_, 12, 1, 4, kParameterIndexUnknown}, Case{access_, 12, 0, 3, kParameterSizeWrong},
                          Case{device_, 6, 0, 1ULL << 32 | 4, kParameterSizeWrong},
                          Case{filter_, 6, 0, 4, kDeviceUnknown}, Case{filter_, 12, 0, 4, kAccessHandleUnknown}}) {
        pool_->reset();
        std::uint64_t size = c.size;
        std::uint32_t value = 7;
        EXPECT_LT(KvHIM_getParam(pool_, c.handle, c.id, c.index, &size, &value), 0);
        EXPECT_EQ(value, 7U);
        EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{c.message});
    }
}

TEST_F(Devices, HostTimeMustBeATerminatedText) {
    const std::pair<const char*, std::uint32_t> texts[] = {{"20240131", 8},
                                                           {"2024\0"
                                                            "0131",
                                                            10},
                                                           {"", 0}};
    for (const auto& [text, length] : texts) {
        pool_->reset();
        EXPECT_LT(KvHIM_setParam(pool_, device_, 20, length, text), 0);
        EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{kParameterTextBroken});
    }
    pool_->reset();
    EXPECT_LT(KvHIM_setParam(pool_, device_, 21, 2, "1"), 0);
    EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{kParameterUnknown});
}

TEST_F(Devices, HandleThatNamesNothingIsAFailureOfEveryOperation) {
    void* const removed = addDevice(pool_, "10.0.0.1:1");
    void* deletedAccess = nullptr;
    ASSERT_EQ(KvHIM_createAccessRestrictionHandle(pool_, removed, &deletedAccess), 0);
    ASSERT_EQ(KvPlatform_removeDevice(pool_, removed), 0);
    void* deletedFilter = nullptr;
    ASSERT_EQ(KvHIM_createFilter(pool_, &deletedFilter, 1), 0);
    ASSERT_EQ(KvHIM_deleteFilter(pool_, deletedFilter), 0);
    int object = 0;

    std::uint32_t value = 1;
    std::uint64_t size = 4;
    void* out = nullptr;
    KvCRpcClient* client = nullptr;
    KvHIMSDeviceInfo info{};
    int deleted = 0;
    CountedClient ownClient{pool_, deleted};
    pool_->reset();
    using Call = std::function<bool(void*)>; // whether it succeeded
    const std::vector<Call> ofDevices{[&](void* h) { return KvHIM_getParam(pool_, h, 6, 0, &size, &value) == 0; },
                                      [&](void* h) { return KvHIM_setParam(pool_, h, 20, 2, "1") == 0; },
                                      [&](void* h) { return KvHIM_getAddressFromHandle(pool_, h) != nullptr; },
                                      [&](void* h) { return KvHIM_getRPCClientReference(pool_, h, 6, &client) == 0; },
                                      [&](void* h) { return KvHIM_registerRPCClient(pool_, h, 6, &ownClient) == 0; },
                                      [&](void* h) { return KvHIM_createAccessRestrictionHandle(pool_, h, &out) == 0; },
                                      [&](void* h) { return KvPlatform_removeDevice(pool_, h) == 0; }};
    const std::vector<Call> ofAccessHandles{
        [&](void* h) { return KvHIM_getParam(pool_, h, 12, 0, &size, &value) == 0; },
        [&](void* h) { return KvHIM_requestAccessRestrictionLevel(pool_, h, 1, 2) == 0; },
        [&](void* h) { return KvHIM_deleteAccessRestrictionHandle(pool_, h) == 0; }};
    const std::vector<Call> ofFilters{[&](void* h) { return KvHIM_setFilterParameter(pool_, h, 6, 4, &value) == 0; },
                                      [&](void* h) { return KvHIM_applyFilter(pool_, h) == 0; },
                                      [&](void* h) { return KvHIM_getDeviceList(pool_, h, &info, &value) == 0; },
                                      [&](void* h) { return KvHIM_deleteFilter(pool_, h) == 0; }};

    const auto expectFailures = [&](const std::vector<Call>& calls, const std::vector<void*>& handles,
                                    std::uint32_t code) {
        for (const Call& call : calls) {
            for (void* const handle : handles) {
                pool_->reset();
                EXPECT_FALSE(call(handle));
                EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{code});
            }
        }
    };
    const std::vector<void*> nothing{nullptr, &object, removed, deletedAccess, deletedFilter};
    for (const auto& [calls, code] : {std::pair{&ofDevices, kDeviceUnknown},
                                      {&ofAccessHandles, kAccessHandleUnknown},
                                      {&ofFilters, kFilterUnknown}}) {
        expectFailures(*calls, nothing, code);
    }
    expectFailures(ofAccessHandles, {filter_}, kAccessHandleUnknown);
    expectFailures(ofFilters, {device_, access_}, kFilterUnknown);
    EXPECT_FALSE(ofDevices.back()(access_));
    EXPECT_STREQ(KvHIM_getAddressFromHandle(pool_, device_), "192.168.0.1:50001");
}

TEST_F(Devices, NullArgumentsAreRefused) {
    std::uint32_t value = 1;
    std::uint64_t size = 4;
    pool_->reset();
    EXPECT_LT(KvHIM_getParam(pool_, device_, 6, 0, nullptr, &value), 0);
    EXPECT_LT(KvHIM_getParam(pool_, device_, 6, 0, &size, nullptr), 0);
    EXPECT_LT(KvHIM_setParam(pool_, device_, 20, 1, nullptr), 0);
    EXPECT_LT(KvHIM_getRPCClientReference(pool_, device_, 6, nullptr), 0);
    EXPECT_LT(KvHIM_registerRPCClient(pool_, device_, 6, nullptr), 0);
    EXPECT_LT(KvHIM_createAccessRestrictionHandle(pool_, device_, nullptr), 0);
    EXPECT_LT(KvHIM_createFilter(pool_, nullptr, 1), 0);
    EXPECT_LT(KvHIM_setFilterParameter(pool_, filter_, 6, 4, nullptr), 0);
    EXPECT_LT(KvHIM_getDeviceList(pool_, filter_, nullptr, &value), 0);
    EXPECT_LT(KvHIM_getDeviceList(pool_, filter_, nullptr, nullptr), 0);
    EXPECT_LT(KvPlatform_addDevice(pool_, nullptr, 1, &device_), 0);
    EXPECT_LT(KvPlatform_addDevice(pool_, "1.2.3.4:5", 1, nullptr), 0);
    EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>(12, 1024));
}

TEST_F(Devices, RegistryOwnsEveryClientUntilTheDeviceIsRemoved) {
    int deleted = 0;
    KvCRpcClient* found = nullptr;
    ASSERT_EQ(KvHIM_getRPCClientReference(pool_, device_, 6, &found), 0);
    EXPECT_EQ(found, nullptr);

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

    ASSERT_EQ(KvPlatform_removeDevice(pool_, device_), 0);
    EXPECT_EQ(deleted, 2);
}

TEST_F(Devices, ClientThatCannotBeRegisteredStaysTheCallers) {
    int deleted = 0;
    for (std::size_t allowed = 0;; ++allowed) {
        void* const device = addDevice(pool_, "10.0.0.1:1");
        auto client = std::make_unique<CountedClient>(pool_, deleted);
        bool lacked = false;
        std::int32_t status = 0;
        {
            const FailingMemory memory{allowed};
            status = KvHIM_registerRPCClient(pool_, device, 6, client.get());
            lacked = memory.hasFailed();
        }
        EXPECT_EQ(status != 0, lacked);
        if (!lacked) { client.release(); }
        deleted = 0;
        EXPECT_EQ(KvPlatform_removeDevice(pool_, device), 0);
        EXPECT_EQ(deleted, lacked ? 0 : 1);
        if (!lacked) { break; }
    }
}

TEST_F(Devices, LevelIsRememberedPerProcessAndMayBeRefused) {
    ASSERT_EQ(KvHIM_requestAccessRestrictionLevel(pool_, access_, 17, 0x30002), 0);
    ASSERT_EQ(KvHIM_requestAccessRestrictionLevel(pool_, access_, 18, 0x10001), 0);
    host_interface::refuseLevel(0x10001);
    pool_->reset();
    EXPECT_LT(KvHIM_requestAccessRestrictionLevel(pool_, access_, 17, 0x10001), 0);
    EXPECT_EQ(pool_.text(0), "The access level 0x10001 is refused for the application process 0x11.");
    EXPECT_EQ(host_interface::grantedLevel(access_, 17), 0x30002U);
    EXPECT_EQ(host_interface::grantedLevel(access_, 18), 0x10001U);
    EXPECT_EQ(host_interface::grantedLevel(access_, 19), std::nullopt);
    host_interface::refuseNoLevel();
    EXPECT_EQ(KvHIM_requestAccessRestrictionLevel(pool_, access_, 17, 0x10001), 0);
}

TEST_F(Devices, FilterSelectsByAddressOnceItIsApplied) {
    void* const twins[] = {addDevice(pool_, "10.0.0.2:1", 21), addDevice(pool_, "10.0.0.2:2", 22)};
    const std::uint32_t one = 1;
    const std::uint32_t zero = 0;
    KvHIMSDeviceInfo infos[3];
    const auto list = [&](std::uint32_t room, std::uint32_t& count) {
        std::memset(infos, 0x55, sizeof infos);
        count = room;
        return KvHIM_getDeviceList(pool_, filter_, room == 0 ? nullptr : infos, &count);
    };
    std::uint32_t count = 0;

    pool_->reset();
    EXPECT_EQ(KvHIM_setFilterParameter(pool_, filter_, 8, 4, &one), 0);
    EXPECT_EQ(KvHIM_setFilterParameter(pool_, filter_, 9, 4, &zero), 0);
    EXPECT_LT(KvHIM_setFilterParameter(pool_, filter_, 9, 4, &one), 0);
    EXPECT_LT(KvHIM_setFilterParameter(pool_, filter_, 7, 4, &one), 0);
    EXPECT_LT(KvHIM_setFilterParameter(pool_, filter_, 6, 8, &one), 0);
    EXPECT_LT(KvHIM_applyFilter(pool_, filter_), 0);
    EXPECT_EQ(pool_.codes(), (std::vector<std::uint32_t>{kParameterValueRefused, kParameterUnknown, kParameterSizeWrong,
                                                         kFilterIncomplete}));

    struct Case {
        std::uint32_t address, room, found;
        std::vector<std::uint32_t> serialNumbers; // of the records written
    };
    for (const Case& c :
         {Case{word(192, 168, 0, 1), 1, 1, {1}}, Case{word(10, 0, 0, 2), 3, 2, {21, 22}},
          Case{word(10, 0, 0, 2), 1, 2, {21}}, Case{word(10, 0, 0, 2), 0, 2, {}}, Case{word(10, 0, 0, 9), 3, 0, {}}}) {
        ASSERT_EQ(KvHIM_setFilterParameter(pool_, filter_, 6, 4, &c.address), 0);
        pool_->reset();
        EXPECT_LT(list(c.room, count), 0);
        EXPECT_EQ(pool_.codes(), std::vector<std::uint32_t>{kFilterNotApplied});
        ASSERT_EQ(KvHIM_applyFilter(pool_, filter_), 0);
        ASSERT_EQ(list(c.room, count), 0);
        EXPECT_EQ(count, c.found);
        for (std::size_t i = 0; i < 3; ++i) {
            const bool written = i < c.serialNumbers.size();
            EXPECT_EQ(infos[i].cnSerialNumber, written ? c.serialNumbers[i] : 0x55555555U);
            EXPECT_EQ(infos[i].reserved2[815], written ? 0 : 0x55);
        }
    }
    void* unknownKind = filter_;
    EXPECT_LT(KvHIM_createFilter(pool_, &unknownKind, 2), 0);
    EXPECT_EQ(unknownKind, nullptr);
    for (void* const twin : twins) {
        KvPlatform_removeDevice(pool_, twin);
    }
}

TEST_F(Devices, OtherDevicesMayComeAndGoMeanwhile) {
    const auto comeAndGo = [](const char* address) {
        Pool pool;
        for (int i = 0; i < 300; ++i) {
            int deleted = 0;
            void* const device = addDevice(pool, address);
            EXPECT_EQ(KvHIM_registerRPCClient(pool, device, 6, new CountedClient{pool, deleted}), 0);
            EXPECT_STREQ(KvHIM_getAddressFromHandle(pool, device), address);
            EXPECT_EQ(KvPlatform_removeDevice(pool, device), 0);
            EXPECT_EQ(deleted, 1);
        }
    };
    std::thread first{comeAndGo, "10.0.0.1:1"};
    std::thread second{comeAndGo, "10.0.0.2:1"};
    for (int i = 0; i < 1000; ++i) {
        EXPECT_NE(parameter(access_, 12), 0U);
    }
    first.join();
    second.join();
}

#if !defined(_WIN32)
TEST_F(Devices, AThreadIsNotCancelledWhileItRemovesOne) {
    class ClosingClient : public KvCRpcClient {
    public:
        explicit ClosingClient(KvCErrorListPool& pool) : KvCRpcClient(pool, "127.0.0.1:1") {}
        ~ClosingClient() override { ::pthread_testcancel(); } // as closing its connection does
    };
    ASSERT_EQ(KvHIM_registerRPCClient(pool_, device_, 6, new ClosingClient{pool_}), 0);
    std::int32_t status = -1;
    std::thread{[&] {
        ::pthread_cancel(::pthread_self());
        status = KvPlatform_removeDevice(pool_, device_);
    }}.join();
    EXPECT_EQ(status, 0);
}
#endif
