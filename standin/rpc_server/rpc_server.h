// The server half of ONC RPC over TCP (RFC 5531, record marking): accepts connections and hands each call to a service.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rpc_wire/rpc_message.h"
#include "rpc_wire/socket.h"

namespace kvrpc {

struct RpcCall {
    std::uint64_t connection; // names the connection for as long as the server lives
    std::uint32_t program;
    std::uint32_t version;
    std::uint32_t procedure;
    std::span<const std::uint8_t> arguments;
    std::string_view peer{}; // "a.b.c.d:port"
};

/// How an answer goes out, for servers that misbehave on purpose.
struct Delivery {
    enum class Then : std::uint8_t { readOn, readNoMore, close, reset };

    Bytes bytes{};                      // that are sent: at first one fragment, its mark in front
    Then then = Then::readOn;           // what becomes of the connection
    std::function<void()> afterwards{}; // called when the bytes have been sent; must not throw
};

struct RpcReply {
    AcceptStatus status = AcceptStatus::success;
    std::vector<std::uint8_t> results; // sent with success only
    std::uint32_t lowestVersion = 0;   // sent with programMismatch only
    std::uint32_t highestVersion = 0;
    bool mayWait = false; // goes out together with the next one, when the next call is here already
    std::function<void(Delivery&)>
        shape{}; // changes how it goes out; called by the connection's thread, must not throw
};

class RpcService {
public:
    virtual ~RpcService() = default;

    /// Called by the connection's thread, for one connection at a time in the order of its calls, for several
    /// connections at once. What it throws becomes systemError.
    virtual RpcReply handle(const RpcCall& call) = 0;

    /// The connection is gone; no further call of it comes.
    virtual void connectionClosed(std::uint64_t connection) noexcept = 0;
};

class RpcServer {
public:
    /// The service must outlive the server. A connection is closed over a record that takes longer than `recordTime`
    /// from its first byte to its last, in either direction.
    explicit RpcServer(RpcService& service, Clock::duration recordTime = std::chrono::seconds{30});
    ~RpcServer(); // stops
    RpcServer(const RpcServer&) = delete;
    RpcServer& operator=(const RpcServer&) = delete;

    /// Listens on "a.b.c.d", port 0 = any. Throws std::system_error when it cannot. Result: "a.b.c.d:port".
    std::string start(const std::string& host, std::uint16_t port);

    /// Closes every connection, waits for the calls under way and stops listening. May be started again. Not to be
    /// called by the service.
    void stop() noexcept;

    /// Closes every connection at once; keeps listening.
    void dropConnections() noexcept;

    std::uint64_t acceptedConnections() const noexcept;

    /// The peers of the connections that there are, "a.b.c.d:port" by the number of the connection.
    std::map<std::uint64_t, std::string> connections() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace kvrpc
