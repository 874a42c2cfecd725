// Workers as threads: nobody kills a thread, but the library's calls may overlap. A job that is to end is kept at its next
// checkpoint for ever, within a transfer too; one that does not come to a checkpoint in time is left to itself. What it
// would still tell is not heard.
#include "worker.h"

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <windows.h>

namespace tool {
namespace {

constexpr std::chrono::milliseconds kSlice{50}; // how soon an interruption is noticed
constexpr int kGivenUp = 131;

std::atomic<int> interruptions{0};
std::atomic<bool> threadsAreLeft{false};

/// What supervisor and workers share; lives as long as one of them.
struct Shared {
    std::mutex mutex{}; // guards what follows
    std::condition_variable changed{};
    std::deque<std::pair<std::size_t, Json>> events{};
    std::vector<JobEnd> ends{};
    std::size_t running = 0;
    bool cut = false;
    bool closed = false; // nobody listens any more
};

void stayForEver() {
    for (;;) {
        std::this_thread::sleep_for(std::chrono::hours{1});
    }
}

void markEnd(Shared& shared, std::size_t job, JobEnd end) {
    const std::lock_guard lock{shared.mutex};
    shared.ends[job] = end;
    --shared.running;
    shared.changed.notify_all();
}

class ThreadLink : public WorkerLink {
public:
    ThreadLink(std::shared_ptr<Shared> shared, std::size_t job) : shared_(std::move(shared)), job_(job) {}

    void tell(const Json& event) override {
        const std::lock_guard lock{shared_->mutex};
        if (shared_->closed) { return; }
        shared_->events.emplace_back(job_, event);
        shared_->changed.notify_all();
    }

    void checkpoint() override {
        {
            const std::lock_guard lock{shared_->mutex};
            if (!shared_->cut) { return; }
        }
        markEnd(*shared_, job_, JobEnd::ended);
        stayForEver();
    }

private:
    std::shared_ptr<Shared> shared_;
    std::size_t job_;
};

void begin(const std::shared_ptr<Shared>& shared, const Job& job, std::size_t number) {
    std::thread{[shared, job, number] {
        JobEnd end = JobEnd::finished;
        try {
            ThreadLink link{shared, number};
            job(link);
        } catch (...) { end = JobEnd::broken; }
        markEnd(*shared, number, end);
    }}.detach();
}

/// Hands on what has arrived. Called with the lock, which it opens meanwhile.
void handOn(Shared& shared, std::unique_lock<std::mutex>& lock, const EventHandler& onEvent) {
    const auto events = std::exchange(shared.events, {});
    lock.unlock();
    for (const auto& [job, event] : events) {
        onEvent(job, event);
    }
    lock.lock();
}

struct Closing {
    Shared& shared;
    ~Closing() {
        const std::lock_guard lock{shared.mutex};
        shared.closed = true;
    }
};

BOOL WINAPI noteInterruption(DWORD) {
    if (++interruptions > 1) {
        std::fputs("\nkvapplman: given up; look what is left on the targets\n", stderr);
        TerminateProcess(GetCurrentProcess(), kGivenUp);
    }
    return TRUE;
}

} // namespace

void catchInterruptions() { SetConsoleCtrlHandler(noteInterruption, TRUE); }

JobsDone runJobs(const std::vector<Job>& jobs, const JobLimits& limits, const EventHandler& onEvent) {
    const auto shared = std::make_shared<Shared>();
    const Closing closing{*shared};
    std::unique_lock lock{shared->mutex};
    shared->ends.resize(jobs.size(), JobEnd::notBegun);
    JobsDone done;
    std::optional<Clock::time_point> leavingTime;
    for (std::size_t next = 0;;) {
        const bool due = limits.deadline && Clock::now() >= *limits.deadline;
        const bool interrupted = limits.interruptible && interruptions > 0;
        if (!shared->cut && (due || interrupted)) {
            done.cut = interrupted ? Cut::interrupted : Cut::timedOut;
            shared->cut = true;
            leavingTime = Clock::now() + limits.grace;
        }
        for (; !shared->cut && next < jobs.size() && shared->running < limits.atATime; ++next) {
            shared->ends[next] = JobEnd::ended; // unless it says otherwise
            ++shared->running;
            begin(shared, jobs[next], next);
        }
        handOn(*shared, lock, onEvent);
        if (shared->running == 0 && shared->events.empty() && (shared->cut || next == jobs.size())) { break; }
        if (leavingTime && Clock::now() >= *leavingTime) { break; }
        if (shared->events.empty()) { shared->changed.wait_for(lock, kSlice); }
    }
    if (shared->cut) { threadsAreLeft = true; }
    done.ends = shared->ends;
    lock.unlock();
    return done;
}

void leave(int code) {
    std::fflush(nullptr);
    if (threadsAreLeft) { TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code)); }
    std::exit(code);
}

} // namespace tool
