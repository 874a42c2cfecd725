// The target's side of running programs: asks the runner process for them, follows what becomes of them, and takes what
// they print.
// - Two kinds of threads: the target's, which give orders and ask how a program is, and the one of the watch, which alone
//   reads from keepers and pipes, and alone closes them. An order is therefore sent under the program's lock.
// - Locks, from the outside in: the application manager's, the watch's, one program's. The watch calls the sink under none
//   of them, and never takes the application manager's.
// - A program that nobody holds any more is killed by its keeper, but the watch follows it to its end. At the end all are
//   left first, then the runner process is waited for, then the watch has what it takes to end.
#include "simulator/programs/program_runner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <utility>

#include "simulator/programs/process_tree.h"
#include "simulator/programs/program_file.h"
#include "simulator/programs/program_output.h"
#include "simulator/programs/runner_process.h"
#include "simulator/store.h"

namespace simulated_target {
namespace {

constexpr const char* kLostKeeper = "its keeper was killed";

std::string textOf(int error) { return std::generic_category().message(error); }

std::string endOf(int waitStatus) {
    if (WIFEXITED(waitStatus)) { return "exit code " + std::to_string(WEXITSTATUS(waitStatus)); }
    const int signal = WTERMSIG(waitStatus);
    const char* const name = sigabbrev_np(signal);
    return "signal " + std::to_string(signal) + (name == nullptr ? "" : " (" + std::string{name} + ")");
}

std::string reasonOf(const KeeperReport& report) {
    switch (report.obstacle) {
    case KeeperReport::Obstacle::fork:
        return "no process for it: " + textOf(report.error);
    case KeeperReport::Obstacle::folder:
        return "its folder: " + textOf(report.error);
    case KeeperReport::Obstacle::cores:
        return "its cores: " + textOf(report.error);
    case KeeperReport::Obstacle::execution:
        break;
    }
    const bool lacksSomething = report.error == ENOENT;
    return lacksSomething ? "it, its interpreter or its loader is not there" : textOf(report.error);
}

KeeperOrder::Kind kindOf(ProgramOrder order) {
    switch (order) {
    case ProgramOrder::goOn:
        return KeeperOrder::Kind::goOn;
    case ProgramOrder::pause:
        return KeeperOrder::Kind::pause;
    case ProgramOrder::step:
        return KeeperOrder::Kind::step;
    case ProgramOrder::stop:
        return KeeperOrder::Kind::stop;
    case ProgramOrder::kill:
        break;
    }
    return KeeperOrder::Kind::kill;
}

/// The system's numbers of the processors that this process may use; programs know them as cores 1, 2, and so on.
std::vector<std::uint32_t> usableCpus() {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof set, &set);
    std::vector<std::uint32_t> cpus;
    for (std::uint32_t cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
        if (CPU_ISSET(cpu, &set)) { cpus.push_back(cpu); }
    }
    return cpus;
}

class Cores {
public:
    std::uint32_t count() const { return static_cast<std::uint32_t>(cpus_.size()); }

    /// Those that are not there are left out; of no cores all.
    std::vector<std::uint32_t> cpusOf(const std::vector<std::uint32_t>& cores) const {
        if (cores.empty()) { return cpus_; }
        std::vector<std::uint32_t> cpus;
        for (const std::uint32_t core : cores) {
            if (core >= 1 && core <= cpus_.size()) { cpus.push_back(cpus_[core - 1]); }
        }
        return cpus;
    }

    /// Those on which a process may run.
    std::vector<std::uint32_t> coresOf(pid_t process) const {
        cpu_set_t set;
        CPU_ZERO(&set);
        sched_getaffinity(process, sizeof set, &set);
        std::vector<std::uint32_t> cores;
        for (std::uint32_t core = 1; core <= cpus_.size(); ++core) {
            if (CPU_ISSET(cpus_[core - 1], &set)) { cores.push_back(core); }
        }
        return cores;
    }

private:
    const std::vector<std::uint32_t> cpus_ = usableCpus();
};

/// A program that was started, as its process and the watch share it.
class RunningProgram {
public:
    RunningProgram(std::uint32_t applId, Descriptor keeper, Descriptor output, ProgramLog log,
                   std::uint64_t mostPrinted, const ProgramSink& sink)
        : applId_(applId), output_(std::move(output)), log_(std::move(log)), sink_(sink),
          lines_(mostPrinted, [this](std::string_view line) { sink_(applId_, ProgramNews::output, line); }),
          keeper_(std::move(keeper)) {
        status_.busy = true;
    }

    void order(ProgramOrder order) {
        const std::lock_guard lock{mutex_};
        if (over()) { return; }
        status_.busy = true;
        status_.endWasOrdered = order == ProgramOrder::stop || order == ProgramOrder::kill;
        tell({.kind = kindOf(order)});
    }
    void crash() {
        const std::lock_guard lock{mutex_};
        tell({.kind = KeeperOrder::Kind::crash});
    }
    void bindTo(const std::vector<std::uint32_t>& cpus) {
        const std::lock_guard lock{mutex_};
        tell({.kind = KeeperOrder::Kind::bind, .cpus = cpuSetOf(cpus)});
    }
    /// Has it killed.
    void leave() noexcept {
        const std::lock_guard lock{mutex_};
        status_.endWasOrdered = true;
        shutdown(keeper_.number(), SHUT_WR);
    }

    ProgramStatus status() const {
        const std::lock_guard lock{mutex_};
        return status_;
    }
    ProgramUsage usage(const Cores& cores) const {
        std::unique_lock lock{mutex_};
        if (over() || status_.pid == 0) { return {{}, endTime_}; }
        const auto [program, keeper] = std::pair{status_.pid, keeperProcess_};
        lock.unlock();
        return {cores.coresOf(program), timeBelow(keeper)};
    }

    // For the watch alone.

    int keeper() const noexcept { return keeper_.number(); }
    int output() const noexcept { return started_ ? output_.number() : -1; } // it is to be told of later than the start

    void takeOutput() {
        constexpr int kMostReads = 16; // then it is another's turn
        std::array<char, 16 * 1024> bytes;
        for (int i = 0; i < kMostReads && output() != -1; ++i) {
            const ssize_t size = read(output(), bytes.data(), bytes.size());
            if (size < 0) { return; }
            if (size == 0) {
                lines_.end();
                output_ = Descriptor{};
                return;
            }
            const std::string_view taken{bytes.data(), static_cast<std::size_t>(size)};
            log_->append(taken);
            lines_.append(taken);
        }
    }

    /// False when no more will come.
    bool takeReport() {
        KeeperReport report;
        const ssize_t size = recv(keeper_.number(), &report, sizeof report, MSG_DONTWAIT);
        if (size < 0 && (errno == EAGAIN || errno == EINTR)) { return true; }
        const bool lost = size != sizeof report;
        const bool last = lost || report.kind == Kind::notStarted || report.kind == Kind::ended;
        if (last) { closeOutput(); } // what it has printed comes before its end
        const std::string event = lost ? takeEnd(kLostKeeper) : take(report);
        if (!event.empty()) { sink_(applId_, ProgramNews::event, event); }
        started_ = true;
        return !last;
    }

private:
    using Kind = KeeperReport::Kind;

    bool over() const { return status_.end || status_.notStarted; }

    void tell(const KeeperOrder& order) const noexcept {
        send(keeper_.number(), &order, sizeof order, MSG_NOSIGNAL | MSG_DONTWAIT);
    }

    void closeOutput() {
        takeOutput();
        lines_.end();
        output_ = Descriptor{};
        log_.reset();
    }

    /// Result: what there is to be told.
    std::string take(const KeeperReport& report) {
        if (report.kind == Kind::ended) { return takeEnd(endOf(report.waitStatus), report.cpuTimeMicroseconds); }
        const std::lock_guard lock{mutex_};
        status_.busy = false;
        switch (report.kind) {
        case Kind::started:
            status_.pid = report.program;
            keeperProcess_ = report.keeper;
            return "started with pid " + std::to_string(report.program);
        case Kind::notStarted:
            status_.notStarted = reasonOf(report);
            keeper_ = Descriptor{};
            return "could not be started: " + *status_.notStarted;
        default:
            return {};
        }
    }

    std::string takeEnd(const std::string& end, std::int64_t cpuTimeMicroseconds = 0) {
        const std::lock_guard lock{mutex_};
        status_.busy = false;
        status_.end = end;
        endTime_ = std::chrono::microseconds{cpuTimeMicroseconds};
        keeper_ = Descriptor{};
        return (status_.endWasOrdered ? "ended as ordered: " : "ended by itself: ") + end;
    }

    const std::uint32_t applId_;
    bool started_ = false; // or not: the keeper has told
    Descriptor output_;
    std::optional<ProgramLog> log_; // while there is output
    const ProgramSink& sink_;
    LineReader lines_;

    mutable std::mutex mutex_{}; // guards what follows, but that the watch alone changes the descriptor
    Descriptor keeper_;
    ProgramStatus status_{};
    pid_t keeperProcess_ = 0;
    std::chrono::microseconds endTime_{}; // of processors that it has taken in all
};

/// A thread that takes what all programs print and what their keepers report.
class Watch {
public:
    Watch() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), thread_([this] { run(); }) {}
    ~Watch() {
        {
            const std::lock_guard lock{mutex_};
            ending_ = true;
        }
        eventfd_write(wake_.number(), 1);
        thread_.join();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    std::size_t count() const {
        const std::lock_guard lock{mutex_};
        return programs_.size();
    }
    void add(std::shared_ptr<RunningProgram> program) {
        const std::lock_guard lock{mutex_};
        programs_.push_back(std::move(program));
        eventfd_write(wake_.number(), 1);
    }
    void leaveAll() const {
        const std::lock_guard lock{mutex_};
        for (const auto& program : programs_) {
            program->leave();
        }
    }

private:
    void run() {
        for (std::vector<std::shared_ptr<RunningProgram>> programs; followed(programs);) {
            waitForNews(programs);
            for (const auto& program : programs) {
                if (program->takeReport()) {
                    program->takeOutput();
                } else {
                    remove(program);
                }
            }
        }
    }

    /// False when there will be none any more.
    bool followed(std::vector<std::shared_ptr<RunningProgram>>& programs) const {
        const std::lock_guard lock{mutex_};
        programs = programs_;
        return !ending_ || !programs.empty();
    }

    void waitForNews(const std::vector<std::shared_ptr<RunningProgram>>& programs) const {
        std::vector<pollfd> news{{wake_.number(), POLLIN, 0}};
        for (const auto& program : programs) {
            news.push_back({program->keeper(), POLLIN, 0});
            news.push_back({program->output(), POLLIN, 0}); // one below 0 is passed over
        }
        poll(news.data(), news.size(), -1);
        eventfd_t ignored = 0;
        eventfd_read(wake_.number(), &ignored);
    }

    void remove(const std::shared_ptr<RunningProgram>& program) {
        const std::lock_guard lock{mutex_};
        std::erase(programs_, program);
    }

    const Descriptor wake_;
    mutable std::mutex mutex_{}; // guards what follows
    bool ending_ = false;
    std::vector<std::shared_ptr<RunningProgram>> programs_{};
    std::thread thread_;
};

/// One that has not been started: it only tells why.
class FailedProgram : public Program {
public:
    explicit FailedProgram(std::string reason) : reason_(std::move(reason)) {}
    void order(ProgramOrder) override {}
    void crash() override {}
    void bindTo(const std::vector<std::uint32_t>&) override {}
    ProgramStatus status() const override { return {.notStarted = reason_}; }
    ProgramUsage usage() const override { return {}; }

private:
    const std::string reason_;
};

class StartedProgram : public Program {
public:
    StartedProgram(std::shared_ptr<RunningProgram> program, const Cores& cores)
        : program_(std::move(program)), cores_(cores) {}
    ~StartedProgram() override { program_->leave(); }

    void order(ProgramOrder order) override { program_->order(order); }
    void crash() override { program_->crash(); }
    void bindTo(const std::vector<std::uint32_t>& cores) override { program_->bindTo(cores_.cpusOf(cores)); }
    ProgramStatus status() const override { return program_->status(); }
    ProgramUsage usage() const override { return program_->usage(cores_); }

private:
    const std::shared_ptr<RunningProgram> program_;
    const Cores& cores_;
};

std::vector<std::uint8_t> headOf(const Descriptor& file) {
    std::vector<std::uint8_t> head(kProgramHeadSize);
    const ssize_t size = pread(file.number(), head.data(), head.size(), 0);
    head.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return head;
}

Descriptor folderOf(const Store& store, const std::string& directory) {
    const auto path = parseStorePath(directory);
    return path ? store.descriptorOf(*path) : Descriptor{};
}

class LinuxProgramRunner : public ProgramRunner {
public:
    LinuxProgramRunner(const RunOptions& options, ProgramSink sink)
        : options_(options), sink_(std::move(sink)), process_(KeeperTimes{options.step, options.grace}) {}

    ~LinuxProgramRunner() override {
        watch_.leaveAll();
        process_.reset();
    }

    void examine(const Store& store) const override {
        struct statvfs status {};
        const Descriptor root = store.descriptorOf({});
        if (fstatvfs(root.number(), &status) == 0 && (status.f_flag & ST_NOEXEC) == 0) { return; }
        throw std::system_error{EACCES, std::generic_category(), "programs cannot be executed there (noexec)"};
    }

    std::optional<std::string> refusalOf(const Store& store, const std::string& directory,
                                         const std::string& name) const override {
        if (name == kProgramLog || name == kEarlierProgramLog) { return "its log has this name"; }
        const Descriptor folder = folderOf(store, directory);
        const Descriptor file{openat(folder.number(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC)};
        const Descriptor own{open("/proc/self/exe", O_RDONLY | O_CLOEXEC)};
        if (!file.valid()) { return textOf(errno); }
        if (auto refusal = whyNoProgram(headOf(file), headOf(own))) { return refusal; }
        constexpr mode_t kProgramMode = 0755;
        return fchmod(file.number(), kProgramMode) == 0 ? std::nullopt : std::optional{textOf(errno)};
    }

    std::shared_ptr<Program> start(const Store& store, const ProgramStart& start) override {
        if (watch_.count() >= options_.mostPrograms) {
            return std::make_shared<FailedProgram>("more than " + std::to_string(options_.mostPrograms) +
                                                   " programs at once");
        }
        int sockets[2] = {-1, -1};
        int pipe[2] = {-1, -1};
        Descriptor folder = folderOf(store, start.directory);
        if (!folder.valid()) { return std::make_shared<FailedProgram>("its folder: " + textOf(errno)); }
        const bool opened = socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) == 0;
        Descriptor ours{sockets[0]};
        Descriptor theirs{sockets[1]};
        const bool piped = opened && pipe2(pipe, O_CLOEXEC) == 0;
        Descriptor read{pipe[0]};
        Descriptor write{pipe[1]};
        if (!piped) { return std::make_shared<FailedProgram>(textOf(errno)); }
        fcntl(read.number(), F_SETFL, O_NONBLOCK);

        const std::uint64_t mostBytes = std::uint64_t{options_.logSize} * 1024;
        ProgramLog log{folderOf(store, start.directory), mostBytes};
        const int failure =
            process_->start({start.name, start.arguments, start.environment, cores_.cpusOf(start.cores)},
                            {std::move(theirs), std::move(folder), std::move(write)});
        if (failure != 0) { return std::make_shared<FailedProgram>("the runner: " + textOf(failure)); }
        auto program = std::make_shared<RunningProgram>(start.applId, std::move(ours), std::move(read), std::move(log),
                                                        mostBytes, sink_);
        watch_.add(program);
        return std::make_shared<StartedProgram>(std::move(program), cores_);
    }

    std::uint32_t coreCount() const override { return cores_.count(); }

private:
    const RunOptions options_;
    const ProgramSink sink_;
    const Cores cores_{};
    std::optional<RunnerProcess> process_; // made before there is a thread
    Watch watch_{};
};

} // namespace

std::optional<std::string> whyNotRun(const RunOptions& options) {
    const bool root = geteuid() == 0 || getuid() == 0;
    if (root && !options.asRoot) {
        return "as root it would let everybody who reaches its port run programs as root; use another user, or "
               "--run-as-root";
    }
    return {};
}

std::shared_ptr<ProgramRunner> makeProgramRunner(const RunOptions& options, ProgramSink sink) {
    if (access("/proc/self/stat", R_OK) != 0) {
        throw std::system_error{errno, std::generic_category(), "running programs takes /proc"};
    }
    return std::make_shared<LinuxProgramRunner>(options, std::move(sink));
}

} // namespace simulated_target
