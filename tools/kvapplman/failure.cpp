#include "failure.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>

#include "explanations.h"

namespace tool {
namespace {

using enum ExitCode;

struct MessageEnd {
    std::uint32_t code;
    ExitCode exitCode;
};

// A message that has no row says nothing about the end: the one around it does, or at last the status.
constexpr MessageEnd kMessageEnds[] = {
    {KV_PLATFORM_MSG_ADDRESS_MALFORMED, usage},

    {KV_PLATFORM_MSG_RPC_CONNECTION_REFUSED, unreachable},
    {KV_PLATFORM_MSG_RPC_HOST_UNREACHABLE, unreachable},
    {KV_PLATFORM_MSG_RPC_CONNECT_TIMED_OUT, unreachable},
    {KV_PLATFORM_MSG_RPC_CONNECT_FAILED, unreachable},
    {KV_PLATFORM_MSG_RPC_CONNECTION_LOST, unreachable},

    {KV_PLATFORM_MSG_LEVEL_REFUSED, refused},
    {KV_PLATFORM_MSG_RPC_CALL_REFUSED, refused},
    {KV_PLATFORM_MSG_TRANSFER_REFUSED, refused},
    {KV_PLATFORM_MSG_TRANSFER_DIRECTORY_REFUSED, refused},
    {KV_APPLMAN_MSG_UNKNOWN_OPERATION_FAILED, refused},
    {KV_APPLMAN_MSG_DIRECTORIES_NOT_SUPPORTED, refused},
    {KV_APPLMAN_MSG_ACCESS_LEVEL_NOT_CLAIMED, refused},
    {KV_APPLMAN_MSG_FILE_LIST_REFUSED, refused},
    {KV_APPLMAN_MSG_LOAD_OPTIONS_NOT_SUPPORTED, refused},
    {KV_APPLMAN_MSG_REGISTRATION_NOT_OFFERED, refused},
    {KV_APPLMAN_MSG_GROUPS_NOT_SUPPORTED, refused},
    {KV_APPLMAN_MSG_FILE_NOT_REMOVED, refused},
    {KV_APPLMAN_MSG_FILE_NOT_REGISTERED, refused},
    {KV_APPLMAN_MSG_TARGET_DIRECTORY_NOT_CREATED, refused},
    {KV_APPLMAN_MSG_APPLICATION_NOT_LOADED, refused},

    {KV_PLATFORM_MSG_RPC_CALL_TIMED_OUT, timedOut},
    {KV_APPLMAN_MSG_WAIT_TIMED_OUT, timedOut},

    {KV_PLATFORM_MSG_TRANSFER_SOURCE_UNREADABLE, hostFile},
    {KV_PLATFORM_MSG_TRANSFER_SOURCE_CHANGED, hostFile},
    {KV_APPLMAN_MSG_BINARY_NOT_FOUND, hostFile},
    {KV_APPLMAN_MSG_SOURCE_NOT_FOUND, hostFile},
    {KV_APPLMAN_MSG_DIRECTORY_PATH_MISSING, hostFile},
    {KV_APPLMAN_MSG_DIRECTORY_NOT_FOUND, hostFile},
    {KV_APPLMAN_MSG_DIRECTORY_NOT_READ, hostFile},

    {KV_PLATFORM_MSG_RPC_REPLY_MALFORMED, garbage},
    {KV_APPLMAN_MSG_INVALID_TYPE, garbage},
    {KV_APPLMAN_MSG_INVALID_STATE, garbage},
    {KV_APPLMAN_MSG_COMMAND_TIMEOUT_UNKNOWN, garbage},
    {KV_APPLMAN_MSG_DIRECTORY_TARGET_INVALID, garbage},
    {KV_APPLMAN_MSG_FILE_TARGET_INVALID, garbage},
    {KV_APPLMAN_MSG_INIT_CALLS_INCONSISTENT, garbage},
};

// Messages of the target's own are refusals. That a program has ended by itself is none: it stands in front of whatever is
// said about the application.
constexpr std::uint32_t kTargetMessages = 0x14a00000;
constexpr std::uint32_t kOfWhom = 0xffff0000;
constexpr std::uint32_t kProgramEnded = 0x14a00814;

constexpr bool isRefusal(std::uint32_t code) { return (code & kOfWhom) == kTargetMessages && code != kProgramEnded; }

struct StatusEnd {
    std::int32_t status;
    ExitCode exitCode;
};

constexpr StatusEnd kStatusEnds[] = {
    {KV_APPLMAN_STATUS_IDENTIFIER, usage},
    {KV_APPLMAN_STATUS_CHANNEL, unreachable},
    {KV_APPLMAN_STATUS_REMOTE_CALL, refused}, // any other reason has a message of its own
    {KV_APPLMAN_STATUS_BINARY_NOT_FOUND, hostFile},
    {KV_APPLMAN_STATUS_FILE_SOURCE, hostFile},
    {KV_APPLMAN_STATUS_TYPE, garbage},
    {KV_APPLMAN_STATUS_STATE, garbage},
    {KV_APPLMAN_STATUS_PARAMETER, refused},
    {KV_APPLMAN_STATUS_START, refused},
    {KV_APPLMAN_STATUS_STOP, refused},
    {KV_APPLMAN_STATUS_TERMINATE, refused},
    {KV_APPLMAN_STATUS_PAUSE, refused},
    {KV_APPLMAN_STATUS_STEP, refused},
    {KV_APPLMAN_STATUS_UNLOAD, refused},
};

std::optional<ExitCode> exitCodeOfMessage(std::uint32_t code) {
    if (isRefusal(code)) { return refused; }
    for (const MessageEnd& row : kMessageEnds) {
        if (row.code == code) { return row.exitCode; }
    }
    return {};
}

/// What a person reads first: the innermost message that is about the failure.
std::string textOf(const kvapplman::Error& error) {
    for (const kvapplman::Message& message : error.messages()) {
        if (message.code != kProgramEnded && !message.text.empty()) { return message.text; }
    }
    return error.function() + " failed with status " + std::to_string(error.status()) + ".";
}

std::string nameOf(std::string_view kind, std::uint32_t code) {
    for (const Explanation& known : explanations()) {
        if (known.code == code && known.kind == kind) { return known.name; }
    }
    return {};
}

constexpr ExitCodeRow kExitCodes[] = {
    {done, "done"},
    {other, "failed in another way than those below; of run: a program has ended with an error"},
    {usage, "the command line or the configuration makes no sense"},
    {unreachable, "a target cannot be reached, or the connection was lost"},
    {refused, "a target has refused, or does not offer it"},
    {timedOut, "a target has not answered in time, or the time of --timeout is over"},
    {hostFile, "a file of this computer is missing or cannot be used"},
    {garbage, "what a target has answered makes no sense"},
    {partly, "done for some devices, and not for others"},
    {interrupted, "interrupted, and cleaned up"},
    {leftBehind, "interrupted, and not cleaned up"},
};

} // namespace

ExitCode exitCodeOf(std::int32_t status, const kvapplman::Messages& messages) {
    for (const kvapplman::Message& message : messages) {
        if (const auto exitCode = exitCodeOfMessage(message.code)) { return *exitCode; }
    }
    for (const StatusEnd& row : kStatusEnds) {
        if (row.status == status) { return row.exitCode; }
    }
    return other;
}

Failure failureOf(const std::exception& thrown) {
    if (const auto* const failed = dynamic_cast<const Failed*>(&thrown)) { return failed->failure(); }
    if (const auto* const error = dynamic_cast<const kvapplman::Error*>(&thrown)) {
        return {exitCodeOf(error->status(), error->messages()), textOf(*error), error->function(), error->status(),
                error->messages()};
    }
    const bool ofFiles = dynamic_cast<const std::filesystem::filesystem_error*>(&thrown) != nullptr;
    return {ofFiles ? hostFile : other, thrown.what()};
}

std::span<const ExitCodeRow> exitCodes() { return kExitCodes; }

std::string statusName(std::int32_t status) { return nameOf("status", static_cast<std::uint32_t>(status)); }

std::string messageName(std::uint32_t code) { return nameOf("message", code); }

std::string hexadecimal(std::uint32_t number) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08x", static_cast<unsigned>(number));
    return text.data();
}

Json toJson(const kvapplman::Messages& messages) {
    Json all = Json::array();
    for (const kvapplman::Message& message : messages) {
        all.push_back({{"code", hexadecimal(message.code)},
                       {"name", messageName(message.code)},
                       {"operation", message.operation},
                       {"line", message.line},
                       {"arguments", message.arguments},
                       {"text", message.text}});
    }
    return all;
}

Json toJson(const Failure& failure) {
    return {{"exitCode", static_cast<int>(failure.exitCode)},
            {"text", failure.text},
            {"function", failure.function},
            {"status", failure.status},
            {"statusName", statusName(failure.status)},
            {"messages", toJson(failure.messages)}};
}

Failure failureFrom(const Json& json) {
    Failure failure{static_cast<ExitCode>(json.at("exitCode").get<int>()), json.at("text"), json.at("function"),
                    json.at("status")};
    for (const Json& message : json.at("messages")) {
        failure.messages.push_back(
            {static_cast<std::uint32_t>(std::stoul(message.at("code").get<std::string>(), nullptr, 0)),
             message.at("line"), message.at("operation"), "", message.at("arguments"), message.at("text")});
    }
    return failure;
}

Json eventOf(const char* name, const Failure& failure) {
    Json event = toJson(failure);
    event["event"] = name;
    return event;
}

} // namespace tool
