// The port as a whole.
#include <future>

#include "target/target_calls.h"

namespace simulated_target {
namespace {

using Port = TargetCalls;

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
