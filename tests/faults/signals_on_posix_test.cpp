// Signals, descriptors and cancelled threads of the host.
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include "api/api_test.h"
#include "faults/calls.h"
#include "support/scripted_peer.h"
#include "support/shortened_limits.h"

namespace {

using namespace std::chrono_literals;

class HostProcess : public ApiTest {
protected:
    bool answers() { return getCores(call) == 0 && call.out[4] == 4; }
    void silence() { t.target.addFault(simulated_target::parseFault("11@1:hang")); }

    Call call{*pool, t.device, t.access};
};

TEST_F(HostProcess, SignalsNeitherEndACallNorProlongItsTimeout) {
    static std::atomic<int> signals{0};
    struct sigaction action {}; // none of which restarts a system call
    action.sa_handler = [](int) { ++signals; };
    EXPECT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
    const itimerval often{{0, 1000}, {0, 1000}};
    EXPECT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
    for (int i = 0; i < 200; ++i) {
        t.target.dropConnections(); // so that connecting is interrupted, too
        getCores(call);
        EXPECT_TRUE(answers());
    }
    for (const std::chrono::milliseconds limit : {50ms, 450ms}) { // the longer one is not waited for in one piece
        const ShortenedLimits shortened{limit, t.device};
        std::chrono::steady_clock::duration time = 1h;
        int interruptions = 0;
        for (int i = 0; i < 4 && (time > limit + 100ms || interruptions <= 20); ++i) { // since the machine may be busy
            silence();
            const int before = signals;
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(getApplications(call), -185);
            time = std::chrono::steady_clock::now() - start;
            interruptions = signals - before;
            EXPECT_GE(time, limit);
        }
        EXPECT_LE(time, limit + 100ms);
        EXPECT_GT(interruptions, 20);
    }
    const itimerval never{};
    EXPECT_EQ(setitimer(ITIMER_REAL, &never, nullptr), 0);
    std::signal(SIGALRM, SIG_IGN); // one may still be pending
}

TEST_F(HostProcess, WritingToAConnectionThatThePeerHasResetRaisesNoSignal) {
    static std::atomic<int> raised{0};
    const auto previous = std::signal(SIGPIPE, [](int) { raised = 1; });
    const scripted_peer::ScriptedPeer peer{{[](const scripted_peer::Wire&) {}}};
    const scripted_peer::Wire wire{peer.address()};
    peer.awaitFirstClosed();
    for (int i = 0; i < 3; ++i) { // the first one is answered by a reset, the others find a broken pipe
        wire.send({0, 0, 0, 0});
    }
    EXPECT_EQ(raised, 0);
    std::signal(SIGPIPE, previous);
}

TEST_F(HostProcess, DescriptorsAreNotInheritedAndMayHaveNumbersAbove1023) {
    constexpr int kTaken = 1100;
    constexpr int kLimit = 4096;
    rlimit usual{};
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit enough{std::min<rlim_t>(kLimit, usual.rlim_max), usual.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &enough), 0);
    std::vector<int> taken;
    do {
        taken.push_back(fcntl(0, F_DUPFD_CLOEXEC, 0));
    } while (taken.back() != -1 && taken.back() < kTaken);
    EXPECT_EQ(taken.back(), kTaken);
    EXPECT_TRUE(answers());
    int opened = 0;
    for (int number = kTaken + 1; number < kLimit; ++number) {
        const int flags = fcntl(number, F_GETFD);
        opened += flags == -1 ? 0 : 1;
        EXPECT_NE(flags & FD_CLOEXEC, 0) << number;
    }
    EXPECT_EQ(opened, 2); // the library's end and the target's
    for (const int number : taken) {
        close(number);
    }
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
}

TEST_F(HostProcess, AThreadThatIsCancelledInACallEndsItFirst) {
    EXPECT_EQ(getApplications(call), 0);
    const ShortenedLimits shortened{50ms, t.device};
    silence();
    std::int32_t status = 1;
    bool wentOn = false;
    std::thread thread{[&] {
        status = getApplications(call);
        pthread_testcancel();
        wentOn = true;
    }};
    while (t.target.requests().size() < 2) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(pthread_cancel(thread.native_handle()), 0);
    thread.join();
    EXPECT_FALSE(wentOn);
    EXPECT_EQ(status, -185);
    EXPECT_EQ(getApplications(call), 0);
}

} // namespace
