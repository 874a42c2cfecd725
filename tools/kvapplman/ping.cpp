// ping: how long devices take to connect and to answer one call
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <numeric>
#include <optional>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "each_device.h"

namespace tool {
namespace {

using kvapplman::Target;
using Milliseconds = std::chrono::duration<double, std::milli>;

std::string textOf(double milliseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2f", milliseconds);
    return text.data();
}

/// A connection of its own, and one call. A refusal is an answer, too.
double answerTime(const Device& device) {
    const Target target{device.address};
    const auto begin = std::chrono::steady_clock::now();
    try {
        static_cast<void>(target.manager().info<kvapplman::Item::presentTime>());
    } catch (const kvapplman::Error& error) {
        if (failureOf(error).exitCode != ExitCode::refused) { throw; }
    }
    return Milliseconds{std::chrono::steady_clock::now() - begin}.count();
}

Told summary(std::uint32_t calls, const std::vector<double>& times) {
    const double mean = std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
    const auto [least, most] = std::ranges::minmax(times);
    return {{{"calls", calls},
             {"answered", times.size()},
             {"timesMs", times},
             {"minMs", least},
             {"meanMs", mean},
             {"maxMs", most}},
            std::to_string(times.size()) + " of " + std::to_string(calls) + " answered; min " + textOf(least) +
                " ms, mean " + textOf(mean) + " ms, max " + textOf(most) + " ms\n"};
}

Told ping(Output& output, const Device& device, std::uint32_t calls) {
    std::vector<double> times;
    std::optional<Failure> failure;
    for (std::uint32_t i = 0; i < calls; ++i) {
        try {
            times.push_back(answerTime(device));
        } catch (const kvapplman::Error& error) {
            failure = failureOf(error);
            output.note(device.name + ": " + failure->text);
        }
    }
    if (times.empty() && failure) { throw Failed(*failure); }
    return summary(calls, times);
}

} // namespace

Action bindPing(CLI::App& app) {
    const auto calls = std::make_shared<std::uint32_t>(5);
    app.add_option("--count", *calls, "number of calls, each on a connection of its own")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 1'000'000))
        ->capture_default_str();
    return [calls](Context& context) {
        return tellEachDevice(context, [&](const Device& device) { return ping(context.output, device, *calls); });
    };
}

} // namespace tool
