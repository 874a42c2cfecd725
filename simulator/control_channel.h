// How commands reach a program that runs: over its standard input, or over a Unix socket.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace simulated_target {

#if defined(_WIN32)
inline constexpr bool kHasControlSockets = false;
#else
inline constexpr bool kHasControlSockets = true;
#endif

/// Reads lines and writes what each is answered, in threads of its own.
class ControlChannel {
public:
    /// What commands are given to, by several threads at once.
    struct Steering {
        std::function<std::string(std::string_view line)> answer{}; // without the end of the line
        std::function<void()> inputEnded{};                         // of standard input; must not throw
    };

    /// `path` is that of a socket, for nobody but the user of this program; empty = standard input and output. Throws
    /// std::system_error.
    ControlChannel(const std::string& path, Steering steering);
    void start();
    ~ControlChannel(); // waits for commands under way, not for ever for answers; nothing is asked afterwards
    ControlChannel(const ControlChannel&) = delete;
    ControlChannel& operator=(const ControlChannel&) = delete;

private:
    struct State;
    const std::shared_ptr<State> state_;
    const std::string path_;
    const std::intptr_t listener_; // of standard input none
};

} // namespace simulated_target
