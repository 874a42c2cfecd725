// Start, stop, terminate, unload, pause and step: what is sent, what is refused, under which names.
#include "api/api_test.h"

using namespace applman;

namespace {

constexpr std::uint32_t kId = 0xabc;

struct Command {
    std::int32_t (*function)(KvCErrorListPool&, void*, void*, std::uint32_t);
    std::uint32_t procedure;
    Words mode; // before the access ID
    std::int32_t status;
    std::string refused;
    Messages failed; // while it was waited for
};

const std::string kPauseSummary = "KvApplMan_pauseAppl 0x12500038(abc)";
const std::string kStepSummary = "KvApplMan_stepAppl 0x12500039(abc)";

const Command kCommands[] = {
    {KvApplMan_startAppl, kStartAppl, {1}, -150, "KvApplMan_startAppl 0x12500004", {"waitWhileBusy 0x12500004"}},
    {KvApplMan_stopAppl, kStopAppl, {1}, -160, "KvApplMan_stopTerminateAppl 0x12500005", {"waitWhileBusy 0x12500005"}},
    {KvApplMan_terminateAppl,
     kTerminateAppl,
     {},
     -161,
     "KvApplMan_stopTerminateAppl 0x12500060",
     {"waitWhileBusy 0x12500060"}},
    {KvApplMan_unloadAppl, kUnloadAppl, {2}, -170, "KvApplMan_unloadAppl 0x12500006", {"waitWhileBusy 0x12500006"}},
    {KvApplMan_pauseAppl, kPauseAppl, {}, -165, kPauseSummary, {"waitWhileBusy 0x12500020(-165)", kPauseSummary}},
    {KvApplMan_stepAppl, kStepAppl, {}, -166, kStepSummary, {"waitWhileBusy 0x12500020(-166)", kStepSummary}},
};

class Control : public ApiTest {
protected:
    Outcome run(const Command& command) {
        t.target.forgetRequests();
        return outcome(command.function(pool, t.device, t.access, kId));
    }
};

} // namespace

TEST_F(Control, AnAcceptedCommandIsSentOnceAndWaitedFor) {
    for (const Command& command : kCommands) {
        t.target.script(command.procedure, wire::result(5, {0x14a00900})); // any value but -1 accepts
        t.target.script(kGetParam, wire::value(std::uint32_t{10}));
        t.target.script(kGetCommandState, wire::result(0));
        EXPECT_EQ(run(command), (Outcome{0, {"target 0x14a00900"}}));
        EXPECT_EQ(procedures(), (Words{command.procedure, kGetParam, kGetCommandState}));
        Words expected = command.mode;
        expected.insert(expected.end(), {t.accessId, kId});
        EXPECT_EQ(sentWords(0), expected) << command.refused;
        EXPECT_EQ(sentWords(1), (Words{1, t.accessId, 0, 40})) << "the timeout is the application manager's";
        EXPECT_EQ(sentWords(2), (Words{1, t.accessId, kId}));
        EXPECT_EQ(recorded_clock::naps(), Words{});
    }
}

TEST_F(Control, ARefusalAndAFailureHaveTheCommandsOwnStatusAndMessage) {
    for (const Command& command : kCommands) {
        t.target.script(command.procedure, wire::result(-1, {0x14a00803}));
        EXPECT_EQ(run(command), (Outcome{command.status, {"target 0x14a00803", command.refused}}))
            << "a process that is unknown at once is not dismissed either";
        EXPECT_EQ(procedures().size(), 1U);
        t.target.script(command.procedure, wire::result(0));
        t.target.script(kGetParam, wire::value(std::uint32_t{10}));
        t.target.script(kGetCommandState, wire::result(1));
        EXPECT_EQ(run(command), (Outcome{command.status, command.failed}));
    }
}

TEST_F(Control, WhateverTheWaitForAPauseFailsWithIsSummarizedAndPassedOn) {
    const Command& pause = kCommands[4];
    t.target.scriptAlways(kPauseAppl, wire::result(0));
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::failedCall());
    EXPECT_EQ(run(pause), (Outcome{-185, {"waitWhileBusy 0x1250000a(waitWhileBusy)", kPauseSummary}}));
    t.target.script(kGetParam, wire::value(Text{"10"}));
    EXPECT_EQ(run(pause),
              (Outcome{-204, {"decodeParameterReturnValue 0x12500013", "waitWhileBusy 0x12500023", kPauseSummary}}));
}
