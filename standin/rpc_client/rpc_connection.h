// One TCP connection that any number of calls share: their replies are matched by xid. There is no thread of its own:
// of those who wait, one reads and hands the others their replies.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "rpc_client/rpc_failure.h"
#include "rpc_client/spare_buffers.h"
#include "rpc_wire/record_reader.h"
#include "rpc_wire/rpc_message.h"
#include "rpc_wire/socket.h"

namespace kvrpc {

class Connection;

/// A call under way. One that is given up leaves its connection usable: a late reply is dropped.
class Call {
public:
    explicit Call(std::shared_ptr<Connection> connection = {}) noexcept : connection_(std::move(connection)) {}
    ~Call() { moveTo({}); }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Leaves its connection, if it has one, for another, if that is one.
    void moveTo(std::shared_ptr<Connection> connection) noexcept;

    /// Once it is answered.
    ByteSpan reply() const noexcept { return reply_; }

private:
    friend class Connection;
    std::shared_ptr<Connection> connection_;
    Bytes reply_{};
    std::uint32_t xid_ = 0;
    std::atomic<bool> answered_{false}; // set last
    bool waiting_ = false;              // somebody sleeps until `woken_`
    std::condition_variable woken_{};
};

/// Safe for any number of threads.
class Connection {
public:
    explicit Connection(Socket socket) noexcept;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// False when it is broken or the other side has closed it. Takes in what has arrived.
    bool usable(Deadline deadline);

    struct Sent {
        Failure failure{};
        bool begun = false; // the system has taken a part of the record, or all of it
    };
    /// Gives a sealed record its xid and sends it. A record that was begun and cannot be finished breaks the connection.
    Sent send(Call& call, std::span<std::uint8_t> record, Deadline deadline);

    /// Waits for the reply to a call that was sent.
    Failure wait(Call& call, Deadline deadline);

    /// Breaks the connection: every call under way on it fails.
    void drop() noexcept;

private:
    friend class Call;
    using Lock = std::unique_lock<std::mutex>;

    void enroll(Call& call);
    void forget(Call& call) noexcept;
    Io write(ByteSpan record, Deadline deadline, std::size_t& sent);
    void waitToWrite(Deadline deadline);
    void takeRecords(Lock& lock, Deadline deadline);
    void deliver(Bytes& record) noexcept;
    void appointReader() noexcept;
    void fail(Failure::Kind kind) noexcept;

    const Socket socket_;
    std::mutex mutex_{}; // guards what follows, but for the reader, which belongs to whoever set `reading_`
    Failure failure_{};
    std::vector<Call*> pending_{}; // in the order in which they were sent
    std::uint32_t nextXid_;
    int sharedFor_ = 0; // so many turns of reading are expected to serve several threads
    std::atomic<bool> reading_{false};
    std::atomic<bool> writing_{false};
    std::condition_variable mayWrite_{};
    RecordReader reader_;
    SpareBuffers spare_{}; // for replies
};

} // namespace kvrpc
