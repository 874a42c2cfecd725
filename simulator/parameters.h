// The parameters that a target knows: type, whose they are, and where their values come from.
#pragma once

#include <cstdint>
#include <string>

#include "protocol/parameter_numbers.h"
#include "simulator/application.h"

namespace simulated_target {

/// Of the application manager itself.
struct ManagerFacts {
    std::uint32_t cnSerialNumber = 0;
    std::uint32_t initialisationCalls = 0;
    std::uint32_t commandTimeout = 0; // seconds
    std::uint32_t processCount = 0;
    std::int64_t startTime = 0; // seconds since 1970-01-01 00:00 UTC
    std::int64_t time = 0;      // likewise
};

enum class Access { readOnly, writable };

struct Parameter {
    applman::ParameterNumbers numbers;
    applman::ValueTag tag;
    bool ofProcess;
    bool ofManager;
    Access access;
    /// The value that it has, or, when it is writable, that it has before it is written. The process is null for the
    /// application manager's own.
    applman::TApplManValue (*value)(const ManagerFacts& facts, const Application* process);
};

/// Null for a number that has no meaning to the target. Hosts may keep values of any type under such numbers.
const Parameter* findParameter(std::uint32_t number) noexcept;

/// Where the process's binary has to be transferred to, as parameters 4 and 3 tell.
std::string binaryDirectory(const Application& process);
std::string binaryName(const Application& process);

inline constexpr const char* kApplicationsDirectory = "applications";
inline constexpr std::uint32_t kArguments = applman::param::kParameter1001.target;
inline constexpr std::uint32_t kCores = applman::param::kParameter1005.target; // on which a process runs

} // namespace simulated_target
