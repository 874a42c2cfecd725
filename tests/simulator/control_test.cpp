#include "simulator/control.h"

#include "KvApplManConstants.h"
#include "faults/calls.h"
#include "support/one_target.h"

namespace simulated_target {
namespace {

class ControlledTarget : public testing::Test {
protected:
    Json ask(const std::string& command) { return Json::parse(control.answer(command)); }
    bool does(const std::string& command) { return ask(command)["ok"]; }
    std::string stateOfProcess() { return ask("state")["processes"][0]["state"]; }

    /// A process that runs, alone in a group.
    void startProcess() {
        KvSApplGroupHandle* group = nullptr;
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, &t.device, &t.access, 1, &group), 0);
        EXPECT_EQ(call(KvApplMan_registerAppl_2, group, 1, &call.applId), 0);
        EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0);
        EXPECT_EQ(download(call), 0);
        EXPECT_EQ(command<KvApplMan_startAppl>(call), 0);
        EXPECT_EQ(messages(pool), Messages{});
    }

    static Options options(RequestHistory& history) {
        Options options;
        options.onRequest = [&](const RequestReport& report) { history.add(report); };
        return options;
    }

    RequestHistory history{};
    TargetDevice t{options(history)};
    bool ended = false;
    Control control{t.target, history, [this] { ended = true; }};
    const TemporaryFolder folder{};
    const Pool pool{};
    Call call{pool, t.device, t.access, folder.file("file.bin", "binary")};
};

TEST_F(ControlledTarget, LetsAProcessCrashOfWhichTheHostIsToldUntilItStartsAgain) {
    startProcess();
    EXPECT_TRUE(does("crash 1"));
    EXPECT_EQ(stateOfProcess(), "stopped");
    EXPECT_FALSE(does("crash 1")) << "it runs no more";
    std::string text(100, '\0');
    auto size = static_cast<std::int32_t>(text.size());
    EXPECT_EQ(call(KvApplMan_getApplInfo, 1, 22, text.data(), &size), 0);
    EXPECT_NE(text.find("ended by itself, simulated crash"), std::string::npos) << text;
    EXPECT_EQ(command<KvApplMan_pauseAppl>(call), -165);
    const Messages told = messages(pool);
    const std::string end = "applicationManager 0x14a00814(1,simulated crash)";
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[0], end);
    EXPECT_EQ(told[1], end);
    pool->reset();
    EXPECT_EQ(command<KvApplMan_startAppl>(call), 0);
    EXPECT_EQ(getInfo<0>(call), 0);
    EXPECT_EQ(messages(pool).back(), end) << "from before the start";
    pool->reset();
    EXPECT_EQ(getInfo<0>(call), 0);
    EXPECT_EQ(messages(pool), Messages{});
}

TEST_F(ControlledTarget, HasStartedWhenItComesBackFromARestart) {
    const auto startTime = [&] {
        std::int64_t seconds = 0;
        std::int32_t size = sizeof seconds;
        EXPECT_EQ(call(KvApplMan_getApplInfo, 0, KV_APPLMAN_ITEM_START_TIME, &seconds, &size), 0);
        return seconds;
    };
    const std::int64_t before = startTime();
    EXPECT_TRUE(does("reboot 1001"));
    EXPECT_GT(startTime(), before);
}

TEST_F(ControlledTarget, ShowsWhatItHolds) {
    startProcess();
    EXPECT_EQ(loadFile(call), 0);
    EXPECT_EQ(setParameter(call), 0);
    EXPECT_TRUE(does("fault get-core-ids@2:refuse"));
    EXPECT_EQ(getCores(call), 0);
    Json state = ask("state");
    EXPECT_EQ(state["schema"], 1);
    EXPECT_GE(state["connections"].size(), 1U); // that of the file transfer may not be closed yet
    EXPECT_EQ(state["groups"][0]["processes"], Json::array({1}));
    const Json& process = state["processes"][0];
    EXPECT_EQ(process["state"], "running");
    EXPECT_EQ(process["group"], state["groups"][0]["identity"]);
    EXPECT_EQ(process["binary"], "applications/1/file.bin");
    EXPECT_EQ(process["parameters"]["5"], "file.bin");
    EXPECT_EQ(process["files"][0]["name"], "x");
    EXPECT_EQ(state["rules"], Json::parse(R"([{"rule":"get-core-ids@2:refuse","calls":1,"fired":0}])"));
    const Json requests = ask("requests")["requests"];
    EXPECT_EQ(requests.back()["procedure"], "get-core-ids");
    EXPECT_EQ(requests.back()["number"], state["requests"]);
}

TEST_F(ControlledTarget, IsSteered) {
    EXPECT_TRUE(does("fault get-core-ids:refuse"));
    EXPECT_EQ(getCores(call), -841);
    EXPECT_TRUE(does("  clear\r"));
    EXPECT_EQ(getCores(call), 0);
    EXPECT_TRUE(does("drop"));
    EXPECT_EQ(getCores(call), 0);
    EXPECT_EQ(t.target.acceptedConnections(), 2U);
    EXPECT_EQ(registerAppl(call), 0);
    EXPECT_TRUE(does("reboot 1"));
    EXPECT_EQ(ask("state")["processes"], Json::array());
    for (const char* const wrong :
         {"", "stop", "fault", "fault 12:hang", "reboot soon", "crash", "crash 7", "drop 1"}) {
        EXPECT_FALSE(does(wrong)) << wrong;
    }
    EXPECT_FALSE(ended);
    EXPECT_TRUE(does("quit"));
    EXPECT_TRUE(ended);
}

} // namespace
} // namespace simulated_target
