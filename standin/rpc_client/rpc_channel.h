// The way to one RPC program's address: connects when it has to, and again after a connection was lost.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "platform/xdr.h"
#include "rpc_client/rpc_connection.h"
#include "rpc_client/rpc_limits.h"

namespace kvrpc {

/// Safe for any number of threads.
class Channel {
public:
    /// `address` is "a.b.c.d:port"; with any other text nothing connects.
    Channel(std::string address, const Limits& limits);
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    const std::string& address() const noexcept { return address_; }

    /// As it lies in memory in network order; all bits set when there is none.
    std::uint32_t ipAddress() const noexcept { return ipAddress_; }

    void setCallTimeout(Clock::duration timeout) noexcept { callTimeout_ = timeout; }

    /// Of a call that begins now.
    Deadline deadline() const noexcept { return Clock::now() + callTimeout_.load(); }

    /// The connection, made anew when there is none that can be used.
    Failure connect(std::shared_ptr<Connection>& connection, Deadline deadline);

    /// Sends a sealed record. It goes on a connection of its own time only when a first one took nothing of it.
    Failure start(Call& call, std::shared_ptr<Connection>& connection, std::span<std::uint8_t> record,
                  Deadline deadline);

    /// The same with a call that is made for it.
    Failure start(std::unique_ptr<Call>& call, std::shared_ptr<Connection>& connection, std::span<std::uint8_t> record,
                  Deadline deadline) {
        call = std::make_unique<Call>();
        return start(*call, connection, record, deadline);
    }

    /// Sends a sealed record and waits until its reply is decoded.
    Failure call(std::span<std::uint8_t> record, XdrRoutine decode, void* result);

private:
    struct Attempt {
        std::shared_ptr<Connection> connection{};
        Failure failure{};
        bool hurried = false; // it had less time than connecting may take
    };
    Attempt open(Deadline deadline) const noexcept;

    const std::string address_;
    std::uint32_t ipAddress_ = 0xFFFFFFFFU;
    std::uint16_t port_ = 0;
    const Clock::duration connectTimeout_;
    std::atomic<Clock::duration> callTimeout_;
    std::mutex mutex_{}; // guards what follows
    std::condition_variable attempted_{};
    bool connecting_ = false;
    std::uint64_t attempts_ = 0; // finished
    Attempt latest_{};
};

/// Reads the reply to a call. What `result` holds after a failure must not be read, only freed.
Failure readReply(ByteSpan record, XdrRoutine decode, void* result);

} // namespace kvrpc
