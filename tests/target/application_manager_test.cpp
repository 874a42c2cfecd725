// The application-manager program: groups, states, commands, parameters.
#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;

constexpr std::uint32_t kState = 11;
constexpr std::uint32_t kRegistered = 0;
constexpr std::uint32_t kLoaded = 1;
constexpr std::uint32_t kReady = 2;
constexpr std::uint32_t kRunning = 3;
constexpr std::uint32_t kPaused = 5;
constexpr std::uint32_t kStopped = 6;

using Processes = TargetCalls;

template <class Reply>
std::uint32_t codeOfRefusal(const Reply& reply) {
    EXPECT_EQ(reply.result, -1);
    return onlyCode(reply.errorList);
}

TEST_F(Processes, AcceptACommandInItsStatesOnly) {
    struct Step {
        std::uint32_t leadsTo;
        std::vector<std::uint32_t> refused, accepted;
    };
    const Step steps[] = {
        {kRegistered, {kInitAppl, kStartAppl, kStopAppl, kApplyAppl, kTerminateAppl}, {}},
        {kLoaded, {kStartAppl, kPauseAppl, kStopAppl}, {kLoadAppl, kInitAppl, kLoadAppl, kInitAppl}},
        {kReady, {kInitAppl, kApplyAppl, kStopAppl, kPauseAppl}, {kApplyAppl}},
        {kRunning, {kLoadAppl, kLoadApplComplete, kStartAppl, kStepAppl}, {kStartAppl}},
        {kPaused, {kLoadAppl, kLoadApplComplete, kPauseAppl}, {kPauseAppl, kStepAppl}},
        {kRunning, {kStepAppl}, {kStartAppl}},
        {kStopped, {kInitAppl, kStopAppl, kPauseAppl, kStepAppl}, {kPauseAppl, kStopAppl}},
        {kRegistered, {kStartAppl}, {kStartAppl, kTerminateAppl}},
        {kReady, {kApplyAppl}, {kLoadApplComplete}},
    };
    const std::uint32_t applId = newProcess();
    putBinary(applId);
    for (const Step& step : steps) {
        for (const std::uint32_t procedure : step.accepted) {
            EXPECT_EQ(command(procedure, applId).result, 0) << procedure;
            EXPECT_EQ(commandState(applId).result, 0) << procedure;
        }
        for (const std::uint32_t procedure : step.refused) {
            EXPECT_EQ(codeOfRefusal(command(procedure, applId)), 0x14a00801U) << procedure;
        }
        EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), step.leadsTo);
    }
    EXPECT_EQ(command(kUnloadAppl, applId).result, 0);
    EXPECT_EQ(codeOfRefusal(command(kStartAppl, applId)), 0x14a00803U);
}

TEST_F(Processes, HaveANumberOfTheirOwnInTheirGroup) {
    const TApplManGroupPart group = openGroup(2);
    TApplManGroupPart invented = group;
    invented.words[2] += 1000;
    TApplManGroupPart larger = group;
    larger.words[3] = 3;
    EXPECT_EQ(codeOfRefusal(registerProcess(3, group)), 0x14a00807U);
    EXPECT_EQ(codeOfRefusal(registerProcess(1, invented)), 0x14a00809U);
    const auto second = registerProcess(2, group);
    EXPECT_EQ(codeOfRefusal(registerProcess(2, group)), 0x14a00808U);
    EXPECT_EQ(codeOfRefusal(registerProcess(3, larger)), 0x14a0080aU);
    EXPECT_EQ(command(kUnloadAppl, static_cast<std::uint32_t>(second.applId)).result, 0);
    EXPECT_EQ(registerProcess(2, group).result, 0); // its place is free again
}

TEST_F(Processes, AndTheirFreeParametersAreBounded) {
    const std::uint32_t applId = newProcess();
    for (std::uint32_t number = 5000; number < 5256; ++number) {
        ASSERT_EQ(set(applId, number, std::uint32_t{1}).result, 0);
    }
    EXPECT_EQ(codeOfRefusal(set(applId, 5256, std::uint32_t{1})), 0x14a0080dU);
    EXPECT_EQ(set(applId, 5000, Text{"another"}).result, 0);

    const TApplManGroupPart group = openGroup(5000);
    std::uint32_t number = 1;
    while (number <= 5000 && registerProcess(number, group).result == 0) {
        ++number;
    }
    EXPECT_EQ(number, 4096U); // one was there
    EXPECT_EQ(codeOfRefusal(registerProcess(number, group)), 0x14a0080dU);
}

} // namespace
} // namespace simulated_target
