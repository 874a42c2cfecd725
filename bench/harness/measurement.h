// Clocks, and loops that are measured.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using Microseconds = std::chrono::duration<double, std::micro>;
using Nanoseconds = std::chrono::duration<double, std::nano>;

inline void expect(bool holds, const std::string& what) {
    if (!holds) { throw std::runtime_error{"not as expected: " + what}; }
}

/// Processor time that this process has used, in all its threads.
inline Microseconds processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

/// The most memory that this program has ever had in use.
inline double peakMemoryInMib() {
    std::ifstream status{"/proc/self/status"};
    std::string line;
    while (std::getline(status, line)) {
        if (line.starts_with("VmHWM:")) { return std::stod(line.substr(6)) / 1024; }
    }
    throw std::runtime_error{"the system does not tell the memory in use"};
}

/// The value below which a share of all values lies. Not of none.
inline double quantile(std::vector<double> values, double share) {
    const auto index = static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), values.begin() + index, values.end());
    return values[static_cast<std::size_t>(index)];
}

/// Keeps the compiler from leaving out what nobody reads.
template <class Value>
void keep(Value& value) {
    asm volatile("" : : "r"(&value) : "memory");
}

/// The time of one turn of `work`, the best of several batches that take `time` together.
template <class Work>
Nanoseconds timeOf(Seconds time, Work work) {
    constexpr int kBatches = 10;
    std::size_t turns = 1;
    const auto batch = [&] {
        const auto begin = Clock::now();
        for (std::size_t i = 0; i < turns; ++i) {
            work();
        }
        return Seconds{Clock::now() - begin};
    };
    Seconds taken = batch();
    while (taken < time / kBatches / 2) {
        turns *= 2;
        taken = batch();
    }
    for (int i = 1; i < kBatches; ++i) {
        taken = std::min(taken, batch());
    }
    return taken / static_cast<double>(turns);
}

struct Throughput {
    double perSecond;
    Microseconds processorTimeOfOne;
};

/// What several threads do in `time`, once they are all under way. Each calls the work that `make(thread)` gives it again
/// and again; a work that returns false was not done right, which throws.
template <class Make>
Throughput runThreads(std::size_t threads, Seconds time, Make make) {
    struct alignas(64) Count {
        std::atomic<std::uint64_t> done{0};
    };
    const std::unique_ptr<Count[]> counts{new Count[threads]};
    std::atomic<bool> ended{false};
    std::atomic<bool> wrong{false};
    std::vector<std::thread> running;
    for (std::size_t i = 0; i < threads; ++i) {
        running.emplace_back([&, i, work = make(i)]() mutable {
            while (!ended.load(std::memory_order_relaxed)) {
                if (!work()) { wrong = true; }
                counts[i].done.fetch_add(1, std::memory_order_relaxed);
            }
        });
    }
    const auto done = [&] {
        std::uint64_t sum = 0;
        for (std::size_t i = 0; i < threads; ++i) {
            sum += counts[i].done;
        }
        return static_cast<double>(sum);
    };
    const auto all = [&] {
        return std::all_of(counts.get(), counts.get() + threads, [](Count& c) { return c.done > 0; });
    };
    while (!wrong && !all()) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    const auto begin = Clock::now();
    const double doneBefore = done();
    const Microseconds processorBefore = processorTime();
    double doneWithin = 0;
    while (!wrong && doneWithin == 0) { // more than once only where others hold the processor
        std::this_thread::sleep_for(time);
        doneWithin = done() - doneBefore;
    }
    const Seconds taken = Clock::now() - begin;
    const Microseconds processor = processorTime() - processorBefore;
    ended = true;
    for (std::thread& thread : running) {
        thread.join();
    }
    expect(!wrong, "every call gives its value");
    return {doneWithin / taken.count(), processor / doneWithin};
}

} // namespace bench
