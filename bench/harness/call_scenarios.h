// The scenarios in which words of applications are asked for, the same for every kind of client:
//
//   Client{address}                            connects now or at the first call
//   Client::Caller{client}                     what one thread uses
//   caller.read(applId, value) -> Outcome      one call
//   client.setTimeout(duration)                of calls to come; for the outcomes only
//   Client::allocations()                      made so far in this process; where it can be told
#pragma once

#include <atomic>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include "harness/answers.h"
#include "harness/measurement.h"
#include "harness/scenario.h"

namespace bench {

template <class Caller>
bool readsItsValue(Caller& caller, std::uint64_t number) {
    const std::uint32_t applId = answeredApplication(number);
    std::uint32_t value = 0;
    return caller.read(applId, value) == Outcome::value && value == valueOf(applId);
}

/// One thread: address, warm (calls before it is measured), calls at most, seconds at most.
template <class Client>
void measureCalls(const Arguments& arguments) {
    const std::size_t calls = arguments.count("calls");
    const Seconds most{arguments.real("seconds")};
    Client client{arguments.text("address")};
    typename Client::Caller caller{client};
    std::vector<double> times;
    times.reserve(calls);
    for (std::size_t i = 0; i < arguments.count("warm"); ++i) {
        expect(readsItsValue(caller, i), "a call gives its value");
    }
    std::uint64_t allocated = 0;
    if constexpr (requires { Client::allocations(); }) { allocated = Client::allocations(); }
    const Microseconds processor = processorTime();
    const auto start = Clock::now();
    for (auto begin = start; times.size() < calls && begin - start < most; begin = Clock::now()) {
        const bool right = readsItsValue(caller, times.size());
        times.push_back(Microseconds{Clock::now() - begin}.count());
        expect(right, "a call gives its value");
    }
    const auto each = static_cast<double>(times.size());
    report("cpu_us", (processorTime() - processor).count() / each);
    if constexpr (requires { Client::allocations(); }) {
        report("allocations", static_cast<double>(Client::allocations() - allocated) / each);
    }
    report("p50_us", quantile(times, 0.5));
    report("p99_us", quantile(times, 0.99));
}

/// Several threads on one client: address, threads, seconds.
template <class Client>
void measureThreads(const Arguments& arguments) {
    Client client{arguments.text("address")};
    const Throughput measured =
        runThreads(arguments.count("threads"), Seconds{arguments.real("seconds")}, [&](std::size_t thread) {
            return [caller = std::make_unique<typename Client::Caller>(client), number = thread << 24]() mutable {
                return readsItsValue(*caller, number++);
            };
        });
    report("calls_per_s", measured.perSecond);
    report("cpu_us", measured.processorTimeOfOne.count());
}

/// Connects and makes the first call, again and again: address, times at most, seconds at most.
template <class Client>
void measureConnecting(const Arguments& arguments) {
    const std::size_t most = arguments.count("times");
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(Seconds{arguments.real("seconds")});
    std::vector<double> times;
    while (times.size() < most && (times.empty() || Clock::now() < end)) {
        const auto begin = Clock::now();
        Client client{arguments.text("address")};
        typename Client::Caller caller{client};
        const bool right = readsItsValue(caller, times.size());
        times.push_back(Microseconds{Clock::now() - begin}.count());
        expect(right, "the first call gives its value");
    }
    report("p50_us", quantile(times, 0.5));
}

/// What becomes of calls of several threads on one client when half of them are refused and some are never answered:
/// address, threads, calls, unanswered (0 leaves the last out), timeout (seconds). A call that would have been answered
/// and took too long on a busy machine is late, not wrong.
template <class Client>
void measureOutcomes(const Arguments& arguments) {
    const auto timeout = std::chrono::duration_cast<std::chrono::microseconds>(Seconds{arguments.real("timeout")});
    const std::size_t calls = arguments.count("calls");
    const bool unanswered = arguments.count("unanswered") != 0;
    Client client{arguments.text("address")};
    std::uint32_t unused = 0;
    expect(typename Client::Caller{client}.read(answeredApplication(0), unused) == Outcome::value,
           "the first call works");
    client.setTimeout(timeout);
    std::atomic<std::uint32_t> next{1};
    std::atomic<std::uint64_t> wrong{0};
    std::atomic<std::uint64_t> late{0};
    const auto work = [&] {
        typename Client::Caller caller{client};
        for (std::uint32_t applId = next++; applId <= calls; applId = next++) {
            if (!unanswered && outcomeOf(applId) == Outcome::timedOut) { continue; }
            std::uint32_t value = 0;
            const Outcome outcome = caller.read(applId, value);
            const bool right = outcome == outcomeOf(applId) && (outcome != Outcome::value || value == valueOf(applId));
            if (!right) { ++(outcome == Outcome::timedOut ? late : wrong); }
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < arguments.count("threads"); ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    report("wrong", static_cast<double>(wrong));
    report("late", static_cast<double>(late));
    report("calls", static_cast<double>(calls));
}

inline double memoryInUseInKib() {
    std::ifstream file{"/proc/self/statm"};
    double pages = 0;
    file >> pages >> pages;
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

/// Many devices, each with a client of its own, called in turn by several threads: port, devices, threads, seconds. Their
/// addresses are 127.1.x.y.
template <class Client>
void measureDevices(const Arguments& arguments) {
    const std::size_t devices = arguments.count("devices");
    const std::size_t threads = arguments.count("threads");
    std::vector<std::unique_ptr<Client>> clients;
    std::vector<std::unique_ptr<typename Client::Caller>> callers;
    clients.reserve(devices);
    callers.reserve(devices);
    double memoryOfOne = 0;
    for (std::size_t i = 0; i < devices; ++i) {
        const std::string host = "127.1." + std::to_string(i / 250) + '.' + std::to_string(i % 250 + 1);
        clients.push_back(std::make_unique<Client>(host + ':' + arguments.text("port")));
        typename Client::Caller caller{*clients.back()};
        expect(readsItsValue(caller, i), "the first call of a device gives its value");
        if (i == 0) { memoryOfOne = memoryInUseInKib(); }
    }
    report("kib_per_device", (memoryInUseInKib() - memoryOfOne) / static_cast<double>(devices - 1));
    for (const auto& client : clients) {
        callers.push_back(std::make_unique<typename Client::Caller>(*client));
    }
    const Throughput measured = runThreads(threads, Seconds{arguments.real("seconds")}, [&](std::size_t thread) {
        return [&, threads, device = thread, number = std::uint64_t{thread} << 24]() mutable {
            const bool right = readsItsValue(*callers[device], number++);
            device += threads;
            if (device >= callers.size()) { device %= threads; }
            return right;
        };
    });
    report("calls_per_s", measured.perSecond);
    report("cpu_us", measured.processorTimeOfOne.count());
}

} // namespace bench
