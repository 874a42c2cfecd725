// The exit code of a call that has failed.
#include <gtest/gtest.h>

#include "tools/kvapplman/failure.h"

namespace {

using kvapplman::Messages;
using tool::ExitCode;
using enum tool::ExitCode;

Messages reported(const std::vector<std::uint32_t>& codes) {
    Messages messages;
    for (const std::uint32_t code : codes) {
        messages.push_back({code, 7, "operation", "%s", {"argument"}, "text of " + std::to_string(code)});
    }
    return messages;
}

constexpr std::uint32_t kProgramEnded = 0x14a00814;
constexpr std::uint32_t kNotAllowed = 0x14a00801;

TEST(Ends, TheInnermostMessageThatSaysItDecides) {
    const struct {
        std::int32_t status;
        std::vector<std::uint32_t> codes;
        ExitCode exitCode;
    } cases[] = {
        {KV_APPLMAN_STATUS_REMOTE_CALL,
         {KV_PLATFORM_MSG_RPC_CONNECTION_REFUSED, KV_APPLMAN_MSG_REMOTE_CALL_FAILED},
         unreachable},
        {KV_APPLMAN_STATUS_REMOTE_CALL, {KV_PLATFORM_MSG_RPC_CALL_TIMED_OUT, KV_APPLMAN_MSG_CANNOT_START}, timedOut},
        {KV_APPLMAN_STATUS_REMOTE_CALL, {KV_PLATFORM_MSG_RPC_REPLY_MALFORMED}, garbage},
        {KV_APPLMAN_STATUS_REMOTE_CALL, {KV_PLATFORM_MSG_RPC_CALL_REFUSED}, refused},
        {KV_APPLMAN_STATUS_START, {kNotAllowed, KV_APPLMAN_MSG_CANNOT_START}, refused},
        {KV_APPLMAN_STATUS_START, {kProgramEnded, KV_APPLMAN_MSG_WAIT_TIMED_OUT}, timedOut},
        {KV_APPLMAN_STATUS_BINARY_NOT_FOUND, {KV_APPLMAN_MSG_BINARY_NOT_FOUND}, hostFile},
        {KV_APPLMAN_STATUS_FILE_SOURCE, {}, hostFile},
        {KV_APPLMAN_STATUS_TYPE, {0x77000001}, garbage},
        {-9999, {0x77000001}, other},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(tool::exitCodeOf(each.status, reported(each.codes)), each.exitCode) << each.status;
    }
}

TEST(Ends, AFailureIsTheSameAfterItsWayThroughJson) {
    const kvapplman::Error error{"KvApplMan_startAppl", KV_APPLMAN_STATUS_START,
                                 reported({kProgramEnded, kNotAllowed})};
    const tool::Failure before = tool::failureOf(error);
    const tool::Failure after = tool::failureFrom(tool::Json::parse(tool::toJson(before).dump()));
    EXPECT_EQ(before.text,
              "text of " + std::to_string(kNotAllowed)); // that a program has ended says nothing about the call
    EXPECT_EQ(after.exitCode, refused);
    EXPECT_EQ(after.text, before.text);
    EXPECT_EQ(after.function, "KvApplMan_startAppl");
    EXPECT_EQ(after.status, KV_APPLMAN_STATUS_START);
    ASSERT_EQ(after.messages.size(), 2U);
    EXPECT_EQ(after.messages[1].code, kNotAllowed);
    EXPECT_EQ(after.messages[1].arguments, std::vector<std::string>{"argument"});
}

} // namespace
