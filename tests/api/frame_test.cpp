// The frame around every function: handles, the device's client, what is connected when.
#include "frame/calling_frame.h"

#include <thread>

#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

class Frame : public OneTarget {
protected:
    Frame() {
        t.target.scriptAlways(kStartAppl, wire::result(-1));
        t.target.scriptAlways(kGetParam, wire::value(std::uint32_t{1}));
    }

    std::int32_t readWord(Pool& into, std::uint32_t applId) {
        std::uint32_t word = 0;
        std::int32_t size = sizeof word;
        return KvApplMan_getApplInfo(into, t.device, t.access, applId, 9, &word, &size);
    }
};

/// A client of another program, as another library may have registered it.
class OtherClient : public KvCRpcClient {
public:
    using KvCRpcClient::KvCRpcClient;
};

} // namespace

TEST_F(Frame, BadHandlesGiveOneMessageAndNothingIsSent) {
    void* const unknown = reinterpret_cast<void*>(std::uintptr_t{0x7777});
    struct Row {
        void* device;
        void* access;
    };
    for (const Row& row : {Row{nullptr, t.access}, Row{t.device, nullptr}, Row{nullptr, nullptr},
                           Row{t.device, t.device}, Row{t.device, unknown}}) {
        EXPECT_EQ(KvApplMan_startAppl(pool, row.device, row.access, 1), -100);
        EXPECT_EQ(messages(pool), Messages{"checkDeviceAndAccessRestrictionHandle 1024"});
        pool->reset();
    }
    EXPECT_EQ(t.target.acceptedConnections(), 0U);
}

TEST_F(Frame, ADeviceThatIsGoneIsNamedAsSuch) {
    Pool other;
    void* gone = nullptr;
    ASSERT_EQ(KvPlatform_addDevice(other, "127.0.0.9:9", 1, &gone), 0);
    ASSERT_EQ(KvPlatform_removeDevice(other, gone), 0);
    EXPECT_EQ(KvApplMan_startAppl(pool, gone, t.access, 1), -100);
    EXPECT_EQ(messages(pool), (Messages{"getRpcClient 0x12500044", "KvApplMan_startAppl 0x12500008"}));
}

TEST_F(Frame, ATargetThatIsNotThereFailsToConnectEachTimeAnew) {
    t.target.stop();
    for (int i = 0; i < 2; ++i) {
        pool->reset();
        EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, 1), -180);
        EXPECT_EQ(messages(pool), (Messages{"createRpcClient 0x1250000f", "KvApplMan_startAppl 0x12500008"}));
    }
}

TEST_F(Frame, AllCallsForADeviceShareOneConnection) {
    EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, 1), -150);
    EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, 1), -150);
    EXPECT_EQ(t.target.acceptedConnections(), 1U);
}

TEST_F(Frame, ThreadsThatCallForANewDeviceAtOnceMakeOneConnection) {
    std::vector<std::thread> threads;
    std::array<std::int32_t, 8> statuses{};
    for (std::size_t i = 0; i < statuses.size(); ++i) {
        threads.emplace_back([&, i] {
            Pool own;
            statuses[i] = readWord(own, static_cast<std::uint32_t>(i));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(statuses, (std::array<std::int32_t, 8>{}));
    EXPECT_EQ(t.target.acceptedConnections(), 1U);
}

TEST_F(Frame, AClientOfAnotherProgramCountsAsNone) {
    auto* const other = new OtherClient(*pool, t.address.c_str());
    ASSERT_EQ(KvHIM_registerRPCClient(pool, t.device, 6, other), 0);
    EXPECT_EQ(readWord(pool, 1), 0);
    KvCRpcClient* registered = nullptr;
    ASSERT_EQ(KvHIM_getRPCClientReference(pool, t.device, 6, &registered), 0);
    EXPECT_NE(registered, other);
    EXPECT_NE(dynamic_cast<KV_RPC_PROG_APPLMAN_HOST2Client*>(registered), nullptr);
}

TEST_F(Frame, InternalOperationsRefuseMissingArguments) {
    EXPECT_EQ(getRpcClient(pool, t.device, nullptr), Status::argument);
    EXPECT_EQ(createRpcClient(pool, t.address.c_str(), nullptr), Status::argument);
    EXPECT_EQ(messages(pool), (Messages{"getRpcClient 1024", "createRpcClient 1024"}));
}

TEST_F(Frame, WhatIsThrownInsideBecomesAStatus) {
    const Reporter report{*pool, "operation"};
    EXPECT_EQ(guarded(report, []() -> Status { throw std::bad_alloc{}; }), -100);
    EXPECT_EQ((guarded<Msg::groupOutOfMemory, Status::groupHandle>(report, []() -> Status { throw 1; })), -840);
    EXPECT_EQ(messages(pool), (Messages{"operation 1024", "operation 0x12500045"}));
}

TEST_F(Frame, TheMessageTextsAreRegistered) {
    EXPECT_EQ(KvApplMan_startAppl(pool, t.device, t.access, 1), -150);
    EXPECT_EQ(pool.text(0), "Cannot start real-time application.");
    KvPlatform_addEntry(pool, 0x12500060);
    EXPECT_EQ(pool.text(1), "Attempt to terminate application process failed.");
    KvPlatform_addEntry(pool, 0x12500017);
    EXPECT_EQ(pool.text(2), "Obsolete error code.");
}
