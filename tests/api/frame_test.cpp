// The frame around every function: handles, the device's client, what is connected when.
#include <set>

#include "api/api_test.h"
#include "faults/calls.h"
#include "support/threads.h"

using namespace applman;

namespace {

std::string full(const char* name) { return std::string("KvApplMan_") + name; }

struct Function {
    const char* name; // that reports a missing client, without "KvApplMan_"
    std::int32_t (*run)(Call& call);
    bool checksHandles = false; // by itself
};

const Function kFunctions[] = {
    {"startAppl", command<KvApplMan_startAppl>},
    {"stopAppl", command<KvApplMan_stopAppl>},
    {"terminateAppl", command<KvApplMan_terminateAppl>},
    {"unloadAppl", command<KvApplMan_unloadAppl>},
    {"pauseAppl", command<KvApplMan_pauseAppl>, true},
    {"stepAppl", command<KvApplMan_stepAppl>, true},
    {"getApplInfo", getInfo<9>},
    {"setApplParameter", setParameter},
    {"getApplications", getApplications},
    {"getApplications", getInfoList},
    {"getAvailableCoreIDs", getCores},
    {"loadFileUtf8", [](Call& c) { return loadFrom(c, ".", "", 512); }},
    {"getFileInfo", getFiles},
    {"removeFile", removeFile},
    {"getFlashApplications", getFlash},
    {"getFlashApplInfo", getFlashInfo},
    {"setFlashApplParameter", setFlash},
    {"loadFlashAppl", flashCommand<KvApplMan_loadFlashAppl>},
    {"clearFlashAppl", flashCommand<KvApplMan_clearFlashAppl>},
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
            Call call{*pool, device, access};
            const std::int32_t status = function.run(call);
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
        Call call{*pool, t.device, t.access};
        EXPECT_EQ(outcome(function.run(call)),
                  (Outcome{-180, {"createRpcClient 0x1250000f", full(function.name) + " 0x12500008"}}));
    }
}

TEST_F(Frame, ThreadsThatCallForANewDeviceAtOnceMakeOneConnection) {
    t.target.scriptAlways(kStartAppl, wire::result(-1));
    std::array<std::int32_t, 8> statuses{};
    inThreads(statuses.size(), [&](std::size_t number) {
        const Pool own;
        statuses[number] = KvApplMan_startAppl(own, t.device, t.access, 1);
    });
    EXPECT_EQ(statuses, (std::array{-150, -150, -150, -150, -150, -150, -150, -150}));
    EXPECT_EQ(t.target.acceptedConnections(), 1U);
}
