// How the tool ends: exit codes, and why something was not done.
#pragma once

#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "KvApplMan.hpp"

namespace tool {

using Json = nlohmann::json;

enum class ExitCode : int {
    done = 0,
    other = 1,
    usage = 2,
    unreachable = 3,
    refused = 4, // or not offered by the target
    timedOut = 5,
    hostFile = 6,
    garbage = 7, // what the target answered makes no sense
    partly = 8,  // done for some devices, and not for others
    interrupted = 130,
    leftBehind = 131, // interrupted, and not cleaned up
};

struct ExitCodeRow {
    ExitCode code;
    const char* meaning;
};

/// Every exit code and what it means, for those who tell about it.
std::span<const ExitCodeRow> exitCodes();

/// Why something was not done.
struct Failure {
    ExitCode exitCode = ExitCode::other;
    std::string text{};             ///< for the person in front of the tool
    std::string function{};         ///< the library's function that failed; empty when the tool itself found it
    std::int32_t status = 0;        ///< what it returned
    kvapplman::Messages messages{}; ///< what it reported, innermost first
};

/// What the tool itself throws.
class Failed : public std::exception {
public:
    Failed(ExitCode exitCode, std::string text) : failure_{exitCode, std::move(text)} {}
    explicit Failed(Failure failure) : failure_(std::move(failure)) {}
    const char* what() const noexcept override { return failure_.text.c_str(); }
    const Failure& failure() const noexcept { return failure_; }

private:
    Failure failure_;
};

/// The exit code of a call that failed: that of the innermost message that has one, else that of the status.
ExitCode exitCodeOf(std::int32_t status, const kvapplman::Messages& messages);

/// Understands kvapplman::Error and Failed; any other exception is `other`, or `hostFile` when the file system threw it.
Failure failureOf(const std::exception& thrown);

/// The name of a status, KV_APPLMAN_STATUS_…; empty when it has none.
std::string statusName(std::int32_t status);

/// The name of a message, KV_APPLMAN_MSG_…, KV_PLATFORM_MSG_… or TARGET_…; empty when it has none.
std::string messageName(std::uint32_t code);

/// "0x1250000a"
std::string hexadecimal(std::uint32_t number);

Json toJson(const kvapplman::Messages& messages);
Json toJson(const Failure& failure);
Failure failureFrom(const Json& json);

/// The same as an event of a worker.
Json eventOf(const char* name, const Failure& failure);

} // namespace tool
