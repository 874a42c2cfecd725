// Pause and step: handles checked under their own names, and a summary that ends a failure.
#include "api/KvApplicationManagerAP.h"
#include "protocol/procedure_numbers.h"
#include "support/one_target.h"

using namespace applman;

namespace {

struct Command {
    std::int32_t (*function)(KvCErrorListPool&, void*, void*, std::uint32_t);
    std::uint32_t procedure;
    const char* name;
    const char* summary;
    std::int32_t status;
};

const Command kCommands[] = {
    {KvApplMan_pauseAppl, kPauseAppl, "KvApplMan_pauseAppl", "0x12500038(abc)", -165},
    {KvApplMan_stepAppl, kStepAppl, "KvApplMan_stepAppl", "0x12500039(abc)", -166},
};

class PauseStep : public OneTarget, public ::testing::WithParamInterface<Command> {
protected:
    std::int32_t call() { return GetParam().function(pool, t.device, t.access, 0xabc); }
    std::string self(const std::string& what) { return std::string(GetParam().name) + " " + what; }
    std::string summary() { return self(GetParam().summary); }
};

} // namespace

TEST_P(PauseStep, AnAcceptedCommandIsWaitedForAndAddsNoMessage) {
    t.target.script(GetParam().procedure, wire::result(5, {0x14a00900})); // any value but -1 accepts
    t.target.script(kGetParam, wire::value(std::uint32_t{10}));
    t.target.script(kGetCommandState, wire::result(2));
    t.target.script(kGetCommandState, wire::result(0));
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(procedures(),
              (std::vector<std::uint32_t>{GetParam().procedure, kGetParam, kGetCommandState, kGetCommandState}));
    const auto asked = request<TApplManPairRequest>(0);
    EXPECT_EQ((std::array{asked.accessId, asked.second}), (std::array{t.accessId, 0xabcU}));
    EXPECT_EQ(messages(pool), Messages{"target 0x14a00900"});
}

TEST_P(PauseStep, HandlesAreCheckedUnderTheOwnName) {
    struct Row {
        void* device;
        void* access;
    };
    for (const Row& row : {Row{nullptr, t.access}, Row{t.device, nullptr}, Row{t.device, t.device}}) {
        EXPECT_EQ(GetParam().function(pool, row.device, row.access, 1), -100);
        EXPECT_EQ(messages(pool), Messages{self("1024")});
        pool->reset();
    }
    EXPECT_EQ(t.target.acceptedConnections(), 0U);
    t.target.stop();
    EXPECT_EQ(call(), -180);
    EXPECT_EQ(messages(pool), (Messages{"createRpcClient 0x1250000f", self("0x12500008")}));
}

TEST_P(PauseStep, ARefusalIsSummarizedAndNotWaitedForButAFailedCallIsNot) {
    t.target.script(GetParam().procedure, wire::result(-1, {0x14a00803}));
    EXPECT_EQ(call(), GetParam().status);
    EXPECT_EQ(messages(pool), (Messages{"target 0x14a00803", summary()}));
    for (const auto& reply : {wire::failedCall(), wire::notOffered()}) {
        pool->reset();
        t.target.script(GetParam().procedure, reply);
        EXPECT_EQ(call(), -185);
        EXPECT_EQ(messages(pool), Messages{self(std::string("0x1250000a(") + GetParam().name + ")")});
    }
    EXPECT_EQ(procedures(), std::vector<std::uint32_t>(3, GetParam().procedure));
}

TEST_P(PauseStep, WhateverTheWaitFailsWithIsSummarizedAndPassedOn) {
    const std::string failed = "waitWhileBusy 0x12500020(" + std::to_string(GetParam().status) + ")";
    const std::string timedOut = "waitWhileBusy 0x12500043(1)";
    struct Row {
        simulated_target::ScriptedReply timeout;
        simulated_target::ScriptedReply state;
        std::int32_t status;
        Messages expected;
    };
    const auto seconds = [](std::uint32_t value) { return wire::value(value); };
    for (const Row& row :
         {Row{seconds(1), wire::result(1), GetParam().status, {failed, summary()}},
          Row{seconds(1), wire::result(1, {0x14a00803}), GetParam().status, {"target 0x14a00803", failed, summary()}},
          Row{seconds(1), wire::result(2), GetParam().status, {timedOut, failed, summary()}},
          Row{seconds(1), wire::failedCall(), -185, {"waitWhileBusy 0x1250000a(waitWhileBusy)", summary()}},
          Row{wire::noValue({0x14a00805}),
              wire::result(0),
              -175,
              {"target 0x14a00805", "KvApplMan_getApplInfo 0x12500007", "waitWhileBusy 0x12500023", summary()}}}) {
        pool->reset();
        t.target.script(GetParam().procedure, wire::result(0));
        t.target.scriptAlways(kGetParam, row.timeout);
        t.target.scriptAlways(kGetCommandState, row.state);
        EXPECT_EQ(call(), row.status);
        EXPECT_EQ(messages(pool), row.expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, PauseStep, ::testing::ValuesIn(kCommands),
                         [](const auto& parameter) { return std::to_string(parameter.param.procedure); });
