// Progress of one or several tasks: bars on a terminal, a line per tenth elsewhere, events in the form of JSON lines.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "output.h"

namespace tool {

struct ProgressState {
    double fraction = 0.0; ///< 0.0 to 1.0
    std::string phase{};
    std::string file{};
    std::optional<std::uint64_t> bytes{}; ///< transferred so far, when that is known
    std::optional<std::uint64_t> totalBytes{};
};

/// When a task's progress is worth telling: on a terminal and in JSON 20 times a second at most, elsewhere when a tenth more
/// is done. Never 100 %, which only the end of the call is.
class ProgressPace {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit ProgressPace(bool byTenths) : byTenths_(byTenths) {}
    bool isDue(double fraction, Time now);
    /// Percent that may be shown while the call runs: 99 at most.
    static int percentOf(double fraction);

private:
    bool byTenths_;
    std::optional<Time> last_{};
    int tenth_ = 0;
};

class Progress {
public:
    explicit Progress(Output& output) : output_(output) {}

    /// Tells how far the task of this name is: usually a device and what happens to it.
    void show(const std::string& name, const ProgressState& state);
    /// The call of the task has returned 0.
    void finish(const std::string& name);
    /// It has failed, or ends unfinished.
    void drop(const std::string& name);

private:
    using Time = ProgressPace::Time;

    struct Task {
        std::string name;
        Time begin;
        ProgressPace pace;
        ProgressState state{};
    };

    Task& taskOf(const std::string& name, Time now);
    void tell(const Task& task, int percent, Time now);
    void drawAll(Time now);

    Output& output_;
    std::vector<Task> tasks_{};
};

} // namespace tool
