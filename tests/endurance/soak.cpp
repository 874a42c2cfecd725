// 16 threads work with four targets that restart every other second and spoil every hundredth reply. Whatever comes back has
// to be the caller's own: each thread asks for names that only one device has under one number.
// Usage: soak, for as many seconds as the environment's SOAK_SECONDS says (10 without).
#include <array>
#include <atomic>
#include <cstdlib>
#include <deque>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "faults/calls.h"
#include "support/one_target.h"
#include "support/open_handles.h"
#include "support/shortened_limits.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kDevices = 4;
constexpr std::uint32_t kThreads = 16;
constexpr std::uint32_t kNames = 50;
constexpr auto kCallTimeout = 300ms;
constexpr auto kBetweenRestarts = 500ms; // of one device or another

/// Each in turn spoils every hundredth reply of a device, from one restart to the next.
constexpr std::array kFaults{"close",          "reset",        "cut=6",      "hang",      "split",      "twice",
                             "overtaken",      "wrong-xid",    "refuse",     "text=9999", "array=9999", "tag",
                             "corrupt-list",   "delay=30",     "stale-xid",  "fragment",  "trailing",   "delay=310",
                             "lack-procedure", "stop-reading", "bytes=70000"};

std::string nameOf(std::uint32_t device, std::uint32_t number) {
    return "device " + std::to_string(device) + " application " + std::to_string(number);
}

simulated_target::Options optionsOf(std::uint32_t device) {
    simulated_target::Options options;
    options.recordRequests = false;
    options.cnSerialNumber = device + 1;
    for (std::uint32_t number = 1; number <= kNames; ++number) {
        options.flashApplications[number] = nameOf(device, number);
    }
    return options;
}

// Calls.
std::atomic<std::uint32_t> done{0};
std::atomic<std::uint32_t> failed{0};

class Worker {
public:
    Worker(const TargetDevice& target, std::uint32_t device, std::uint32_t seed, std::string file)
        : device_(device), random_(seed), call_{*pool_, target.device, target.access, std::move(file), device + 1} {}

    void work() {
        askNames(20);
        if (!did(createGroup(call_)) || !did(registerAppl(call_))) { return; }
        did(download(call_));
        did(command<KvApplMan_startAppl>(call_));
        did(loadFile(call_));
        askNames(5);
        listNames();
        did(getInfoList(call_));
        did(command<KvApplMan_terminateAppl>(call_));
        did(command<KvApplMan_unloadAppl>(call_));
    }

    /// With a target that works: everything does.
    void workWell() {
        const std::uint32_t before = failed;
        work();
        EXPECT_EQ(failed, before) << "device " << device_;
    }

private:
    bool did(std::int32_t status) {
        EXPECT_LE(status, 0);
        EXPECT_TRUE(status == 0 || pool_->getErrorCount() > 0) << status;
        pool_->reset();
        ++(status == 0 ? done : failed);
        return status == 0;
    }

    void askNames(int times) {
        for (int i = 0; i < times; ++i) {
            const auto number = static_cast<std::uint32_t>(1 + random_() % kNames);
            std::array<char, 64> name{};
            std::int32_t size = name.size();
            if (did(call_(KvApplMan_getFlashApplInfo, number, 2, name.data(), &size))) {
                EXPECT_EQ(name.data(), nameOf(device_, number));
            }
        }
    }

    void listNames() {
        std::uint32_t count = kNames;
        std::array<std::uint32_t, kNames> numbers{};
        did(call_(KvApplMan_getFlashApplications, 0, &count, numbers.data()));
        for (std::uint32_t i = 0; i < count && i < kNames; ++i) {
            EXPECT_LE(numbers[i], kNames);
        }
    }

    const std::uint32_t device_;
    std::mt19937 random_;
    const Pool pool_{};
    Call call_;
};

std::chrono::seconds soakTime() {
    const char* const seconds = std::getenv("SOAK_SECONDS");
    return std::chrono::seconds{seconds == nullptr ? 10 : std::atoi(seconds)};
}

TEST(Soak, EveryAnswerIsItsCallersOwn) {
    TemporaryFolder folder;
    const std::string file = folder.file("appl.bin", std::string(100'000, 'a'));
    std::array<TargetDevice, kDevices> devices{TargetDevice{optionsOf(0)}, TargetDevice{optionsOf(1)},
                                               TargetDevice{optionsOf(2)}, TargetDevice{optionsOf(3)}};
    std::deque<Worker> workers;
    for (std::uint32_t i = 0; i < kThreads; ++i) {
        workers.emplace_back(devices[i % kDevices], i % kDevices, i, file).workWell();
    }
    const std::size_t handles = openHandles();
    const auto shortened = [&](std::uint32_t i) { return ShortenedLimits{kCallTimeout, devices[i].device}; };
    const std::array<ShortenedLimits, kDevices> limits{shortened(0), shortened(1), shortened(2), shortened(3)};

    std::vector<std::jthread> threads;
    for (Worker& worker : workers) {
        threads.emplace_back([&worker](const std::stop_token& end) {
            while (!end.stop_requested()) {
                worker.work();
            }
        });
    }
    const auto end = Clock::now() + soakTime();
    std::uint32_t restarts = 0;
    for (; Clock::now() < end; ++restarts) {
        TargetDevice& device = devices[restarts % kDevices];
        std::error_code filesInUse;                                               // they go at the next restart
        std::filesystem::remove_all(device.store() / "applications", filesInUse); // a target keeps what it has unloaded
        device.target.clearFaults();
        const std::size_t fault = restarts / kDevices + restarts % kDevices * 5; // not the same one everywhere
        device.target.addFault(
            simulated_target::parseFault(std::string{"any@%100:"} + kFaults[fault % kFaults.size()]));
        device.target.reboot(20ms);
        std::this_thread::sleep_for(kBetweenRestarts);
    }
    for (TargetDevice& device : devices) {
        device.target.clearFaults();
        device.target.reboot();
    }
    for (std::jthread& thread : threads) {
        thread.request_stop();
    }
    threads.clear();
    std::printf("%u restarts, %u calls that succeeded, %u that failed\n", restarts, done.load(), failed.load());
    EXPECT_GT(done, failed);
    EXPECT_GT(failed, restarts); // it was no walk in the park
    for (Worker& worker : workers) {
        worker.work(); // whoever has not called since the last restart finds its connection closed
        worker.workWell();
    }
    for (int i = 0; i < 1000 && openHandles() > handles; ++i) { // the targets close their side later
        std::this_thread::sleep_for(2ms);
    }
    EXPECT_LE(openHandles(), handles);
}

} // namespace
