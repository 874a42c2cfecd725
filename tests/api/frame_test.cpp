// The frame around every function: handles, the device's client, what is connected when.
#include <functional>
#include <set>
#include <thread>

#include "api/api_test.h"

using namespace applman;

namespace {

std::string full(const char* name) { return std::string("KvApplMan_") + name; }

struct Function {
    const char* name; // that reports a missing client, without "KvApplMan_"
    DeviceCall call;
    bool checksHandles = false; // by itself
};

std::uint32_t word = 0;
std::uint32_t count = 0;
std::int32_t size = sizeof word;
std::int32_t signedCount = 0;
KvTApplicationInfo* list = nullptr;

const Function kFunctions[] = {
    {"startAppl", with(KvApplMan_startAppl, 1)},
    {"stopAppl", with(KvApplMan_stopAppl, 1)},
    {"terminateAppl", with(KvApplMan_terminateAppl, 1)},
    {"unloadAppl", with(::KvApplMan_unloadAppl, 1)},
    {"pauseAppl", with(KvApplMan_pauseAppl, 1), true},
    {"stepAppl", with(KvApplMan_stepAppl, 1), true},
    {"getApplInfo", with(KvApplMan_getApplInfo, 1, 9, &word, &size)},
    {"setApplParameter", with(KvApplMan_setApplParameter, 1, 1008, &word, 4)},
    {"getApplications", with(::KvApplMan_getApplications, 0, nullptr, &signedCount)},
    {"getApplications", with(KvApplMan_getApplInfoList, &list, &count, nullptr)},
    {"getAvailableCoreIDs", with(KvApplMan_getAvailableCoreIDs, 0, &count, nullptr)},
    {"loadFileUtf8", with(KvApplMan_loadFileUtf8, 1, ".", "", "", 512, 0, nullptr, nullptr, nullptr)},
    {"getFileInfo", with(KvApplMan_getFileInfo, 1, &count, nullptr)},
    {"removeFile", with(KvApplMan_removeFile, 1, "n", 7)},
    {"getFlashApplications", with(::KvApplMan_getFlashApplications, 0, &count, nullptr)},
    {"getFlashApplInfo", with(::KvApplMan_getFlashApplInfo, 7, 9, &word, &size)},
    {"setFlashApplParameter", with(::KvApplMan_setFlashApplParameter, 7, 1200, nullptr, 0)},
    {"loadFlashAppl", with(::KvApplMan_loadFlashAppl, 7)},
    {"clearFlashAppl", with(::KvApplMan_clearFlashAppl, 7)},
};

using Frame = ApiTest;

} // namespace

TEST_F(Frame, BadHandlesGiveOneMessageAndNothingIsSent) {
    void* const nil = nullptr;
    for (const Function& function : kFunctions) {
        const Messages expected{function.checksHandles ? full(function.name) + " 1024" : kBadHandles};
        std::set<std::uint32_t> lines;
        for (const auto& [device, access] :
             {std::pair{nil, t.access}, std::pair{t.device, nil}, std::pair{t.device, t.device}}) {
            const std::int32_t status = function.call(pool, device, access);
            lines.insert(KvPlatform_entryLine(pool, pool->getErrorCount() - 1));
            EXPECT_EQ(outcome(status), (Outcome{-100, expected}));
        }
        EXPECT_EQ(lines.size(), 3U) << function.name << " tells by the line what is missing";
    }
    EXPECT_EQ(t.target.acceptedConnections(), 0U);
}

TEST_F(Frame, ATargetThatIsNotThereFailsToConnectEachTimeAnew) {
    t.target.stop();
    for (const Function& function : kFunctions) {
        EXPECT_EQ(outcome(function.call(pool, t.device, t.access)),
                  (Outcome{-180, {"createRpcClient 0x1250000f", full(function.name) + " 0x12500008"}}));
    }
}

TEST_F(Frame, ThreadsThatCallForANewDeviceAtOnceMakeOneConnection) {
    t.target.scriptAlways(kStartAppl, wire::result(-1));
    std::vector<std::thread> threads;
    std::array<std::int32_t, 8> statuses{};
    for (std::int32_t& status : statuses) {
        threads.emplace_back([&] {
            Pool own;
            status = KvApplMan_startAppl(own, t.device, t.access, 1);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(statuses, (std::array{-150, -150, -150, -150, -150, -150, -150, -150}));
    EXPECT_EQ(t.target.acceptedConnections(), 1U);
}
