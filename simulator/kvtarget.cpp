// The program around a simulated target.
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/control.h"
#include "simulator/control_channel.h"
#include "simulator/kvtarget_options.h"

#if defined(_WIN32)
#include <chrono>
#include <thread>
#else
#include <pthread.h>
#include <unistd.h>
#endif

namespace {

using simulated_target::CommandLine;
using simulated_target::EventLog;

constexpr int kCannotRun = 1;
constexpr int kBadCommandLine = 2;
constexpr int kFaultMissing = 3;

#if defined(_WIN32)

volatile std::sig_atomic_t asked = 0;

/// Ends of the program that a user or the system asks for.
class EndRequests {
public:
    EndRequests() {
        for (const int signal : {SIGINT, SIGTERM, SIGBREAK}) {
            std::signal(signal, [](int) { asked = 1; });
        }
    }
    static void ask() noexcept { asked = 1; }
    void wait() const {
        while (asked == 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds{50});
        }
    }
};

#else

/// Ends of the program that a user or the system asks for. Made before any thread, so that none is interrupted.
class EndRequests {
public:
    EndRequests() {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGINT);
        sigaddset(&signals_, SIGTERM);
        struct sigaction hangUp {};
        sigaction(SIGHUP, nullptr, &hangUp);
        if (hangUp.sa_handler != SIG_IGN) {
            sigaddset(&signals_, SIGHUP);
        } // it may have been told to outlive its terminal
        pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
        std::signal(SIGXFSZ, SIG_IGN); // a file that becomes too large is a failed transfer
        std::signal(SIGPIPE, SIG_IGN); // who steers may be gone before he is answered
    }
    static void ask() noexcept { kill(getpid(), SIGTERM); }
    void wait() const {
        int signal = 0;
        sigwait(&signals_, &signal);
    }

private:
    sigset_t signals_{};
};

#endif

/// What the rules have done. Result: the exit code.
int tellRules(const std::vector<simulated_target::RuleCount>& rules, const CommandLine& line) {
    int code = 0;
    for (const auto& rule : rules) {
        const bool missing = line.requireFaults && rule.fired == 0;
        if (missing) { code = kFaultMissing; }
        if (missing || !line.log) { std::fprintf(stderr, "kvtarget: %s\n", ruleText(rule).c_str()); }
    }
    return code;
}

std::shared_ptr<simulated_target::ProgramRunner> programRunner(const simulated_target::RunOptions& options,
                                                               EventLog* log) {
    if (log == nullptr) { return makeProgramRunner(options, simulated_target::printProgramNews); }
    return makeProgramRunner(options, [log](std::uint32_t applId, simulated_target::ProgramNews news,
                                            std::string_view line) { log->program(applId, news, line); });
}

int run(const CommandLine& line) {
    std::optional<EventLog> log;
    simulated_target::Options options = line.target;
    if (line.log) { log.emplace(line.logFile, line.logFormat); }
    simulated_target::RequestHistory history;
    if (line.log || line.control) {
        options.onRequest = [&](const simulated_target::RequestReport& report) {
            if (log) { log->request(report); }
            if (line.control) { history.add(report); }
        };
    }
    if (line.running.run) { options.programs = programRunner(line.running, log ? &*log : nullptr); }
    const EndRequests endRequests;
    auto target = std::make_unique<simulated_target::SimulatedTarget>(options);
    const std::string address = target->start();
    const simulated_target::Control control{*target, history, EndRequests::ask};
    std::optional<simulated_target::ControlChannel> channel;
    if (line.control) {
        const auto answer = [&](std::string_view command) { return control.answer(command); };
        channel.emplace(line.controlPath, simulated_target::ControlChannel::Steering{answer, EndRequests::ask});
    }
    if (log) { log->listening(address, options.store.string()); }
    std::printf("kvtarget listening on %s\n", address.c_str());
    std::fflush(stdout);
    if (channel) { channel->start(); }
    endRequests.wait();
    target->stop();
    channel.reset();
    const auto rules = target->ruleCounts();
    target.reset();
    options.programs.reset(); // now no program lives
    if (log) { log->end(rules); }
    return tellRules(rules, line);
}

std::string address(const simulated_target::Options& options) {
    return options.host + ":" + std::to_string(options.port);
}

void warnOfStrangers(const CommandLine& line) {
    const std::string& host = line.target.host;
    if (host.starts_with("127.")) { return; }
    std::fprintf(stderr, "kvtarget: warning: %s is not on loopback: everybody who reaches the port can %s\n",
                 host.c_str(), line.running.run ? "run any program here, as this user" : "write into the store");
}

} // namespace

int main(int count, char** words) {
    CommandLine line;
    try {
        line = simulated_target::parseCommandLine({words + 1, words + count});
    } catch (const simulated_target::BadCommandLine& fault) {
        std::fprintf(stderr, "kvtarget: %s\nTry kvtarget --help.\n", fault.what());
        return kBadCommandLine;
    }
    if (!line.toShow.empty()) {
        std::fputs(line.toShow.c_str(), stdout);
        return 0;
    }
    warnOfStrangers(line);
    try {
        return run(line);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kvtarget: cannot serve %s with the store %s: %s\n", address(line.target).c_str(),
                     line.target.store.string().c_str(), failure.what());
        return kCannotRun;
    }
}
