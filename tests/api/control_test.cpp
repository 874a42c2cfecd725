// Start, stop, terminate, unload, pause and step: what is sent.
#include "api/api_test.h"

using namespace applman;

namespace {

constexpr std::uint32_t kId = 0xabc;

const struct Command {
    std::int32_t (*function)(KvCErrorListPool&, void*, void*, std::uint32_t);
    std::uint32_t procedure;
    Words mode; // before the access ID
} kCommands[] = {
    {KvApplMan_startAppl, kStartAppl, {1}},        {KvApplMan_stopAppl, kStopAppl, {1}},
    {KvApplMan_terminateAppl, kTerminateAppl, {}}, {KvApplMan_unloadAppl, kUnloadAppl, {2}},
    {KvApplMan_pauseAppl, kPauseAppl, {}},         {KvApplMan_stepAppl, kStepAppl, {}},
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
        EXPECT_EQ(sentWords(0), expected);
        EXPECT_EQ(sentWords(1), (Words{1, t.accessId, 0, 40})) << "the timeout is the application manager's";
        EXPECT_EQ(sentWords(2), (Words{1, t.accessId, kId}));
        EXPECT_EQ(recorded_clock::naps(), Words{});
    }
}

TEST_F(Control, WhateverTheWaitForAPauseFailsWithIsSummarizedAndPassedOn) {
    const Command& pause = kCommands[4];
    t.target.script(kPauseAppl, wire::result(0));
    t.target.script(kGetParam, wire::value(Text{"10"}));
    EXPECT_EQ(run(pause), (Outcome{-204,
                                   {"decodeParameterReturnValue 0x12500013", "waitWhileBusy 0x12500023",
                                    "KvApplMan_pauseAppl 0x12500038(abc)"}}));
}
