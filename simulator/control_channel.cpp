#include "simulator/control_channel.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <utility>

#include "simulator/control_streams.h"

namespace simulated_target {

/// Outlives the channel: its threads wait for input, which no system lets others end, and go with the process.
struct ControlChannel::State {
    std::shared_mutex asking{}; // held by commands under way, alone by what ends the channel; guards the steering
    std::shared_timed_mutex writing{}; // likewise by answers
    Steering steering{};

    /// Until the input ends.
    void converse(ControlStreams streams) noexcept;
    bool answer(ControlStreams streams, std::string_view line);
};

namespace {

constexpr std::size_t kLongestLine = 64 * 1024;
constexpr std::chrono::seconds kPatience{1}; // with who does not read answers

} // namespace

void ControlChannel::State::converse(ControlStreams streams) noexcept {
    try {
        std::array<char, 4096> buffer{};
        std::string text;
        while (const std::size_t count = readSome(streams, buffer)) {
            text.append(buffer.data(), count);
            for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
                if (!answer(streams, std::string_view{text}.substr(0, end))) { return; }
                text.erase(0, end + 1);
            }
            if (text.size() > kLongestLine) { return; }
        }
        if (!text.empty()) { answer(streams, text); }
    } catch (const std::exception&) {} // no memory for the line
}

bool ControlChannel::State::answer(ControlStreams streams, std::string_view line) {
    std::shared_lock command{asking};
    if (!steering.answer) { return false; }
    const std::string reply = steering.answer(line) + '\n';
    const std::shared_lock answering{writing};
    command.unlock();
    return writeAll(streams, reply);
}

ControlChannel::ControlChannel(const std::string& path, Steering steering)
    : state_(std::make_shared<State>()), path_(path), listener_(path.empty() ? -1 : listenAt(path)) {
    state_->steering = std::move(steering);
}

void ControlChannel::start() {
    std::thread{[state = state_, ofInput = path_.empty(), listener = listener_] {
        if (!ofInput) {
            takeCallers(listener, [state](ControlStreams streams) { state->converse(streams); });
        }
        state->converse(standardStreams());
        const std::shared_lock command{state->asking};
        if (state->steering.inputEnded) { state->steering.inputEnded(); }
    }}.detach();
}

ControlChannel::~ControlChannel() {
    {
        const std::unique_lock ending{state_->asking};
        state_->steering = {};
    }
    const std::unique_lock written{state_->writing, kPatience};
    std::error_code ignored;
    if (!path_.empty()) { std::filesystem::remove(path_, ignored); }
}

} // namespace simulated_target
