// The program is its process group and everything below this process, which is the subreaper of what leaves the group.
// - Its first process is not reaped before all have ended: until then nobody else can get its number, which is the
//   group's and to which signals go.
// - The keeper ends by killing everything that is left, whatever the reason: it was told to, the target's end of the socket
//   was closed, or the program has ended. While it is being stopped, the end of the first process ends nothing: the others
//   have their time, too.
// - There is one order at a time, but for crash, bind and the end; a report of `done` answers it. One thread, no lock.
// - Should the keeper itself be killed, the system kills the program's first process, and the runner the rest.
#include "simulator/programs/program_keeper.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "simulator/programs/process_tree.h"

namespace simulated_target {
namespace {

using Clock = std::chrono::steady_clock;
using Kind = KeeperReport::Kind;
using Obstacle = KeeperReport::Obstacle;

constexpr std::chrono::milliseconds kNap{1}; // between two looks at processes that do not tell when they change

// --- the program, before it is executed

void resetSignals() noexcept {
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL); // what cannot be reset is as it should be
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

std::vector<char*> wordsOf(std::vector<std::string>& texts) {
    std::vector<char*> words;
    words.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        words.push_back(text.data());
    }
    words.push_back(nullptr);
    return words;
}

/// Result: what stands in the way; errno tells more.
Obstacle execute(KeeperStart start, const KeeperDescriptors& descriptors) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    resetSignals();
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(descriptors.output.number(), STDOUT_FILENO);
    dup2(descriptors.output.number(), STDERR_FILENO);
    if (fchdir(descriptors.folder.number()) != 0) { return Obstacle::folder; }
    const cpu_set_t cpus = cpuSetOf(start.cpus);
    if (sched_setaffinity(0, sizeof cpus, &cpus) != 0) { return Obstacle::cores; }
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    start.arguments.insert(start.arguments.begin(), start.file);
    execve(("./" + start.file).c_str(), wordsOf(start.arguments).data(), wordsOf(start.environment).data());
    return Obstacle::execution;
}

struct Failure {
    Obstacle obstacle{};
    int error = 0;
};

/// Result: the program's process; -1 when it could not be executed.
pid_t startProgram(const KeeperStart& start, const KeeperDescriptors& descriptors, Failure& failure) {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        failure = {Obstacle::fork, errno};
        return -1;
    }
    const Descriptor told{ends[0]};
    Descriptor tell{ends[1]}; // closed by a successful execution
    const pid_t program = fork();
    if (program == 0) {
        const Obstacle obstacle = execute(start, descriptors);
        const Failure why{obstacle, errno};
        if (write(tell.number(), &why, sizeof why) < 0) { _exit(EXIT_FAILURE); }
        _exit(EXIT_FAILURE);
    }
    if (program < 0) {
        failure = {Obstacle::fork, errno};
        return -1;
    }
    tell = Descriptor{};
    setpgid(program, program);
    ssize_t size = 0;
    do {
        size = read(told.number(), &failure, sizeof failure);
    } while (size < 0 && errno == EINTR);
    if (size == 0) { return program; }
    waitpid(program, nullptr, 0);
    return -1;
}

// --- the program, while it runs

class Keeper {
public:
    Keeper(Descriptor socket, const KeeperTimes& times, Descriptor children, pid_t program)
        : socket_(std::move(socket)), times_(times), children_(std::move(children)), program_(program) {}

    /// Ends when nothing of the program lives.
    void run() {
        while (!finished()) {
            waitForNews();
        }
        killEverything();
    }

private:
    enum class Work { none, stepping, pausing, stopping };

    void waitForNews() const noexcept {
        pollfd news[] = {{socket_.number(), POLLIN, 0}, {children_.number(), POLLIN, 0}};
        const auto left = work_ == Work::pausing ? Clock::duration{kNap} : until_ - Clock::now();
        const auto nanoseconds = std::max<std::int64_t>(0, std::chrono::nanoseconds{left}.count());
        const timespec limit{static_cast<time_t>(nanoseconds / std::nano::den),
                             static_cast<long>(nanoseconds % std::nano::den)};
        ppoll(news, std::size(news), work_ == Work::none ? nullptr : &limit, nullptr);
        forgetNews(children_);
    }

    bool finished() {
        if (!obey()) { return true; }
        reapAdopted();
        if (programHasEnded() && work_ != Work::stopping) { return true; }
        return advance();
    }

    /// False when it has been told to kill, or nobody is there any more.
    bool obey() {
        KeeperOrder order;
        const ssize_t size = recv(socket_.number(), &order, sizeof order, MSG_DONTWAIT);
        if (size < 0) { return errno == EAGAIN || errno == EINTR; }
        if (size != sizeof order) { return false; }
        switch (order.kind) {
        case KeeperOrder::Kind::goOn:
            signalAll(SIGCONT);
            sendReport(socket_, {.kind = Kind::done});
            return true;
        case KeeperOrder::Kind::pause:
            work_ = Work::pausing;
            return true;
        case KeeperOrder::Kind::step:
            signalAll(SIGCONT);
            beginWork(Work::stepping, times_.step);
            return true;
        case KeeperOrder::Kind::stop:
            signalAll(SIGTERM);
            signalAll(SIGCONT); // one that is paused hears it now
            beginWork(Work::stopping, times_.grace);
            return true;
        case KeeperOrder::Kind::crash:
            kill(program_, SIGKILL);
            return true;
        case KeeperOrder::Kind::bind:
            bindAll(order.cpus);
            return true;
        case KeeperOrder::Kind::kill:
            break;
        }
        return false;
    }

    void beginWork(Work work, std::chrono::milliseconds time) {
        work_ = work;
        until_ = Clock::now() + time;
    }

    /// True when the program's time is over.
    bool advance() {
        if (work_ == Work::stepping && Clock::now() >= until_) { work_ = Work::pausing; }
        if (work_ == Work::pausing && pauseAll()) {
            work_ = Work::none;
            sendReport(socket_, {.kind = Kind::done});
        }
        return work_ == Work::stopping && (Clock::now() >= until_ || nobodyLives());
    }

    /// The group at once, so that no new process of it is missed; then those that have left it.
    void signalAll(int signal) const {
        kill(-program_, signal);
        for (const TreeProcess& process : processesBelow(getpid())) {
            if (process.group != program_ && !process.ended()) { kill(process.pid, signal); }
        }
    }

    /// True when all have stopped.
    bool pauseAll() const {
        signalAll(SIGSTOP);
        return atRest(processesBelow(getpid()));
    }

    static bool nobodyLives() { return std::ranges::all_of(processesBelow(getpid()), &TreeProcess::ended); }

    static void bindAll(const cpu_set_t& cpus) {
        for (const TreeProcess& process : processesBelow(getpid())) {
            std::error_code ended;
            const std::filesystem::directory_iterator threads{"/proc/" + std::to_string(process.pid) + "/task", ended};
            for (auto thread = begin(threads); !ended && thread != end(threads); thread.increment(ended)) {
                sched_setaffinity(std::atoi(thread->path().filename().c_str()), sizeof cpus, &cpus);
            }
        }
    }

    /// What the program has started and left behind is this process's child when it ends.
    void reapAdopted() const {
        for (const TreeProcess& process : processesBelow(getpid())) {
            if (process.parent == getpid() && process.pid != program_ && process.ended()) {
                waitpid(process.pid, nullptr, WNOHANG);
            }
        }
    }

    /// It is not reaped: until everything has ended, nobody else may get its number, which is its group's.
    bool programHasEnded() const noexcept {
        siginfo_t end{};
        waitid(P_PID, static_cast<id_t>(program_), &end, WEXITED | WNOHANG | WNOWAIT);
        return end.si_pid == program_;
    }

    void killEverything() const {
        int programEnd = 0;
        signalAll(SIGKILL);
        for (;;) {
            int status = 0;
            const pid_t ended = waitpid(-1, &status, WNOHANG);
            if (ended < 0) { break; }
            if (ended == program_) { programEnd = status; }
            if (ended > 0) { continue; }
            for (const TreeProcess& process : processesBelow(getpid())) {
                if (!process.ended()) { kill(process.pid, SIGKILL); }
            }
            poll(nullptr, 0, static_cast<int>(kNap.count()));
        }
        rusage usage{};
        getrusage(RUSAGE_CHILDREN, &usage);
        const std::int64_t seconds = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec;
        sendReport(socket_, {.kind = Kind::ended,
                             .waitStatus = programEnd,
                             .cpuTimeMicroseconds =
                                 seconds * std::micro::den + usage.ru_utime.tv_usec + usage.ru_stime.tv_usec});
    }

    const Descriptor socket_;
    const KeeperTimes times_;
    const Descriptor children_;
    const pid_t program_;
    Work work_ = Work::none;
    Clock::time_point until_{}; // of stepping and stopping
};

} // namespace

bool xdr_record(Xdr& x, KeeperStart& start) {
    const auto text = [](Xdr& cursor, std::string& value) { return xdr_string(cursor, value); };
    return xdr_string(x, start.file) && xdr_array(x, start.arguments, text) && xdr_array(x, start.environment, text) &&
           xdr_array(x, start.cpus, xdr_u_int);
}

void sendReport(const Descriptor& socket, const KeeperReport& report) noexcept {
    send(socket.number(), &report, sizeof report, MSG_NOSIGNAL);
}

cpu_set_t cpuSetOf(const std::vector<std::uint32_t>& cpus) noexcept {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (const std::uint32_t cpu : cpus) {
        CPU_SET(cpu, &set);
    }
    return set;
}

Descriptor watchChildren() noexcept {
    sigset_t children;
    sigemptyset(&children);
    sigaddset(&children, SIGCHLD);
    sigprocmask(SIG_BLOCK, &children, nullptr);
    return Descriptor{signalfd(-1, &children, SFD_CLOEXEC | SFD_NONBLOCK)};
}

void forgetNews(const Descriptor& children) noexcept {
    signalfd_siginfo news{};
    while (read(children.number(), &news, sizeof news) > 0) {}
}

void keepProgram(const KeeperStart& start, KeeperDescriptors descriptors, const KeeperTimes& times) {
    prctl(PR_SET_NAME, "kv-keeper");
    prctl(PR_SET_CHILD_SUBREAPER, 1); // what leaves the program's group is found as this process's child
    Descriptor children = watchChildren();
    Failure failure;
    const pid_t program = startProgram(start, descriptors, failure);
    descriptors.folder = Descriptor{};
    descriptors.output = Descriptor{};
    if (program < 0) {
        sendReport(descriptors.socket,
                   {.kind = Kind::notStarted, .obstacle = failure.obstacle, .error = failure.error});
        _exit(EXIT_SUCCESS);
    }
    sendReport(descriptors.socket, {.kind = Kind::started, .program = program, .keeper = getpid()});
    Keeper{std::move(descriptors.socket), times, std::move(children), program}.run();
    _exit(EXIT_SUCCESS);
}

} // namespace simulated_target
