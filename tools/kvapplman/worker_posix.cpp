// Workers as forked processes. Fork alone will do, without a program of its own to be executed: the supervisor has no
// thread and has made no call of the library, so that a child begins with nothing that it would have to leave alone.
// Events travel as lines of JSON through a pipe per worker.
#include "worker.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tool {
namespace {

constexpr int kEndedWhenAsked = 3; // exit codes of workers
constexpr int kJobThrew = 4;
constexpr int kGivenUp = 131;
constexpr std::string_view kGivenUpText = "\nkvapplman: given up; look what is left on the targets\n";

volatile std::sig_atomic_t interruptions = 0;
std::array<int, 2> wakeUp{-1, -1}; // a pipe: what is written at an interruption ends a wait

[[noreturn]] void failWith(const char* what) { throw std::system_error{errno, std::generic_category(), what}; }

void noteInterruption(int) {
    const int error = errno;
    interruptions = interruptions + 1;
    if (interruptions > 1) {
        [[maybe_unused]] const auto told = write(STDERR_FILENO, kGivenUpText.data(), kGivenUpText.size());
        _exit(kGivenUp); // the workers end with this process
    }
    [[maybe_unused]] const auto woken = write(wakeUp[1], "!", 1);
    errno = error;
}

/// Both ends are closed when a program is executed.
std::array<int, 2> makePipe(int flags = 0) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | flags) != 0) { failWith("no pipe"); }
    return ends;
}

class ProcessLink : public WorkerLink {
public:
    explicit ProcessLink(int pipe) : pipe_(pipe) {}

    void tell(const Json& event) override {
        const std::string line = event.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
        std::string_view rest = line;
        while (!rest.empty()) {
            const ssize_t written = write(pipe_, rest.data(), rest.size());
            if (written < 0 && errno != EINTR) { _exit(EXIT_FAILURE); } // nobody is interested any more
            rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
        }
    }

    void checkpoint() override {
        sigset_t pending;
        if (sigpending(&pending) == 0 && sigismember(&pending, SIGTERM) == 1) { _exit(kEndedWhenAsked); }
    }

private:
    int pipe_;
};

/// Makes this process, just forked, a worker: it ends with its supervisor, and leaves Ctrl-C to it. SIGTERM stays pending, so
/// that no call of the library is interrupted.
void becomeWorker(pid_t supervisor) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != supervisor) { _exit(EXIT_FAILURE); }
    for (const int signal : {SIGINT, SIGHUP}) {
        std::signal(signal, SIG_IGN);
    }
    sigset_t asked;
    sigemptyset(&asked);
    sigaddset(&asked, SIGTERM);
    sigprocmask(SIG_BLOCK, &asked, nullptr);
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGPIPE, SIG_DFL);
}

[[noreturn]] void work(const Job& job, int pipe) noexcept {
    ProcessLink link{pipe};
    try {
        job(link);
    } catch (...) { _exit(kJobThrew); }
    _exit(EXIT_SUCCESS); // the supervisor's output is not written once more
}

struct Worker {
    std::size_t job;
    pid_t process;
    int pipe;
    std::string unread{}; // of a line that is not complete
};

/// The workers of one runJobs. Its end kills those that are left.
class Workers {
public:
    Workers(const std::vector<Job>& jobs, const JobLimits& limits, const EventHandler& onEvent)
        : jobs_(jobs), limits_(limits), onEvent_(onEvent) {
        done_.ends.resize(jobs.size(), JobEnd::notBegun);
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    ~Workers() {
        killAll();
        for (const Worker& worker : running_) {
            close(worker.pipe);
            waitpid(worker.process, nullptr, 0);
        }
    }

    JobsDone run() {
        for (;;) {
            noticeCut();
            beginMore();
            if (running_.empty()) { return std::move(done_); }
            wait();
            readAll();
        }
    }

private:
    void noticeCut() {
        const bool due = limits_.deadline && Clock::now() >= *limits_.deadline;
        const bool interrupted = limits_.interruptible && interruptions > 0;
        if (done_.cut == Cut::none && (interrupted || due)) {
            done_.cut = interrupted ? Cut::interrupted : Cut::timedOut;
            killingTime_ = Clock::now() + limits_.grace;
            for (const Worker& worker : running_) {
                kill(worker.process, SIGTERM);
            }
        }
        if (killingTime_ && Clock::now() >= *killingTime_) { killAll(); }
    }

    void killAll() const {
        for (const Worker& worker : running_) {
            kill(worker.process, SIGKILL);
        }
    }

    void beginMore() {
        while (done_.cut == Cut::none && next_ < jobs_.size() && running_.size() < limits_.atATime) {
            begin(next_++);
        }
    }

    void begin(std::size_t job) {
        const std::array<int, 2> pipe = makePipe();
        const pid_t supervisor = getpid();
        const pid_t process = fork();
        if (process < 0) { failWith("no process for a worker"); }
        if (process == 0) {
            becomeWorker(supervisor);
            close(pipe[0]);
            for (const Worker& other : running_) {
                close(other.pipe);
            }
            work(jobs_[job], pipe[1]);
        }
        close(pipe[1]);
        running_.push_back({job, process, pipe[0]});
    }

    /// Until there is something to read, an interruption, or the time is up for the next step.
    void wait() {
        polled_.clear();
        for (const Worker& worker : running_) {
            polled_.push_back({worker.pipe, POLLIN, 0});
        }
        if (interruptions == 0) { polled_.push_back({wakeUp[0], POLLIN, 0}); } // it stays readable from then on
        const auto until = killingTime_ ? killingTime_ : limits_.deadline;
        if (poll(polled_.data(), polled_.size(), until ? millisecondsUntil(*until) : -1) < 0 && errno != EINTR) {
            failWith("cannot wait for workers");
        }
    }

    static int millisecondsUntil(Clock::time_point time) {
        using std::chrono::milliseconds;
        constexpr milliseconds kLongest{3'600'000}; // then it waits once more
        const auto left = std::chrono::ceil<milliseconds>(time - Clock::now());
        return static_cast<int>(std::clamp(left, milliseconds{0}, kLongest).count());
    }

    void readAll() {
        for (std::size_t i = 0, at = 0; at < running_.size(); ++i) {
            const bool readable = (polled_[i].revents & (POLLIN | POLLHUP | POLLERR)) != 0;
            if (readable && !readEvents(running_[at])) {
                finish(running_[at]);
                running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(at));
            } else {
                ++at;
            }
        }
    }

    /// False when there is nothing more.
    bool readEvents(Worker& worker) {
        std::array<char, 65536> bytes;
        const ssize_t count = read(worker.pipe, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) { return true; }
        if (count <= 0) { return false; }
        worker.unread.append(bytes.data(), static_cast<std::size_t>(count));
        std::size_t begin = 0;
        for (std::size_t end; (end = worker.unread.find('\n', begin)) != std::string::npos; begin = end + 1) {
            onEvent_(worker.job, Json::parse(worker.unread.begin() + static_cast<std::ptrdiff_t>(begin),
                                             worker.unread.begin() + static_cast<std::ptrdiff_t>(end)));
        }
        worker.unread.erase(0, begin);
        return true;
    }

    void finish(const Worker& worker) {
        int status = 0;
        while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {}
        close(worker.pipe);
        done_.ends[worker.job] = endOf(status);
        const bool endedAlone = done_.ends[worker.job] == JobEnd::ended && done_.cut == Cut::none;
        if (endedAlone) {
            interruptions = interruptions + 1;
        } // somebody has asked the worker in the supervisor's place
    }

    JobEnd endOf(int status) const {
        if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) { return JobEnd::finished; }
        const bool asked = WIFEXITED(status) && WEXITSTATUS(status) == kEndedWhenAsked;
        return asked || done_.cut != Cut::none ? JobEnd::ended : JobEnd::broken;
    }

    const std::vector<Job>& jobs_;
    const JobLimits& limits_;
    const EventHandler& onEvent_;
    JobsDone done_{};
    std::size_t next_ = 0;
    std::vector<Worker> running_{};
    std::vector<pollfd> polled_{};
    std::optional<Clock::time_point> killingTime_{};
};

/// What the caller has chosen to ignore stays ignored.
void catchSignal(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) { return; }
    action.sa_handler = noteInterruption;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

void catchInterruptions() {
    if (wakeUp[0] >= 0) { return; }
    wakeUp = makePipe(O_NONBLOCK);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        catchSignal(signal);
    }
    std::signal(SIGPIPE, SIG_IGN); // whoever reads the output may go; what is on the targets is cleaned up all the same
}

void leave(int code) { std::exit(code); }

JobsDone runJobs(const std::vector<Job>& jobs, const JobLimits& limits, const EventHandler& onEvent) {
    return Workers{jobs, limits, onEvent}.run();
}

} // namespace tool
