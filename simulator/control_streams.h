// What a control channel reads and writes, as the system has it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace simulated_target {

/// The two directions of a conversation. Not closed with it.
struct ControlStreams {
    std::intptr_t in;
    std::intptr_t out;
};

ControlStreams standardStreams() noexcept;

/// Waits for bytes. Result: how many; 0 at the end, and after an error.
std::size_t readSome(ControlStreams streams, std::span<char> buffer) noexcept;

/// False when nobody reads any more.
bool writeAll(ControlStreams streams, std::string_view bytes) noexcept;

/// Makes a socket for callers, for nobody but the user of this program. One that a program has left behind is replaced,
/// one at which somebody listens is not. Throws std::system_error.
std::intptr_t listenAt(const std::string& path);

/// Lets `converse` have each caller, in a thread of its own, until the process ends.
void takeCallers(std::intptr_t listener, const std::function<void(ControlStreams)>& converse) noexcept;

} // namespace simulated_target
