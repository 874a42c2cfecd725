// The port as a whole: programs and versions, prescribed replies.
#include <future>

#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;
using kvrpc::AcceptStatus;

using Port = TargetCalls;

TEST_F(Port, AnswersTwoProgramsOfOneVersionEach) {
    struct Row {
        std::uint32_t program, version, procedure;
        AcceptStatus status;
    };
    const Row rows[] = {
        {kApplManProgram, 2, 0, AcceptStatus::success},
        {file_transfer::kProgram, 1, 0, AcceptStatus::success},
        {kApplManProgram, 1, 0, AcceptStatus::programMismatch},
        {file_transfer::kProgram, 2, 1, AcceptStatus::programMismatch},
        {0, 2, 0, AcceptStatus::programUnavailable},
        {file_transfer::kProgram, 1, 7, AcceptStatus::procedureUnavailable},
        {kApplManProgram, 2, 30, AcceptStatus::procedureUnavailable},
    };
    for (const Row& row : rows) {
        const auto reply = call(row.program, row.version, row.procedure, {});
        EXPECT_EQ(reply.status, row.status) << row.program << " " << row.version << " " << row.procedure;
        EXPECT_TRUE(reply.results.empty());
    }
    const auto mismatch = call(kApplManProgram, 3, 0, {});
    EXPECT_EQ(mismatch.lowestVersion, 2U);
    EXPECT_EQ(mismatch.highestVersion, 2U);
}

TEST_F(Port, TellsArgumentsThatEndTooEarly) {
    for (const std::uint32_t procedure : {2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 13U, 17U, 18U, 29U}) {
        EXPECT_EQ(call(kApplManProgram, 2, procedure, {0, 0, 1}).status, AcceptStatus::garbageArguments) << procedure;
    }
}

TEST_F(Port, AnswersOneHostWhileAnotherWaitsAndHurriesTheOtherWhenItStops) {
    ScriptedReply late = wire::result(5);
    late.delay = std::chrono::hours{1};
    service().script(kGetCommandState, late);
    auto waited = std::async(std::launch::async, [&] { return commandState(0).result; });
    while (service().requests().empty()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(commandState(0).result, 0);
    service().hurry(true);
    EXPECT_EQ(waited.get(), 5);
}

} // namespace
} // namespace simulated_target
