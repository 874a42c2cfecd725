// Work that can be ended from outside, which no call of the library can be: jobs that run in workers and report to a
// supervisor. A worker is a process of its own, on Windows a thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

namespace tool {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

/// A job's side of its worker. Used by the job's own thread only.
class WorkerLink {
public:
    WorkerLink() = default;
    WorkerLink(const WorkerLink&) = delete;
    WorkerLink& operator=(const WorkerLink&) = delete;
    virtual ~WorkerLink() = default;

    /// Hands an event to the supervisor.
    virtual void tell(const Json& event) = 0;

    /// Does not return when the job is to end. So between two checkpoints a job is interrupted only when that takes longer
    /// than the supervisor's patience.
    virtual void checkpoint() = 0;
};

/// Begins in a process that has made no call of the library yet, on Windows in any. It holds what it needs by value, since
/// a thread may outlast its supervisor. What it throws makes it `broken`.
using Job = std::function<void(WorkerLink&)>;

enum class JobEnd {
    notBegun,
    finished,
    ended,  // it was asked to, or killed
    broken, // it has crashed, or was killed by somebody else
};

/// Why the supervisor has ended jobs.
enum class Cut { none, interrupted, timedOut };

struct JobLimits {
    std::size_t atATime = 1;
    std::optional<Clock::time_point> deadline{};
    std::chrono::milliseconds grace{2000}; ///< from being asked to end until being killed
    bool interruptible = true; ///< whether the user's first Ctrl-C ends them; the second always ends the program
};

struct JobsDone {
    Cut cut = Cut::none;
    std::vector<JobEnd> ends{}; // per job
};

/// Receives the events of the jobs, on the thread that runs them.
using EventHandler = std::function<void(std::size_t job, const Json& event)>;

/// Runs the jobs and waits for them. On Ctrl-C (SIGINT, SIGTERM, SIGHUP) and at the deadline they are asked to end, and
/// killed when they have not ended soon. What the handler throws ends them, too.
/// The caller has made no call of the library, and has no other thread.
JobsDone runJobs(const std::vector<Job>& jobs, const JobLimits& limits, const EventHandler& onEvent);

/// Ends the program. Threads that are left do not hold it up.
[[noreturn]] void leave(int code);

/// From now on a first Ctrl-C is noted for runJobs, and a second one ends the program at once with 131.
void catchInterruptions();

} // namespace tool
