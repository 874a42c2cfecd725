// The log of a target: a line per event, as text or as JSON.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/programs/program_runner.h"
#include "simulator/report_json.h"

namespace simulated_target {

enum class LogFormat : std::uint8_t { text, json };

/// May be used by several threads at once. What cannot be written is dropped.
class EventLog {
public:
    /// Appends to a file; an empty name is standard error. Text is in colour on a terminal, unless the environment has
    /// NO_COLOR. Throws std::system_error when the file cannot be opened.
    EventLog(const std::string& file, LogFormat format);

    void listening(const std::string& address, const std::string& store);
    void request(const RequestReport& report) noexcept;
    void program(std::uint32_t applId, ProgramNews news, std::string_view line) noexcept;
    void end(const std::vector<RuleCount>& rules);

private:
    using Clock = std::chrono::system_clock;
    struct Closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    void write(const char* event, Clock::time_point time, const Json& fields, const std::string& text);

    const std::unique_ptr<std::FILE, Closer> opened_; // null for standard error
    std::FILE* const file_;
    const LogFormat format_;
    const bool colour_;
    std::mutex mutex_{}; // keeps lines whole
};

/// "start@2:hang fired 1 time in 3 calls"
std::string ruleText(const RuleCount& count);

} // namespace simulated_target
