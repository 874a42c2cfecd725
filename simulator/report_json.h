// What is told of a target as JSON: by its log, and in answers to those who steer it.
#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include "simulator/fault_plan.h"
#include "simulator/request_report.h"

namespace simulated_target {

using Json = nlohmann::ordered_json;

/// Of every object that stands alone. Fields may be added under the same number; another one means other fields.
inline constexpr int kJsonSchema = 1;

Json toJson(const ReportedMessage& message);
Json toJson(const RequestReport& report);
Json toJson(const RuleCount& count);

/// In milliseconds, "2026-01-31T12:34:56.789Z".
std::string timeText(std::chrono::system_clock::time_point time);

/// "success", "procedure unavailable"; the number of a status that has no name.
std::string statusName(kvrpc::AcceptStatus status);

/// Hexadecimal behind 0x.
std::string codeText(std::uint32_t code);

/// One line. Bytes that are no UTF-8 are replaced.
std::string lineOf(const Json& json);

} // namespace simulated_target
