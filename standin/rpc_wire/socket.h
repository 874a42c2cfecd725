// TCP sockets with deadlines: polled, not handed on to child processes, never a cause of SIGPIPE.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace kvrpc {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

enum class Io : std::uint8_t { done, wouldBlock, timedOut, ended, failed };
struct IoResult {
    Io io;
    std::size_t count = 0; // bytes moved, with `done` only
};

enum class ConnectOutcome : std::uint8_t { connected, refused, unreachable, timedOut, failed };
enum class AcceptOutcome : std::uint8_t { accepted, none, exhausted };

/// Nothing but `shutdown` may run in another thread at the same time as an operation of the same direction.
class Socket {
public:
    Socket() noexcept = default;
    ~Socket() { close(); }
    Socket(Socket&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
    Socket& operator=(Socket&& other) noexcept;

    /// `address` as it lies in memory in network order. `systemError` tells why it failed.
    static Socket connect(std::uint32_t address, std::uint16_t port, Deadline deadline, ConnectOutcome& outcome,
                          int& systemError) noexcept;

    /// Listens on "a.b.c.d"; port 0 = any. Throws std::system_error.
    static Socket listen(const std::string& host, std::uint16_t port);
    std::uint16_t localPort() const noexcept;

    /// The other end of a connection, "a.b.c.d:port"; empty when it is not known any more.
    std::string peer() const;

    /// Takes a waiting connection without waiting for one. `exhausted` means that the system is short of something.
    Socket accept(AcceptOutcome& outcome) const noexcept;

    bool valid() const noexcept { return handle_ != kNone; }

    struct Interest {
        bool toRead = false;
        bool toWrite = false;
    };
    /// Waits for one of the interests. Result: what can be tried now; nothing at the deadline. An error of the connection
    /// shows as both, so that trying tells it.
    Interest wait(Interest interest, Deadline deadline) const noexcept;

    /// Hands over what the system takes at once.
    IoResult send(std::span<const std::uint8_t> bytes) const noexcept;

    /// Receives what is there, and waits when there is nothing. Tries once even when the deadline is over.
    IoResult receive(std::span<std::uint8_t> buffer, Deadline deadline) const noexcept;

    /// Ends the connection in both directions; the other side sees it at once, waits in this process soon.
    void shutdown() const noexcept;

    /// Closing gives up what was sent and is not taken yet; the other side sees an error.
    void discardAtClose() const noexcept;

    /// Shutdown, and discardAtClose.
    void abandon() const noexcept;
    void close() noexcept;

private:
    static constexpr std::intptr_t kNone = -1;
    explicit Socket(std::intptr_t handle) noexcept;

    static Socket open(int& systemError) noexcept;
    bool connectedToItself(std::uint16_t port) const noexcept;

    std::intptr_t handle_ = kNone;
};

} // namespace kvrpc
