// Signals, descriptors and cancelled threads of the host.
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include "api/api_test.h"
#include "rpc_wire/socket.h"
#include "support/shortened_limits.h"

namespace {

using namespace std::chrono_literals;

class HostProcess : public ApiTest {
public:
    std::int32_t getCores() {
        Pool own;
        std::uint32_t count = 4;
        Words cores(4);
        const std::int32_t status = KvApplMan_getAvailableCoreIDs(own, t.device, t.access, 0, &count, cores.data());
        return count == 4 ? status : -1;
    }
    std::int32_t getApplications() {
        std::int32_t count = 2;
        Words ids(2);
        return KvApplMan_getApplications(pool, t.device, t.access, 4, ids.data(), &count);
    }
    void spoil(const char* rule) { t.target.addFault(simulated_target::parseFault(rule)); }
};

std::set<int> descriptors() {
    std::set<int> all;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        all.insert(std::stoi(entry.path().filename()));
    }
    std::erase_if(all, [](int number) { return fcntl(number, F_GETFD) == -1; }); // the one that listed them
    return all;
}

/// As long as it lives, descriptors have numbers below that.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit) {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &previous_), 0);
        const rlimit changed{std::min(limit, previous_.rlim_max), previous_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &changed), 0);
    }
    ~DescriptorLimit() { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &previous_), 0); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    rlimit previous_{};
};

/// A thousand signals a second, none of which restarts a system call.
class Alarms {
public:
    Alarms() {
        struct sigaction action {};
        action.sa_handler = [](int) { ++count; };
        EXPECT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
        set(1000);
    }
    ~Alarms() {
        set(0);
        std::signal(SIGALRM, SIG_IGN); // one may still be pending
    }
    Alarms(const Alarms&) = delete;
    Alarms& operator=(const Alarms&) = delete;

    static inline std::atomic<int> count{0}; // a signal comes to any thread

private:
    static void set(suseconds_t microseconds) {
        const itimerval timer{{0, microseconds}, {0, microseconds}};
        EXPECT_EQ(setitimer(ITIMER_REAL, &timer, nullptr), 0);
    }
};

TEST_F(HostProcess, SignalsNeitherEndACallNorProlongItsTimeout) {
    const Alarms alarms;
    for (int i = 0; i < 200; ++i) {
        t.target.dropConnections(); // so that connecting is interrupted, too
        getCores();
        EXPECT_EQ(getCores(), 0);
    }
    const ShortenedLimits shortened;
    spoil("11@1:hang");
    const int before = Alarms::count;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(getApplications(), -185);
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_GE(time, 50ms);
    EXPECT_LE(time, 150ms);
    EXPECT_GT(Alarms::count - before, 20);
}

TEST_F(HostProcess, WritingToAConnectionThatThePeerHasResetRaisesNoSignal) {
    static std::atomic<int> raised{0};
    const auto previous = std::signal(SIGPIPE, [](int) { raised = 1; });
    const auto deadline = kvrpc::Clock::now() + 5s;
    const kvrpc::Socket listener = kvrpc::Socket::listen("127.0.0.1", 0);
    auto connected = kvrpc::ConnectOutcome::failed;
    int systemError = 0;
    const kvrpc::Socket near =
        kvrpc::Socket::connect(htonl(INADDR_LOOPBACK), listener.localPort(), deadline, connected, systemError);
    ASSERT_EQ(connected, kvrpc::ConnectOutcome::connected);
    ASSERT_TRUE(listener.wait({.toRead = true}, deadline).toRead);
    auto accepted = kvrpc::AcceptOutcome::none;
    {
        const kvrpc::Socket far = listener.accept(accepted);
        ASSERT_EQ(accepted, kvrpc::AcceptOutcome::accepted);
        far.discardAtClose();
    }
    const std::array<std::uint8_t, 4> bytes{};
    for (int i = 0; i < 3; ++i) { // the first one fails with the reset, the others with a broken pipe
        EXPECT_EQ(near.send(bytes).io, kvrpc::Io::failed);
    }
    EXPECT_EQ(raised, 0);
    std::signal(SIGPIPE, previous);
}

TEST_F(HostProcess, DescriptorsAreNotInheritedByOtherPrograms) {
    const std::set<int> before = descriptors();
    EXPECT_EQ(getCores(), 0);
    int opened = 0;
    for (const int number : descriptors()) {
        if (before.count(number) > 0) { continue; }
        ++opened;
        EXPECT_NE(fcntl(number, F_GETFD) & FD_CLOEXEC, 0) << number;
    }
    EXPECT_EQ(opened, 2); // the library's end and the target's
}

TEST_F(HostProcess, DescriptorsMayHaveNumbersAbove1023) {
    const DescriptorLimit limit{4096};
    std::vector<int> taken;
    do {
        taken.push_back(fcntl(0, F_DUPFD_CLOEXEC, 0));
    } while (taken.back() != -1 && taken.back() < 1100);
    EXPECT_EQ(taken.back(), 1100);
    EXPECT_EQ(getCores(), 0);
    EXPECT_GT(*descriptors().rbegin(), 1100);
    for (const int number : taken) {
        close(number);
    }
}

TEST_F(HostProcess, AThreadThatIsCancelledInACallEndsItFirst) {
    const ShortenedLimits shortened;
    EXPECT_EQ(getApplications(), 0);
    spoil("11@1:hang");
    struct Call {
        HostProcess* test;
        std::int32_t status = 1;
    } call{this};
    pthread_t thread{};
    const auto run = [](void* given) -> void* {
        auto& made = *static_cast<Call*>(given);
        made.status = made.test->getApplications();
        pthread_testcancel();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, nullptr, run, &call), 0);
    while (t.target.requests().size() < 2) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(pthread_cancel(thread), 0);
    void* result = nullptr;
    EXPECT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, PTHREAD_CANCELED);
    EXPECT_EQ(call.status, -185);
    EXPECT_EQ(getApplications(), 0);
}

} // namespace
