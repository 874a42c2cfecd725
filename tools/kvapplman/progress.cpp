#include "progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace tool {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::chrono::milliseconds kInterval{50};
constexpr int kAll = 100;
constexpr double kTooSoon = 0.5; // seconds, before which nothing is known of the speed

std::string rateText(double bytesPerSecond) {
    std::array<char, 32> text{};
    constexpr double kMega = 1e6;
    constexpr double kKilo = 1e3;
    const bool large = bytesPerSecond >= kMega;
    std::snprintf(text.data(), text.size(), "%.1f %s", bytesPerSecond / (large ? kMega : kKilo),
                  large ? "MB/s" : "kB/s");
    return text.data();
}

std::string timeText(double seconds) {
    constexpr long kMinute = 60;
    const long whole = std::lround(seconds);
    if (whole < kMinute) { return std::to_string(whole) + " s"; }
    return std::to_string(whole / kMinute) + " min " + std::to_string(whole % kMinute) + " s";
}

std::string barText(int percent) {
    constexpr int kWidth = 20;
    const auto done = static_cast<std::size_t>(percent * kWidth / kAll);
    return "[" + std::string(done, '#') + std::string(kWidth - done, ' ') + "]";
}

std::string percentText(int percent) {
    const std::string digits = std::to_string(percent);
    return std::string(3 - digits.size(), ' ') + digits + " %";
}

struct Speed {
    std::optional<double> bytesPerSecond{};
    std::optional<double> secondsLeft{};
};

Speed speedOf(const ProgressState& state, double elapsed) {
    Speed speed;
    if (elapsed < kTooSoon) { return speed; }
    if (state.bytes && *state.bytes > 0) {
        speed.bytesPerSecond = static_cast<double>(*state.bytes) / elapsed;
        if (state.totalBytes) {
            const std::uint64_t left = *state.totalBytes - std::min(*state.bytes, *state.totalBytes);
            speed.secondsLeft = static_cast<double>(left) / *speed.bytesPerSecond;
        }
    } else if (state.fraction > 0.0) {
        speed.secondsLeft = elapsed * (1.0 - state.fraction) / state.fraction;
    }
    return speed;
}

std::string detailText(const ProgressState& state, const Speed& speed) {
    std::string text;
    if (!state.phase.empty()) { text += "  " + state.phase; }
    if (speed.bytesPerSecond) { text += "  " + rateText(*speed.bytesPerSecond); }
    if (speed.secondsLeft) { text += "  " + timeText(*speed.secondsLeft) + " left"; }
    return state.file.empty() ? text : text + "  " + state.file;
}

} // namespace

bool ProgressPace::isDue(double fraction, Time now) {
    constexpr int kTenths = 10;
    if (byTenths_ && fraction >= 1.0) { return false; } // the end of the call comes next
    if (byTenths_) { return percentOf(fraction) / kTenths > std::exchange(tenth_, percentOf(fraction) / kTenths); }
    if (last_ && now - *last_ < kInterval) { return false; }
    last_ = now;
    return true;
}

int ProgressPace::percentOf(double fraction) { return std::clamp(static_cast<int>(fraction * kAll), 0, kAll - 1); }

void Progress::show(const std::string& name, const ProgressState& state) {
    const Time now = std::chrono::steady_clock::now();
    Task& task = taskOf(name, now);
    task.state = state;
    if (task.pace.isDue(state.fraction, now)) { tell(task, ProgressPace::percentOf(state.fraction), now); }
}

void Progress::finish(const std::string& name) {
    const Time now = std::chrono::steady_clock::now();
    Task& task = taskOf(name, now);
    task.state.fraction = 1.0;
    task.state.bytes = task.state.totalBytes;
    tell(task, kAll, now);
    drop(name);
}

void Progress::drop(const std::string& name) {
    std::erase_if(tasks_, [&](const Task& task) { return task.name == name; });
    drawAll(std::chrono::steady_clock::now());
}

Progress::Task& Progress::taskOf(const std::string& name, Time now) {
    const auto known = std::ranges::find(tasks_, name, &Task::name);
    if (known != tasks_.end()) { return *known; }
    const bool byTenths = !output_.draws() && output_.form() != Form::jsonLines;
    return tasks_.emplace_back(Task{name, now, ProgressPace{byTenths}});
}

void Progress::tell(const Task& task, int percent, Time now) {
    const double elapsed = Seconds{now - task.begin}.count();
    const Speed speed = speedOf(task.state, elapsed);
    if (output_.form() == Form::jsonLines) {
        Json event{{"task", task.name},
                   {"percent", percent},
                   {"phase", task.state.phase},
                   {"file", task.state.file},
                   {"elapsedSeconds", elapsed}};
        if (task.state.bytes) { event["bytes"] = *task.state.bytes; }
        if (task.state.totalBytes) { event["totalBytes"] = *task.state.totalBytes; }
        output_.event("progress", std::move(event));
    } else if (percent == kAll) {
        output_.note(task.name + ": 100 % in " + timeText(elapsed) +
                     (speed.bytesPerSecond ? ", " + rateText(*speed.bytesPerSecond) : ""));
    } else if (output_.draws()) {
        drawAll(now);
    } else {
        output_.note(task.name + ": " + std::to_string(percent) + " %" + detailText(task.state, speed));
    }
}

void Progress::drawAll(Time now) {
    std::vector<std::string> lines;
    for (const Task& task : tasks_) {
        const int percent = ProgressPace::percentOf(task.state.fraction);
        const Speed speed = speedOf(task.state, Seconds{now - task.begin}.count());
        lines.push_back(task.name + "  " + barText(percent) + " " + percentText(percent) +
                        detailText(task.state, speed));
    }
    output_.draw(std::move(lines));
}

} // namespace tool
