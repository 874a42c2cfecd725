// Steering a target while it runs: commands in lines of text, answered in lines of JSON.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "simulator/report_json.h"
#include "simulator/simulated_target.h"

namespace simulated_target {

/// The latest requests. May be used by several threads at once.
class RequestHistory {
public:
    static constexpr std::size_t kMost = 1000;

    void add(const RequestReport& report);
    Json toJson() const;

private:
    mutable std::mutex mutex_{}; // guards what follows
    std::deque<RequestReport> requests_{};
};

/// May be asked by several threads at once.
class Control {
public:
    /// Target and history outlive it. `quit` asks the program to end.
    Control(SimulatedTarget& target, const RequestHistory& history, std::function<void()> quit)
        : target_(target), history_(history), quit_(std::move(quit)) {}

    /// Carries out "COMMAND [ARGUMENT]". Result: one line, without its end.
    std::string answer(std::string_view line) const;

private:
    struct Row;
    Json carryOut(std::string_view line) const;
    Json addFault(std::string_view rule) const;
    Json clearFaults(std::string_view) const;
    Json reboot(std::string_view milliseconds) const;
    Json dropConnections(std::string_view) const;
    Json crash(std::string_view applId) const;
    Json state(std::string_view) const;
    Json requests(std::string_view) const;
    Json quit(std::string_view) const;

    SimulatedTarget& target_;
    const RequestHistory& history_;
    const std::function<void()> quit_;
};

} // namespace simulated_target
