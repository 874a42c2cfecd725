#include "simulator/report_json.h"

#include <array>
#include <cstdio>

#include "simulator/procedure_names.h"

namespace simulated_target {
namespace {

constexpr std::array kStatusNames{
    "success",           "program unavailable", "program version unavailable", "procedure unavailable",
    "garbage arguments", "system error"};

template <class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

} // namespace

Json toJson(const ReportedMessage& message) { return {{"code", codeText(message.code)}, {"text", message.text}}; }

Json toJson(const RequestReport& report) {
    Json messages = Json::array();
    for (const ReportedMessage& message : report.messages) {
        messages.push_back(toJson(message));
    }
    constexpr double kMicroseconds = 1000.0; // in a millisecond
    return {{"number", report.number},
            {"time", timeText(report.time)},
            {"peer", report.peer},
            {"procedure", procedureName(report.program, report.procedure)},
            {"application", orNull(report.application)},
            {"parameter", orNull(report.parameter)},
            {"faults", report.faults},
            {"status", statusName(report.status)},
            {"result", orNull(report.result)},
            {"messages", std::move(messages)},
            {"durationMs", static_cast<double>(report.duration.count()) / kMicroseconds}};
}

Json toJson(const RuleCount& count) { return {{"rule", count.rule}, {"calls", count.calls}, {"fired", count.fired}}; }

std::string timeText(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto day = floor<days>(time);
    const year_month_day date{day};
    const hh_mm_ss clock{floor<milliseconds>(time - day)};
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return text.data();
}

std::string statusName(kvrpc::AcceptStatus status) {
    const auto number = static_cast<std::uint32_t>(status);
    return number < kStatusNames.size() ? kStatusNames[number] : std::to_string(number);
}

std::string codeText(std::uint32_t code) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08x", static_cast<unsigned>(code));
    return text.data();
}

std::string lineOf(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

} // namespace simulated_target
